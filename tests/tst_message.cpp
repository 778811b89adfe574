// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "childprocess.h"
#include "dbg.h"
#include "memleaktracer.h"
#include "message.h"
#include "messageapi.h"
#include "messageapievent.h"
#include "testmessage.h"
#include "tracerrecorder.h"
#include "warningcapture.h"

#include <QTest>

#include <utility>

namespace {
// Message only stores the pointer; it never looks at the type.
MessageInfo const *const fakeInfo = reinterpret_cast<MessageInfo const *>(0x10);
} // namespace

class tst_Message : public QObject
{
    Q_OBJECT

public:
    static void runChildScenario(QString const &)
    {
        // Built before the tracer, so destroyed after it at exit; it reports as the library's
        // objects do.
        struct LateReporter
        {
            ~LateReporter()
            {
                if (MemLeakTracer::mayCount())
                    MemLeakTracer::getInstance()->doDeallocateObject(QStringLiteral("Late"));
            }
        };
        static LateReporter late;
        MemLeakTracer *tracer = MemLeakTracer::getInstance();
        tracer->setEnabled(true);
        tracer->doAllocateObject(QStringLiteral("Late"));
        tracer->doAllocateObject(QStringLiteral("Leaky"));
        tracer->doAllocateObject(QStringLiteral("Balanced"));
        tracer->doDeallocateObject(QStringLiteral("Balanced"));
        std::exit(0);
    }

private Q_SLOTS:
    void baseOperationsAndDisplaySettings()
    {
        TestMessage parent(fakeInfo, QByteArray("\xd3\x00", 2));
        TestMessage child(fakeInfo);
        child.setParentMessage(&parent); // a plain link: no reference is taken
        QCOMPARE(parent.getNumberOfReferences() + child.getNumberOfReferences(), 0);
        // The base class has no sub-messages of its own.
        QVERIFY(child.getSubMessages().isEmpty());
        QVERIFY(std::as_const(child).getSubMessages().isEmpty());

        QCOMPARE(child.getRawRepresentationOf(&parent),
                 reinterpret_cast<uint8_t const *>(parent.getRaw().constData()));

        QCOMPARE(Message::fieldSeparator, QStringLiteral(","));
        QCOMPARE(Message::doNotUseString, QStringLiteral("N/A"));
        QVERIFY(Message::useDoNotUseString);

        // Confidential display is off until enabled, and stays on for good.
        QVERIFY(!MessageApi::confidentialInformationDisplayEnabled());
        MessageApi::enableConfidentialInformationDisplay();
        MessageApi::enableConfidentialInformationDisplay();
        QVERIFY(MessageApi::confidentialInformationDisplayEnabled());
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
        auto *message = new TestMessage(fakeInfo);
        for (int i = 0; i < references; ++i)
            message->addReference();
        if (deleted) {
            delete message;
        } else {
            message->removeReference();
            QCOMPARE(recorder.eventsOf(QStringLiteral("Message")), { QStringLiteral("+Message") });
            message->removeReference();
        }
        // A report does not stop the destruction.
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

    void typeTexts()
    {
        const QStringList texts = QStringLiteral("Connection Opened,Connection Closed,CRC Error,"
                                                 "Unknown Message,Decoder Error,Application Error,"
                                                 "Client Error")
                                      .split(QLatin1Char(','));
        // Values outside the table are carried as they are, with no text and no error.
        for (int type = -1; type <= 7; ++type) {
            const MessageApiEvent event(MessageApiEvent::Type(type), QString(), nullptr);
            QCOMPARE(int(event.getType()), type);
            QCOMPARE(event.isError(), type >= 2 && type <= 6);
            QCOMPARE(event.getTypeString(), texts.value(type));
            QCOMPARE(MessageApiEvent::getTypeString(event.getType()).isNull(),
                     type < 0 || type > 6);
        }
    }

    void copiesMovesAndTheDiscardingNotice()
    {
        const QString prefix = QStringLiteral("[Event discarded in future:] ");
        auto const *format = reinterpret_cast<FormatInfo const *>(0x1234);
        TracerRecorder recorder;
        {
            MessageApiEvent event(MessageApiEvent::DecoderError, QStringLiteral("abc"), format);
            MessageApiEvent copy(event);
            copy = event; // not reported
            const MessageApiEvent moved(std::move(copy)); // takes the text and reports
            event.addNotificationOfFutureDiscarding();
            event.addNotificationOfFutureDiscarding(); // nothing guards against a second prefix
            QCOMPARE(event.getMessage(), prefix + prefix + QStringLiteral("abc"));
            QCOMPARE(recorder.events().join(QLatin1Char(' ')),
                     QStringLiteral("+MessageApiEvent +MessageApiEvent +MessageApiEvent"));
            for (MessageApiEvent const &other :
                 { moved, QVariant::fromValue(moved).value<MessageApiEvent>() }) {
                QCOMPARE(other.getType(), MessageApiEvent::DecoderError);
                QCOMPARE(other.getMessage(), QStringLiteral("abc"));
                QCOMPARE(other.getFormat(), format);
            }
            recorder.clear(); // of the copies made for the loop
        }
        QCOMPARE(recorder.events().join(QLatin1Char(' ')),
                 QStringLiteral("-MessageApiEvent -MessageApiEvent -MessageApiEvent"));
    }

    // The platform stand-in is a real library: its counting, its default assertion output and
    // its leak report at exit are what the library's tests and applications rely on.

    void countsByNameWhateverTheString()
    {
        // More names than the tracer keeps by address, sharing its slots and first characters
        // ("a", "ab", "abc", "b", ...), each reported (index % 3 + 1) times from raw characters
        // and read back through a string of its own; a literal and a built string count together.
        static const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz0123456789");
        QStringList names;
        for (int start = 0; start + 3 <= letters.size(); ++start) {
            for (int length = 1; length <= 3; ++length)
                names.append(QString::fromRawData(letters.constData() + start, length));
        }
        MemLeakTracer *tracer = MemLeakTracer::getInstance();
        tracer->reset();
        tracer->doAllocateObject(names.at(0)); // not counted while disabled
        tracer->setEnabled(true);
        QVERIFY(MemLeakTracer::mayCount());
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < names.size(); ++i) {
                if (i % 3 >= round)
                    tracer->doAllocateObject(names.at(i));
            }
        }
        tracer->doAllocateObject(QStringLiteral("Thing"));
        tracer->doDeallocateObject(QString(QLatin1String("Thing")));
        for (int i = 0; i < names.size(); ++i) {
            const QString built(names.at(i).constData(), names.at(i).size());
            QCOMPARE(tracer->getAllocationCount(built), quint64(i % 3 + 1));
        }
        QCOMPARE(tracer->getDeallocationCount(QStringLiteral("Thing")), 1u);
        QCOMPARE(tracer->getLiveCount(QStringLiteral("Thing")), 0);
        QCOMPARE(tracer->getLiveCount(QStringLiteral("abc")), 3);

