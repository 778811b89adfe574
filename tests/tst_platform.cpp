// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "childprocess.h"
#include "dbg.h"
#include "memleaktracer.h"
#include "warningcapture.h"

#include <QTest>

// The platform stand-in is a real library: its counting, its default assertion output and its
// leak report at exit are what the library's tests and applications rely on.
class tst_Platform : public QObject
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
    void countsByNameWhateverTheString()
    {
        // More names than the tracer keeps by address, sharing its slots and their first
        // characters ("a", "ab", "abc", "b", ...), each reported (index % 3 + 1) times from raw
        // characters and read back through a string of its own; a literal and a built string
        // of one name count together.
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

MSGAPI_TEST_MAIN_WITH_SCENARIOS(tst_Platform)
#include "tst_platform.moc"
