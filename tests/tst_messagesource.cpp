// SPDX-License-Identifier: LGPL-2.1-or-later
#include "eventlog.h"
#include "formatinfo.h"
#include "messagesourcemultiplexer.h"
#include "parsemessagesadapter.h"
#include "recordingdecoder.h"
#include "sourcerecorder.h"
#include "testparser.h"
#include "timesource.h"
#include "tracerrecorder.h"
#include "warningcapture.h"

#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

namespace {
// Emits every announcement once, in phase order.
void emitAll(MessageSource &source)
{
    Q_EMIT source.newMessageEarly(nullptr);
    Q_EMIT source.newMessage(nullptr);
    Q_EMIT source.newMessageLate(nullptr);
    Q_EMIT source.newUnknownMessage(nullptr, QString());
    source.reportConnectionOpenedEvent();
}

// The signals a recorder hears from emitAll(), each `times` times in a row.
QStringList heard(int times)
{
    QStringList names;
    for (char const *name : { "early", "normal", "late", "unknown", "event" })
        for (int i = 0; i < times; ++i)
            names << name;
    return names;
}

const QString gCrcText = QStringLiteral("VEXA CRC error");

void report(MessageSource &source, QString const &text, int times = 1,
            MessageApiEvent::Type type = MessageApiEvent::CrcError)
{
    for (int i = 0; i < times; ++i)
        source.reportEvent(MessageApiEvent(type, text, nullptr));
}

QString textOf(QVariantList const &arguments)
{
    return arguments.at(0).value<EventLog::Entry>().event.getMessage();
}

// A clock whose only override is getMillis(); the base class must read the time through it.
struct FixedClock : TimeSource
{
    unsigned long long fixedMillis = 0;
    unsigned long long getMillis() override { return fixedMillis; }
};
} // namespace

