// SPDX-License-Identifier: LGPL-2.1-or-later
#include "eventlog.h"
#include "messagesource.h"
#include "timesource.h"

#include <QPointer>
#include <QSignalSpy>
#include <QTest>

// The event log and the receiver clock that stamps its entries.
class tst_EventLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hundredthIsMarkedAndLaterOnesDropped();
    void everyTextIsLimitedOnItsOwn_data();
    void everyTextIsLimitedOnItsOwn();
    void stamping();
    void clockTime_data();
    void clockTime();
};

namespace {
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

void tst_EventLog::hundredthIsMarkedAndLaterOnesDropped()
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

void tst_EventLog::everyTextIsLimitedOnItsOwn_data()
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
    QTest::newRow("a storm between repeats of another") << "B*50 A*120 B*50 A B" << false << 200;
    QTest::newRow("an empty text first") << "_ A*101 _" << false << 102;
    QTest::newRow("a storm of empty texts") << "_*105 A" << true << 101;
    QTest::newRow("a storm of empty texts, cleared") << "_*105 clear _ A" << false << 2;
    // Also the text that marks the hundredth has a count of its own.
    QTest::newRow("the marked text") << "A*100 [" << false << 101;
}

void tst_EventLog::everyTextIsLimitedOnItsOwn()
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

void tst_EventLog::stamping()
{
    auto *source = new MessageSource(QStringLiteral("S"), nullptr);
    TimeSource clock;
    QPointer<EventLog> timed(new EventLog(source, &clock)), local(new EventLog(source, nullptr));
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

void tst_EventLog::clockTime_data()
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

void tst_EventLog::clockTime()
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

QTEST_GUILESS_MAIN(tst_EventLog)
#include "tst_eventlog.moc"
