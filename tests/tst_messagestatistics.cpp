// SPDX-License-Identifier: LGPL-2.1-or-later
#include "formatinfo.h"
#include "messageinfo.h"
#include "messagesource.h"
#include "messagestatistics.h"
#include "messagestatisticscoordinator.h"
#include "testmessage.h"
#include "timesource.h"
#include "tracerrecorder.h"
#include "warningcapture.h"

#include <QLocale>
#include <QTest>

#include <algorithm>
#include <memory>

namespace {
/// Renders times with a label, so that the time text is seen to be the time source's own.
class LabelledTime : public TimeSource
{
public:
    QString millisToString(unsigned long long millis) override
    {
        return QStringLiteral("t=%1").arg(millis);
    }
};

/**
 * Runs a sequence written as space-separated steps: "1000" a message at 1000 ms, "0" a
 * message while the time is unknown, "close:4000" an epoch closed at 4000 ms, "on" and "off"
 * gap detection switched.
 */
void run(MessageStatistics &statistics, TimeSource &time, QString const &steps)
{
    for (QString const &step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        if (step == QLatin1String("on") || step == QLatin1String("off")) {
            statistics.setGapDetectionEnabled(step == QLatin1String("on"));
        } else if (step.startsWith(QLatin1String("close:"))) {
            time.setMillis(step.mid(6).toULongLong());
            statistics.updateGaps(true);
        } else {
            time.setMillis(step.toULongLong());
            statistics.processNewMessage();
        }
    }
}

/// "count unknownInterval unknownTime | interval=count … | lastInterval x repeats", with "?"
/// for an unknown last interval.
QString counts(MessageStatistics const &statistics)
{
    QStringList histogram;
    for (long long interval : statistics.getIntervalsSortedOnDuration())
        histogram.append(QStringLiteral("%1=%2").arg(interval).arg(
            statistics.getIntervalCountHash().value(interval)));
    bool const unknown = statistics.getLastInterval() == MessageStatistics::unknownIntervalMarker;
    return QStringLiteral("%1 %2 %3 | %4 | %5x%6")
        .arg(statistics.getCount())
        .arg(statistics.getCountWithUnknownInterval())
        .arg(statistics.getCountWithUnknownTime())
        .arg(histogram.join(QLatin1Char(' ')),
             unknown == statistics.hasValidLastInterval() ? QStringLiteral("invalid")
                 : unknown                                ? QStringLiteral("?")
                           : QString::number(statistics.getLastInterval()))
        .arg(statistics.getLastIntervalRepeatCount());
}

/// "gaps missingEpochs | start:missing:interval …" of the stored gaps.
QString gaps(MessageStatistics const &statistics)
{
    QStringList stored;
    for (MessageStatistics::Gap const &gap : statistics.getGaps())
        stored.append(QStringLiteral("%1:%2:%3")
                          .arg(gap.startMillis)
                          .arg(gap.missingEpochs)
                          .arg(gap.intervalMillis));
    return QStringLiteral("%1 %2 | %3")
        .arg(statistics.getNumberOfGaps())
        .arg(statistics.getNumberOfMissingEpochs())
        .arg(stored.join(QLatin1Char(' ')));
}
} // namespace

class tst_MessageStatistics : public QObject
{
    Q_OBJECT

public:
    tst_MessageStatistics()
    {
        for (MessageInfo *info : { &mInfo, &mOther }) {
            info->setFormatInfo(&mFormat);
            mFormat.addMessageInfo(info);
        }
    }

private Q_SLOTS:
    void acceptsOnlyItsOwnMessages_data();
    void acceptsOnlyItsOwnMessages();
    void counting_data();
    void counting();
    void gapDetection_data();
    void gapDetection();
    void gapStoreLimit();
    void currentlyRegular_data();
    void currentlyRegular();
    void intervalsSortedOnFrequency_data();
    void intervalsSortedOnFrequency();
    void texts_data();
    void texts();
    void report_data();
    void report();

private:
    FormatInfo mFormat { QStringLiteral("VEXA") };
    MessageInfo mInfo { QStringLiteral("PVTGeodetic") };
    MessageInfo mOther { QStringLiteral("ReceiverStatus") };
    TimeSource mTime;
};

