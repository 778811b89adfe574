// SPDX-License-Identifier: LGPL-2.1-or-later
#include "eventlog.h"
#include "formatinfo.h"
#include "messagesourcemultiplexer.h"
#include "parsemessagesadapter.h"
#include "recordingdecoder.h"
#include "sourcerecorder.h"
#include "testmessage.h"
#include "testparser.h"
#include "timesource.h"
#include "tracerrecorder.h"

#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <memory>

// Sources, the multiplexer, and what all classes of the message flow share: the signatures
// that applications reach through string-based connections, and allocation tracing.
class tst_MessageSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reports_data();
    void reports();
    void multiplexerForwardsInSamePhase_data();
    void multiplexerForwardsInSamePhase();
    void multiplexerForwardsTwiceWhenAddedTwice();
    void removeSourceCutsOnlyThatSource();
    void nestedMultiplexersKeepPhaseOrder();
    void signaturesForStringConnections_data();
    void signaturesForStringConnections();
    void tracing_data();
    void tracing();
};

namespace {
// Only the identity of a message matters to the flow; it never looks inside.
TestMessage gMessage(nullptr);
auto *const gFormat = reinterpret_cast<FormatInfo const *>(0x5678);

using Emitter = std::function<void(MessageSource &)>;
} // namespace
Q_DECLARE_METATYPE(Emitter)

void tst_MessageSource::reports_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("report"); // 0 opened, 1 closed, 2 CRC error
    QTest::addColumn<QString>("text");

    QTest::newRow("opened") << "Rover" << 0 << "Rover connection opened";
    QTest::newRow("closed") << "Rover" << 1 << "Rover connection closed";
    QTest::newRow("opened, empty name") << "" << 0 << " connection opened";
    QTest::newRow("closed, name with a placeholder") << "%1 %2" << 1 << "%1 %2 connection closed";
    QTest::newRow("CRC error names the format") << "Rover" << 2 << "RTCM3 CRC error";
}

void tst_MessageSource::reports()
{
    QFETCH(QString, name);
    QFETCH(int, report);
    QFETCH(QString, text);

    FormatInfo format(QStringLiteral("RTCM3"));
    MessageSource source(name, nullptr);
    QSignalSpy spy(&source, &MessageSource::newEvent);
    if (report == 0)
        source.reportConnectionOpenedEvent();
    else if (report == 1)
        source.reportConnectionClosedEvent();
    else
        source.reportCRCErrorEvent(&format);

    QCOMPARE(spy.count(), 1);
    const auto event = spy.at(0).at(0).value<MessageApiEvent>();
    QCOMPARE(event.getMessage(), text);
    QCOMPARE(int(event.getType()), report);
    QCOMPARE(event.getFormat(), report == 2 ? &format : nullptr);
}

void tst_MessageSource::multiplexerForwardsInSamePhase_data()
{
    QTest::addColumn<Emitter>("emitter");
    QTest::addColumn<QString>("signal");
    QTest::addColumn<QString>("text");

    QTest::newRow("early") << Emitter([](MessageSource &s) { Q_EMIT s.newMessageEarly(&gMessage); })
                           << "early"
                           << "";
    QTest::newRow("normal") << Emitter([](MessageSource &s) { Q_EMIT s.newMessage(&gMessage); })
                            << "normal"
                            << "";
    QTest::newRow("late") << Emitter([](MessageSource &s) { Q_EMIT s.newMessageLate(&gMessage); })
                          << "late"
                          << "";
    QTest::newRow("unknown") << Emitter([](MessageSource &s) {
        Q_EMIT s.newUnknownMessage(gFormat, QStringLiteral("type 77"));
    }) << "unknown"
                             << "type 77";
    QTest::newRow("event") << Emitter([](MessageSource &s) {
        s.reportEvent(
            MessageApiEvent(MessageApiEvent::DecoderError, QStringLiteral("bad"), gFormat));
    }) << "event"
                           << "bad";
}

void tst_MessageSource::multiplexerForwardsInSamePhase()
{
    QFETCH(Emitter, emitter);
    QFETCH(QString, signal);
    QFETCH(QString, text);

    MessageSource source(QStringLiteral("A"), nullptr);
    MessageSourceMultiplexer mux(QStringLiteral("M"), nullptr);
    mux.addSource(&source);
    SourceRecorder recorder(&mux);
    emitter(source);

    QCOMPARE(recorder.signalNames(), QStringList { signal });
    const auto &record = recorder.records.at(0);
    QCOMPARE(record.subject,
             signal == QLatin1String("unknown") || signal == QLatin1String("event")
                 ? static_cast<void const *>(gFormat)
                 : static_cast<void const *>(&gMessage));
    QCOMPARE(record.text, text);
}

