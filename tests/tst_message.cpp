// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "message.h"
#include "messageapi.h"
#include "testmessage.h"
#include "tracerrecorder.h"

#include <QTest>

namespace {
// Message only stores the pointer; it never looks at the type.
MessageInfo const *const fakeInfo = reinterpret_cast<MessageInfo const *>(0x10);
} // namespace

class tst_Message : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void constructionAndParent();
    void lastReferenceDeletesAndTracesBaseFirstAndBack();
    void deletingReferencedObjectReports_data();
    void deletingReferencedObjectReports();
    void baseHasNoSubMessages();
    void rawRepresentationOfAnotherMessage();
    void displayStatics();
};

void tst_Message::constructionAndParent()
{
    TestMessage parent(fakeInfo);
    TestMessage child(fakeInfo);
    QCOMPARE(child.getInfo(), fakeInfo);
    QVERIFY(child.getParentMessage() == nullptr);
    child.setParentMessage(&parent);
    QCOMPARE(static_cast<TestMessage const &>(child).getParentMessage(), &parent);
    QCOMPARE(parent.getNumberOfReferences(), 0);
    QCOMPARE(child.getNumberOfReferences(), 0);
}

void tst_Message::lastReferenceDeletesAndTracesBaseFirstAndBack()
{
    TracerRecorder recorder;
    bool destroyed = false;
    auto *message = new TestMessage(fakeInfo);
    message->setDestructionFlag(&destroyed);
    message->addReference();
    message->addReference();
    message->removeReference();
    QCOMPARE(message->getNumberOfReferences(), 1);
    QVERIFY(!destroyed);
    message->removeReference();
    QVERIFY(destroyed);
    QCOMPARE(recorder.events().join(QLatin1Char(' ')),
             QStringLiteral("+ReferenceCountedObject +Message -Message -ReferenceCountedObject"));
}

void tst_Message::deletingReferencedObjectReports_data()
{
    QTest::addColumn<int>("references");
    QTest::addColumn<int>("reports");
    QTest::newRow("never referenced") << 0 << 0;
    QTest::newRow("still referenced") << 2 << 1;
}

void tst_Message::deletingReferencedObjectReports()
{
    QFETCH(int, references);
    QFETCH(int, reports);
    AssertCapture capture;
    bool destroyed = false;
    auto *message = new TestMessage(fakeInfo);
    message->setDestructionFlag(&destroyed);
    for (int i = 0; i < references; ++i)
        message->addReference();
    delete message;

    QVERIFY(destroyed); // the report does not stop the destruction
    QCOMPARE(capture.count(), reports);
    for (AssertCapture::Report const &report : capture.reports()) {
        QCOMPARE(report.text, QByteArray("Deleting referenced object!"));
        QCOMPARE(report.function, QByteArray("~ReferenceCountedObject"));
        QCOMPARE(report.file, QByteArray("src/auxiliary/referencecountedobject"));
        QCOMPARE(report.line, 31);
        QCOMPARE(report.module, QByteArray("MSGAPI"));
        QVERIFY(!report.subModule.isEmpty());
    }
}

void tst_Message::baseHasNoSubMessages()
{
    // A concrete message that keeps the base class's sub-message operations.
    class PlainMessage : public Message
    {
    public:
        PlainMessage()
            : Message(nullptr)
        { }
        unsigned int getRawSize() const override { return 0; }

    protected:
        uint8_t const *getRawRepresentation() const override { return nullptr; }
    };

    PlainMessage plain;
    QVERIFY(plain.getSubMessages().isEmpty());
    QVERIFY(static_cast<PlainMessage const &>(plain).getSubMessages().isEmpty());
}

void tst_Message::rawRepresentationOfAnotherMessage()
{
    TestMessage a(fakeInfo);
    TestMessage b(fakeInfo, QByteArray("\xd3\x00\x13", 3));
    QCOMPARE(a.getRawRepresentationOf(&b),
             reinterpret_cast<uint8_t const *>(b.getRaw().constData()));
}

void tst_Message::displayStatics()
{
    QCOMPARE(Message::fieldSeparator, QStringLiteral(","));
    QCOMPARE(Message::doNotUseString, QStringLiteral("N/A"));
    QVERIFY(Message::useDoNotUseString);

    // Confidential display is off until enabled, and stays on for good.
    QVERIFY(!MessageApi::confidentialInformationDisplayEnabled());
    QVERIFY(!MessageApi::sConfidentialInformationDisplayEnabled);
    MessageApi::enableConfidentialInformationDisplay();
    MessageApi::enableConfidentialInformationDisplay();
    QVERIFY(MessageApi::confidentialInformationDisplayEnabled());
}

QTEST_GUILESS_MAIN(tst_Message)
#include "tst_message.moc"
