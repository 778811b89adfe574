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