void tst_MessageStatistics::acceptsOnlyItsOwnMessages_data()
{
    QTest::addColumn<bool>("knownType"); // false: statistics of unknown "VEXA PVTGeodetic"
    QTest::addColumn<QString>("input");
    QTest::addColumn<bool>("counted");
    auto row = [](char const *name, bool knownType, char const *input, bool counted) {
        QTest::newRow(name) << knownType << input << counted;
    };

    row("known type, its message", true, "message PVTGeodetic", true);
    row("known type, another message", true, "message ReceiverStatus", false);
    row("known type, unknown message of its name", true, "unknown VEXA PVTGeodetic", false);
    row("unknown message, same format and name", false, "unknown VEXA PVTGeodetic", true);
    row("unknown message, other name", false, "unknown VEXA PVTCartesian", false);
    row("unknown message, other format", false, "unknown RTCM3 PVTGeodetic", false);
    row("unknown message, a message of its name", false, "message PVTGeodetic", false);
}

void tst_MessageStatistics::acceptsOnlyItsOwnMessages()
{
    QFETCH(bool, knownType);
    QFETCH(QString, input);
    QFETCH(bool, counted);

    FormatInfo rtcm3(QStringLiteral("RTCM3"));
    LabelledTime time;
    time.setMillis(1000);
    TracerRecorder recorder;
    {
        std::unique_ptr<MessageStatistics> statistics(
            knownType
                ? new MessageStatistics(&mInfo, &time, nullptr)
                : new MessageStatistics(&mFormat, QStringLiteral("PVTGeodetic"), &time, nullptr));
        QCOMPARE(statistics->getMessageInfo(), knownType ? &mInfo : nullptr);
        QCOMPARE(statistics->getFormatInfo(), &mFormat);
        QCOMPARE(statistics->getMessageName(), QStringLiteral("PVTGeodetic"));
        QVERIFY(!statistics->isGapDetectionEnabled());
        QCOMPARE(statistics->getTimeString(1234), QStringLiteral("t=1234"));

        QStringList const words = input.split(QLatin1Char(' '));
        if (words.at(0) == QLatin1String("message")) {
            TestMessage message(mFormat.getMessageInfo(words.at(1)));
            statistics->processNewMessage(&message);
        } else {
            statistics->processNewUnknownMessage(
                words.at(1) == QLatin1String("VEXA") ? &mFormat : &rtcm3, words.at(2));
        }
        QCOMPARE(statistics->getCount(), counted ? 1u : 0u);
    }
    QCOMPARE(recorder.eventsOf(QStringLiteral("MessageStatistics")),
             QStringList({ "+MessageStatistics", "-MessageStatistics" }));
}

void tst_MessageStatistics::counting_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("counts"); // see counts()
    auto row = [](char const *name, char const *steps, char const *counts) {
        QTest::newRow(name) << steps << counts;
    };

    row("first message", "5000", "1 1 0 |  | ?x0");
    row("first message without time", "0", "1 1 1 |  | ?x0");
    row("two equal intervals fill in the first", "1000 2000 3000", "3 0 0 | 1000=3 | 1000x2");
    row("two different intervals do not", "1000 2000 3500", "3 1 0 | 1000=1 1500=1 | 1500x1");
    row("equal intervals later do not reach back", "1000 2000 3500 5000",
        "4 1 0 | 1000=1 1500=2 | 1500x2");
    row("zero intervals repeat but are not filled in", "1000 1000 1000", "3 1 0 | 0=2 | 0x2");
    row("negative intervals are filled in but never repeat", "5000 4000 3000",
        "3 0 0 | -1000=3 | -1000x1");
    row("time going backwards", "3000 2000 2500", "3 1 0 | -1000=1 500=1 | 500x1");
    row("unknown time resets the repeats", "1000 2000 3000 0", "4 1 1 | 1000=3 | ?x0");
    row("unknown time in the middle", "1000 0 3000 4000 5000", "5 2 1 | 1000=3 | 1000x2");
    row("intervals of 2^32 ms never repeat", "1 4294967297 8589934593",
        "3 0 0 | 4294967296=3 | 4294967296x1");
    row("only the low 32 bits of the previous interval compare", "1 4294967302 4294967307",
        "3 1 0 | 5=1 4294967301=1 | 5x2");
    row("a negative previous interval compares as unsigned 32 bits",
        "8589934592 8589934591 12884901886", "3 1 0 | -1=1 4294967295=1 | 4294967295x2");
}

