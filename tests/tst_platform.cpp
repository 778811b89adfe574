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
    static void runChildScenario(QString const &scenario)
    {
        MemLeakTracer *tracer = MemLeakTracer::getInstance();
        if (scenario == QLatin1String("leak")) {
            tracer->setEnabled(true);
            tracer->doAllocateObject(QStringLiteral("Leaky"));
            tracer->doAllocateObject(QStringLiteral("Balanced"));
            tracer->doDeallocateObject(QStringLiteral("Balanced"));
            std::exit(0);
        }
        if (scenario == QLatin1String("fatal"))
            qFatal("%s", "child fatal text.");
    }

private Q_SLOTS:
    void countsOnlyWhileEnabled()
    {
        MemLeakTracer *tracer = MemLeakTracer::getInstance();
        const QString thing = QStringLiteral("Thing");
        tracer->reset();
        tracer->setEnabled(false);
        tracer->doAllocateObject(thing); // not counted
        tracer->setEnabled(true);
        tracer->doAllocateObject(thing);
        tracer->doAllocateObject(thing);
        tracer->doDeallocateObject(thing);
        QCOMPARE(tracer->getAllocationCount(thing), 2u);
        QCOMPARE(tracer->getDeallocationCount(thing), 1u);
        QCOMPARE(tracer->getLiveCount(thing), 1);
        QCOMPARE(tracer->getLiveCount(QStringLiteral("Other")), 0);

        tracer->reset(); // forgets the counts, stays enabled
        QVERIFY(tracer->isEnabled());
        QCOMPARE(tracer->getLiveCount(thing), 0);
        tracer->setEnabled(false);
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
        const ChildProcess::Result result = ChildProcess::run(QStringLiteral("leak"));
        QVERIFY(result.finished && !result.crashed && result.exitCode == 0);
        QVERIFY2(result.errorLines().contains(
                     QStringLiteral("MemLeakTracer: 1 live object(s) of class Leaky at exit")),
                 qPrintable(result.standardError));
        QVERIFY(!result.standardError.contains(QStringLiteral("Balanced")));
    }

    void fatalRunsInAChildProcess()
    {
        const ChildProcess::Result result = ChildProcess::run(QStringLiteral("fatal"));
        QVERIFY(result.finished && result.crashed);
        QVERIFY2(result.errorLines().contains(QStringLiteral("child fatal text.")),
                 qPrintable(result.standardError));
    }
};

MSGAPI_TEST_MAIN_WITH_SCENARIOS(tst_Platform)
#include "tst_platform.moc"
