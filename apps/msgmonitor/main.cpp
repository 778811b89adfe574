// SPDX-License-Identifier: LGPL-2.1-or-later
// msgmonitor: a window on an RTCM 3 stream (file, standard input, TCP server, NTRIP caster,
// serial port): its message types with rates and gaps, the dictionary, the latest message of a
// type, its intervals and the event log. The work is done by the classes beside this file;
// main() reads the options and wires them.
#include "monitorwindow.h"

#include "auxiliary/inputoptions.h"
#include "auxiliary/translationloader.h"

#include <rtcm3/rtcm3dictionary.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QTimer>

#include <cstdio>

namespace {

int usageError(QString const &why)
{
    std::fprintf(stderr, "msgmonitor: %s\n%s\n", qPrintable(why),
                 qPrintable(QCoreApplication::translate(
                     "main", "Try 'msgmonitor --help' for more information.")));
    return 2;
}

/// The stream installed beside the program, or else the one of the source tree it was built
/// from; empty when there is neither.
QString bundledStream()
{
    const QString name = QStringLiteral("station.rtcm3");
    const QStringList places {
        QCoreApplication::applicationDirPath()
            + QStringLiteral("/../" MSGMONITOR_DATA_INSTALL_DIR "/") + name,
        QStringLiteral(MSGMONITOR_SOURCE_DATA_DIR "/") + name,
    };
    for (QString const &place : places)
        if (QFileInfo::exists(place))
            return QDir::cleanPath(place);
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("msgmonitor"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MSGMONITOR_VERSION));
    TranslationLoader::install(); // texts in the user's language
    QLocale::setDefault(QLocale::c()); // numbers as plain digits, whatever the user's locale

    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate(
        "main",
        "Shows an RTCM 3 stream as it arrives: its messages, rates, gaps, fields and events."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(
        QCoreApplication::translate("main", "input"),
        QCoreApplication::translate("main",
                                    "A file, - for standard input, tcp://host:port, "
                                    "ntrip://[user:password@]host[:port]/mountpoint or "
                                    "serial:///dev/ttyUSB0?baud=115200; the bundled station "
                                    "stream when none is given."),
        QLatin1Char('[') + QCoreApplication::translate("main", "input") + QLatin1Char(']'));
    const QCommandLineOption screenshotOption(
        QStringLiteral("screenshot"),
        QCoreApplication::translate("main",
                                    "Write a picture of the window to this PNG file when the "
                                    "input (a file) has ended, then quit."),
        QCoreApplication::translate("main", "file"));
    parser.addOption(screenshotOption);
    InputOptions inputOptions;
    inputOptions.addTo(parser);

    if (!parser.parse(QCoreApplication::arguments()))
        return usageError(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(0);
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    const QStringList positional = parser.positionalArguments();
    if (positional.size() > 1)
        return usageError(
            QCoreApplication::translate("main", "one input only, not %1").arg(positional.size()));
    const QString inputError = inputOptions.read(parser);
    if (!inputError.isEmpty())
        return usageError(inputError);
    const QString input = positional.isEmpty() ? bundledStream() : positional.first();
    const QString screenshot = parser.value(screenshotOption);
    if (input.isEmpty() && !screenshot.isEmpty())
        return usageError(
            QCoreApplication::translate("main", "no input given, and no bundled stream found"));

    Rtcm3Dictionary dictionary;
    MonitorWindow window(&dictionary);
    window.setFallbackDate(inputOptions.getDate());
    window.setReconnectSeconds(inputOptions.getReconnectSeconds());
    window.setInput(input);
    if (!screenshot.isEmpty()) {
        // The views lay out what the end of the input brought before the picture is taken.
        QObject::connect(&window, &MonitorWindow::scanFinished, [&]() {
            QTimer::singleShot(100, &window, [&]() {
                if (window.grab().save(screenshot, "PNG")) {
                    QCoreApplication::exit(0);
                    return;
                }
                std::fprintf(stderr, "msgmonitor: cannot write %s\n", qPrintable(screenshot));
                QCoreApplication::exit(1);
            });
        });
        QObject::connect(&window, &MonitorWindow::scanFailed, [](QString const &why) {
            std::fprintf(stderr, "msgmonitor: %s\n", qPrintable(why));
            QCoreApplication::exit(1);
        });
    }
    window.show();
    if (!input.isEmpty())
        QTimer::singleShot(0, &window, &MonitorWindow::start);
    return QApplication::exec();
}
