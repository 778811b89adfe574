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
    void everyTextIsLimitedOnItsOwn_data();
    void everyTextIsLimitedOnItsOwn();
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
    EventLog log(&source, nullptr);
    QSignalSpy entries(&log, &EventLog::newEntry);
    for (QString const &step : steps.split(QLatin1Char(' '))) {
        const QString text = step.at(0) == QLatin1Char('_')
            ? QString()
            : step.at(0) + QStringLiteral(" CRC error");
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
    clock.setMillis(1394541296789ull);
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

QTEST_GUILESS_MAIN(tst_EventLog)
#include "tst_eventlog.moc"
