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
constexpr long long unknown = MessageStatistics::unknownIntervalMarker;

/**
 * Runs a sequence written as space-separated steps: "1000" a message at 1000 ms, "0" a
 * message while the time is unknown, "close:4000" an epoch closed at 4000 ms, "on" and "off"
 * gap detection switched.
 */
void run(MessageStatistics &statistics, TimeSource &time, QString const &steps)
{
    const QStringList list = steps.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString const &step : list) {
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

/// The histogram as "interval=count …", intervals ascending.
QString histogram(MessageStatistics const &statistics)
{
    const QHash<long long, unsigned int> counts = statistics.getIntervalCountHash();
    QStringList entries;
    for (long long interval : statistics.getIntervalsSortedOnDuration())
        entries.append(QStringLiteral("%1=%2").arg(interval).arg(counts.value(interval)));
    return entries.join(QLatin1Char(' '));
}

/// The stored gaps as "start:missing:interval …".
QString storedGaps(MessageStatistics const &statistics)
{
    QStringList entries;
    for (MessageStatistics::Gap const &gap : statistics.getGaps()) {
        entries.append(QStringLiteral("%1:%2:%3")
                           .arg(gap.startMillis)
                           .arg(gap.missingEpochs)
                           .arg(gap.intervalMillis));
    }
    return entries.join(QLatin1Char(' '));
}

/// A format with one message type, as the application's start-up code would build them.
struct Dictionary
{
    Dictionary()
    {
        info.setFormatInfo(&format);
        format.addMessageInfo(&info);
        other.setFormatInfo(&format);
        format.addMessageInfo(&other);
    }
    FormatInfo format { QStringLiteral("VEXA") };
    MessageInfo info { QStringLiteral("PVTGeodetic") };
    MessageInfo other { QStringLiteral("ReceiverStatus") };
};
} // namespace

class tst_MessageStatistics : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void identityAndTracing();
    void acceptsOnlyItsOwnMessages_data();
    void acceptsOnlyItsOwnMessages();
    void counting_data();
    void counting();
    void handedOutHistogramKeepsItsCounts_data();
    void handedOutHistogramKeepsItsCounts();
    void gapDetection_data();
    void gapDetection();
    void gapStoreLimit();
    void currentlyRegular_data();
    void currentlyRegular();
    void intervalsSortedOnFrequency_data();
    void intervalsSortedOnFrequency();
    void intervalString_data();
    void intervalString();
    void rateAndTimeStrings();
    void report_data();
    void report();

private:
    Dictionary mDictionary;
};

void tst_MessageStatistics::identityAndTracing()
{
    TimeSource time;
    TracerRecorder recorder;
    auto *known = new MessageStatistics(&mDictionary.info, &time, nullptr);
    auto *unknownMessage
        = new MessageStatistics(&mDictionary.format, QStringLiteral("Block 4242"), &time, nullptr);
    QCOMPARE(known->getMessageInfo(), &mDictionary.info);
    QCOMPARE(known->getFormatInfo(), &mDictionary.format);
    QCOMPARE(known->getMessageName(), QStringLiteral("PVTGeodetic"));
    QVERIFY(unknownMessage->getMessageInfo() == nullptr);
    QCOMPARE(unknownMessage->getFormatInfo(), &mDictionary.format);
    QCOMPARE(unknownMessage->getMessageName(), QStringLiteral("Block 4242"));
    QVERIFY(!known->isGapDetectionEnabled());
    QCOMPARE(known->getLastInterval(), 0);
    delete known;
    delete unknownMessage;
    QCOMPARE(recorder.events(),
             QStringList(
                 { QStringLiteral("+MessageStatistics"), QStringLiteral("+MessageStatistics"),
                   QStringLiteral("-MessageStatistics"), QStringLiteral("-MessageStatistics") }));
}

