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
    void stamping_data();
    void stamping();
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
    QCOMPARE(entries.count(), 100);
    QCOMPARE(log->getEntries().size(), 100);
    QCOMPARE(textOf(entries.at(98)), gCrcText);
    QCOMPARE(textOf(entries.at(99)), marked);
    QCOMPARE(log->getEntries().last().event.getMessage(), marked);
    QCOMPARE(log->getEntries().last().event.getType(), MessageApiEvent::DecoderError);
    // Another text, even the marked one, has a count of its own.
    report(source, marked);
    QCOMPARE(entries.count(), 101);

    log->clear();
    QCOMPARE(cleared.count(), 1);
    QVERIFY(log->getEntries().isEmpty());
    report(source, gCrcText);
    QCOMPARE(entries.count(), 102);
    QCOMPARE(textOf(entries.last()), gCrcText);
    QCOMPARE(log->getEntries().size(), 1);
}

void tst_EventLog::stamping_data()
{
    QTest::addColumn<bool>("withClock");
    QTest::addColumn<unsigned long long>("millis");
    QTest::addColumn<QDateTime>("expected"); // without a clock: the local time now

    QTest::newRow("time source") << true << 1394541296789ull
                                 << QDateTime(QDate(2024, 3, 15), QTime(12, 34, 56), Qt::UTC);
    QTest::newRow("time source without time") << true << 0ull << QDateTime();
    QTest::newRow("no time source") << false << 0ull << QDateTime();
}

void tst_EventLog::stamping()
{
    QFETCH(bool, withClock);
    QFETCH(unsigned long long, millis);
    QFETCH(QDateTime, expected);

    auto *source = new MessageSource(QStringLiteral("S"), nullptr);
    TimeSource clock;
    clock.setMillis(millis);
    QPointer<EventLog> log(new EventLog(source, withClock ? &clock : nullptr));
    const QDateTime before = QDateTime::currentDateTime();
    report(*source, gCrcText);
    const QDateTime after = QDateTime::currentDateTime();

    const QDateTime stamped = log->getEntries().at(0).time;
    if (withClock) {
        QCOMPARE(stamped.isNull(), expected.isNull());
        QCOMPARE(stamped, expected);
    } else {
        QCOMPARE(stamped.timeSpec(), Qt::LocalTime);
        QVERIFY(before <= stamped && stamped <= after);
    }
    delete source;
    QVERIFY(log.isNull()); // the log dies with its source
}

QTEST_GUILESS_MAIN(tst_EventLog)
#include "tst_eventlog.moc"