// The sources of messages (the multiplexer, the decoder's code table, the adapter that feeds a
// decoder from an application's parser), the event log that listens to them and the receiver
// clock that stamps its entries. The whole flow on a real stream is run by tst_messageapidemo.
class tst_MessageSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The listener sits on an outer multiplexer that holds the one under test, so every row also
    // goes through nesting.
    void multiplexer_data()
    {
        QTest::addColumn<int>("addA"); // how often source A is added; B is added once, after it
        QTest::addColumn<bool>("removeA");
        QTest::addColumn<QStringList>("expected"); // after A, then B, emitted everything

        QTest::newRow("same phase") << 1 << false << heard(1) + heard(1);
        QTest::newRow("added twice") << 2 << false << heard(2) + heard(1);
        QTest::newRow("removed") << 2 << true << heard(1);
    }

    void multiplexer()
    {
        QFETCH(int, addA);
        QFETCH(bool, removeA);
        QFETCH(QStringList, expected);

        MessageSource a(QStringLiteral("A"), nullptr), b(QStringLiteral("B"), nullptr);
        MessageSourceMultiplexer mux(QStringLiteral("M"), nullptr),
            outer(QStringLiteral("O"), nullptr);
        outer.addSource(&mux);
        for (int i = 0; i < addA; ++i)
            mux.addSource(&a);
        mux.addSource(&b);
        SourceRecorder recorder(&outer), aRecorder(&a);
        if (removeA) {
            // A connection of another kind from the same source to the multiplexer goes as well.
            connect(&a, &MessageSource::newEvent, &mux, &MessageSource::reportEvent);
            mux.removeSource(&a);
        }
        emitAll(a);
        emitAll(b);

        QCOMPARE(recorder.signalNames(), expected);
        QCOMPARE(aRecorder.signalNames(), heard(1)); // A's other listeners keep hearing it
    }

    void decoderCodeTable_data()
    {
        QTest::addColumn<QList<int>>("codes"); // entered for the type, in order
        QTest::addColumn<bool>("decoderEnables"); // what the decoder's own query answers
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("enabled");

        QTest::newRow("empty table") << QList<int> {} << true << -1 << false;
        QTest::newRow("entered, then replaced") << QList<int> { 5, 7 } << true << 7 << true;
        QTest::newRow("zero is a code") << QList<int> { 0 } << true << 0 << true;
        QTest::newRow("negative acts as none") << QList<int> { 5, -3 } << true << -3 << false;
        QTest::newRow("disabled in decoder") << QList<int> { 5 } << false << 5 << false;
    }

    void decoderCodeTable()
    {
        QFETCH(QList<int>, codes);
        QFETCH(bool, decoderEnables);
        QFETCH(int, code);
        QFETCH(bool, enabled);

        // The table only compares message type pointers; it never looks behind them.
        auto *const info = reinterpret_cast<MessageInfo const *>(0x1000);
        auto *const otherInfo = reinterpret_cast<MessageInfo const *>(0x2000);
        RecordingDecoder decoder;
        decoder.setMessageEnum(otherInfo, 42);
        for (int entered : codes)
            decoder.setMessageEnum(info, entered);
        if (decoderEnables)
            decoder.enabledCodes = { code };

        QCOMPARE(decoder.getMessageEnum(info), code);
        QCOMPARE(decoder.getMessageEnum(otherInfo), 42);
        decoder.enableMessage(info);
        decoder.disableMessage(info);
        QCOMPARE(decoder.isEnabledMessage(info), enabled);
        // A negative code counts as none: the decoder is never asked about it.
        const QList<int32_t> calls = code >= 0 ? QList<int32_t> { code } : QList<int32_t> {};
        QCOMPARE(decoder.enabledCalls, calls);
        QCOMPARE(decoder.disabledCalls, calls);
        QCOMPARE(decoder.queriedCodes, calls);
    }

    // One function on purpose: the CRC format is looked up once per process, at the first CRC
    // error.
    void adapterPassesEventsOn()
    {
        TestParser parser;
        TestConnection connection;
        RecordingDecoder decoder(QStringLiteral("Rover"));
        new ParseMessagesAdapter(&parser, &connection, parser.buffer(), &decoder);
        SourceRecorder recorder(&decoder);

        Q_EMIT connection.connected();
        // Registered after the adapter was made, before the first CRC error: found.
        FormatInfo vexa(QStringLiteral("VEXA"));
        Q_EMIT parser.crcErrorVexa();
        // A newer format of that name does not replace the one already found.
        FormatInfo newerVexa(QStringLiteral("VEXA"));
        Q_EMIT parser.crcErrorVexa();
        Q_EMIT connection.connectionClosed();

        QStringList events;
        for (SourceRecorder::Record const &record : recorder.records) {
            const char *format = record.subject == &vexa ? "vexa" : record.subject ? "?" : "none";
            events << QString::number(record.eventType) + ' ' + format + ' ' + record.text;
        }
        QCOMPARE(events,
                 QStringList({ "0 none Rover connection opened", "2 vexa VEXA CRC error",
                               "2 vexa VEXA CRC error", "1 none Rover connection closed" }));
    }

    void adapterWarnsAboutMissingSignals_data()
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

    void adapterWarnsAboutMissingSignals()
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

    void tracing()
    {
        // Helpers built outside the recording so that only the objects under test are seen.
        TestParser parser;
        RecordingDecoder decoder;
        MessageSource source(QStringLiteral("S"), nullptr);
        QStringList events;
        {
            TracerRecorder tracer;
            delete new MessageSource(QStringLiteral("x"), nullptr);
            delete new RecordingDecoder;
            delete new MessageSourceMultiplexer(QStringLiteral("x"), nullptr);
            delete new ParseMessagesAdapter(&parser, nullptr, parser.buffer(), &decoder);
            delete new TimeSource;
            delete new EventLog(&source, nullptr);
            events = tracer.events();
        }
        QCOMPARE(
            events.join(QLatin1Char(' ')),
            QStringLiteral("+MessageSource -MessageSource "
                           "+MessageSource +AbstractDecoder -AbstractDecoder -MessageSource "
                           "+MessageSource +MessageSourceMultiplexer -MessageSourceMultiplexer "
                           "-MessageSource +ParseMessagesAdapter -ParseMessagesAdapter "
                           "+TimeSource -TimeSource +EventLog -EventLog"));
    }

    void hundredthIsMarkedAndLaterOnesDropped()
    {
        MessageSource source(QStringLiteral("S"), nullptr);
        auto *log = new EventLog(&source, nullptr);
        QCOMPARE(log->getMaxRepeat(), 100);
        QSignalSpy entries(log, &EventLog::newEntry);
        QSignalSpy cleared(log, &EventLog::cleared);

        report(source, gCrcText, 99);
        // The count goes by text alone: another type with the same text is the 100th.
        report(source, gCrcText, 3, MessageApiEvent::DecoderError);
        const QString marked = QStringLiteral("[Event discarded in future:] VEXA CRC error");
        QCOMPARE(textOf(entries.last()), marked);
        QCOMPARE(log->getEntries().last().event.getMessage(), marked);
        QCOMPARE(log->getEntries().last().event.getType(), MessageApiEvent::DecoderError);

        log->clear();
        QCOMPARE(cleared.count(), 1);
        report(source, gCrcText);
        QCOMPARE(log->getEntries().size(), 1);
    }

    void everyTextIsLimitedOnItsOwn_data()
    {
        // Steps: a letter stands for the text "<letter> CRC error", "[" for that of "A" as marked
        // at its hundredth, "_" for an empty text, "*n" repeats the step n times, and "clear"
        // clears the log.
        QTest::addColumn<QString>("steps");
        QTest::addColumn<bool>("freshTexts"); // each event's text built anew, not shared
        QTest::addColumn<int>("logged"); // entries, and announcements since the last clear

        QTest::newRow("two storms, then alternating") << "A*101 B*101 A B A B" << false << 200;
        QTest::newRow("two storms, texts built anew") << "A*101 B*101 A B A B" << true << 200;
        QTest::newRow("a new text after a storm") << "A*150 B A*2 B" << false << 102;
        QTest::newRow("a storm between repeats of another")
            << "B*50 A*120 B*50 A B" << false << 200;
        QTest::newRow("an empty text first") << "_ A*101 _" << false << 102;
        QTest::newRow("a storm of empty texts") << "_*105 A" << true << 101;
        QTest::newRow("a storm of empty texts, cleared") << "_*105 clear _ A" << false << 2;
        // Also the text that marks the hundredth has a count of its own.
        QTest::newRow("the marked text") << "A*100 [" << false << 101;
    }

    void everyTextIsLimitedOnItsOwn()
    {
        QFETCH(QString, steps);
        QFETCH(bool, freshTexts);
        QFETCH(int, logged);

        MessageSource source(QStringLiteral("S"), nullptr);
        EventLog log(&source, nullptr);
        QSignalSpy entries(&log, &EventLog::newEntry);
        for (QString const &step : steps.split(QLatin1Char(' '))) {
            if (step == QLatin1String("clear")) {
                log.clear();
                entries.clear();
                continue;
            }
            QString text = step.at(0) + QStringLiteral(" CRC error");
            if (step.at(0) == QLatin1Char('_'))
                text.clear();
            else if (step.at(0) == QLatin1Char('['))
                text = QStringLiteral("[Event discarded in future:] A CRC error");
            const int times = step.size() > 1 ? step.mid(2).toInt() : 1;
            for (int i = 0; i < times; ++i)
                report(source, freshTexts ? QString(text.constData(), text.size()) : text);
        }
        QCOMPARE(log.getEntries().size(), logged);
        QCOMPARE(entries.count(), logged);
    }

    void stamping()
    {
        auto *source = new MessageSource(QStringLiteral("S"), nullptr);
        TimeSource clock;
        QPointer<EventLog> timed(new EventLog(source, &clock)),
            local(new EventLog(source, nullptr));
        const QDateTime before = QDateTime::currentDateTime();
        report(*source, QStringLiteral("before any time"));
        clock.setMillis(1394541296789ull); // no leap seconds, the fraction dropped
        report(*source, gCrcText);
        const QDateTime after = QDateTime::currentDateTime();

        QVERIFY(timed->getEntries().at(0).time.isNull());
        QCOMPARE(timed->getEntries().at(1).time,
                 QDateTime(QDate(2024, 3, 15), QTime(12, 34, 56), Qt::UTC));
        // Without a time source, the computer's local time.
        QCOMPARE(local->getEntries().size(), 2);
        for (EventLog::Entry const &entry : local->getEntries()) {
            QCOMPARE(entry.time.timeSpec(), Qt::LocalTime);
            QVERIFY(before <= entry.time && entry.time <= after);
        }
        delete source;
        QVERIFY(timed.isNull() && local.isNull()); // logs die with their source
    }

    void clockTime_data()
    {
        QTest::addColumn<QString>("steps"); // millis set one after the other on one clock
        QTest::addColumn<QString>("seconds"); // after each step, since the epoch; "-" no time
        QTest::addColumn<bool>("overridden"); // answered by getMillis() overridden, over a stored 0

        // Within a second, on to the next, back to an earlier one, through no time and back.
        QTest::newRow("every change followed") << "1 999 1000 1999 2000 5000 1000 0 1500 0"
                                               << "0 0 1 1 2 5 1 - 1 -" << false;
        QTest::newRow("read through an override") << "1999 0"
                                                  << "1 -" << true;
    }

    void clockTime()
    {
        QFETCH(QString, steps);
        QFETCH(QString, seconds);
        QFETCH(bool, overridden);

        FixedClock fixed;
        TimeSource plain;
        QVERIFY(!plain.hasValidMillis()); // no time before the first setMillis()
        TimeSource &clock = overridden ? fixed : plain;
        QStringList times;
        for (QString const &step : steps.split(QLatin1Char(' '))) {
            const unsigned long long millis = step.toULongLong();
            fixed.fixedMillis = millis;
            clock.setMillis(overridden ? 0 : millis);
            const QDateTime time = clock.getTime();
            QCOMPARE(time.timeSpec(), Qt::UTC);
            QCOMPARE(clock.hasValidMillis(), millis != 0);
            QCOMPARE(clock.getMillis(), millis);
            const QDateTime epoch(QDate(1980, 1, 6), QTime(0, 0), Qt::UTC);
            times << (time.isNull() ? QStringLiteral("-") : QString::number(epoch.secsTo(time)));
        }
        QCOMPARE(times.join(QLatin1Char(' ')), seconds);
    }
};

QTEST_GUILESS_MAIN(tst_MessageSource)
#include "tst_messagesource.moc"