void tst_MessageStatistics::acceptsOnlyItsOwnMessages_data()
{
    QTest::addColumn<bool>("knownType");
    QTest::addColumn<QString>("input");
    QTest::addColumn<bool>("counted");

    QTest::newRow("known type, its message") << true << "message PVTGeodetic" << true;
    QTest::newRow("known type, another message") << true << "message ReceiverStatus" << false;
    QTest::newRow("known type, unknown message of its name")
        << true << "unknown VEXA PVTGeodetic" << false;
    QTest::newRow("unknown message, same format and name")
        << false << "unknown VEXA PVTGeodetic" << true;
    QTest::newRow("unknown message, other name") << false << "unknown VEXA PVTCartesian" << false;
    QTest::newRow("unknown message, other format") << false << "unknown RTCM3 PVTGeodetic" << false;
    QTest::newRow("unknown message, a message of its name")
        << false << "message PVTGeodetic" << false;
}

void tst_MessageStatistics::acceptsOnlyItsOwnMessages()
{
    QFETCH(bool, knownType);
    QFETCH(QString, input);
    QFETCH(bool, counted);

    FormatInfo rtcm3(QStringLiteral("RTCM3"));
    TimeSource time;
    time.setMillis(1000);
    std::unique_ptr<MessageStatistics> statistics(
        knownType ? new MessageStatistics(&mDictionary.info, &time, nullptr)
                  : new MessageStatistics(&mDictionary.format, QStringLiteral("PVTGeodetic"), &time,
                                          nullptr));

    const QStringList words = input.split(QLatin1Char(' '));
    if (words.at(0) == QLatin1String("message")) {
        TestMessage message(mDictionary.format.getMessageInfo(words.at(1)));
        statistics->processNewMessage(&message);
    } else {
        FormatInfo const *format
            = words.at(1) == QLatin1String("VEXA") ? &mDictionary.format : &rtcm3;
        statistics->processNewUnknownMessage(format, words.at(2));
    }
    QCOMPARE(statistics->getCount(), counted ? 1u : 0u);
}

void tst_MessageStatistics::counting_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<unsigned int>("count");
    QTest::addColumn<unsigned int>("unknownInterval");
    QTest::addColumn<unsigned int>("unknownTime");
    QTest::addColumn<QString>("intervals");
    QTest::addColumn<long long>("lastInterval");
    QTest::addColumn<unsigned int>("repeats");

    QTest::newRow("first message") << "5000" << 1u << 1u << 0u << "" << unknown << 0u;
    QTest::newRow("first message without time") << "0" << 1u << 1u << 1u << "" << unknown << 0u;
    QTest::newRow("two equal intervals fill in the first")
        << "1000 2000 3000" << 3u << 0u << 0u << "1000=3" << 1000LL << 2u;
    QTest::newRow("two different intervals do not")
        << "1000 2000 3500" << 3u << 1u << 0u << "1000=1 1500=1" << 1500LL << 1u;
    QTest::newRow("equal intervals later do not reach back")
        << "1000 2000 3500 5000" << 4u << 1u << 0u << "1000=1 1500=2" << 1500LL << 2u;
    QTest::newRow("a run counts its repeats")
        << "1000 2000 3000 4000 5000" << 5u << 0u << 0u << "1000=5" << 1000LL << 4u;
    QTest::newRow("zero intervals repeat but are not filled in")
        << "1000 1000 1000" << 3u << 1u << 0u << "0=2" << 0LL << 2u;
    QTest::newRow("negative intervals are filled in but never repeat")
        << "5000 4000 3000" << 3u << 0u << 0u << "-1000=3" << -1000LL << 1u;
    QTest::newRow("time going backwards")
        << "3000 2000 2500" << 3u << 1u << 0u << "-1000=1 500=1" << 500LL << 1u;
    QTest::newRow("unknown time resets the repeats")
        << "1000 2000 3000 0" << 4u << 1u << 1u << "1000=3" << unknown << 0u;
    QTest::newRow("unknown time in the middle")
        << "1000 0 3000 4000 5000" << 5u << 2u << 1u << "1000=3" << 1000LL << 2u;
    QTest::newRow("intervals of 2^32 ms never repeat")
        << "1 4294967297 8589934593" << 3u << 0u << 0u << "4294967296=3" << 4294967296LL << 1u;
    QTest::newRow("only the low 32 bits of the previous interval compare")
        << "1 4294967302 4294967307" << 3u << 1u << 0u << "5=1 4294967301=1" << 5LL << 2u;
    QTest::newRow("a negative previous interval compares as unsigned 32 bits")
        << "8589934592 8589934591 12884901886" << 3u << 1u << 0u << "-1=1 4294967295=1"
        << 4294967295LL << 2u;
}

