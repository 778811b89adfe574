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
    void countsByNameWhateverTheString_data();
    void countsByNameWhateverTheString();
    void manyNamesKeepTheirOwnCounts();
    void resetForgetsNamesFoundBefore();
    void mayCountFollowsTheSwitch();
    void reportsAfterTheTracerAreDropped();
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
    if (scenario == QLatin1String("report after the tracer")) {
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
        MemLeakTracer::getInstance()->setEnabled(true);
        MemLeakTracer::getInstance()->doAllocateObject(QStringLiteral("Late"));
        std::exit(0);
    }
}

namespace {
// Names whose characters are not owned by any string, like a literal's, in two places.
const QChar thingCharacters[]
    = { QLatin1Char('T'), QLatin1Char('h'), QLatin1Char('i'), QLatin1Char('n'), QLatin1Char('g') };
const QChar otherThingCharacters[]
    = { QLatin1Char('T'), QLatin1Char('h'), QLatin1Char('i'), QLatin1Char('n'), QLatin1Char('g') };

/// "Thing" made in different ways: the tracer must count them all as one class.
QString thingMadeAs(QString const &how)
{
    if (how == QLatin1String("literal"))
        return QStringLiteral("Thing");
    if (how == QLatin1String("raw"))
        return QString::fromRawData(thingCharacters, 5);
    if (how == QLatin1String("raw elsewhere"))
        return QString::fromRawData(otherThingCharacters, 5);
    return QString(QLatin1String("Thing"));
}
} // namespace

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

void tst_Platform::countsByNameWhateverTheString_data()
{
    QTest::addColumn<QString>("allocatedAs");
    QTest::addColumn<QString>("deallocatedAs");

    QTest::newRow("literal, built") << QStringLiteral("literal") << QStringLiteral("built");
    QTest::newRow("built, literal") << QStringLiteral("built") << QStringLiteral("literal");
    QTest::newRow("raw characters in two places")
        << QStringLiteral("raw") << QStringLiteral("raw elsewhere");
    QTest::newRow("raw characters, literal") << QStringLiteral("raw") << QStringLiteral("literal");
    QTest::newRow("literal, raw characters") << QStringLiteral("literal") << QStringLiteral("raw");
}

void tst_Platform::countsByNameWhateverTheString()
{
    QFETCH(QString, allocatedAs);
    QFETCH(QString, deallocatedAs);

    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    tracer->reset();
    tracer->setEnabled(true);
    tracer->doAllocateObject(thingMadeAs(allocatedAs));
    tracer->doAllocateObject(thingMadeAs(allocatedAs));
    tracer->doDeallocateObject(thingMadeAs(deallocatedAs));
    tracer->setEnabled(false);
    for (QString const &how : { allocatedAs, deallocatedAs }) {
        QCOMPARE(tracer->getAllocationCount(thingMadeAs(how)), 2u);
        QCOMPARE(tracer->getDeallocationCount(thingMadeAs(how)), 1u);
    }
    tracer->reset();
}

void tst_Platform::manyNamesKeepTheirOwnCounts()
{
    // More names than the tracer remembers by address, so that they share its slots.
    static const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz0123456789");
    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    tracer->reset();
    tracer->setEnabled(true);
    QStringList names;
    for (int start = 0; start + 3 <= letters.size(); ++start) {
        for (int length = 1; length <= 3; ++length)
            names.append(QString::fromRawData(letters.constData() + start, length));
    }
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < names.size(); ++i) {
            if (i % 3 >= round)
                tracer->doAllocateObject(names.at(i));
        }
    }
    tracer->setEnabled(false);
    for (int i = 0; i < names.size(); ++i) {
        const QString name = names.at(i);
        QCOMPARE(tracer->getAllocationCount(QString(name.constData(), name.size())),
                 quint64(i % 3 + 1));
    }
    tracer->reset();
}

void tst_Platform::resetForgetsNamesFoundBefore()
{
    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    tracer->setEnabled(true);
    for (int i = 0; i < 2; ++i) {
        tracer->reset();
        tracer->doAllocateObject(QStringLiteral("Thing"));
        QCOMPARE(tracer->getAllocationCount(QStringLiteral("Thing")), 1u);
    }
    tracer->setEnabled(false);
    tracer->reset();
}

void tst_Platform::mayCountFollowsTheSwitch()
{
    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    tracer->setEnabled(true);
    QVERIFY(MemLeakTracer::mayCount());
    tracer->setEnabled(false);
    QVERIFY(!MemLeakTracer::mayCount());
}

void tst_Platform::reportsAfterTheTracerAreDropped()
{
    const ChildProcess::Result result
        = ChildProcess::run(QStringLiteral("report after the tracer"));
    QVERIFY(result.finished);
    QVERIFY2(!result.crashed, qPrintable(result.standardError));
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.errorLines().contains(
                 QStringLiteral("MemLeakTracer: 1 live object(s) of class Late at exit")),
             qPrintable(result.standardError));
}

void tst_Platform::defaultAssertHandlerWarnsWithAllItems()
{
    WarningCapture warnings;
    dbg_Assert("MOD", "SUB", "doIt", "src/thing", 12, "it broke");
    QCOMPARE(
        warnings.warnings(),
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
