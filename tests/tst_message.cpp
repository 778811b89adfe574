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
    void baseOperations()
    {
        TestMessage parent(fakeInfo, QByteArray("\xd3\x00", 2));
        TestMessage child(fakeInfo);
        child.setParentMessage(&parent); // a plain link: no reference is taken
        QCOMPARE(parent.getNumberOfReferences() + child.getNumberOfReferences(), 0);
        // The base class has no sub-messages of its own.
        child.setSubMessages({ &parent });
        QVERIFY(child.Message::getSubMessages().isEmpty());
        QVERIFY(static_cast<TestMessage const &>(child).Message::getSubMessages().isEmpty());

        QCOMPARE(child.getRawRepresentationOf(&parent),
                 reinterpret_cast<uint8_t const *>(parent.getRaw().constData()));
    }

    void lifeEnds_data()
    {
        QTest::addColumn<int>("references");
        QTest::addColumn<bool>("deleted"); // directly, or else by releasing every reference
        QTest::newRow("last reference released") << 2 << false;
        QTest::newRow("never referenced, deleted") << 0 << true;
        QTest::newRow("still referenced, deleted") << 2 << true;
    }

    void lifeEnds()
    {
        QFETCH(int, references);
        QFETCH(bool, deleted);
        TracerRecorder recorder;
        AssertCapture capture;
        bool destroyed = false;
        auto *message = new TestMessage(fakeInfo);
        message->setDestructionFlag(&destroyed);
        for (int i = 0; i < references; ++i)
            message->addReference();
        if (deleted) {
            delete message;
        } else {
            message->removeReference();
            QCOMPARE(message->getNumberOfReferences(), 1);
            QVERIFY(!destroyed);
            message->removeReference();
        }
        QVERIFY(destroyed); // a report does not stop the destruction
        QCOMPARE(recorder.events().join(QLatin1Char(' ')),
                 QStringLiteral("+ReferenceCountedObject +Message -Message "
                                "-ReferenceCountedObject"));
        QCOMPARE(capture.count(), deleted && references ? 1 : 0);
        for (AssertCapture::Report const &r : capture.reports()) {
            QCOMPARE(
                QByteArray(r.module + '/' + r.subModule + ' ' + r.function + ' ' + r.file + ':'
                           + QByteArray::number(r.line) + ' ' + r.text),
                QByteArray("MSGAPI/REFCOUNTEDOBJECT ~ReferenceCountedObject "
                           "src/auxiliary/referencecountedobject:31 Deleting referenced object!"));
        }
    }

    void displayStatics()
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
};

QTEST_GUILESS_MAIN(tst_Message)
#include "tst_message.moc"