void tst_MessageSource::multiplexerForwardsTwiceWhenAddedTwice()
{
    MessageSource source(QStringLiteral("A"), nullptr);
    MessageSourceMultiplexer mux(QStringLiteral("M"), nullptr);
    mux.addSource(&source);
    mux.addSource(&source);
    SourceRecorder recorder(&mux);
    Q_EMIT source.newMessage(&gMessage);
    Q_EMIT source.newUnknownMessage(gFormat, QString());
    QCOMPARE(recorder.signalNames(), QStringList({ "normal", "normal", "unknown", "unknown" }));
}

void tst_MessageSource::removeSourceCutsOnlyThatSource()
{
    MessageSource a(QStringLiteral("A"), nullptr);
    MessageSource b(QStringLiteral("B"), nullptr);
    MessageSourceMultiplexer mux(QStringLiteral("M"), nullptr);
    mux.addSource(&a);
    mux.addSource(&a);
    mux.addSource(&b);
    // A connection of another kind from the same source to the multiplexer goes as well.
    connect(&a, &MessageSource::newEvent, &mux, &MessageSource::reportEvent);
    SourceRecorder muxRecorder(&mux);
    SourceRecorder aRecorder(&a);
    mux.removeSource(&a);

    for (MessageSource *source : { &a, &b }) {
        Q_EMIT source->newMessageEarly(&gMessage);
        Q_EMIT source->newMessage(&gMessage);
        Q_EMIT source->newMessageLate(&gMessage);
        Q_EMIT source->newUnknownMessage(gFormat, QString());
        source->reportConnectionOpenedEvent();
    }
    const QStringList all { "early", "normal", "late", "unknown", "event" };
    QCOMPARE(muxRecorder.signalNames(), all);
    QCOMPARE(muxRecorder.records.last().text, QStringLiteral("B connection opened"));
    QCOMPARE(aRecorder.signalNames(), all); // A's other listeners keep hearing it
}

void tst_MessageSource::nestedMultiplexersKeepPhaseOrder()
{
    MessageSource source(QStringLiteral("A"), nullptr);
    MessageSourceMultiplexer inner(QStringLiteral("inner"), nullptr);
    MessageSourceMultiplexer outer(QStringLiteral("outer"), nullptr);
    inner.addSource(&source);
    outer.addSource(&inner);
    SourceRecorder recorder(&outer);

    Q_EMIT source.newMessageEarly(&gMessage);
    Q_EMIT source.newMessage(&gMessage);
    Q_EMIT source.newMessageLate(&gMessage);
    source.reportConnectionClosedEvent();
    QCOMPARE(recorder.signalNames(), QStringList({ "early", "normal", "late", "event" }));
    // Forwarded events keep the original source's text; the multiplexers add nothing.
    QCOMPARE(recorder.records.last().text, QStringLiteral("A connection closed"));
}

void tst_MessageSource::signaturesForStringConnections_data()
{
    QTest::addColumn<QByteArray>("className");
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<int>("methodType");
    QTest::addColumn<int>("access");

    const int signal = QMetaMethod::Signal, slot = QMetaMethod::Slot;
    const int pub = QMetaMethod::Public, priv = QMetaMethod::Private;
    QTest::newRow("newMessage") << QByteArray("MessageSource")
                                << QByteArray("newMessage(const Message*)") << signal << pub;
    QTest::newRow("newMessageEarly")
        << QByteArray("MessageSource") << QByteArray("newMessageEarly(const Message*)") << signal
        << pub;
    QTest::newRow("newMessageLate")
        << QByteArray("MessageSource") << QByteArray("newMessageLate(const Message*)") << signal
        << pub;
    QTest::newRow("newUnknownMessage")
        << QByteArray("MessageSource") << QByteArray("newUnknownMessage(const FormatInfo*,QString)")
        << signal << pub;
    QTest::newRow("newEvent") << QByteArray("MessageSource")
                              << QByteArray("newEvent(MessageApiEvent)") << signal << pub;
    QTest::newRow("reportEvent") << QByteArray("MessageSource")
                                 << QByteArray("reportEvent(MessageApiEvent)") << slot << pub;
    QTest::newRow("reportConnectionOpenedEvent")
        << QByteArray("MessageSource") << QByteArray("reportConnectionOpenedEvent()") << slot
        << pub;
    QTest::newRow("reportConnectionClosedEvent")
        << QByteArray("MessageSource") << QByteArray("reportConnectionClosedEvent()") << slot
        << pub;
    QTest::newRow("reportCRCErrorEvent")
        << QByteArray("MessageSource") << QByteArray("reportCRCErrorEvent(const FormatInfo*)")
        << slot << pub;
    QTest::newRow("decodeMessage buffer")
        << QByteArray("AbstractDecoder") << QByteArray("decodeMessage(const uint8_t*,uint)") << slot
        << pub;
    QTest::newRow("decodeMessage array")
        << QByteArray("AbstractDecoder") << QByteArray("decodeMessage(QByteArray)") << slot << pub;
    QTest::newRow("processVexa") << QByteArray("ParseMessagesAdapter")
                                 << QByteArray("processVexa(uint,uint)") << slot << priv;
    QTest::newRow("reportCRCError")
        << QByteArray("ParseMessagesAdapter") << QByteArray("reportCRCError()") << slot << priv;
    QTest::newRow("cleared") << QByteArray("EventLog") << QByteArray("cleared()") << signal << pub;
    QTest::newRow("newEntry") << QByteArray("EventLog") << QByteArray("newEntry(EventLog::Entry)")
                              << signal << pub;
    QTest::newRow("processEvent") << QByteArray("EventLog")
                                  << QByteArray("processEvent(MessageApiEvent)") << slot << pub;
    QTest::newRow("clear") << QByteArray("EventLog") << QByteArray("clear()") << slot << pub;
}

