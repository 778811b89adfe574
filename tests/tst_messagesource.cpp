// SPDX-License-Identifier: LGPL-2.1-or-later
#include "eventlog.h"
#include "messagesourcemultiplexer.h"
#include "parsemessagesadapter.h"
#include "recordingdecoder.h"
#include "sourcerecorder.h"
#include "testparser.h"
#include "timesource.h"
#include "tracerrecorder.h"

#include <QTest>

// The multiplexer, and what all classes of the message flow share: the signatures that
// applications reach through string-based connections, and allocation tracing. The events a
// source reports are checked where a decoder reports them, in tst_parsemessagesadapter.
class tst_MessageSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void multiplexer_data();
    void multiplexer();
    void signaturesForStringConnections();
    void tracing();
};

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

// The methods a class declares itself, as "signal x(...)", "slot y(...)", "private slot z(...)".
QStringList declaredMethods(QMetaObject const &meta)
{
    QStringList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        methods << (method.access() == QMetaMethod::Private ? "private " : "")
                + QString(method.methodType() == QMetaMethod::Signal ? "signal " : "slot ")
                + method.methodSignature();
    }
    methods.sort();
    return methods;
}
} // namespace

// What the multiplexer passes on is followed message by message in tst_messageflow; here only
// which announcements arrive, and how often. The listener sits on an outer multiplexer that
// holds the one under test, so every row also goes through nesting.
void tst_MessageSource::multiplexer_data()
{
    QTest::addColumn<int>("addA"); // how often source A is added; B is added once, after it
    QTest::addColumn<bool>("removeA");
    QTest::addColumn<QStringList>("expected"); // after A, then B, emitted everything

    QTest::newRow("same phase") << 1 << false << heard(1) + heard(1);
    QTest::newRow("added twice") << 2 << false << heard(2) + heard(1);
    QTest::newRow("removed") << 2 << true << heard(1);
}

void tst_MessageSource::multiplexer()
{
    QFETCH(int, addA);
    QFETCH(bool, removeA);
    QFETCH(QStringList, expected);

    MessageSource a(QStringLiteral("A"), nullptr), b(QStringLiteral("B"), nullptr);
    MessageSourceMultiplexer mux(QStringLiteral("M"), nullptr), outer(QStringLiteral("O"), nullptr);
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

void tst_MessageSource::signaturesForStringConnections()
{
    QCOMPARE(
        declaredMethods(MessageSource::staticMetaObject),
        QStringList(
            { "signal newEvent(MessageApiEvent)", "signal newMessage(const Message*)",
              "signal newMessageEarly(const Message*)", "signal newMessageLate(const Message*)",
              "signal newUnknownMessage(const FormatInfo*,QString)",
              "slot reportCRCErrorEvent(const FormatInfo*)", "slot reportConnectionClosedEvent()",
              "slot reportConnectionOpenedEvent()", "slot reportEvent(MessageApiEvent)" }));
    QCOMPARE(declaredMethods(AbstractDecoder::staticMetaObject),
             QStringList(
                 { "slot decodeMessage(QByteArray)", "slot decodeMessage(const uint8_t*,uint)" }));
    QCOMPARE(
        declaredMethods(ParseMessagesAdapter::staticMetaObject),
        QStringList({ "private slot processVexa(uint,uint)", "private slot reportCRCError()" }));
    QCOMPARE(declaredMethods(EventLog::staticMetaObject),
             QStringList({ "signal cleared()", "signal newEntry(EventLog::Entry)", "slot clear()",
                           "slot processEvent(MessageApiEvent)" }));
}

void tst_MessageSource::tracing()
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
    QCOMPARE(events.join(QLatin1Char(' ')),
             QStringLiteral("+MessageSource -MessageSource "
                            "+MessageSource +AbstractDecoder -AbstractDecoder -MessageSource "
                            "+MessageSource +MessageSourceMultiplexer -MessageSourceMultiplexer "
                            "-MessageSource +ParseMessagesAdapter -ParseMessagesAdapter "
                            "+TimeSource -TimeSource +EventLog -EventLog"));
}

QTEST_GUILESS_MAIN(tst_MessageSource)
#include "tst_messagesource.moc"