void tst_MessageStatistics::counting()
{
    QFETCH(QString, steps);
    QFETCH(QString, counts);

    MessageStatistics statistics(&mInfo, &mTime, nullptr);
    run(statistics, mTime, steps);
    QCOMPARE(::counts(statistics), counts);
}

void tst_MessageStatistics::gapDetection_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QString>("gaps"); // see gaps()
    auto row = [](char const *name, char const *steps, char const *gaps) {
        QTest::newRow(name) << steps << gaps;
    };

    row("two missing epochs", "on 1000 2000 3000 6000", "1 2 | 4000:2:1000");
    row("gap detection off", "1000 2000 3000 6000", "0 0 | ");
    row("one interval is not yet a rate", "on 1000 2000 4000", "0 0 | ");
    row("repeated zero intervals are no rate", "on 1000 1000 1000 3000 4000 6000", "0 0 | ");
    row("a late message misses the epoch it passed", "on 1000 2000 3000 4001", "1 1 | 4000:1:1000");
    row("whole multiples keep the rate", "on 1000 2000 3000 5000 8000",
        "2 3 | 4000:1:1000 6000:2:1000");
    row("an irregular interval cancels the rate", "on 1000 2000 3000 4500 7500",
        "1 1 | 4000:1:1000");
    row("a zero interval cancels the rate", "on 1000 2000 3000 3000 5000", "0 0 | ");
    row("a negative interval cancels the rate", "on 1000 2000 3000 2500 5500", "0 0 | ");
    row("unknown time cancels the rate", "on 1000 2000 3000 0 5000 7000", "0 0 | ");
    row("epoch closed one interval late", "on 1000 2000 3000 close:4000", "1 1 | 4000:1:1000");
    row("a late message after a closed epoch adds nothing", "on 1000 2000 3000 close:4000 4500",
        "1 1 | 4000:1:1000");
    row("epoch closed before one interval", "on 1000 2000 3000 close:3999", "0 0 | ");
    row("closed epochs grow the open gap", "on 1000 2000 3000 close:4000 close:5000 close:6000",
        "1 3 | 4000:3:1000");
    row("a message on the multiple fills the epoch it closes",
        "on 1000 2000 3000 close:4000 close:5000 5000", "1 1 | 4000:1:1000");
    row("epoch closed within a thousandth of a multiple", "on 10000 20000 30000 close:59995",
        "1 3 | 40000:3:10000");
    row("epoch closed two thousandths before a multiple", "on 10000 20000 30000 close:59980",
        "1 2 | 40000:2:10000");
    row("a message within a thousandth of a multiple", "on 10000 20000 30000 59995",
        "1 2 | 40000:2:10000");
    row("time going back shrinks the open gap", "on 1000 2000 3000 close:6000 close:5000",
        "1 2 | 4000:2:1000");
    row("time unknown in the middle of a gap", "on 1000 2000 3000 close:5000 0 close:9000 9000",
        "1 2 | 4000:2:1000");
    row("epoch closed without time", "on 1000 2000 3000 close:0", "0 0 | ");
    row("a shorter repeated interval replaces the rate, gaps stay",
        "on 1000 3000 5000 9000 off 10000 11000 on 12000 14000", "2 2 | 7000:1:2000 13000:1:1000");
    row("a shorter interval repeating the low 32 bits replaces the rate",
        "on 1000 2000 3000 4294971000 4294971704 4294972408 4294973816",
        "2 4294968 | 4000:4294967:1000 4294973112:1:704");
    row("a longer repeated interval withdraws its gaps", "on 1000 2000 3000 5000 7000", "2 2 | ");
    row("older gaps stay when the rate slows", "on 1000 2000 3000 5000 6000 7000 9000 11000 15000",
        "4 4 | 4000:1:1000 13000:1:2000");
}

