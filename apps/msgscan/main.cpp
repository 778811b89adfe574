// SPDX-License-Identifier: LGPL-2.1-or-later
// msgscan: what is in an RTCM 3 stream, at what rates, what is missing or broken, and where the
// station is. The work is done by the classes beside this file; main() reads the options and
// wires them.
#include "auxiliary/inputoptions.h"
#include "auxiliary/interruptnotifier.h"
#include "auxiliary/translationloader.h"
#include "jsonwriter.h"
#include "messagedump.h"
#include "scaninput.h"
#include "streamscanner.h"

#include <rtcm3/rtcm3dictionary.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QElapsedTimer>
#include <QLocale>
#include <QTimer>

#include <cstdio>
#include <memory>
#include <unistd.h>

namespace {

int usageError(QString const &why)
{
    std::fprintf(stderr, "msgscan: %s\n%s\n", qPrintable(why),
                 qPrintable(QCoreApplication::translate(
                     "main", "Try 'msgscan --help' for more information.")));
    return 2;
}

void write(QByteArray const &bytes)
{
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("msgscan"));
    QCoreApplication::setApplicationVersion(QStringLiteral(MSGSCAN_VERSION));
    TranslationLoader::install(); // texts in the user's language
    QLocale::setDefault(QLocale::c()); // numbers as plain digits, whatever the user's locale

    QCommandLineParser parser;
    parser.setApplicationDescription(QCoreApplication::translate(
        "main",
        "Scans an RTCM 3 stream and reports its messages, rates, gaps, errors and station."));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument(
        QCoreApplication::translate("main", "input"),
        QCoreApplication::translate("main",
                                    "A file, - for standard input, tcp://host:port, "
                                    "ntrip://[user:password@]host[:port]/mountpoint or "
                                    "serial:///dev/ttyUSB0?baud=115200."));
    const QCommandLineOption jsonOption(
        QStringLiteral("json"),
        QCoreApplication::translate("main", "Write the report (or each dumped message) as JSON."));
    const QCommandLineOption dumpOption(
        QStringLiteral("dump"),
        QCoreApplication::translate("main",
                                    "Show every message of the types that the path expression "
                                    "matches, with its matching fields, e.g. 'RTCM3:1005:*'."),
        QCoreApplication::translate("main", "expression"));
    const QCommandLineOption rawOption(
        QStringLiteral("raw"), QCoreApplication::translate("main", "Dump raw values, unscaled."));
    const QCommandLineOption hexOption(
        QStringLiteral("hex"),
        QCoreApplication::translate("main", "Dump these fields (comma-separated) in hexadecimal."),
        QCoreApplication::translate("main", "fields"));
    const QCommandLineOption durationOption(
        QStringLiteral("duration"),
        QCoreApplication::translate("main", "Stop a live scan after this many seconds."),
        QCoreApplication::translate("main", "seconds"));
    parser.addOptions({ jsonOption, dumpOption, rawOption, hexOption, durationOption });
    InputOptions inputOptions;
    inputOptions.addTo(parser);

    if (!parser.parse(QCoreApplication::arguments()))
        return usageError(parser.errorText());
    if (parser.isSet(QStringLiteral("help")))
        parser.showHelp(0);
    if (parser.isSet(QStringLiteral("version")))
        parser.showVersion();
    const QStringList positional = parser.positionalArguments();
    if (positional.size() != 1)
        return usageError(positional.isEmpty()
                              ? QCoreApplication::translate("main", "no input given")
                              : QCoreApplication::translate("main", "one input only, not %1")
                                    .arg(positional.size()));
    bool ok = true;
    const double duration
        = parser.isSet(durationOption) ? parser.value(durationOption).toDouble(&ok) : 0.0;
    if (!ok || duration < 0)
        return usageError(
            QCoreApplication::translate("main", "bad --duration %1: not a number of seconds")
                .arg(parser.value(durationOption)));
    const QString inputError = inputOptions.read(parser);
    if (!inputError.isEmpty())
        return usageError(inputError);

    Rtcm3Dictionary dictionary;
    std::unique_ptr<MessageDump> dump;
    if (parser.isSet(dumpOption)) {
        dump = std::make_unique<MessageDump>(
            parser.value(dumpOption),
            parser.isSet(rawOption) ? MessageDump::Raw : MessageDump::Interpreted,
            parser.value(hexOption).split(QLatin1Char(','), Qt::SkipEmptyParts));
        if (!dump->getError().isEmpty())
            return usageError(dump->getError());
    }
    ScanInput input(positional.first());
    if (!input.getUsageError().isEmpty())
        return usageError(input.getUsageError());
    input.setReconnectSeconds(inputOptions.getReconnectSeconds());
    const QDate date = inputOptions.getDate().isValid()
        ? inputOptions.getDate()
        : StreamScanner::getStreamDate(&dictionary, positional.first(), QDate::currentDate());
    StreamScanner scanner(&dictionary, positional.first(), date);
    scanner.addEventSource(&input);
    QObject::connect(&input, &ScanInput::dataReceived, &scanner, &StreamScanner::addData);
    const bool json = parser.isSet(jsonOption);
    if (dump) {
        QObject::connect(
            scanner.getDecoder(), &MessageSource::newMessage, [&](Message const *message) {
                const QDateTime time = scanner.getTimeSource()->getTime();
                if (!json)
                    write(dump->getText(message, time).toUtf8());
                else
                    for (QJsonObject const &object : JsonWriter::dump(*dump, message, time))
                        write(JsonWriter::line(object));
            });
    }

    // A progress line on a terminal while a file is read; the report replaces it.
    QTimer progress;
    QElapsedTimer elapsed;
    elapsed.start();
    if (input.getKind() == ScanInput::File && isatty(STDERR_FILENO)) {
        QObject::connect(&progress, &QTimer::timeout, [&]() {
            const qint64 size = input.getSize();
            const double seconds = qMax<qint64>(elapsed.elapsed(), 1) / 1000.0;
            std::fprintf(stderr, "\rmsgscan: %3d%%  %.1f MB/s",
                         size > 0 ? int(input.getBytesRead() * 100 / quint64(size)) : 0,
                         input.getBytesRead() / seconds / 1e6);
        });
        progress.start(200);
    }

    bool finished = false;
    auto finish = [&]() {
        if (finished)
            return;
        finished = true;
        input.close();
        scanner.finish();
        if (progress.isActive()) {
            progress.stop();
            std::fprintf(stderr, "\r\033[K");
        }
        if (!dump)
            write(json ? JsonWriter::indented(JsonWriter::report(scanner))
                       : scanner.getTextReport().toUtf8());
        std::fflush(stdout);
        QCoreApplication::exit(0);
    };
    QObject::connect(&input, &ScanInput::finished, finish);
    QObject::connect(&input, &ScanInput::failed, [&](QString const &why) {
        finished = true;
        std::fprintf(stderr, "%smsgscan: %s\n", progress.isActive() ? "\r\033[K" : "",
                     qPrintable(why));
        QCoreApplication::exit(1);
    });
    InterruptNotifier interrupt;
    QObject::connect(&interrupt, &InterruptNotifier::interrupted, finish);
    if (duration > 0)
        QTimer::singleShot(int(duration * 1000), finish);

    QTimer::singleShot(0, &input, &ScanInput::open);
    return QCoreApplication::exec();
}
