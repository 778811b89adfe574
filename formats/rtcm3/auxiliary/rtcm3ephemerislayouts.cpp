// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3layout.h"

namespace Rtcm3Layout {

namespace {

// Resolutions are powers of two: 2^-n written as p(n).
constexpr double p(int n)
{
    return n > 0 ? 0.5 * p(n - 1) : n < 0 ? 2.0 * p(n + 1) : 1.0;
}

const char *const semicircle = "semicircle";
const char *const semicirclePerSecond = "semicirclepersecond";

// Keplerian orbit, clock and group delays of GPS (1019).
const QVector<Row> gps {
    { "DF009", 6, U, "GPS satellite ID" },
    { "DF076", 10, U, "GPS week number (modulo 1024)", 1.0, "week" },
    { "DF077", 4, U, "GPS SV accuracy (URA index)" },
    { "DF078", 2, U, "GPS code on L2", 1.0, nullptr, nullptr,
      "0=reserved;1=P code;2=C/A code;3=L2C code" },
    { "DF079", 14, I, "GPS IDOT", p(43), semicirclePerSecond },
    { "DF071", 8, U, "GPS IODE" },
    { "DF081", 16, U, "GPS toc", 16.0, "second" },
    { "DF082", 8, I, "GPS af2", p(55), "secondpersecondsquared" },
    { "DF083", 16, I, "GPS af1", p(43), "secondpersecond" },
    { "DF084", 22, I, "GPS af0", p(31), "second" },
    { "DF085", 10, U, "GPS IODC" },
    { "DF086", 16, I, "GPS Crs", p(5), "meter" },
    { "DF087", 16, I, "GPS delta n", p(43), semicirclePerSecond },
    { "DF088", 32, I, "GPS M0", p(31), semicircle },
    { "DF089", 16, I, "GPS Cuc", p(29), "radian" },
    { "DF090", 32, U, "GPS eccentricity", p(33) },
    { "DF091", 16, I, "GPS Cus", p(29), "radian" },
    { "DF092", 32, U, "GPS square root of A", p(19), "metersqrt" },
    { "DF093", 16, U, "GPS toe", 16.0, "second" },
    { "DF094", 16, I, "GPS Cic", p(29), "radian" },
    { "DF095", 32, I, "GPS OMEGA0", p(31), semicircle },
    { "DF096", 16, I, "GPS Cis", p(29), "radian" },
    { "DF097", 32, I, "GPS i0", p(31), semicircle },
    { "DF098", 16, I, "GPS Crc", p(5), "meter" },
    { "DF099", 32, I, "GPS argument of perigee", p(31), semicircle },
    { "DF100", 24, I, "GPS OMEGADOT", p(43), semicirclePerSecond },
    { "DF101", 8, I, "GPS tGD", p(31), "second" },
    { "DF102", 6, U, "GPS SV health" },
    { "DF103", 1, U, "GPS L2 P data flag", 1.0, nullptr, nullptr,
      "0=L2 P-code navigation data on;1=L2 P-code navigation data off" },
    { "DF137", 1, U, "GPS fit interval", 1.0, nullptr, nullptr, "0=4 hours;1=more than 4 hours" },
};

// Position, velocity and acceleration in PZ-90 of GLONASS (1020).
const QVector<Row> glonass {
    { "DF038", 6, U, "GLONASS satellite ID (slot number)" },
    { "DF040", 5, U, "GLONASS satellite frequency channel number plus 7" },
    { "DF104", 1, U, "GLONASS almanac health" },
    { "DF105", 1, U, "GLONASS almanac health availability indicator" },
    { "DF106", 2, U, "GLONASS P1" },
    { "DF107", 12, U, "GLONASS tk (hours, minutes, half minutes)" },
    { "DF108", 1, U, "GLONASS MSB of Bn word" },
    { "DF109", 1, U, "GLONASS P2" },
    { "DF110", 7, U, "GLONASS tb", 900.0, "second" },
    { "DF111", 24, S, "GLONASS xn first derivative", p(20), "kilometerpersecond" },
    { "DF112", 27, S, "GLONASS xn", p(11), "kilometer" },
    { "DF113", 5, S, "GLONASS xn second derivative", p(30), "kilometerpersecondsquared" },
    { "DF114", 24, S, "GLONASS yn first derivative", p(20), "kilometerpersecond" },
    { "DF115", 27, S, "GLONASS yn", p(11), "kilometer" },
    { "DF116", 5, S, "GLONASS yn second derivative", p(30), "kilometerpersecondsquared" },
    { "DF117", 24, S, "GLONASS zn first derivative", p(20), "kilometerpersecond" },
    { "DF118", 27, S, "GLONASS zn", p(11), "kilometer" },
    { "DF119", 5, S, "GLONASS zn second derivative", p(30), "kilometerpersecondsquared" },
    { "DF120", 1, U, "GLONASS P3" },
    { "DF121", 11, S, "GLONASS gamma n (relative frequency bias)", p(40) },
    { "DF122", 2, U, "GLONASS-M P" },
    { "DF123", 1, U, "GLONASS-M ln (third string)" },
    { "DF124", 22, S, "GLONASS tau n", p(30), "second" },
    { "DF125", 5, S, "GLONASS-M delta tau n", p(30), "second" },
    { "DF126", 5, U, "GLONASS En (age of data)", 1.0, "day" },
    { "DF127", 1, U, "GLONASS-M P4" },
    { "DF128", 4, U, "GLONASS-M FT (accuracy index)" },
    { "DF129", 11, U, "GLONASS-M NT (day in four-year interval)", 1.0, "day" },
    { "DF130", 2, U, "GLONASS-M M (satellite type)", 1.0, nullptr, nullptr,
      "0=GLONASS;1=GLONASS-M" },
    { "DF131", 1, U, "GLONASS availability of additional data" },
    { "DF132", 11, U, "GLONASS NA (day in four-year interval)", 1.0, "day" },
    { "DF133", 32, S, "GLONASS tau c (time scale correction)", p(31), "second" },
    { "DF134", 5, U, "GLONASS-M N4 (four-year interval number)" },
    { "DF135", 22, S, "GLONASS-M tau GPS", p(30), "second" },
    { "DF136", 1, U, "GLONASS-M ln (fifth string)" },
    { "DF001", 7, U, "Reserved" },
};

// BeiDou (1042).
const QVector<Row> beidou {
    { "DF488", 6, U, "BDS satellite ID" },
    { "DF489", 13, U, "BDS week number", 1.0, "week" },
    { "DF490", 4, U, "BDS URAI" },
    { "DF491", 14, I, "BDS IDOT", p(43), semicirclePerSecond },
    { "DF492", 5, U, "BDS AODE" },
    { "DF493", 17, U, "BDS toc", 8.0, "second" },
    { "DF494", 11, I, "BDS a2", p(66), "secondpersecondsquared" },
    { "DF495", 22, I, "BDS a1", p(50), "secondpersecond" },
    { "DF496", 24, I, "BDS a0", p(33), "second" },
    { "DF497", 5, U, "BDS AODC" },
    { "DF498", 18, I, "BDS Crs", p(6), "meter" },
    { "DF499", 16, I, "BDS delta n", p(43), semicirclePerSecond },
    { "DF500", 32, I, "BDS M0", p(31), semicircle },
    { "DF501", 18, I, "BDS Cuc", p(31), "radian" },
    { "DF502", 32, U, "BDS eccentricity", p(33) },
    { "DF503", 18, I, "BDS Cus", p(31), "radian" },
    { "DF504", 32, U, "BDS square root of A", p(19), "metersqrt" },
    { "DF505", 17, U, "BDS toe", 8.0, "second" },
    { "DF506", 18, I, "BDS Cic", p(31), "radian" },
    { "DF507", 32, I, "BDS OMEGA0", p(31), semicircle },
    { "DF508", 18, I, "BDS Cis", p(31), "radian" },
    { "DF509", 32, I, "BDS i0", p(31), semicircle },
    { "DF510", 18, I, "BDS Crc", p(6), "meter" },
    { "DF511", 32, I, "BDS argument of perigee", p(31), semicircle },
    { "DF512", 24, I, "BDS OMEGADOT", p(43), semicirclePerSecond },
    { "DF513", 10, I, "BDS TGD1", 0.1, "nanosecond" },
    { "DF514", 10, I, "BDS TGD2", 0.1, "nanosecond" },
    { "DF515", 1, U, "BDS SV health", 1.0, nullptr, nullptr, "0=healthy;1=unhealthy" },
};

// QZSS (1044).
const QVector<Row> qzss {
    { "DF429", 4, U, "QZSS satellite ID" },
    { "DF430", 16, U, "QZSS toc", 16.0, "second" },
    { "DF431", 8, I, "QZSS af2", p(55), "secondpersecondsquared" },
    { "DF432", 16, I, "QZSS af1", p(43), "secondpersecond" },
    { "DF433", 22, I, "QZSS af0", p(31), "second" },
    { "DF434", 8, U, "QZSS IODE" },
    { "DF435", 16, I, "QZSS Crs", p(5), "meter" },
    { "DF436", 16, I, "QZSS delta n", p(43), semicirclePerSecond },
    { "DF437", 32, I, "QZSS M0", p(31), semicircle },
    { "DF438", 16, I, "QZSS Cuc", p(29), "radian" },
    { "DF439", 32, U, "QZSS eccentricity", p(33) },
    { "DF440", 16, I, "QZSS Cus", p(29), "radian" },
    { "DF441", 32, U, "QZSS square root of A", p(19), "metersqrt" },
    { "DF442", 16, U, "QZSS toe", 16.0, "second" },
    { "DF443", 16, I, "QZSS Cic", p(29), "radian" },
    { "DF444", 32, I, "QZSS OMEGA0", p(31), semicircle },
    { "DF445", 16, I, "QZSS Cis", p(29), "radian" },
    { "DF446", 32, I, "QZSS i0", p(31), semicircle },
    { "DF447", 16, I, "QZSS Crc", p(5), "meter" },
    { "DF448", 32, I, "QZSS argument of perigee", p(31), semicircle },
    { "DF449", 24, I, "QZSS OMEGADOT", p(43), semicirclePerSecond },
    { "DF450", 14, I, "QZSS IDOT", p(43), semicirclePerSecond },
    { "DF451", 2, U, "QZSS codes on L2 channel" },
    { "DF452", 10, U, "QZSS week number (modulo 1024)", 1.0, "week" },
    { "DF453", 4, U, "QZSS URA index" },
    { "DF454", 6, U, "QZSS SV health" },
    { "DF455", 8, I, "QZSS TGD", p(31), "second" },
    { "DF456", 10, U, "QZSS IODC" },
    { "DF457", 1, U, "QZSS fit interval", 1.0, nullptr, nullptr, "0=2 hours;1=more than 2 hours" },
};

// Galileo, shared by F/NAV (1045) and I/NAV (1046) up to the group delays.
const QVector<Row> galileo {
    { "DF252", 6, U, "Galileo satellite ID" },
    { "DF289", 12, U, "Galileo week number", 1.0, "week" },
    { "DF290", 10, U, "Galileo IODnav" },
    { "DF291", 8, U, "Galileo SISA index" },
    { "DF292", 14, I, "Galileo IDOT", p(43), semicirclePerSecond },
    { "DF293", 14, U, "Galileo toc", 60.0, "second" },
    { "DF294", 6, I, "Galileo af2", p(59), "secondpersecondsquared" },
    { "DF295", 21, I, "Galileo af1", p(46), "secondpersecond" },
    { "DF296", 31, I, "Galileo af0", p(34), "second" },
    { "DF297", 16, I, "Galileo Crs", p(5), "meter" },
    { "DF298", 16, I, "Galileo delta n", p(43), semicirclePerSecond },
    { "DF299", 32, I, "Galileo M0", p(31), semicircle },
    { "DF300", 16, I, "Galileo Cuc", p(29), "radian" },
    { "DF301", 32, U, "Galileo eccentricity", p(33) },
    { "DF302", 16, I, "Galileo Cus", p(29), "radian" },
    { "DF303", 32, U, "Galileo square root of A", p(19), "metersqrt" },
    { "DF304", 14, U, "Galileo toe", 60.0, "second" },
    { "DF305", 16, I, "Galileo Cic", p(29), "radian" },
    { "DF306", 32, I, "Galileo OMEGA0", p(31), semicircle },
    { "DF307", 16, I, "Galileo Cis", p(29), "radian" },
    { "DF308", 32, I, "Galileo i0", p(31), semicircle },
    { "DF309", 16, I, "Galileo Crc", p(5), "meter" },
    { "DF310", 32, I, "Galileo argument of perigee", p(31), semicircle },
    { "DF311", 24, I, "Galileo OMEGADOT", p(43), semicirclePerSecond },
    { "DF312", 10, I, "Galileo BGD E5a/E1", p(32), "second" },
};

const char *const health
    = "0=signal OK;1=signal out of service;2=extended operations mode;3=in test";
const char *const validity = "0=navigation data valid;1=working without guarantee";

} // namespace

QVector<Message> ephemerisMessages()
{
    return {
        { 1019, QStringLiteral("GPS ephemerides"),
          QStringLiteral("The broadcast orbit and clock of one GPS satellite."), gps },
        { 1020, QStringLiteral("GLONASS ephemerides"),
          QStringLiteral("The broadcast position, velocity and clock of one GLONASS satellite."),
          glonass },
        { 1042, QStringLiteral("BDS satellite ephemeris data"),
          QStringLiteral("The broadcast orbit and clock of one BeiDou satellite."), beidou },
        { 1044, QStringLiteral("QZSS ephemerides"),
          QStringLiteral("The broadcast orbit and clock of one QZSS satellite."), qzss },
        { 1045, QStringLiteral("Galileo F/NAV satellite ephemeris data"),
          QStringLiteral("The broadcast orbit and clock of one Galileo satellite from F/NAV."),
          galileo
              + QVector<Row> { { "DF314", 2, U, "Galileo E5a signal health", 1.0, nullptr, nullptr,
                                 health },
                               { "DF315", 1, U, "Galileo E5a data validity", 1.0, nullptr, nullptr,
                                 validity },
                               { "DF001", 7, U, "Reserved" } } },
        { 1046, QStringLiteral("Galileo I/NAV satellite ephemeris data"),
          QStringLiteral("The broadcast orbit and clock of one Galileo satellite from I/NAV."),
          galileo
              + QVector<Row> { { "DF313", 10, I, "Galileo BGD E5b/E1", p(32), "second" },
                               { "DF316", 2, U, "Galileo E5b signal health", 1.0, nullptr, nullptr,
                                 health },
                               { "DF317", 1, U, "Galileo E5b data validity", 1.0, nullptr, nullptr,
                                 validity },
                               { "DF287", 2, U, "Galileo E1-B signal health", 1.0, nullptr, nullptr,
                                 health },
                               { "DF288", 1, U, "Galileo E1-B data validity", 1.0, nullptr, nullptr,
                                 validity },
                               { "DF001", 2, U, "Reserved" } } },
    };
}

} // namespace Rtcm3Layout