void tst_MessageStatistics::counting()
{
    QFETCH(QString, steps);
    QFETCH(unsigned int, count);
    QFETCH(unsigned int, unknownInterval);
    QFETCH(unsigned int, unknownTime);
    QFETCH(QString, intervals);
    QFETCH(long long, lastInterval);
    QFETCH(unsigned int, repeats);

    TimeSource time;
    MessageStatistics statistics(&mDictionary.info, &time, nullptr);
    run(statistics, time, steps);

    QCOMPARE(statistics.getCount(), count);
    QCOMPARE(statistics.getCountWithUnknownInterval(), unknownInterval);
    QCOMPARE(statistics.getCountWithUnknownTime(), unknownTime);
    QCOMPARE(statistics.getCountWithKnownTimeButUnknownInterval(), unknownInterval - unknownTime);
    QCOMPARE(histogram(statistics), intervals);
    QCOMPARE(statistics.getLastInterval(), lastInterval);
    QCOMPARE(statistics.hasValidLastInterval(), lastInterval != unknown);
    QCOMPARE(statistics.getLastIntervalRepeatCount(), repeats);
}

void tst_MessageStatistics::handedOutHistogramKeepsItsCounts_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::addColumn<QString>("handedOut");
    QTest::addColumn<QString>("current");

    QTest::newRow("the same interval again") << "1000 2000 3000"
                                             << "4000"
                                             << "1000=3"
                                             << "1000=4";
    QTest::newRow("a new interval, then the old one") << "1000 2000 3000"
                                                      << "4500 5500 6500"
                                                      << "1000=3"
                                                      << "1000=5 1500=1";
    QTest::newRow("an interval filled in") << "1000 2000"
                                           << "3000"
                                           << "1000=1"
                                           << "1000=3";
}

void tst_MessageStatistics::handedOutHistogramKeepsItsCounts()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    QFETCH(QString, handedOut);
    QFETCH(QString, current);

    TimeSource time;
    MessageStatistics statistics(&mDictionary.info, &time, nullptr);
    run(statistics, time, before);
    const QHash<long long, unsigned int> copy = statistics.getIntervalCountHash();
    run(statistics, time, after);

    QStringList copied;
    for (long long interval : statistics.getIntervalsSortedOnDuration()) {
        if (copy.contains(interval))
            copied.append(QStringLiteral("%1=%2").arg(interval).arg(copy.value(interval)));
    }
    QCOMPARE(copied.join(QLatin1Char(' ')), handedOut);
    QCOMPARE(histogram(statistics), current);
}

