// SPDX-License-Identifier: LGPL-2.1-or-later
#include "eventlog.h"
#include "messagesource.h"
#include "timesource.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

class tst_EventLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hundredthIsMarkedAndLaterOnesDropped();
    void repeatsAreCountedByTextAlone_data();
    void repeatsAreCountedByTextAlone();
    void everyTextIsLimitedOnItsOwn_data();
    void everyTextIsLimitedOnItsOwn();
    void entriesStampedWithTimeSource();
    void withoutTimeSourceStampsLocalTime();
    void diesWithSource();
};

namespace {
auto *const gFormat = reinterpret_cast<FormatInfo const *>(0x4321);

MessageApiEvent crcEvent(QString text = QStringLiteral("VEXA CRC error"))
{
    return MessageApiEvent(MessageApiEvent::CrcError, std::move(text), gFormat);
}

QString lastText(QSignalSpy const &spy)
{
    return spy.last().at(0).value<EventLog::Entry>().event.getMessage();
}
} // namespace

void tst_EventLog::hundredthIsMarkedAndLaterOnesDropped()
{
    MessageSource source(QStringLiteral("S"), nullptr);
    TimeSource clock;
    clock.setMillis(1000);
    auto *log = new EventLog(&source, &clock);
    QCOMPARE(log->getMaxRepeat(), 100);
    QSignalSpy entries(log, &EventLog::newEntry);
    QSignalSpy cleared(log, &EventLog::cleared);

    for (int i = 1; i <= 99; ++i)
        source.reportEvent(crcEvent());
    QCOMPARE(entries.count(), 99);
    QCOMPARE(lastText(entries), QStringLiteral("VEXA CRC error"));

    source.reportEvent(crcEvent());
    QCOMPARE(entries.count(), 100);
    QCOMPARE(lastText(entries), QStringLiteral("[Event discarded in future:] VEXA CRC error"));
    QCOMPARE(log->getEntries().last().event.getMessage(), lastText(entries));
    QCOMPARE(log->getEntries().last().event.getType(), MessageApiEvent::CrcError);

    source.reportEvent(crcEvent());
    source.reportEvent(crcEvent());
    QCOMPARE(entries.count(), 100);
    QCOMPARE(log->getEntries().size(), 100);
    // The marked text is a text of its own, not a continuation of the dropped one.
    source.reportEvent(crcEvent(lastText(entries)));
    QCOMPARE(entries.count(), 101);

    log->clear();
    QCOMPARE(cleared.count(), 1);
    QVERIFY(log->getEntries().isEmpty());
    source.reportEvent(crcEvent());
    QCOMPARE(entries.count(), 102);
    QCOMPARE(lastText(entries), QStringLiteral("VEXA CRC error"));
    QCOMPARE(log->getEntries().size(), 1);
}

void tst_EventLog::repeatsAreCountedByTextAlone_data()
{
    QTest::addColumn<QString>("secondText");
    QTest::addColumn<int>("secondType");
    QTest::addColumn<bool>("countTogether");

    QTest::newRow("same text, same type")
        << "link lost" << int(MessageApiEvent::DecoderError) << true;
    QTest::newRow("same text, other type")
        << "link lost" << int(MessageApiEvent::ClientError) << true;
    QTest::newRow("other text, same type")
        << "link found" << int(MessageApiEvent::DecoderError) << false;
    QTest::newRow("text differing in case")
        << "Link lost" << int(MessageApiEvent::DecoderError) << false;
}

void tst_EventLog::repeatsAreCountedByTextAlone()
{
    QFETCH(QString, secondText);
    QFETCH(int, secondType);
    QFETCH(bool, countTogether);

    MessageSource source(QStringLiteral("S"), nullptr);
    TimeSource clock;
    EventLog log(&source, &clock);
    QSignalSpy entries(&log, &EventLog::newEntry);
    for (int i = 0; i < 99; ++i)
        log.processEvent(
            MessageApiEvent(MessageApiEvent::DecoderError, QStringLiteral("link lost"), nullptr));
    const MessageApiEvent second(MessageApiEvent::Type(secondType), secondText, nullptr);
    log.processEvent(second);
    log.processEvent(second);

    QCOMPARE(entries.count(), countTogether ? 100 : 101);
    QCOMPARE(log.getEntries().at(99).event.getMessage().startsWith(
                 QLatin1String("[Event discarded in future:] ")),
             countTogether);
    QCOMPARE(int(log.getEntries().at(99).event.getType()), secondType);
}

