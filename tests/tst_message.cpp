// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "memleaktracer.h"
#include "message.h"
#include "messageapi.h"
#include "testmessage.h"
#include "tracerrecorder.h"

#include <QTest>

namespace {
MessageInfo const *fakeInfo()
{
    // Message only stores the pointer; it never looks at the type.
    return reinterpret_cast<MessageInfo const *>(0x10);
}
} // namespace

class tst_Message : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void construction();
    void lastReferenceDeletes();
    void tracerReportsBaseFirstAndBack();
    void deletingReferencedObjectReports();
    void deletingUnreferencedObjectReportsNothing();
    void subMessagesDefaultToEmpty();
    void rawRepresentationOfAnotherMessage();
    void parentMessage();
    void displayStatics();
    void confidentialSwitchStaysOn();
};

void tst_Message::construction()
{
    TestMessage message(fakeInfo());
    QCOMPARE(message.getInfo(), fakeInfo());
    QCOMPARE(message.getNumberOfReferences(), 0);
    QVERIFY(message.getParentMessage() == nullptr);
}

void tst_Message::lastReferenceDeletes()
{
    bool destroyed = false;
    auto *message = new TestMessage(fakeInfo());
    message->setDestructionFlag(&destroyed);
    message->addReference();
    message->addReference();
    QCOMPARE(message->getNumberOfReferences(), 2);
    message->removeReference();
    QVERIFY(!destroyed);
    QCOMPARE(message->getNumberOfReferences(), 1);
    message->removeReference();
    QVERIFY(destroyed);
}

void tst_Message::tracerReportsBaseFirstAndBack()
{
    TracerRecorder recorder;
    auto *message = new TestMessage(fakeInfo());
    QCOMPARE(recorder.events(),
             QStringList({QStringLiteral("+ReferenceCountedObject"), QStringLiteral("+Message")}));
    message->addReference();
    message->removeReference();
    QCOMPARE(recorder.events(),
             QStringList({QStringLiteral("+ReferenceCountedObject"), QStringLiteral("+Message"),
                          QStringLiteral("-Message"), QStringLiteral("-ReferenceCountedObject")}));
    QCOMPARE(MemLeakTracer::getInstance()->getLiveCount(QStringLiteral("Message")), 0);
}

void tst_Message::deletingReferencedObjectReports()
{
    AssertCapture capture;
    bool destroyed = false;
    auto *message = new TestMessage(fakeInfo());
    message->setDestructionFlag(&destroyed);
    message->addReference();
    message->addReference();
    delete message;

    QVERIFY(destroyed);
    QCOMPARE(capture.count(), 1);
    const AssertCapture::Report report = capture.reports().constFirst();
    QCOMPARE(report.text, QByteArray("Deleting referenced object!"));
    QCOMPARE(report.function, QByteArray("~ReferenceCountedObject"));
    QCOMPARE(report.file, QByteArray("src/auxiliary/referencecountedobject"));
    QCOMPARE(report.line, 31);
    QCOMPARE(report.module, QByteArray("MSGAPI"));
    QVERIFY(!report.subModule.isEmpty());
}

void tst_Message::deletingUnreferencedObjectReportsNothing()
{
    AssertCapture capture;
    delete new TestMessage(fakeInfo());
    QCOMPARE(capture.count(), 0);
}

void tst_Message::subMessagesDefaultToEmpty()
{
    // A concrete message that keeps the base class's sub-message operations.
    class PlainMessage : public Message
    {
    public:
        PlainMessage()
            : Message(nullptr)
        {
        }
        unsigned int getRawSize() const override { return 0; }

    protected:
        uint8_t const *getRawRepresentation() const override { return nullptr; }
    };

    PlainMessage plain;
    QVERIFY(plain.getSubMessages().isEmpty());
    QVERIFY(static_cast<PlainMessage const &>(plain).getSubMessages().isEmpty());

    TestMessage parent(fakeInfo());
    TestMessage child(fakeInfo());
    parent.setSubMessages({&child});
    QCOMPARE(parent.getSubMessages(), QVector<Message *>({&child}));
    QCOMPARE(static_cast<TestMessage const &>(parent).getSubMessages(),
             QVector<Message const *>({&child}));
}

void tst_Message::rawRepresentationOfAnotherMessage()
{
    TestMessage a(fakeInfo(), QByteArray("\x01\x02", 2));
    TestMessage b(fakeInfo(), QByteArray("\xd3\x00\x13", 3));
    QCOMPARE(b.getRawSize(), 3u);
    uint8_t const *raw = a.getRawRepresentationOf(&b);
    QCOMPARE(raw, reinterpret_cast<uint8_t const *>(b.getRaw().constData()));
    QCOMPARE(raw[0], uint8_t(0xd3));
}

void tst_Message::parentMessage()
{
    TestMessage parent(fakeInfo());
    TestMessage child(fakeInfo());
    child.setParentMessage(&parent);
    QCOMPARE(child.getParentMessage(), &parent);
    QCOMPARE(static_cast<TestMessage const &>(child).getParentMessage(), &parent);
    QCOMPARE(parent.getNumberOfReferences(), 0);
    QCOMPARE(child.getNumberOfReferences(), 0);
}

void tst_Message::displayStatics()
{
    QCOMPARE(Message::fieldSeparator, QStringLiteral(","));
    QCOMPARE(Message::doNotUseString, QStringLiteral("N/A"));
    QVERIFY(Message::useDoNotUseString);
}

void tst_Message::confidentialSwitchStaysOn()
{
    QVERIFY(!MessageApi::confidentialInformationDisplayEnabled());
    QVERIFY(!MessageApi::sConfidentialInformationDisplayEnabled);
    MessageApi::enableConfidentialInformationDisplay();
    QVERIFY(MessageApi::confidentialInformationDisplayEnabled());
    MessageApi::enableConfidentialInformationDisplay();
    QVERIFY(MessageApi::confidentialInformationDisplayEnabled());
}

QTEST_GUILESS_MAIN(tst_Message)
#include "tst_message.moc"