void tst_MessageStatistics::gapDetection_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<int>("gaps");
    QTest::addColumn<int>("missing");
    QTest::addColumn<QString>("stored");

    QTest::newRow("two missing epochs") << "on 1000 2000 3000 6000" << 1 << 2 << "4000:2:1000";
    QTest::newRow("gap detection off") << "1000 2000 3000 6000" << 0 << 0 << "";
    QTest::newRow("one interval is not yet a rate") << "on 1000 2000 4000" << 0 << 0 << "";
    QTest::newRow("repeated zero intervals are no rate")
        << "on 1000 1000 1000 3000 4000 6000" << 0 << 0 << "";
    QTest::newRow("regular messages") << "on 1000 2000 3000 4000 5000" << 0 << 0 << "";
    QTest::newRow("a late message misses the epoch it passed")
        << "on 1000 2000 3000 4001" << 1 << 1 << "4000:1:1000";
    QTest::newRow("whole multiples keep the rate")
        << "on 1000 2000 3000 5000 8000" << 2 << 3 << "4000:1:1000 6000:2:1000";
    QTest::newRow("an irregular interval cancels the rate")
        << "on 1000 2000 3000 4500 7500" << 1 << 1 << "4000:1:1000";
    QTest::newRow("a zero interval cancels the rate")
        << "on 1000 2000 3000 3000 5000" << 0 << 0 << "";
    QTest::newRow("unknown time cancels the rate")
        << "on 1000 2000 3000 0 5000 7000" << 0 << 0 << "";
    QTest::newRow("time going backwards cancels the rate")
        << "on 1000 2000 3000 2500 5500" << 0 << 0 << "";
    QTest::newRow("epoch closed one interval late")
        << "on 1000 2000 3000 close:4000" << 1 << 1 << "4000:1:1000";
    QTest::newRow("a late message after a closed epoch adds nothing")
        << "on 1000 2000 3000 close:4000 4500" << 1 << 1 << "4000:1:1000";
    QTest::newRow("epoch closed before one interval")
        << "on 1000 2000 3000 close:3999" << 0 << 0 << "";
    QTest::newRow("closed epochs grow the open gap")
        << "on 1000 2000 3000 close:4000 close:5000 close:6000" << 1 << 3 << "4000:3:1000";
    QTest::newRow("a message on the multiple fills the epoch it closes")
        << "on 1000 2000 3000 close:4000 close:5000 5000" << 1 << 1 << "4000:1:1000";
    QTest::newRow("epoch closed within a thousandth of a multiple")
        << "on 10000 20000 30000 close:59995" << 1 << 3 << "40000:3:10000";
    QTest::newRow("epoch closed two thousandths before a multiple")
        << "on 10000 20000 30000 close:59980" << 1 << 2 << "40000:2:10000";
    QTest::newRow("a message within a thousandth of a multiple")
        << "on 10000 20000 30000 59995" << 1 << 2 << "40000:2:10000";
    QTest::newRow("time going back shrinks the open gap")
        << "on 1000 2000 3000 close:6000 close:5000" << 1 << 2 << "4000:2:1000";
    QTest::newRow("time unknown in the middle of a gap")
        << "on 1000 2000 3000 close:5000 0 close:9000 9000" << 1 << 2 << "4000:2:1000";
    QTest::newRow("epoch closed without time") << "on 1000 2000 3000 close:0" << 0 << 0 << "";
    QTest::newRow("a shorter repeated interval replaces the rate, gaps stay")
        << "on 1000 3000 5000 9000 off 10000 11000 on 12000 14000" << 2 << 2
        << "7000:1:2000 13000:1:1000";
    QTest::newRow("a shorter interval repeating the low 32 bits replaces the rate")
        << "on 1000 2000 3000 4294971000 4294971704 4294972408 4294973816" << 2 << 4294968
        << "4000:4294967:1000 4294973112:1:704";
    QTest::newRow("a longer repeated interval withdraws its gaps")
        << "on 1000 2000 3000 5000 7000" << 2 << 2 << "";
    QTest::newRow("older gaps stay when the rate slows")
        << "on 1000 2000 3000 5000 6000 7000 9000 11000 15000" << 4 << 4
        << "4000:1:1000 13000:1:2000";
}

void tst_MessageStatistics::gapDetection()
{
    QFETCH(QString, steps);
    QFETCH(int, gaps);
    QFETCH(int, missing);
    QFETCH(QString, stored);

    TimeSource time;
    MessageStatistics statistics(&mDictionary.info, &time, nullptr);
    run(statistics, time, steps);

    QCOMPARE(statistics.getNumberOfGaps(), gaps);
    QCOMPARE(statistics.getNumberOfMissingEpochs(), missing);
    QCOMPARE(storedGaps(statistics), stored);
    QVERIFY(!statistics.hasUnstoredGaps());
}

void tst_MessageStatistics::gapStoreLimit()
{
    TimeSource time;
    MessageStatistics statistics(&mDictionary.info, &time, nullptr);
    run(statistics, time, QStringLiteral("on 1000 2000 3000"));
    unsigned long long now = 3000;
    auto message = [&](unsigned long long after) {
        now += after;
        run(statistics, time, QString::number(now));
    };
    auto close = [&](unsigned long long after) {
        run(statistics, time, QStringLiteral("close:%1").arg(now + after));
    };

    // Nineteen gaps of one epoch each, with a regular message after each.
    for (int i = 0; i < 19; ++i) {
        message(2000);
        message(1000);
    }
    // The twentieth is stored and still grows while open.
    close(1000);
    close(2000);
    QCOMPARE(statistics.getGaps().size(), 20);
    QCOMPARE(statistics.getGaps().constLast().missingEpochs, 2u);
    QVERIFY(!statistics.hasUnstoredGaps());
    message(3000);
    message(1000);

    // The twenty-first is counted only; a later open gap no longer touches the stored ones.
    message(2000);
    QCOMPARE(statistics.getNumberOfGaps(), 21);
    QVERIFY(statistics.hasUnstoredGaps());
    close(1000);
    close(2000);
    close(3000);
    QCOMPARE(statistics.getNumberOfGaps(), 22);
    QCOMPARE(statistics.getNumberOfMissingEpochs(), 19 + 2 + 1 + 3);
    QCOMPARE(statistics.getGaps().size(), 20);
    QCOMPARE(statistics.getGaps().constLast().missingEpochs, 2u);
    QCOMPARE(statistics.getGaps().constLast().startMillis, 3000ULL + 19 * 3000 + 1000);
}

