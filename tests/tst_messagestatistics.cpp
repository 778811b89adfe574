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
#include <QPointer>
#include <QTest>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

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

/// A clock that has a reading but does not vouch for it.
class UnfixedClock : public TimeSource
{
public:
    bool hasValidMillis() override { return false; }
};
} // namespace

// The statistics of one message type, and the coordinator that keeps one per type.
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
    void init()
    {
        mCoordinator.reset(new MessageStatisticsCoordinator(&mSource, &mTime));
        mStatistics = mCoordinator->getMessageStatistics(&mInfo);
        mHandedOut.clear();
    }

    void acceptsOnlyItsOwnMessages_data()
    {
        // "Pos" a message of that type, "VEXA/Pos" an unknown one of that format and name.
        QTest::addColumn<bool>("knownType"); // false: statistics of unknown "VEXA/Pos"
        QTest::addColumn<QString>("messages"); // all ignored but the last
        QTest::newRow("known type") << true << "Status VEXA/Pos Pos";
        QTest::newRow("unknown message") << false << "VEXA/Vel RTCM3/Pos Pos VEXA/Pos";
    }

    void acceptsOnlyItsOwnMessages()
    {
        QFETCH(bool, knownType);
        QFETCH(QString, messages);

        LabelledTime time;
        time.setMillis(1000);
        TracerRecorder recorder;
        {
            // Built over memory that is not blank, so that every member must be set.
            alignas(MessageStatistics) unsigned char storage[sizeof(MessageStatistics)];
            std::memset(storage, 1, sizeof storage); // every flag read as true
            MessageStatistics *statistics = knownType
                ? new (storage) MessageStatistics(&mInfo, &time, nullptr)
                : new (storage) MessageStatistics(&mFormat, QStringLiteral("Pos"), &time, nullptr);
            QVERIFY(!statistics->hasValidLastInterval());
            QVERIFY(!statistics->hasUnstoredGaps());
            QVERIFY(!statistics->isGapDetectionEnabled());
            QCOMPARE(statistics->getTimeString(1234), QStringLiteral("t=1234"));

            for (QString const &input : messages.split(QLatin1Char(' '))) {
                QCOMPARE(statistics->getCount(), 0u);
                if (input.contains(QLatin1Char('/'))) {
                    FormatInfo const *format
                        = FormatInfo::getFormatInfo(input.section(QLatin1Char('/'), 0, 0));
                    statistics->processNewUnknownMessage(format,
                                                         input.section(QLatin1Char('/'), 1));
                } else {
                    TestMessage message(mFormat.getMessageInfo(input));
                    statistics->processNewMessage(&message);
                }
            }
            QCOMPARE(statistics->getCount(), 1u);
            statistics->~MessageStatistics();
        }
        QCOMPARE(recorder.eventsOf(QStringLiteral("MessageStatistics")),
                 QStringList({ "+MessageStatistics", "-MessageStatistics" }));
    }

    void sequences_data()
    {
        // What is compared after the steps (see run()):
        // "counts": "count unknownInterval unknownTime | interval=count … | lastInterval x
        // repeats"; "gaps": "gaps missingEpochs | start:missing:interval …" of the stored gaps;
        // "regular": isCurrentlyRegular(); "frequent N": getIntervalsSortedOnFrequency(N),
        // ascending; "texts": "interval, rate" of the steps' number (the rate may be left out);
        // "report": the printed lines; "coordinator": statistics(), CRC and opened events, newest
        // time.
        QTest::addColumn<QString>("aspect");
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("expected");
        QString aspect;
        auto row = [&aspect](char const *name, char const *steps, char const *expected) {
            QTest::newRow(name) << aspect << steps << expected;
        };

        aspect = QStringLiteral("counts");
        row("first message", "5000", "1 1 0 | | ?x0");
        row("first message, no time", "0", "1 1 1 | | ?x0");
        row("two equal fill in the first", "1000 2000 3000", "3 0 0 | 1000=3 | 1000x2");
        row("two different do not", "1000 2000 3500", "3 1 0 | 1000=1 1500=1 | 1500x1");
        row("no reaching back", "1000 2000 3500 5000", "4 1 0 | 1000=1 1500=2 | 1500x2");
        row("zero: repeats, not filled in", "1000 1000 1000", "3 1 0 | 0=2 | 0x2");
        row("zero after another interval", "1000 2000 2000", "3 1 0 | 0=1 1000=1 | 0x1");
        row("negative: filled in, no repeat", "5000 4000 3000", "3 0 0 | -1000=3 | -1000x1");
        row("time going backwards", "3000 2000 2500", "3 1 0 | -1000=1 500=1 | 500x1");
        row("unknown time in the middle", "1000 0 3000 4000 5000", "5 2 1 | 1000=3 | 1000x2");
        row("2^32 ms never repeats", "1 4294967297 8589934593",
            "3 0 0 | 4294967296=3 | 4294967296x1");
        // Only the low 32 bits of the previous interval, read as unsigned, are compared.
        row("low 32 bits repeat", "1 4294967302 4294967307", "3 1 0 | 5=1 4294967301=1 | 5x2");
        row("negative as unsigned 32 bits", "8589934592 8589934591 12884901886",
            "3 1 0 | -1=1 4294967295=1 | 4294967295x2");
        row("counting goes on past a copy", "1000 2000 copy 3000 4000", "4 0 0 | 1000=4 | 1000x3");

        // A histogram handed out keeps the counts it had, whatever comes after.
        aspect = QStringLiteral("handed out");
        row("the same interval again", "1000 2000 3000 copy 4000", "1000=3");
        row("a new interval, then the old one", "1000 2000 3000 copy 4500 5500 6500", "1000=3");
        row("an interval filled in", "1000 2000 copy 3000", "1000=1");

        aspect = QStringLiteral("gaps");
        row("two missing epochs", "rate 6000", "1 2 | 4000:2:1000");
        row("detection off", "1000 2000 3000 6000", "0 0 |");
        row("one interval is no rate", "on 1000 2000 4000", "0 0 |");
        row("zero intervals are no rate", "on 1000 1000 1000 3000 4000 6000", "0 0 |");
        row("whole multiples keep the rate", "rate 5000 8000", "2 3 | 4000:1:1000 6000:2:1000");
        row("irregular interval cancels", "rate 4500 7500", "1 1 | 4000:1:1000");
        row("zero interval cancels", "rate 3000 5000", "0 0 |");
        row("negative interval cancels", "rate 2500 5500", "0 0 |");
        row("unknown time cancels", "rate 0 5000 7000", "0 0 |");
        row("unknown time while detection is off", "rate off 0 on close:9000", "0 0 |");
        row("epoch closed one interval late", "rate close:4000", "1 1 | 4000:1:1000");
        row("late message after it", "rate close:4000 4500", "1 1 | 4000:1:1000");
        row("epoch closed too early", "rate close:3999", "0 0 |");
        row("closed epochs grow the gap", "rate close:4000 close:6000", "1 3 | 4000:3:1000");
        row("message on a multiple", "rate close:4000 close:5000 5000", "1 1 | 4000:1:1000");
        row("close within 1/1000", "on 10000 20000 30000 close:59995", "1 3 | 40000:3:10000");
        row("close 2/1000 early", "on 10000 20000 30000 close:59980", "1 2 | 40000:2:10000");
        row("time going back", "rate close:6000 close:5000", "1 2 | 4000:2:1000");
        row("time unknown in a gap", "rate close:5000 0 close:9000 9000", "1 2 | 4000:2:1000");
        row("shorter interval, gaps stay", "on 1000 3000 5000 9000 off 10000 11000 on 12000 14000",
            "2 2 | 7000:1:2000 13000:1:1000");
        row("shorter, low 32 bits", "rate 4294971000 4294971704 4294972408 4294973816",
            "2 4294968 | 4000:4294967:1000 4294973112:1:704");
        row("longer interval withdraws gaps", "rate 5000 7000", "2 2 |");
        // The gaps at 6000 and 10000 lie within two new intervals of 13000, the one at 4000 does
        // not.
        row("only within two new intervals", "rate 5000 9000 13000", "3 7 | 4000:1:1000");
        // 2^64 epochs: held at the largest count, all missing.
        row("beyond 64 bits", "on 1 2 3 close:18446744073709551615", "1 -1 | 4:4294967295:1");

        // Whether since the newest message of any type at most one repeated interval has passed.
        aspect = QStringLiteral("regular");
        row("newest within one interval", "1000 2000 3000 Status@4000", "yes");
        row("newest later", "1000 2000 3000 Status@4001", "no");
        row("newest without time", "1000 2000 3000 Status@0", "no");
        row("newest earlier", "1000 2000 3000 Status@2500", "no");
        row("one interval only", "1000 2000 Status@2500", "no");
        row("zero intervals", "1000 1000 1000 Status@1000", "no");

        // Histogram 1000 -> 3, 500 -> 1, 2000 -> 1.
        char const steps[] = "1000 2000 3000 5000 5500";
        aspect = QStringLiteral("frequent 0");
        row("zero: the most frequent group", steps, "1000");
        row("no intervals", "1000", "");
        aspect = QStringLiteral("frequent 2");
        row("a group is never cut", steps, "500 1000 2000");
        aspect = QStringLiteral("frequent -1");
        row("negative: all", steps, "500 1000 2000");
        aspect = QStringLiteral("frequent 1");
        row("a tie at the top", "1000 2000 4000 6000 7000", "1000 2000");

        aspect = QStringLiteral("texts");
        row("one second", "1000", "1 Hz/1 s, 1 Hz");
        row("whole seconds", "2000", "2 s, 0.5 Hz");
        row("zero", "0", "0 s");
        row("one millisecond", "1", "1000 Hz/0.001 s, 1000 Hz");
        row("four per second", "250", "4 Hz/0.25 s, 4 Hz");
        row("not dividing a second", "300", "0.3 s, 3.33333 Hz");
        row("above one second, a multiple of 1001", "3003", "3.003 s");
        row("above one second, not whole", "1500", "1.5 s, 0.666667 Hz");
        row("a negative interval as unsigned", "18446744073709550616", "1.84467e+16 s");

        aspect = QStringLiteral("report");
        auto report = [](int count, QStringList const &rest) {
            return (QStringList { "Message statistics for  Pos",
                                  QStringLiteral("  count:  %1").arg(count),
                                  "  message intervals:" }
                    + rest)
                .join(QLatin1Char('\n'));
        };
        QTest::newRow("intervals ascending, a stored gap")
            << aspect << "rate 6000 6100"
            << report(5,
                      { "     10 Hz/0.1 s  :  1", "     1 Hz/1 s  :  3", "     3 s  :  1",
                        "  gaps:", "  - gap @ 4000 with interval 1000 and 2 epochs missing.",
                        "  total number of gaps: 1", "  total number of epochs missing: 2" });
        QTest::newRow("without time")
            << aspect << "0 0"
            << report(2,
                      { "    Interval unknown:  2",
                        "       of which messages with time unknown:  2" });
        QTest::newRow("gaps counted, none stored")
            << aspect << "rate 5000 7000" << report(5, { "     1 Hz/1 s  :  3", "     2 s  :  2" });

        // On a coordinator without the Pos statistics that init() asked for.
        aspect = QStringLiteral("coordinator");
        row("nothing to close", "close:4000", " | events 0/0 | last 0?");
        row("one object per known type", "Pos@1000 Status@1500 Pos@2000",
            "VEXA Pos*:2, VEXA Status*:1 | events 0/0 | last 2000");
        row("unknown messages by format and name", "VEXA/B1@1000 VEXA/B1@2000 VEXA/B2@3000",
            "VEXA B1:2, VEXA B2:1 | events 0/0 | last 3000");
        // Both kinds share the "FORMAT name" keys.
        row("a known type's name catches unknown ones", "Pos@1000 VEXA/Pos@2000",
            "VEXA Pos*:1 | events 0/0 | last 2000");
        row("a known type takes the name over", "VEXA/Pos@1000 Pos@2000 VEXA/Pos@3000",
            "VEXA Pos:1, VEXA Pos*:1 | events 0/0 | last 3000");
        row("the same name in another format", "Pos@1000 RTCM3/Pos@2000",
            "VEXA Pos*:1, RTCM3 Pos:1 | events 0/0 | last 2000");
        // Gap detection goes to the types registered before their first message, or a clear().
        row("gap detection for types registered in time",
            "gap:Pos Pos@1000 Status@1000 gap:Status RTCM3/Pos@1000 Pos@2000 Status@2000 Pos@3000 "
            "Status@3000 close:4000",
            "VEXA Pos*:3~1, VEXA Status*:3, RTCM3 Pos:1 | events 0/0 | last 3000");
        row("gap detection after a clear", "Pos@1000 gap:Pos clear Pos@5000",
            "VEXA Pos*:1~0 | events 0/0 | last 5000");
        // Events are not messages: the newest message time stays.
        row("events counted by type", "Pos@5000 crc@9000 opened@9000 crc@9000",
            "VEXA Pos*:1 | events 2/1 | last 5000");
        row("the newest message of either kind", "Pos@5000 VEXA/B1@7000",
            "VEXA Pos*:1, VEXA B1:1 | events 0/0 | last 7000");
        row("the newest message without time", "Pos@5000 Status@0",
            "VEXA Pos*:1, VEXA Status*:1 | events 0/0 | last 0?");
        row("a clear keeps the newest time", "crc@500 Pos@1000 VEXA/B1@2000 clear",
            " | events 0/0 | last 2000");
    }

    void sequences()
    {
        QFETCH(QString, aspect);
        QFETCH(QString, steps);
        QFETCH(QString, expected);

        if (aspect == QLatin1String("coordinator")) {
            mCoordinator.reset(new MessageStatisticsCoordinator(&mSource, &mTime));
            run(steps);
            QCOMPARE(QStringLiteral("%1 | events %2/%3 | last %4%5")
                         .arg(statistics())
                         .arg(mCoordinator->getEventCount(MessageApiEvent::CrcError))
                         .arg(mCoordinator->getEventCount(MessageApiEvent::ConnectionOpened))
                         .arg(mCoordinator->getLastMessageMillis())
                         .arg(mCoordinator->hasValidLastMessageMillis() ? "" : "?"),
                     expected);
            QCOMPARE(mCoordinator->hasStatistics(&mInfo), expected.contains(QLatin1String("Pos*")));
            if (mCoordinator->hasStatistics(&mInfo))
                QCOMPARE(mCoordinator->getMessageStatistics(&mFormat, QStringLiteral("Pos")),
                         mCoordinator->getMessageStatistics(&mInfo));
            return;
        }
        if (aspect == QLatin1String("texts")) {
            unsigned long long const millis = steps.toULongLong();
            // Decimal commas of the application's locale must not leak into the texts.
            QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
            QString const interval = mStatistics->getIntervalString(millis);
            QString const rate = mStatistics->getRateString(millis);
            QLocale::setDefault(QLocale::c());
            QCOMPARE(expected.contains(QLatin1Char(',')) ? interval + QStringLiteral(", ") + rate
                                                         : interval,
                     expected);
            return;
        }
        run(steps);
        MessageStatistics const &s = *mStatistics;
        if (aspect == QLatin1String("report")) {
            WarningCapture capture;
            mStatistics->printStatistics();
            QCOMPARE(capture.debugLines().join(QLatin1Char('\n')), expected);
            return;
        }
        auto n = [](auto value) { return QString::number(value); };
        QStringList actual;
        if (aspect == QLatin1String("counts")) {
            actual << n(s.getCount()) << n(s.getCountWithUnknownInterval())
                   << n(s.getCountWithUnknownTime()) << QStringLiteral("|");
            for (long long interval : s.getIntervalsSortedOnDuration())
                actual << n(interval) + QLatin1Char('=')
                        + n(s.getIntervalCountHash().value(interval));
            bool const unknown = s.getLastInterval() == MessageStatistics::unknownIntervalMarker;
            QString const last = unknown ? QStringLiteral("?") : n(s.getLastInterval());
            actual << QStringLiteral("|")
                   << last + QLatin1Char('x') + n(s.getLastIntervalRepeatCount());
            QCOMPARE(s.hasValidLastInterval(), !unknown);
        } else if (aspect == QLatin1String("gaps")) {
            actual << n(s.getNumberOfGaps()) << n(s.getNumberOfMissingEpochs())
                   << QStringLiteral("|");
            for (MessageStatistics::Gap const &gap : s.getGaps())
                actual << n(gap.startMillis) + QLatin1Char(':') + n(gap.missingEpochs)
                        + QLatin1Char(':') + n(gap.intervalMillis);
            QVERIFY(!s.hasUnstoredGaps());
        } else if (aspect == QLatin1String("handed out")) {
            QList<long long> intervals = mHandedOut.keys();
            std::sort(intervals.begin(), intervals.end());
            for (long long interval : intervals)
                actual << n(interval) + QLatin1Char('=') + n(mHandedOut.value(interval));
        } else if (aspect == QLatin1String("regular")) {
            actual << (s.isCurrentlyRegular() ? QStringLiteral("yes") : QStringLiteral("no"));
        } else {
            QList<long long> intervals = s.getIntervalsSortedOnFrequency(aspect.mid(9).toInt());
            // From the most frequent down; the order within a group is free.
            for (int i = 1; i < intervals.size(); ++i)
                QVERIFY(s.getIntervalCountHash().value(intervals.at(i - 1))
                        >= s.getIntervalCountHash().value(intervals.at(i)));
            std::sort(intervals.begin(), intervals.end());
            for (long long interval : intervals)
                actual << n(interval);
        }
        QCOMPARE(actual.join(QLatin1Char(' ')), expected);
    }

    void gapStoreLimit()
    {
        // Nineteen gaps of one missing epoch; the twentieth grows to two epochs while open; the
        // twenty-first and twenty-second are counted only, and the growth of the open one no longer
        // touches the stored ones.
        QString steps = QStringLiteral("rate");
        QList<int> afters; // negative: an epoch closed that much later
        for (int i = 0; i < 19; ++i)
            afters << 2000 << 1000;
        afters << -1000 << -1000 << 1000 << 1000 << 2000 << -1000 << -1000 << -1000;
        unsigned long long now = 3000;
        for (int after : afters)
            steps
                += QString::fromLatin1(after < 0 ? " close:%1" : " %1").arg(now += std::abs(after));
        run(steps);
        QCOMPARE(mStatistics->getNumberOfGaps(), 22);
        QCOMPARE(mStatistics->getNumberOfMissingEpochs(), 19 + 2 + 1 + 3);
        QVERIFY(mStatistics->hasUnstoredGaps());
        QCOMPARE(mStatistics->getGaps().size(), 20);
        QCOMPARE(mStatistics->getGaps().constLast().startMillis, 61000ULL);
        QCOMPARE(mStatistics->getGaps().constLast().missingEpochs, 2u);
    }

    void coordinatorLifetime()
    {
        mCoordinator.reset(new MessageStatisticsCoordinator(&mSource, &mTime));
        mCoordinator->disconnectFromSource();
        TracerRecorder recorder;
        auto *coordinator = new MessageStatisticsCoordinator(&mSource, &mTime);
        QCOMPARE(coordinator->getMessageSource(), &mSource);
        run(QStringLiteral("Pos@1000 VEXA/B1@2000"));
        QPointer<MessageStatistics> known = coordinator->getMessageStatistics(&mInfo);
        QPointer<MessageStatistics> unknownMessage
            = coordinator->getAllMessageStatistics().constLast();
        coordinator->clear();
        QVERIFY(known.isNull() && unknownMessage.isNull());
        // Still listening: the next message starts afresh.
        run(QStringLiteral("Pos@3000"));
        QPointer<MessageStatistics> fresh = coordinator->getMessageStatistics(&mInfo);
        QCOMPARE(coordinator->getAllMessageStatistics(), QList<MessageStatistics *> { fresh });
        delete coordinator;
        QVERIFY(fresh.isNull());
        QCOMPARE(recorder.eventsOf(QStringLiteral("MessageStatisticsCoordinator")),
                 QStringList({ "+MessageStatisticsCoordinator", "-MessageStatisticsCoordinator" }));
        // The disconnected coordinator saw none of it.
        QVERIFY(mCoordinator->getAllMessageStatistics().isEmpty());
        QVERIFY(!mCoordinator->hasValidLastMessageMillis());

        // A reading that the clock does not vouch for is kept all the same.
        UnfixedClock clock;
        MessageStatisticsCoordinator unfixed(&mSource, &clock);
        clock.setMillis(1234);
        Q_EMIT mSource.newUnknownMessage(&mFormat, QStringLiteral("B1"));
        QVERIFY(!unfixed.hasValidLastMessageMillis());
        QCOMPARE(unfixed.getLastMessageMillis(), 1234ULL);
    }

