// SPDX-License-Identifier: LGPL-2.1-or-later
#include "timesource.h"

#include <QLocale>
#include <QTest>

#include <limits>

class tst_TimeSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void getTime_data();
    void getTime();
    void getTimeFollowsEveryChange_data();
    void getTimeFollowsEveryChange();
    void millisToString_data();
    void millisToString();
    void overridingGetMillisAloneDrivesTheOthers_data();
    void overridingGetMillisAloneDrivesTheOthers();
};

namespace {
class FixedClock : public TimeSource
{
public:
    explicit FixedClock(unsigned long long millis)
        : mFixedMillis(millis)
    { }
    unsigned long long getMillis() override { return mFixedMillis; }

private:
    unsigned long long mFixedMillis;
};

QDateTime utc(int year, int month, int day, int hour, int minute, int second)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
}
} // namespace

void tst_TimeSource::initTestCase()
{
    // A locale that groups digits, so that locale-dependent rendering would show.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
}

void tst_TimeSource::getTime_data()
{
    QTest::addColumn<unsigned long long>("millis");
    QTest::addColumn<QDateTime>("expected");

    QTest::newRow("1 ms after the epoch") << 1ull << utc(1980, 1, 6, 0, 0, 0);
    QTest::newRow("999 ms, fraction dropped") << 999ull << utc(1980, 1, 6, 0, 0, 0);
    QTest::newRow("1000 ms") << 1000ull << utc(1980, 1, 6, 0, 0, 1);
    QTest::newRow("1999 ms, fraction dropped") << 1999ull << utc(1980, 1, 6, 0, 0, 1);
    QTest::newRow("one week") << 604800000ull << utc(1980, 1, 13, 0, 0, 0);
    QTest::newRow("2024-03-15 12:34:56.789, no leap seconds")
        << 1394541296789ull << utc(2024, 3, 15, 12, 34, 56);
}

void tst_TimeSource::getTime()
{
    QFETCH(unsigned long long, millis);
    QFETCH(QDateTime, expected);

    TimeSource clock;
    clock.setMillis(millis);
    const QDateTime time = clock.getTime();
    QCOMPARE(time, expected);
    QCOMPARE(time.timeSpec(), Qt::UTC);
    QCOMPARE(time.time().msec(), 0);
    QCOMPARE(clock.getMillis(), millis);
    QVERIFY(clock.hasValidMillis());

    clock.setMillis(0);
    QVERIFY(!clock.hasValidMillis());
    QVERIFY(clock.getTime().isNull());
    QCOMPARE(clock.getTime().timeSpec(), Qt::UTC);
}

void tst_TimeSource::getTimeFollowsEveryChange_data()
{
    QTest::addColumn<QList<unsigned long long>>("millis");
    // Seconds after the GPS epoch for each step, -1 for no valid time.
    QTest::addColumn<QList<int>>("seconds");

    QTest::newRow("within a second, then the next")
        << QList<unsigned long long> { 1000, 1999, 2000 } << QList<int> { 1, 1, 2 };
    QTest::newRow("the first second")
        << QList<unsigned long long> { 1, 999, 1000 } << QList<int> { 0, 0, 1 };
    QTest::newRow("back to an earlier second")
        << QList<unsigned long long> { 5000, 1000, 5000 } << QList<int> { 5, 1, 5 };
    QTest::newRow("through no time")
        << QList<unsigned long long> { 1000, 0, 1500, 0 } << QList<int> { 1, -1, 1, -1 };
}

void tst_TimeSource::getTimeFollowsEveryChange()
{
    QFETCH(QList<unsigned long long>, millis);
    QFETCH(QList<int>, seconds);

    const QDateTime epoch = utc(1980, 1, 6, 0, 0, 0);
    TimeSource clock;
    for (int step = 0; step < millis.size(); ++step) {
        clock.setMillis(millis.at(step));
        const QDateTime time = clock.getTime();
        QCOMPARE(time.timeSpec(), Qt::UTC);
        if (seconds.at(step) < 0)
            QVERIFY(time.isNull());
        else
            QCOMPARE(time, epoch.addSecs(seconds.at(step)));
    }
}

void tst_TimeSource::millisToString_data()
{
    QTest::addColumn<unsigned long long>("millis");
    QTest::addColumn<QString>("text");

    QTest::newRow("zero") << 0ull << "0";
    QTest::newRow("no grouping") << 1234567ull << "1234567";
    QTest::newRow("largest value, all 20 digits")
        << std::numeric_limits<unsigned long long>::max() << "18446744073709551615";
}

void tst_TimeSource::millisToString()
{
    QFETCH(unsigned long long, millis);
    QFETCH(QString, text);

    TimeSource clock;
    QCOMPARE(clock.millisToString(millis), text);
}

void tst_TimeSource::overridingGetMillisAloneDrivesTheOthers_data()
{
    QTest::addColumn<unsigned long long>("stored");
    QTest::addColumn<unsigned long long>("overridden");
    QTest::addColumn<QDateTime>("expected");

    QTest::newRow("override valid, stored 0") << 0ull << 1999ull << utc(1980, 1, 6, 0, 0, 1);
    QTest::newRow("override 0, stored valid") << 5000ull << 0ull << QDateTime();
}

void tst_TimeSource::overridingGetMillisAloneDrivesTheOthers()
{
    QFETCH(unsigned long long, stored);
    QFETCH(unsigned long long, overridden);
    QFETCH(QDateTime, expected);

    FixedClock clock(overridden);
    clock.setMillis(stored);
    TimeSource &base = clock;
    QCOMPARE(base.hasValidMillis(), overridden != 0);
    QCOMPARE(base.getTime().isNull(), expected.isNull());
    if (!expected.isNull())
        QCOMPARE(base.getTime(), expected);
}

QTEST_GUILESS_MAIN(tst_TimeSource)
#include "tst_timesource.moc"