void tst_MessageStatistics::currentlyRegular_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<unsigned long long>("newestMessage");
    QTest::addColumn<bool>("regular");

    QTest::newRow("newest message within one interval") << "1000 2000 3000" << 4000ULL << true;
    QTest::newRow("newest message later than one interval") << "1000 2000 3000" << 4001ULL << false;
    QTest::newRow("this type is the newest") << "1000 2000 3000" << 0ULL << true;
    QTest::newRow("newest message without time") << "1000 2000 3000" << 1ULL << false;
    QTest::newRow("newest message earlier than this type") << "1000 2000 3000" << 2500ULL << false;
    QTest::newRow("one interval only") << "1000 2000" << 2500ULL << false;
    QTest::newRow("zero intervals") << "1000 1000 1000" << 1000ULL << false;
    QTest::newRow("last time unknown") << "1000 2000 3000 0" << 3500ULL << false;
}

void tst_MessageStatistics::currentlyRegular()
{
    QFETCH(QString, steps);
    QFETCH(unsigned long long, newestMessage);
    QFETCH(bool, regular);

    TimeSource time;
    MessageSource source(QStringLiteral("receiver"), nullptr);
    MessageStatisticsCoordinator coordinator(&source, &time);
    MessageStatistics *statistics = coordinator.getMessageStatistics(&mDictionary.info);
    const QStringList list = steps.split(QLatin1Char(' '));
    for (QString const &step : list) {
        time.setMillis(step.toULongLong());
        TestMessage message(&mDictionary.info);
        Q_EMIT source.newMessage(&message);
    }
    // Another type arrives last, except in the row where this type is the newest; 1 stands
    // for a message without time.
    if (newestMessage != 0) {
        time.setMillis(newestMessage == 1 ? 0 : newestMessage);
        TestMessage message(&mDictionary.other);
        Q_EMIT source.newMessage(&message);
    }
    QCOMPARE(statistics->isCurrentlyRegular(), regular);
}

void tst_MessageStatistics::intervalsSortedOnFrequency_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<int>("maxCount");
    // The intervals listed, ascending (the order within a group of equal counts is free).
    QTest::addColumn<QString>("intervals");

    // Histogram 1000 → 3, 500 → 1, 2000 → 1.
    const QString steps = QStringLiteral("1000 2000 3000 5000 5500");
    QTest::newRow("zero still gives the most frequent group") << steps << 0 << "1000";
    QTest::newRow("one") << steps << 1 << "1000";
    QTest::newRow("a group is never cut") << steps << 2 << "500 1000 2000";
    QTest::newRow("more than there are") << steps << 10 << "500 1000 2000";
    QTest::newRow("negative means all") << steps << -1 << "500 1000 2000";
    QTest::newRow("a tie at the top") << "1000 2000 4000 6000 7000" << 1 << "1000 2000";
    QTest::newRow("no intervals") << "1000" << -1 << "";
}

void tst_MessageStatistics::intervalsSortedOnFrequency()
{
    QFETCH(QString, steps);
    QFETCH(int, maxCount);
    QFETCH(QString, intervals);

    TimeSource time;
    MessageStatistics statistics(&mDictionary.info, &time, nullptr);
    run(statistics, time, steps);
    QList<long long> result = statistics.getIntervalsSortedOnFrequency(maxCount);

    const QHash<long long, unsigned int> counts = statistics.getIntervalCountHash();
    for (int i = 1; i < result.size(); ++i)
        QVERIFY(counts.value(result.at(i - 1)) >= counts.value(result.at(i)));
    std::sort(result.begin(), result.end());
    QStringList texts;
    for (long long interval : result)
        texts.append(QString::number(interval));
    QCOMPARE(texts.join(QLatin1Char(' ')), intervals);
}