void tst_MessageSource::signaturesForStringConnections()
{
    QFETCH(QByteArray, className);
    QFETCH(QByteArray, signature);
    QFETCH(int, methodType);
    QFETCH(int, access);

    const QHash<QByteArray, QMetaObject const *> classes {
        { "MessageSource", &MessageSource::staticMetaObject },
        { "AbstractDecoder", &AbstractDecoder::staticMetaObject },
        { "ParseMessagesAdapter", &ParseMessagesAdapter::staticMetaObject },
        { "EventLog", &EventLog::staticMetaObject }
    };
    QMetaObject const *meta = classes.value(className);
    const int index = meta->indexOfMethod(signature.constData());
    QVERIFY2(index >= meta->methodOffset(), signature.constData());
    QCOMPARE(int(meta->method(index).methodType()), methodType);
    QCOMPARE(int(meta->method(index).access()), access);
}

void tst_MessageSource::tracing_data()
{
    QTest::addColumn<QString>("kind");
    QTest::addColumn<QStringList>("allocated");

    QTest::newRow("source") << "MessageSource" << QStringList { "MessageSource" };
    QTest::newRow("decoder") << "AbstractDecoder"
                             << QStringList { "MessageSource", "AbstractDecoder" };
    QTest::newRow("multiplexer") << "MessageSourceMultiplexer"
                                 << QStringList { "MessageSource", "MessageSourceMultiplexer" };
    QTest::newRow("adapter") << "ParseMessagesAdapter" << QStringList { "ParseMessagesAdapter" };
    QTest::newRow("time source") << "TimeSource" << QStringList { "TimeSource" };
    QTest::newRow("event log") << "EventLog" << QStringList { "EventLog" };
}

void tst_MessageSource::tracing()
{
    QFETCH(QString, kind);
    QFETCH(QStringList, allocated);

    // Helpers built outside the recording so that only the object under test is seen.
    TestParser parser;
    RecordingDecoder decoder;
    MessageSource source(QStringLiteral("S"), nullptr);
    const QStringList traced {
        "MessageSource",        "AbstractDecoder", "MessageSourceMultiplexer",
        "ParseMessagesAdapter", "TimeSource",      "EventLog"
    };
    QStringList events;
    {
        TracerRecorder tracer;
        std::unique_ptr<QObject> object;
        if (kind == QLatin1String("MessageSource"))
            object = std::make_unique<MessageSource>(QStringLiteral("x"), nullptr);
        else if (kind == QLatin1String("AbstractDecoder"))
            object = std::make_unique<RecordingDecoder>();
        else if (kind == QLatin1String("MessageSourceMultiplexer"))
            object = std::make_unique<MessageSourceMultiplexer>(QStringLiteral("x"), nullptr);
        else if (kind == QLatin1String("ParseMessagesAdapter"))
            object.reset(new ParseMessagesAdapter(&parser, nullptr, parser.buffer(), &decoder));
        else if (kind == QLatin1String("TimeSource"))
            object = std::make_unique<TimeSource>();
        else
            object.reset(new EventLog(&source, nullptr));
        object.reset();
        for (QString const &event : tracer.events()) {
            if (traced.contains(event.mid(1)))
                events.append(event);
        }
    }
    QStringList expected;
    for (QString const &name : allocated)
        expected.append(QLatin1Char('+') + name);
    for (auto it = allocated.crbegin(); it != allocated.crend(); ++it)
        expected.append(QLatin1Char('-') + *it);
    QCOMPARE(events, expected);
}

QTEST_GUILESS_MAIN(tst_MessageSource)
#include "tst_messagesource.moc"