void tst_EventLog::everyTextIsLimitedOnItsOwn_data()
{
    // Steps: a letter stands for the text "<letter> CRC error", "_" for an empty text, and
    // "*n" repeats the step n times.
    QTest::addColumn<QString>("steps");
    QTest::addColumn<bool>("freshTexts"); // each event's text built anew, not shared
    QTest::addColumn<int>("logged");

    QTest::newRow("two storms, then alternating") << "A*101 B*101 A B A B" << false << 200;
    QTest::newRow("two storms, texts built anew") << "A*101 B*101 A B A B" << true << 200;
    QTest::newRow("a new text after a storm") << "A*150 B A*2 B" << false << 102;
    QTest::newRow("a storm between repeats of another") << "B*50 A*120 B*50 A B" << false << 200;
    QTest::newRow("an empty text first") << "_ A*101 _" << false << 102;
    QTest::newRow("a storm of empty texts") << "_*105 A" << true << 101;
}

void tst_EventLog::everyTextIsLimitedOnItsOwn()
{
    QFETCH(QString, steps);
    QFETCH(bool, freshTexts);
    QFETCH(int, logged);

    MessageSource source(QStringLiteral("S"), nullptr);
    TimeSource clock;
    EventLog log(&source, &clock);
    QSignalSpy entries(&log, &EventLog::newEntry);
    QHash<QChar, QString> sharedTexts;
    for (QString const &step : steps.split(QLatin1Char(' '))) {
        const QChar letter = step.at(0);
        const int times = step.size() > 1 ? step.mid(2).toInt() : 1;
        const QString text
            = letter == QLatin1Char('_') ? QString() : letter + QStringLiteral(" CRC error");
        if (!sharedTexts.contains(letter))
            sharedTexts.insert(letter, text);
        for (int i = 0; i < times; ++i)
            source.reportEvent(crcEvent(freshTexts ? QString(text.constData(), text.size())
                                                   : sharedTexts.value(letter)));
    }
    QCOMPARE(log.getEntries().size(), logged);
    QCOMPARE(entries.count(), logged);
}

void tst_EventLog::entriesStampedWithTimeSource()
{
    MessageSource source(QStringLiteral("S"), nullptr);
    TimeSource clock;
    EventLog log(&source, &clock);
    QSignalSpy entries(&log, &EventLog::newEntry);

    source.reportEvent(crcEvent(QStringLiteral("before any time")));
    clock.setMillis(1394541296789ull);
    source.reportEvent(crcEvent(QStringLiteral("first")));
    clock.setMillis(1394541300000ull);
    source.reportEvent(crcEvent(QStringLiteral("second")));

    const QList<EventLog::Entry> logged = log.getEntries();
    QCOMPARE(logged.size(), 3);
    QVERIFY(logged[0].time.isNull());
    QCOMPARE(logged[1].time, QDateTime(QDate(2024, 3, 15), QTime(12, 34, 56), Qt::UTC));
    QCOMPARE(logged[2].time, QDateTime(QDate(2024, 3, 15), QTime(12, 35, 0), Qt::UTC));
    for (int i = 0; i < 3; ++i) {
        const auto signalled = entries.at(i).at(0).value<EventLog::Entry>();
        QCOMPARE(signalled.time, logged[i].time);
        QCOMPARE(signalled.event.getMessage(), logged[i].event.getMessage());
        QCOMPARE(signalled.event.getFormat(), gFormat);
    }
}

void tst_EventLog::withoutTimeSourceStampsLocalTime()
{
    MessageSource source(QStringLiteral("S"), nullptr);
    EventLog log(&source, nullptr);
    const QDateTime before = QDateTime::currentDateTime();
    source.reportEvent(crcEvent());
    const QDateTime after = QDateTime::currentDateTime();

    const QDateTime stamped = log.getEntries().at(0).time;
    QCOMPARE(stamped.timeSpec(), Qt::LocalTime);
    QVERIFY(before <= stamped);
    QVERIFY(stamped <= after);
}

void tst_EventLog::diesWithSource()
{
    auto *source = new MessageSource(QStringLiteral("S"), nullptr);
    QPointer<EventLog> log(new EventLog(source, nullptr));
    QCOMPARE(log->parent(), source);
    delete source;
    QVERIFY(log.isNull());
}

QTEST_GUILESS_MAIN(tst_EventLog)
#include "tst_eventlog.moc"