void tst_MessageStatistics::gapDetection()
{
    QFETCH(QString, steps);
    QFETCH(QString, gaps);

    MessageStatistics statistics(&mInfo, &mTime, nullptr);
    run(statistics, mTime, steps);
    QCOMPARE(::gaps(statistics), gaps);
    QVERIFY(!statistics.hasUnstoredGaps());
}

void tst_MessageStatistics::gapStoreLimit()
{
    // Nineteen gaps of one missing epoch; the twentieth grows to two epochs while open; the
    // twenty-first and twenty-second are counted only, and the growth of the open one no longer
    // touches the stored ones.
    QString steps = QStringLiteral("on 1000 2000 3000");
    unsigned long long now = 3000;
    auto at = [&](char const *kind, unsigned long long after) {
        now += after;
        steps += QStringLiteral(" %1%2").arg(QLatin1String(kind)).arg(now);
    };
    for (int i = 0; i < 19; ++i) {
        at("", 2000);
        at("", 1000);
    }
    at("close:", 1000);
    at("close:", 1000);
    at("", 1000);
    at("", 1000);
    at("", 2000);
    at("close:", 1000);
    at("close:", 1000);
    at("close:", 1000);
    MessageStatistics statistics(&mInfo, &mTime, nullptr);
    run(statistics, mTime, steps);

    QCOMPARE(statistics.getNumberOfGaps(), 22);
    QCOMPARE(statistics.getNumberOfMissingEpochs(), 19 + 2 + 1 + 3);
    QVERIFY(statistics.hasUnstoredGaps());
    QCOMPARE(statistics.getGaps().size(), 20);
    QCOMPARE(gaps(statistics).section(QLatin1Char(' '), -1), QStringLiteral("61000:2:1000"));
}

void tst_MessageStatistics::currentlyRegular_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<unsigned long long>("newest"); // another type's time; 0: none, 1: no time
    QTest::addColumn<bool>("regular");
    auto row = [](char const *name, char const *steps, unsigned long long newest, bool regular) {
        QTest::newRow(name) << steps << newest << regular;
    };

    row("newest message within one interval", "1000 2000 3000", 4000, true);
    row("newest message later than one interval", "1000 2000 3000", 4001, false);
    row("this type is the newest", "1000 2000 3000", 0, true);
    row("newest message without time", "1000 2000 3000", 1, false);
    row("newest message earlier than this type", "1000 2000 3000", 2500, false);
    row("one interval only", "1000 2000", 2500, false);
    row("zero intervals", "1000 1000 1000", 1000, false);
}

void tst_MessageStatistics::currentlyRegular()
{
    QFETCH(QString, steps);
    QFETCH(unsigned long long, newest);
    QFETCH(bool, regular);

    MessageSource source(QStringLiteral("receiver"), nullptr);
    MessageStatisticsCoordinator coordinator(&source, &mTime);
    MessageStatistics *statistics = coordinator.getMessageStatistics(&mInfo);
    auto send = [&](MessageInfo const *info, unsigned long long millis) {
        mTime.setMillis(millis);
        TestMessage message(info);
        Q_EMIT source.newMessage(&message);
    };
    for (QString const &step : steps.split(QLatin1Char(' ')))
        send(&mInfo, step.toULongLong());
    if (newest != 0)
        send(&mOther, newest == 1 ? 0 : newest);
    QCOMPARE(statistics->isCurrentlyRegular(), regular);
}

void tst_MessageStatistics::intervalsSortedOnFrequency_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<int>("maxCount");
    QTest::addColumn<QString>("intervals"); // ascending: the order within a group is free
    auto row = [](char const *name, char const *steps, int maxCount, char const *intervals) {
        QTest::newRow(name) << steps << maxCount << intervals;
    };

    // Histogram 1000 -> 3, 500 -> 1, 2000 -> 1.
    char const steps[] = "1000 2000 3000 5000 5500";
    row("zero still gives the most frequent group", steps, 0, "1000");
    row("a group is never cut", steps, 2, "500 1000 2000");
    row("negative means all", steps, -1, "500 1000 2000");
    row("a tie at the top", "1000 2000 4000 6000 7000", 1, "1000 2000");
    row("no intervals", "1000", -1, "");
}

