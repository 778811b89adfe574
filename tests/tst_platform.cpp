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
    static void runChildScenario(QString const &scenario);

private Q_SLOTS:
    void countsOnlyWhileEnabled();
    void resetForgetsCounts();
    void defaultAssertHandlerWarnsWithAllItems();
    void handlerIsReplacedAndRestored();
    void leakReportAtExit();
    void fatalChildReportsItsText();
};

void tst_Platform::runChildScenario(QString const &scenario)
{
    if (scenario == QLatin1String("leak")) {
        MemLeakTracer::getInstance()->setEnabled(true);
        MemLeakTracer::getInstance()->doAllocateObject(QStringLiteral("Leaky"));
        MemLeakTracer::getInstance()->doAllocateObject(QStringLiteral("Balanced"));
        MemLeakTracer::getInstance()->doDeallocateObject(QStringLiteral("Balanced"));
        std::exit(0);
    }
    if (scenario == QLatin1String("fatal"))
        qFatal("%s", "child fatal text.");
}

void tst_Platform::countsOnlyWhileEnabled()
{
    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    tracer->reset();
    tracer->setEnabled(false);
    tracer->doAllocateObject(QStringLiteral("Thing"));
    QCOMPARE(tracer->getAllocationCount(QStringLiteral("Thing")), 0u);

    tracer->setEnabled(true);
    QVERIFY(tracer->isEnabled());
    tracer->doAllocateObject(QStringLiteral("Thing"));
    tracer->doAllocateObject(QStringLiteral("Thing"));
    tracer->doDeallocateObject(QStringLiteral("Thing"));
    QCOMPARE(tracer->getAllocationCount(QStringLiteral("Thing")), 2u);
    QCOMPARE(tracer->getDeallocationCount(QStringLiteral("Thing")), 1u);
    QCOMPARE(tracer->getLiveCount(QStringLiteral("Thing")), 1);
    QCOMPARE(tracer->getLiveCount(QStringLiteral("Other")), 0);
    tracer->setEnabled(false);
    tracer->reset();
}

void tst_Platform::resetForgetsCounts()
{
    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    tracer->setEnabled(true);
    tracer->doAllocateObject(QStringLiteral("Thing"));
    tracer->reset();
    QVERIFY(tracer->isEnabled());
    QCOMPARE(tracer->getLiveCount(QStringLiteral("Thing")), 0);
    tracer->setEnabled(false);
}

void tst_Platform::defaultAssertHandlerWarnsWithAllItems()
{
    WarningCapture warnings;
    dbg_Assert("MOD", "SUB", "doIt", "src/thing", 12, "it broke");
    QCOMPARE(warnings.warnings(),
             QStringList(QStringLiteral("ASSERTION FAILED [MOD/SUB] doIt (src/thing:12): it broke")));
}

void tst_Platform::handlerIsReplacedAndRestored()
{
    WarningCapture warnings;
    {
        AssertCapture capture;
        dbg_Assert("M", "S", "f", "file", 3, "text");
        QCOMPARE(capture.texts(), QStringList(QStringLiteral("text")));
        QCOMPARE(capture.reports().constFirst().line, 3);
    }
    QVERIFY(warnings.warnings().isEmpty());
    dbg_Assert("M", "S", "f", "file", 3, "after");
    QCOMPARE(warnings.warnings().size(), 1);
}

void tst_Platform::leakReportAtExit()
{
    const ChildProcess::Result result = ChildProcess::run(QStringLiteral("leak"));
    QVERIFY(result.finished);
    QVERIFY(!result.crashed);
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.errorLines().contains(
                 QStringLiteral("MemLeakTracer: 1 live object(s) of class Leaky at exit")),
             qPrintable(result.standardError));
    QVERIFY(!result.standardError.contains(QStringLiteral("Balanced")));
}

void tst_Platform::fatalChildReportsItsText()
{
    const ChildProcess::Result result = ChildProcess::run(QStringLiteral("fatal"));
    QVERIFY(result.finished);
    QVERIFY(result.crashed);
    QVERIFY2(result.errorLines().contains(QStringLiteral("child fatal text.")),
             qPrintable(result.standardError));
}

MSGAPI_TEST_MAIN_WITH_SCENARIOS(tst_Platform)
#include "tst_platform.moc"