void tst_MessageStatistics::intervalString_data()
{
    QTest::addColumn<unsigned long long>("millis");
    QTest::addColumn<QString>("text");

    QTest::newRow("one second") << 1000ULL << "1 Hz/1 s";
    QTest::newRow("whole seconds") << 2000ULL << "2 s";
    QTest::newRow("many whole seconds") << 1000000ULL << "1000 s";
    QTest::newRow("zero") << 0ULL << "0 s";
    QTest::newRow("one millisecond") << 1ULL << "1000 Hz/0.001 s";
    QTest::newRow("ten per second") << 100ULL << "10 Hz/0.1 s";
    QTest::newRow("four per second") << 250ULL << "4 Hz/0.25 s";
    QTest::newRow("not dividing a second") << 300ULL << "0.3 s";
    QTest::newRow("above one second, not whole") << 1500ULL << "1.5 s";
    QTest::newRow("six significant digits") << 1234567ULL << "1234.57 s";
    QTest::newRow("a negative interval as unsigned") << 18446744073709550616ULL << "1.84467e+16 s";
}

void tst_MessageStatistics::intervalString()
{
    QFETCH(unsigned long long, millis);
    QFETCH(QString, text);

    // Decimal commas of the application's locale must not leak into the texts.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    TimeSource time;
    MessageStatistics statistics(&mDictionary.info, &time, nullptr);
    const QString result = statistics.getIntervalString(millis);
    QLocale::setDefault(QLocale::c());
    QCOMPARE(result, text);
}

void tst_MessageStatistics::rateAndTimeStrings()
{
    TimeSource time;
    MessageStatistics statistics(&mDictionary.info, &time, nullptr);
    QCOMPARE(statistics.getRateString(250), QStringLiteral("4 Hz"));
    QCOMPARE(statistics.getRateString(1000), QStringLiteral("1 Hz"));
    QCOMPARE(statistics.getRateString(3000), QStringLiteral("0.333333 Hz"));
    QCOMPARE(statistics.getTimeString(1234), QStringLiteral("1234"));

    // The time text is the time source's own, also a derived one's.
    class LabelledTime : public TimeSource
    {
    public:
        QString millisToString(unsigned long long millis) override
        {
            return QStringLiteral("t=%1").arg(millis);
        }
    } labelled;
    MessageStatistics withLabels(&mDictionary.info, &labelled, nullptr);
    QCOMPARE(withLabels.getTimeString(1234), QStringLiteral("t=1234"));
}

void tst_MessageStatistics::report_data()
{
    QTest::addColumn<QString>("steps");
    QTest::addColumn<QStringList>("lines");

    const QString title = QStringLiteral("Message statistics for  PVTGeodetic");
    const QString intervals = QStringLiteral("  message intervals:");
    QTest::newRow("one message") << "5000"
                                 << QStringList { title, "  count:  1", intervals,
                                                  "    Interval unknown:  1" };
    QTest::newRow("messages without time")
        << "0 0"
        << QStringList { title, "  count:  2", intervals, "    Interval unknown:  2",
                         "       of which messages with time unknown:  2" };
    QTest::newRow("intervals ascending and a stored gap")
        << "on 1000 2000 3000 6000 6100"
        << QStringList { title,
                         "  count:  5",
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
        << QStringList { title, "  count:  5", intervals, "     1 Hz/1 s  :  3", "     2 s  :  2" };
    QTest::newRow("negative interval")
        << "2000 1000"
        << QStringList { title, "  count:  2", intervals, "     1.84467e+16 s  :  1",
                         "    Interval unknown:  1" };
}

void tst_MessageStatistics::report()
{
    QFETCH(QString, steps);
    QFETCH(QStringList, lines);

    TimeSource time;
    MessageStatistics statistics(&mDictionary.info, &time, nullptr);
    run(statistics, time, steps);
    WarningCapture capture;
    statistics.printStatistics();
    QCOMPARE(capture.debugLines(), lines);
}

QTEST_GUILESS_MAIN(tst_MessageStatistics)
#include "tst_messagestatistics.moc"