void tst_MessageStatistics::intervalsSortedOnFrequency()
{
    QFETCH(QString, steps);
    QFETCH(int, maxCount);
    QFETCH(QString, intervals);

    MessageStatistics statistics(&mInfo, &mTime, nullptr);
    run(statistics, mTime, steps);
    QList<long long> result = statistics.getIntervalsSortedOnFrequency(maxCount);
    QHash<long long, unsigned int> const counts = statistics.getIntervalCountHash();
    for (int i = 1; i < result.size(); ++i)
        QVERIFY(counts.value(result.at(i - 1)) >= counts.value(result.at(i)));
    std::sort(result.begin(), result.end());
    QStringList texts;
    for (long long interval : result)
        texts.append(QString::number(interval));
    QCOMPARE(texts.join(QLatin1Char(' ')), intervals);
}

void tst_MessageStatistics::texts_data()
{
    QTest::addColumn<unsigned long long>("millis");
    QTest::addColumn<QString>("interval");
    QTest::addColumn<QString>("rate");
    auto row = [](char const *name, unsigned long long millis, char const *interval,
                  char const *rate) { QTest::newRow(name) << millis << interval << rate; };

    row("one second", 1000, "1 Hz/1 s", "1 Hz");
    row("whole seconds", 2000, "2 s", "0.5 Hz");
    row("zero", 0, "0 s", "");
    row("one millisecond", 1, "1000 Hz/0.001 s", "1000 Hz");
    row("four per second", 250, "4 Hz/0.25 s", "4 Hz");
    row("not dividing a second", 300, "0.3 s", "3.33333 Hz");
    row("above one second, not whole", 1500, "1.5 s", "0.666667 Hz");
    row("six significant digits", 1234567, "1234.57 s", "0.000810001 Hz");
    row("a negative interval as unsigned", 18446744073709550616ULL, "1.84467e+16 s", "");
}

void tst_MessageStatistics::texts()
{
    QFETCH(unsigned long long, millis);
    QFETCH(QString, interval);
    QFETCH(QString, rate);

    // Decimal commas of the application's locale must not leak into the texts.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    MessageStatistics statistics(&mInfo, &mTime, nullptr);
    QString const intervalText = statistics.getIntervalString(millis);
    QString const rateText = statistics.getRateString(millis);
    QLocale::setDefault(QLocale::c());
    QCOMPARE(intervalText, interval);
    if (!rate.isEmpty())
        QCOMPARE(rateText, rate);
}

void tst_MessageStatistics::report_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QStringList>("lines");

    QStringList const head { "Message statistics for  PVTGeodetic" };
    QString const intervals = QStringLiteral("  message intervals:");
    QTest::newRow("one message") << "5000"
                                 << head
            + QStringList { "  count:  1", intervals, "    Interval unknown:  1" };
    QTest::newRow("messages without time") << "0 0"
                                           << head
            + QStringList { "  count:  2", intervals, "    Interval unknown:  2",
                            "       of which messages with time unknown:  2" };
    QTest::newRow("intervals ascending and a stored gap") << "on 1000 2000 3000 6000 6100"
                                                          << head
            + QStringList { "  count:  5",
                            intervals,
                            "     10 Hz/0.1 s  :  1",
                            "     1 Hz/1 s  :  3",
                            "     3 s  :  1",
                            "  gaps:",
                            "  - gap @ 4000 with interval 1000 and 2 epochs missing.",
                            "  total number of gaps: 1",
                            "  total number of epochs missing: 2" };
    QTest::newRow("gaps counted but none stored")
        << "on 1000 2000 3000 5000 7000"
        << head + QStringList { "  count:  5", intervals, "     1 Hz/1 s  :  3", "     2 s  :  2" };
    QTest::newRow("negative interval") << "2000 1000"
                                       << head
            + QStringList { "  count:  2", intervals, "     1.84467e+16 s  :  1",
                            "    Interval unknown:  1" };
}

void tst_MessageStatistics::report()
{
    QFETCH(QString, steps);
    QFETCH(QStringList, lines);

    MessageStatistics statistics(&mInfo, &mTime, nullptr);
    run(statistics, mTime, steps);
    WarningCapture capture;
    statistics.printStatistics();
    QCOMPARE(capture.debugLines(), lines);
}

QTEST_GUILESS_MAIN(tst_MessageStatistics)
#include "tst_messagestatistics.moc"