private:
    // Sends the steps through the coordinator: "1000" a Pos message at 1000 ms ("0": time
    // unknown), "Status@1000" one of that type, "RTCM3/B2@2000" an unknown one of that format and
    // name, "crc@9000"/"opened@9000" an event, "close:4000" an epoch closed, "on"/"off" Pos's gap
    // detection, "rate" for "on 1000 2000 3000", "copy" the histogram into mHandedOut, "gap:Pos"
    // detection registered with the coordinator, "clear" the coordinator cleared.
    void run(QString const &steps)
    {
        for (QString const &step : steps.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
            QString const name = step.contains(QLatin1Char('@'))
                ? step.section(QLatin1Char('@'), 0, 0)
                : QStringLiteral("Pos");
            if (step == QLatin1String("rate")) {
                run(QStringLiteral("on 1000 2000 3000"));
            } else if (step == QLatin1String("copy")) {
                mHandedOut = mStatistics->getIntervalCountHash();
            } else if (step == QLatin1String("on") || step == QLatin1String("off")) {
                mStatistics->setGapDetectionEnabled(step == QLatin1String("on"));
            } else if (step == QLatin1String("clear")) {
                mCoordinator->clear();
            } else if (step.startsWith(QLatin1String("gap:"))) {
                mCoordinator->enableGapDetection(mFormat.getMessageInfo(step.mid(4)));
            } else if (name == QLatin1String("crc") || name == QLatin1String("opened")) {
                mTime.setMillis(step.section(QLatin1Char('@'), 1).toULongLong());
                Q_EMIT mSource.newEvent(MessageApiEvent(name == QLatin1String("crc")
                                                            ? MessageApiEvent::CrcError
                                                            : MessageApiEvent::ConnectionOpened,
                                                        QString(), nullptr));
            } else if (step.startsWith(QLatin1String("close:"))) {
                mTime.setMillis(step.mid(6).toULongLong());
                mCoordinator->closeEpoch();
            } else if (name.contains(QLatin1Char('/'))) {
                mTime.setMillis(step.section(QLatin1Char('@'), 1).toULongLong());
                Q_EMIT mSource.newUnknownMessage(
                    FormatInfo::getFormatInfo(name.section(QLatin1Char('/'), 0, 0)),
                    name.section(QLatin1Char('/'), 1));
            } else {
                mTime.setMillis(step.section(QLatin1Char('@'), -1).toULongLong());
                TestMessage message(mFormat.getMessageInfo(name));
                Q_EMIT mSource.newMessage(&message);
            }
        }
    }

    /// Every statistics object as "FORMAT name:count", "*" marking a known type's, "~missing"
    /// one that detects gaps.
    QString statistics() const
    {
        QStringList entries;
        for (MessageStatistics const *statistics : mCoordinator->getAllMessageStatistics()) {
            MessageInfo const *info = statistics->getMessageInfo();
            bool const ofInfo = info && mCoordinator->getMessageStatistics(info) == statistics;
            entries.append(QStringLiteral("%1 %2%3:%4")
                               .arg(statistics->getFormatInfo()->getName(),
                                    statistics->getMessageName(),
                                    ofInfo ? QStringLiteral("*") : QString())
                               .arg(statistics->getCount()));
            if (statistics->isGapDetectionEnabled())
                entries.last() += QStringLiteral("~%1").arg(statistics->getNumberOfMissingEpochs());
            if (statistics->parent() != mCoordinator.get())
                entries.last() += QStringLiteral(" (other parent)");
        }
        return entries.join(QStringLiteral(", "));
    }

    FormatInfo mFormat { QStringLiteral("VEXA") };
    FormatInfo mRtcm3 { QStringLiteral("RTCM3") };
    MessageInfo mInfo { QStringLiteral("Pos") };
    MessageInfo mOther { QStringLiteral("Status") };
    TimeSource mTime;
    MessageSource mSource { QStringLiteral("receiver"), nullptr };
    std::unique_ptr<MessageStatisticsCoordinator> mCoordinator;
    MessageStatistics *mStatistics = nullptr;
    QHash<long long, unsigned int> mHandedOut;
};

QTEST_GUILESS_MAIN(tst_MessageStatistics)
#include "tst_messagestatistics.moc"
