// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_CHILDPROCESS_H
#define MESSAGEAPI_TESTS_CHILDPROCESS_H

#include <QCoreApplication>
#include <QStringList>
#include <QTest>

/**
 * Runs fatal paths (qFatal) in a child process: the test executable starts itself again with
 * "--child-scenario NAME", and the test main of MSGAPI_TEST_MAIN_WITH_SCENARIOS then runs
 * TestClass::runChildScenario(NAME) instead of the tests.
 */
namespace ChildProcess {

/// Exit code of a child whose scenario returned instead of aborting.
constexpr int ScenarioReturned = 77;

struct Result
{
    bool finished = false; ///< the child ended within the time limit
    bool crashed = false; ///< it ended by a signal (qFatal aborts)
    int exitCode = -1;
    QString standardError;

    /// The lines of the child's error output, without line ends.
    QStringList errorLines() const;
};

/// Starts this executable for the scenario, waits for it (30 s at most) and returns the outcome.
Result run(QString const &scenario);

/// Whether the arguments ask for a child scenario; its name goes to *scenario.
bool scenarioFromArguments(int argc, char **argv, QString *scenario);

} // namespace ChildProcess

/// Qt Test main that also serves child scenarios (see ChildProcess).
#define MSGAPI_TEST_MAIN_WITH_SCENARIOS(TestClass)                                                 \
    int main(int argc, char **argv)                                                                \
    {                                                                                              \
        QCoreApplication app(argc, argv);                                                          \
        QString scenario;                                                                          \
        if (ChildProcess::scenarioFromArguments(argc, argv, &scenario)) {                          \
            TestClass::runChildScenario(scenario);                                                 \
            return ChildProcess::ScenarioReturned;                                                 \
        }                                                                                          \
        TestClass tc;                                                                              \
        QTEST_SET_MAIN_SOURCE_PATH                                                                 \
        return QTest::qExec(&tc, argc, argv);                                                      \
    }

#endif // MESSAGEAPI_TESTS_CHILDPROCESS_H
