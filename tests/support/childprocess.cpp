// SPDX-License-Identifier: LGPL-2.1-or-later
#include "childprocess.h"

#include <QProcess>
#include <QProcessEnvironment>

#include <cstring>

namespace {
char const scenarioOption[] = "--child-scenario";
}

QStringList ChildProcess::Result::errorLines() const
{
    return QString(standardError)
        .replace(QStringLiteral("\r\n"), QStringLiteral("\n"))
        .split(QLatin1Char('\n'));
}

ChildProcess::Result ChildProcess::run(QString const &scenario)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // The plain message text, so that fatal messages can be compared line by line.
    environment.insert(QStringLiteral("QT_MESSAGE_PATTERN"), QStringLiteral("%{message}"));
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(),
                  QStringList { QString::fromLatin1(scenarioOption), scenario });

    Result result;
    if (!process.waitForStarted(30000))
        return result;
    result.finished = process.waitForFinished(30000);
    if (!result.finished) {
        process.kill();
        process.waitForFinished();
    }
    result.crashed = process.exitStatus() == QProcess::CrashExit;
    result.exitCode = process.exitCode();
    result.standardError = QString::fromLocal8Bit(process.readAllStandardError());
    return result;
}

bool ChildProcess::scenarioFromArguments(int argc, char **argv, QString *scenario)
{
    for (int i = 1; i + 1 < argc; ++i) {
        if (std::strcmp(argv[i], scenarioOption) == 0) {
            *scenario = QString::fromLocal8Bit(argv[i + 1]);
            return true;
        }
    }
    return false;
}
