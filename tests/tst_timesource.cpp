// SPDX-License-Identifier: LGPL-2.1-or-later
#include "timesource.h"

#include <QLocale>
#include <QTest>

#include <limits>

class tst_TimeSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void getTime_data();
    void getTime();
    void getTimeFollowsEveryChange();
    void millisToString();
};

namespace {
// A clock whose only override is getMillis(); the base class must read the time through it.
struct FixedClock : TimeSource
{
    unsigned long long fixedMillis = 0;
    unsigned long long getMillis() override { return fixedMillis; }
};

QDateTime utc(int year, int month, int day, int hour, int minute, int second)
{
    return QDateTime(QDate(year, month, day), QTime(hour, minute, second), Qt::UTC);
}
} // namespace

void tst_TimeSource::getTime_data()
{
    QTest::addColumn<unsigned long long>("millis"); // what getMillis() answers
    QTest::addColumn<bool>("overridden"); // answered by an override, over a stored 0
    QTest::addColumn<QDateTime>("expected");

    QTest::newRow("1 ms after the epoch") << 1ull << false << utc(1980, 1, 6, 0, 0, 0);
    QTest::newRow("1999 ms, fraction dropped") << 1999ull << false << utc(1980, 1, 6, 0, 0, 1);
    QTest::newRow("2024-03-15 12:34:56.789, no leap seconds")
        << 1394541296789ull << false << utc(2024, 3, 15, 12, 34, 56);
    QTest::newRow("0 is no time") << 0ull << false << QDateTime();
    QTest::newRow("override 1999, stored 0") << 1999ull << true << utc(1980, 1, 6, 0, 0, 1);
}

void tst_TimeSource::getTime()
{
    QFETCH(unsigned long long, millis);
    QFETCH(bool, overridden);
    QFETCH(QDateTime, expected);

    FixedClock fixed;
    fixed.fixedMillis = millis;
    TimeSource plain;
    QVERIFY(!plain.hasValidMillis()); // no time before the first setMillis()
    TimeSource &clock = overridden ? fixed : plain;
    clock.setMillis(overridden ? 0 : millis);
    const QDateTime time = clock.getTime();
    QCOMPARE(time.isNull(), expected.isNull());
    QCOMPARE(time, expected);
    QCOMPARE(time.timeSpec(), Qt::UTC);
    QCOMPARE(clock.hasValidMillis(), millis != 0);
    QCOMPARE(clock.getMillis(), millis);
}

void tst_TimeSource::getTimeFollowsEveryChange()
{
    // Within a second, on to the next, back to an earlier one, through no time and back.
    const QList<unsigned long long> steps { 1, 999, 1000, 1999, 2000, 5000, 1000, 0, 1500, 0 };
    const QList<int> seconds { 0, 0, 1, 1, 2, 5, 1, -1, 1, -1 }; // -1: no time
    TimeSource clock;
    for (int i = 0; i < steps.size(); ++i) {
        clock.setMillis(steps.at(i));
        const QDateTime time = clock.getTime();
        QCOMPARE(time.timeSpec(), Qt::UTC);
        QCOMPARE(time, seconds.at(i) < 0 ? QDateTime() : utc(1980, 1, 6, 0, 0, seconds.at(i)));
    }
}

void tst_TimeSource::millisToString()
{
    // A locale that groups digits, so that locale-dependent rendering would show.
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    TimeSource clock;
    QCOMPARE(clock.millisToString(0), QStringLiteral("0"));
    QCOMPARE(clock.millisToString(std::numeric_limits<unsigned long long>::max()),
             QStringLiteral("18446744073709551615"));
}

QTEST_GUILESS_MAIN(tst_TimeSource)
#include "tst_timesource.moc"
