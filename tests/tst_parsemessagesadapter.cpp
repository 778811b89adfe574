// SPDX-License-Identifier: LGPL-2.1-or-later
#include "formatinfo.h"
#include "parsemessagesadapter.h"
#include "recordingdecoder.h"
#include "testparser.h"
#include "warningcapture.h"

#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

class tst_ParseMessagesAdapter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decodesSignalledLengthFromStoredBuffer();
    void eventsReachTheDecoder();
    void warnsAboutMissingSignals_data();
    void warnsAboutMissingSignals();
};

void tst_ParseMessagesAdapter::decodesSignalledLengthFromStoredBuffer()
{
    auto *parser = new TestParser;
    RecordingDecoder decoder;
    QPointer<ParseMessagesAdapter> adapter(
        new ParseMessagesAdapter(parser, nullptr, parser->buffer(), &decoder));
    parser->deliverBlock(1, QByteArray("\xB5\x01\x00\x00", 4));
    parser->deliverBlock(0xFFFFFFFFu, "abcdef"); // the id is not used

    QCOMPARE(decoder.decodeCalls.size(), 2);
    QCOMPARE(decoder.decodeCalls[0].bytes, QByteArray("\xB5\x01\x00\x00", 4));
    QCOMPARE(decoder.decodeCalls[1].bytes, QByteArray("abcdef"));
    for (auto const &call : decoder.decodeCalls)
        QCOMPARE(call.buffer, reinterpret_cast<uint8_t const *>(parser->buffer()));
    delete parser;
    QVERIFY(adapter.isNull()); // the adapter dies with its parser
}

// One function on purpose: the CRC format is looked up once per process, at the first CRC error.
void tst_ParseMessagesAdapter::eventsReachTheDecoder()
{
    TestParser parser;
    TestConnection connection;
    RecordingDecoder decoder(QStringLiteral("Rover"));
    new ParseMessagesAdapter(&parser, &connection, parser.buffer(), &decoder);
    QSignalSpy spy(&decoder, &MessageSource::newEvent);

    Q_EMIT connection.connected();
    // Registered after the adapter was made, before the first CRC error: found.
    FormatInfo vexa(QStringLiteral("VEXA"));
    Q_EMIT parser.crcErrorVexa();
    // A newer format of that name does not replace the one already found.
    FormatInfo newerVexa(QStringLiteral("VEXA"));
    Q_EMIT parser.crcErrorVexa();
    Q_EMIT connection.connectionClosed();

    QStringList events;
    for (auto const &arguments : spy) {
        const auto event = arguments.at(0).value<MessageApiEvent>();
        const char *format = event.getFormat() == &vexa ? "vexa" : event.getFormat() ? "?" : "none";
        events << QString::number(event.getType()) + ' ' + format + ' ' + event.getMessage();
    }
    QCOMPARE(events,
             QStringList({ "0 none Rover connection opened", "2 vexa VEXA CRC error",
                           "2 vexa VEXA CRC error", "1 none Rover connection closed" }));
}

void tst_ParseMessagesAdapter::warnsAboutMissingSignals_data()
{
    QTest::addColumn<bool>("plainParser");
    QTest::addColumn<int>("connectionKind"); // 0 none, 1 plain object, 2 with the signals
    QTest::addColumn<QStringList>("warnings");

    const QString prefix("ParseMessagesAdapter: cannot connect to ");
    const QStringList parser { prefix + "vexa(unsigned int, unsigned int) of the parser",
                               prefix + "crcErrorVexa() of the parser" };
    const QStringList connection { prefix + "connected() of the connection",
                                   prefix + "connectionClosed() of the connection" };
    QTest::newRow("all signals present") << false << 2 << QStringList();
    QTest::newRow("plain objects") << true << 1 << parser + connection;
    QTest::newRow("no connection object") << true << 0 << parser;
}

void tst_ParseMessagesAdapter::warnsAboutMissingSignals()
{
    QFETCH(bool, plainParser);
    QFETCH(int, connectionKind);
    QFETCH(QStringList, warnings);

    TestParser testParser;
    QObject plainObject;
    TestConnection testConnection;
    QObject *const connections[] = { nullptr, &plainObject, &testConnection };
    RecordingDecoder decoder;
    WarningCapture capture;
    new ParseMessagesAdapter(plainParser ? &plainObject : static_cast<QObject *>(&testParser),
                             connections[connectionKind], testParser.buffer(), &decoder);
    QCOMPARE(capture.warnings().filter(QRegularExpression("^ParseMessagesAdapter:")), warnings);
}

QTEST_GUILESS_MAIN(tst_ParseMessagesAdapter)
#include "tst_parsemessagesadapter.moc"