        tracer->reset(); // forgets the counts, stays enabled
        QVERIFY(tracer->isEnabled());
        QCOMPARE(tracer->getLiveCount(QStringLiteral("abc")), 0);
        tracer->setEnabled(false);
        QVERIFY(!MemLeakTracer::mayCount());
    }

    void assertHandlerIsReplacedAndRestored()
    {
        WarningCapture warnings;
        {
            AssertCapture capture;
            dbg_Assert("M", "S", "f", "file", 3, "text");
            QCOMPARE(capture.texts(), QStringList(QStringLiteral("text")));
        }
        QVERIFY(warnings.warnings().isEmpty());
        dbg_Assert("MOD", "SUB", "doIt", "src/thing", 12, "it broke");
        QCOMPARE(warnings.warnings(),
                 QStringList(
                     QStringLiteral("ASSERTION FAILED [MOD/SUB] doIt (src/thing:12): it broke")));
    }

    void leakReportAtExit()
    {
        // The report after the tracer's own end is dropped, so "Late" still counts as live.
        const ChildProcess::Result result = ChildProcess::run(QStringLiteral("leak"));
        QVERIFY2(result.finished && !result.crashed && result.exitCode == 0,
                 qPrintable(result.standardError));
        QStringList lines = result.errorLines().filter(QStringLiteral("MemLeakTracer"));
        lines.sort();
        QCOMPARE(lines,
                 QStringList(
                     { QStringLiteral("MemLeakTracer: 1 live object(s) of class Late at exit"),
                       QStringLiteral("MemLeakTracer: 1 live object(s) of class Leaky at exit") }));
    }
};

MSGAPI_TEST_MAIN_WITH_SCENARIOS(tst_Message)
#include "tst_message.moc"
