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

#include <memory>

// Sources, the multiplexer, and what all classes of the message flow share: the signatures
// that applications reach through string-based connections, and allocation tracing.
class tst_MessageSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reports_data();
    void reports();
    void multiplexerForwardsInSamePhase();
    void multiplexerForwardsTwiceWhenAddedTwice();
    void removeSourceCutsOnlyThatSource();
    void nestedMultiplexersKeepPhaseOrder();
    void signaturesForStringConnections();
    void tracing_data();
    void tracing();
};

namespace {
// Only the identity of a message or format matters to the flow; it never looks inside.
TestMessage gMessage(nullptr);
auto *const gFormat = reinterpret_cast<FormatInfo const *>(0x5678);
const QStringList gAllSignals { "early", "normal", "late", "unknown", "event" };

void emitAll(MessageSource &source)
{
    Q_EMIT source.newMessageEarly(&gMessage);
    Q_EMIT source.newMessage(&gMessage);
    Q_EMIT source.newMessageLate(&gMessage);
    Q_EMIT source.newUnknownMessage(gFormat, QStringLiteral("type 77"));
    source.reportEvent(MessageApiEvent(MessageApiEvent::DecoderError, source.getName(), gFormat));
}
} // namespace

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

void tst_MessageSource::multiplexerForwardsInSamePhase()
{
    MessageSource source(QStringLiteral("A"), nullptr);
    MessageSourceMultiplexer mux(QStringLiteral("M"), nullptr);
    mux.addSource(&source);
    SourceRecorder recorder(&mux);
    emitAll(source);

    QCOMPARE(recorder.signalNames(), gAllSignals);
    for (int i = 0; i < 3; ++i)
        QCOMPARE(recorder.records[i].subject, &gMessage);
    QCOMPARE(recorder.records[3].subject, gFormat);
    QCOMPARE(recorder.records[3].text, QStringLiteral("type 77"));
    QCOMPARE(recorder.records[4].subject, gFormat);
    QCOMPARE(recorder.records[4].text, QStringLiteral("A"));
    QCOMPARE(recorder.records[4].eventType, int(MessageApiEvent::DecoderError));
}

void tst_MessageSource::multiplexerForwardsTwiceWhenAddedTwice()
{
    MessageSource source(QStringLiteral("A"), nullptr);
    MessageSourceMultiplexer mux(QStringLiteral("M"), nullptr);
    mux.addSource(&source);
    mux.addSource(&source);
    SourceRecorder recorder(&mux);
    emitAll(source);

    QStringList twice;
    for (QString const &name : gAllSignals)
        twice << name << name;
    QCOMPARE(recorder.signalNames(), twice);
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
    emitAll(a);
    emitAll(b);

    QCOMPARE(muxRecorder.signalNames(), gAllSignals);
    QCOMPARE(muxRecorder.records.last().text, QStringLiteral("B"));
    QCOMPARE(aRecorder.signalNames(), gAllSignals); // A's other listeners keep hearing it
}

void tst_MessageSource::nestedMultiplexersKeepPhaseOrder()
{
    MessageSource source(QStringLiteral("A"), nullptr);
    MessageSourceMultiplexer inner(QStringLiteral("inner"), nullptr);
    MessageSourceMultiplexer outer(QStringLiteral("outer"), nullptr);
    inner.addSource(&source);
    outer.addSource(&inner);
    SourceRecorder recorder(&outer);
    emitAll(source);
    source.reportConnectionClosedEvent();

    QCOMPARE(recorder.signalNames(), gAllSignals + QStringList { "event" });
    // Forwarded events keep the original source's text; the multiplexers add nothing.
    QCOMPARE(recorder.records.last().text, QStringLiteral("A connection closed"));
}

void tst_MessageSource::signaturesForStringConnections()
{
    struct Method
    {
        QMetaObject const *meta;
        char const *signature;
        QMetaMethod::MethodType type;
        QMetaMethod::Access access;
    };
    const auto signal = QMetaMethod::Signal, slot = QMetaMethod::Slot;
    const auto pub = QMetaMethod::Public;
    QMetaObject const *const source = &MessageSource::staticMetaObject;
    QMetaObject const *const log = &EventLog::staticMetaObject;
    const Method methods[] = {
        { source, "newMessage(const Message*)", signal, pub },
        { source, "newMessageEarly(const Message*)", signal, pub },
        { source, "newMessageLate(const Message*)", signal, pub },
        { source, "newUnknownMessage(const FormatInfo*,QString)", signal, pub },
        { source, "newEvent(MessageApiEvent)", signal, pub },
        { source, "reportEvent(MessageApiEvent)", slot, pub },
        { source, "reportConnectionOpenedEvent()", slot, pub },
        { source, "reportConnectionClosedEvent()", slot, pub },
        { source, "reportCRCErrorEvent(const FormatInfo*)", slot, pub },
        { &AbstractDecoder::staticMetaObject, "decodeMessage(const uint8_t*,uint)", slot, pub },
        { &AbstractDecoder::staticMetaObject, "decodeMessage(QByteArray)", slot, pub },
        { &ParseMessagesAdapter::staticMetaObject, "processVexa(uint,uint)", slot,
          QMetaMethod::Private },
        { &ParseMessagesAdapter::staticMetaObject, "reportCRCError()", slot, QMetaMethod::Private },
        { log, "cleared()", signal, pub },
        { log, "newEntry(EventLog::Entry)", signal, pub },
        { log, "processEvent(MessageApiEvent)", slot, pub },
        { log, "clear()", slot, pub },
    };
    for (Method const &method : methods) {
        const int index = method.meta->indexOfMethod(method.signature);
        QVERIFY2(index >= method.meta->methodOffset(), method.signature);
        QCOMPARE(method.meta->method(index).methodType(), method.type);
        QCOMPARE(method.meta->method(index).access(), method.access);
    }
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
