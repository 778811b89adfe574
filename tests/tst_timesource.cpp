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
