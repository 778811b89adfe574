// SPDX-License-Identifier: LGPL-2.1-or-later
#include "formatinfo.h"
#include "parsemessagesadapter.h"
#include "recordingdecoder.h"
#include "testparser.h"
#include "warningcapture.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

class tst_ParseMessagesAdapter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decodesSignalledLengthFromStoredBuffer_data();
    void decodesSignalledLengthFromStoredBuffer();
    void connectionEventsCarryDecoderName_data();
    void connectionEventsCarryDecoderName();
    void crcErrorsReportTheFormatFoundAtTheFirstOne();
    void warnsAboutMissingSignals_data();
    void warnsAboutMissingSignals();
    void diesWithParser();
};

void tst_ParseMessagesAdapter::decodesSignalledLengthFromStoredBuffer_data()
{
    QTest::addColumn<uint>("id");
    QTest::addColumn<QByteArray>("block");

    QTest::newRow("first block") << 1u << QByteArray("\xB5\x01\x00\x00", 4);
    QTest::newRow("large id is ignored") << 0xFFFFFFFFu << QByteArray("abcdef");
    QTest::newRow("empty block") << 7u << QByteArray();
}

void tst_ParseMessagesAdapter::decodesSignalledLengthFromStoredBuffer()
{
    QFETCH(uint, id);
    QFETCH(QByteArray, block);

    TestParser parser;
    TestConnection connection;
    RecordingDecoder decoder;
    new ParseMessagesAdapter(&parser, &connection, parser.buffer(), &decoder);
    parser.deliverBlock(id, block);

    QCOMPARE(decoder.decodeCalls.size(), 1);
    QCOMPARE(decoder.decodeCalls[0].buffer, reinterpret_cast<uint8_t const *>(parser.buffer()));
    QCOMPARE(decoder.decodeCalls[0].length, uint(block.size()));
    QCOMPARE(decoder.decodeCalls[0].bytes, block);
}

void tst_ParseMessagesAdapter::connectionEventsCarryDecoderName_data()
{
    QTest::addColumn<bool>("opened");
    QTest::addColumn<QString>("text");

    QTest::newRow("connected") << true << "Rover connection opened";
    QTest::newRow("closed") << false << "Rover connection closed";
}

void tst_ParseMessagesAdapter::connectionEventsCarryDecoderName()
{
    QFETCH(bool, opened);
    QFETCH(QString, text);

    TestParser parser;
    TestConnection connection;
    RecordingDecoder decoder(QStringLiteral("Rover"));
    new ParseMessagesAdapter(&parser, &connection, parser.buffer(), &decoder);
    QSignalSpy spy(&decoder, &MessageSource::newEvent);
    if (opened)
        Q_EMIT connection.connected();
    else
        Q_EMIT connection.connectionClosed();

    QCOMPARE(spy.count(), 1);
    const auto event = spy.at(0).at(0).value<MessageApiEvent>();
    QCOMPARE(event.getMessage(), text);
    QCOMPARE(event.getType(),
             opened ? MessageApiEvent::ConnectionOpened : MessageApiEvent::ConnectionClosed);
    QCOMPARE(event.getFormat(), nullptr);
}

// One function on purpose: the format is looked up once per process, at the first CRC error.
void tst_ParseMessagesAdapter::crcErrorsReportTheFormatFoundAtTheFirstOne()
{
    TestParser parser;
    RecordingDecoder decoder;
    new ParseMessagesAdapter(&parser, nullptr, parser.buffer(), &decoder);
    QSignalSpy spy(&decoder, &MessageSource::newEvent);

    // Registered after the adapter was made, before the first CRC error: found.
    FormatInfo vexa(QStringLiteral("VEXA"));
    Q_EMIT parser.crcErrorVexa();
    // A newer format of that name does not replace the one already found.
    FormatInfo newerVexa(QStringLiteral("VEXA"));
    Q_EMIT parser.crcErrorVexa();

    QCOMPARE(spy.count(), 2);
    for (auto const &arguments : spy) {
        const auto event = arguments.at(0).value<MessageApiEvent>();
        QCOMPARE(event.getType(), MessageApiEvent::CrcError);
        QCOMPARE(event.getMessage(), QStringLiteral("VEXA CRC error"));
        QCOMPARE(event.getFormat(), &vexa);
    }
}

void tst_ParseMessagesAdapter::warnsAboutMissingSignals_data()
{
    QTest::addColumn<bool>("plainParser");
    QTest::addColumn<int>("connectionKind"); // 0 none, 1 plain object, 2 with the signals
    QTest::addColumn<QStringList>("warnings");

    const QString parserVexa(
        "ParseMessagesAdapter: cannot connect to vexa(unsigned int, unsigned int) of the parser");
    const QString parserCrc("ParseMessagesAdapter: cannot connect to crcErrorVexa() of the parser");
    const QString opened("ParseMessagesAdapter: cannot connect to connected() of the connection");
    const QString closed(
        "ParseMessagesAdapter: cannot connect to connectionClosed() of the connection");
    QTest::newRow("all signals present") << false << 2 << QStringList();
    QTest::newRow("no connection object") << false << 0 << QStringList();
    QTest::newRow("parser without signals") << true << 2 << QStringList { parserVexa, parserCrc };
    QTest::newRow("connection without signals") << false << 1 << QStringList { opened, closed };
}

void tst_ParseMessagesAdapter::warnsAboutMissingSignals()
{
    QFETCH(bool, plainParser);
    QFETCH(int, connectionKind);
    QFETCH(QStringList, warnings);

    TestParser testParser;
    QObject plainObject;
    TestConnection testConnection;
    QObject *parser = plainParser ? &plainObject : static_cast<QObject *>(&testParser);
    QObject *connection = connectionKind == 0 ? nullptr
        : connectionKind == 1                 ? &plainObject
                                              : static_cast<QObject *>(&testConnection);
    RecordingDecoder decoder;
    WarningCapture capture;
    new ParseMessagesAdapter(parser, connection, testParser.buffer(), &decoder);

    QStringList ours;
    for (QString const &warning : capture.warnings()) {
        if (warning.startsWith(QLatin1String("ParseMessagesAdapter:")))
            ours.append(warning);
    }
    QCOMPARE(ours, warnings);
}

void tst_ParseMessagesAdapter::diesWithParser()
{
    auto *parser = new TestParser;
    RecordingDecoder decoder;
    QPointer<ParseMessagesAdapter> adapter(
        new ParseMessagesAdapter(parser, nullptr, parser->buffer(), &decoder));
    QCOMPARE(adapter->parent(), parser);
    delete parser;
    QVERIFY(adapter.isNull());
}

QTEST_GUILESS_MAIN(tst_ParseMessagesAdapter)
#include "tst_parsemessagesadapter.moc"
