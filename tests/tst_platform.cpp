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
    void countsByNameWhateverTheString()
    {
        // One class named by a literal, by a string built at run time and by raw characters in
        // two places, all of which the tracer must count together, and only while enabled;
        // reset() forgets them all and keeps the tracer enabled.
        static const QString twice = QStringLiteral("ThingThing");
        const QStringList names { QStringLiteral("Thing"), QString(QLatin1String("Thing")),
                                  QString::fromRawData(twice.constData(), 5),
                                  QString::fromRawData(twice.constData() + 5, 5) };
        MemLeakTracer *tracer = MemLeakTracer::getInstance();
        for (int round = 0; round < 2; ++round) {
            tracer->reset();
            tracer->setEnabled(false);
            QVERIFY(!MemLeakTracer::mayCount());
            tracer->doAllocateObject(names.at(round)); // not counted
            tracer->setEnabled(true);
            QVERIFY(MemLeakTracer::mayCount());
            for (QString const &name : names) {
                tracer->doAllocateObject(name);
                tracer->doAllocateObject(name);
                tracer->doDeallocateObject(name);
            }
            QCOMPARE(tracer->getAllocationCount(names.at(1)), 8u);
            QCOMPARE(tracer->getDeallocationCount(names.at(2)), 4u);
            QCOMPARE(tracer->getLiveCount(names.at(0)), 4);
            QCOMPARE(tracer->getLiveCount(QStringLiteral("Other")), 0);
        }
        tracer->reset();
        QVERIFY(tracer->isEnabled());
        QCOMPARE(tracer->getLiveCount(names.at(0)), 0);
        tracer->setEnabled(false);
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

    void childScenarios_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<bool>("crashes");
        QTest::addColumn<QString>("line"); // a line of the child's error output
        QTest::newRow("leak report at exit")
            << QStringLiteral("leak") << false
            << QStringLiteral("MemLeakTracer: 1 live object(s) of class Leaky at exit");
        QTest::newRow("reports after the tracer are dropped")
            << QStringLiteral("report after the tracer") << false
            << QStringLiteral("MemLeakTracer: 1 live object(s) of class Late at exit");
        QTest::newRow("fatal aborts")
            << QStringLiteral("fatal") << true << QStringLiteral("child fatal text.");
    }

    void childScenarios()
    {
        QFETCH(QString, scenario);
        QFETCH(bool, crashes);
        QFETCH(QString, line);
        const ChildProcess::Result result = ChildProcess::run(scenario);
        QVERIFY2(result.finished && result.crashed == crashes && (crashes || result.exitCode == 0),
                 qPrintable(result.standardError));
        QVERIFY2(result.errorLines().contains(line), qPrintable(result.standardError));
        QVERIFY(!result.standardError.contains(QStringLiteral("Balanced")));
    }
};

MSGAPI_TEST_MAIN_WITH_SCENARIOS(tst_Platform)
#include "tst_platform.moc"
