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
        if (scenario == QLatin1String("report after the tracer")) {
            // Built before the tracer, so destroyed after it at exit; it reports as the
            // library's objects do.
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

    void countsByNameWhateverTheString()
    {
        // One class named by a literal, by a string built at run time and by raw characters in
        // two places, all of which the tracer must count together; reset() forgets them all.
        static const QString twice = QStringLiteral("ThingThing");
        const QStringList names { QStringLiteral("Thing"), QString(QLatin1String("Thing")),
                                  QString::fromRawData(twice.constData(), 5),
                                  QString::fromRawData(twice.constData() + 5, 5) };
        MemLeakTracer *tracer = MemLeakTracer::getInstance();
        for (int round = 0; round < 2; ++round) {
            tracer->reset();
            tracer->setEnabled(true);
            QVERIFY(MemLeakTracer::mayCount());
            for (QString const &name : names) {
                tracer->doAllocateObject(name);
                tracer->doAllocateObject(name);
                tracer->doDeallocateObject(name);
            }
            tracer->setEnabled(false);
            QVERIFY(!MemLeakTracer::mayCount());
            QCOMPARE(tracer->getAllocationCount(names.at(1)), 8u);
            QCOMPARE(tracer->getLiveCount(names.at(0)), 4);
        }
        tracer->reset();
    }

    void manyNamesKeepTheirOwnCounts()
    {
        // More names than the tracer keeps by address, sharing its slots and their first
        // characters: "a", "ab", "abc", "b", ... each counted (index % 3 + 1) times.
        static const QString letters = QStringLiteral("abcdefghijklmnopqrstuvwxyz0123456789");
        QStringList names;
        for (int start = 0; start + 3 <= letters.size(); ++start) {
            for (int length = 1; length <= 3; ++length)
                names.append(QString::fromRawData(letters.constData() + start, length));
        }
        MemLeakTracer *tracer = MemLeakTracer::getInstance();
        tracer->reset();
        tracer->setEnabled(true);
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < names.size(); ++i) {
                if (i % 3 >= round)
                    tracer->doAllocateObject(names.at(i));
            }
        }
        tracer->setEnabled(false);
        for (int i = 0; i < names.size(); ++i) {
            const QString built(names.at(i).constData(), names.at(i).size());
            QCOMPARE(tracer->getAllocationCount(built), quint64(i % 3 + 1));
        }
        tracer->reset();
    }

    void reportsAfterTheTracerAreDropped()
    {
        const ChildProcess::Result result
            = ChildProcess::run(QStringLiteral("report after the tracer"));
        QVERIFY2(result.finished && !result.crashed && result.exitCode == 0,
                 qPrintable(result.standardError));
        QVERIFY2(result.errorLines().contains(
                     QStringLiteral("MemLeakTracer: 1 live object(s) of class Late at exit")),
                 qPrintable(result.standardError));
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
