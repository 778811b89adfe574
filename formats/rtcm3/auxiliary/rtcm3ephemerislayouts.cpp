// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3layout.h"

#include <array>

/*
 * Broadcast ephemerides: the orbit and clock parameters that a satellite sends in its
 * navigation message, one satellite per message, in the units of the satellites' interface
 * documents (angles in semi-circles, times in seconds, GLONASS states in kilometers).
 *
 * The week of a stream's time. Observation messages carry only the time of week (GLONASS the
 * time of day); the full week comes from the ephemerides:
 *   1019 GPS       DF076, GPS week modulo 1024: the rollover needs a date within 512 weeks.
 *   1044 QZSS      DF452, the GPS week modulo 1024, as for 1019.
 *   1045, 1046     DF289, Galileo system time week modulo 4096; GPS week = DF289 + 1024.
 *   1042 BeiDou    DF489, BeiDou time week modulo 8192; GPS week = DF489 + 1356 (BeiDou time
 *                  is GPS time minus 14 s).
 *   1020 GLONASS   no week: DF129 NT (GLONASS-M; day in the four-year interval, from 1 on
 *                  the 1st of January of the leap year) and, when DF131 says that additional
 *                  data are available, DF134 N4 (four-year interval, 1 for 1996 to 1999) give
 *                  the Moscow date; 0 in either means not available.
 * These weeks are those in which the satellite sent the data: an ephemeris whose toe lies late
 * in the week before (a toe of 604784 s sent on Sunday) belongs to the week before.
 */
namespace Rtcm3Layout {

namespace {

constexpr double twoToMinus(int n)
{
    double value = 1.0;
    for (; n > 0; --n)
        value /= 2.0;
    return value;
}

const char *const notUsedUra = "15"; // no accuracy prediction available
const char *const fitInterval
    = "0=curve fit interval of 4 hours;1=curve fit interval greater than 4 hours";
const char *const galileoSignalHealth = "0=signal OK;1=signal out of service;2=signal will be out "
                                        "of service;3=signal component currently in test";
const char *const galileoDataValidity = "0=navigation data valid;1=working without guarantee";
const char *const glonassStringHealth = "0=satellite operable;1=satellite not operable";
const char *const availability = "0=not available;1=available";

/// The quantities of a Keplerian orbit that GPS, QZSS, Galileo and BeiDou send in the same
/// order, from Crs to the rate of right ascension, under each system's data field numbers.
/// The harmonic corrections take 16 bits in all but BeiDou, which has 18 bits and a finer
/// resolution; each system has its own width and resolution of toe.
using OrbitNames = std::array<char const *, 15>;

QVector<Row> orbit(OrbitNames const &name, unsigned char harmonicBits, unsigned char toeBits,
                   double toeScale)
{
    const bool fine = harmonicBits > 16;
    const double radius = fine ? twoToMinus(6) : twoToMinus(5);
    const double angle = fine ? twoToMinus(31) : twoToMinus(29);
    return {
        { name[0], harmonicBits, I, "Amplitude of the sine harmonic correction to the orbit radius",
          radius, "meter" },
        { name[1], 16, I, "Mean motion difference", twoToMinus(43), "semicirclepersecond" },
        { name[2], 32, I, "Mean anomaly at reference time", twoToMinus(31), "semicircle" },
        { name[3], harmonicBits, I,
          "Amplitude of the cosine harmonic correction to the argument of latitude", angle,
          "radian" },
        { name[4], 32, U, "Eccentricity", twoToMinus(33) },
        { name[5], harmonicBits, I,
          "Amplitude of the sine harmonic correction to the argument of latitude", angle,
          "radian" },
        { name[6], 32, U, "Square root of the semi-major axis", twoToMinus(19), "metersqrt" },
        { name[7], toeBits, U, "Ephemeris reference time (toe)", toeScale, "second" },
        { name[8], harmonicBits, I,
          "Amplitude of the cosine harmonic correction to the angle of inclination", angle,
          "radian" },
        { name[9], 32, I, "Longitude of ascending node at weekly epoch", twoToMinus(31),
          "semicircle" },
        { name[10], harmonicBits, I,
          "Amplitude of the sine harmonic correction to the angle of inclination", angle,
          "radian" },
        { name[11], 32, I, "Inclination angle at reference time", twoToMinus(31), "semicircle" },
        { name[12], harmonicBits, I,
          "Amplitude of the cosine harmonic correction to the orbit radius", radius, "meter" },
        { name[13], 32, I, "Argument of perigee", twoToMinus(31), "semicircle" },
        { name[14], 24, I, "Rate of right ascension", twoToMinus(43), "semicirclepersecond" },
    };
}

Row inclinationRate(char const *name)
{
    return {
        name, 14, I, "Rate of inclination angle (IDOT)", twoToMinus(43), "semicirclepersecond"
    };
}

Row clockReference(char const *name, unsigned char bits, double scale)
{
    return { name, bits, U, "Clock data reference time (toc)", scale, "second" };
}

/// af2, af1 and af0 (BeiDou: a2, a1, a0), each with its width and power of two.
QVector<Row> clockPolynomial(std::array<char const *, 3> const &name,
                             std::array<unsigned char, 3> const &bits,
                             std::array<int, 3> const &exponents)
{
    return {
        { name[0], bits[0], I, "Clock drift rate (af2)", twoToMinus(exponents[0]),
          "secondpersecondsquared" },
        { name[1], bits[1], I, "Clock drift (af1)", twoToMinus(exponents[1]), "secondpersecond" },
        { name[2], bits[2], I, "Clock bias (af0)", twoToMinus(exponents[2]), "second" },
    };
}

QVector<Row> gps()
{
    QVector<Row> rows {
        { "DF009", 6, U, "GPS satellite ID" },
        { "DF076", 10, U, "GPS week number, modulo 1024", 1.0, "week" },
        { "DF077", 4, U, "GPS SV accuracy (URA index)", 1.0, nullptr, nullptr, nullptr,
          notUsedUra },
        { "DF078", 2, U, "GPS code on L2", 1.0, nullptr, nullptr,
          "0=reserved;1=P code;2=C/A code;3=L2C code" },
        inclinationRate("DF079"),
        { "DF071", 8, U, "Issue of data, ephemeris (IODE)" },
        clockReference("DF081", 16, 16.0),
    };
    rows += clockPolynomial({ "DF082", "DF083", "DF084" }, { 8, 16, 22 }, { 55, 43, 31 });
    rows += Row { "DF085", 10, U, "Issue of data, clock (IODC)" };
    rows += orbit({ "DF086", "DF087", "DF088", "DF089", "DF090", "DF091", "DF092", "DF093", "DF094",
                    "DF095", "DF096", "DF097", "DF098", "DF099", "DF100" },
                  16, 16, 16.0);
    rows += QVector<Row> {
        { "DF101", 8, I, "Group delay differential (tGD)", twoToMinus(31), "second" },
        { "DF102", 6, U, "GPS SV health" },
        { "DF103", 1, U, "GPS L2 P data flag", 1.0, nullptr, nullptr,
          "0=L2 P-code navigation data on;1=L2 P-code navigation data off" },
        { "DF137", 1, U, "GPS fit interval", 1.0, nullptr, nullptr, fitInterval },
    };
    return rows;
}

const char *const glonassStateLabels[3][3] = {
    { "GLONASS x velocity", "GLONASS x position", "GLONASS x acceleration" },
    { "GLONASS y velocity", "GLONASS y position", "GLONASS y acceleration" },
    { "GLONASS z velocity", "GLONASS z position", "GLONASS z acceleration" },
};

/// One coordinate (0 x, 1 y, 2 z) of the GLONASS satellite's state: velocity, position and
/// acceleration at tb.
QVector<Row> glonassAxis(std::array<char const *, 3> const &name, int axis)
{
    char const *const *label = glonassStateLabels[axis];
    return {
        { name[0], 24, S, label[0], twoToMinus(20), "kilometerpersecond" },
        { name[1], 27, S, label[1], twoToMinus(11), "kilometer" },
        { name[2], 5, S, label[2], twoToMinus(30), "kilometerpersecondsquared" },
    };
}

QVector<Row> glonass()
{
    QVector<Row> rows {
        { "DF038", 6, U, "GLONASS satellite ID (slot number)" },
        { "DF040", 5, U, "GLONASS satellite frequency channel number plus 7" },
        { "DF104", 1, U, "GLONASS almanac health (Cn)", 1.0, nullptr, nullptr,
          "0=satellite not operable;1=satellite operable" },
        { "DF105", 1, U, "GLONASS almanac health availability", 1.0, nullptr, nullptr,
          availability },
        { "DF106", 2, U, "GLONASS P1, interval between adjacent tb", 1.0, nullptr, nullptr,
          "0=0 minutes;1=30 minutes;2=45 minutes;3=60 minutes" },
        // Hours in the 5 most significant bits, minutes in the next 6, half minutes in the last.
        { "DF107", 12, U, "GLONASS tk, start of the frame in hours, minutes and half minutes" },
        { "DF108", 1, U, "GLONASS MSB of Bn, ephemeris health", 1.0, nullptr, nullptr,
          "0=healthy;1=malfunction" },
        { "DF109", 1, U, "GLONASS P2, oddness of tb", 1.0, nullptr, nullptr, "0=even;1=odd" },
        { "DF110", 7, U, "GLONASS tb, ephemeris reference time of day (Moscow time)", 15.0,
          "minute" },
    };
    rows += glonassAxis({ "DF111", "DF112", "DF113" }, 0);
    rows += glonassAxis({ "DF114", "DF115", "DF116" }, 1);
    rows += glonassAxis({ "DF117", "DF118", "DF119" }, 2);
    rows += QVector<Row> {
        { "DF120", 1, U, "GLONASS P3, almanacs in the frame", 1.0, nullptr, nullptr,
          "0=four satellites;1=five satellites" },
        { "DF121", 11, S, "GLONASS relative deviation of the carrier frequency (gamma n)",
          twoToMinus(40), "hertzperhertz" },
        { "DF122", 2, U, "GLONASS-M P, source of tau c and tau GPS", 1.0, nullptr, nullptr,
          "0=both from the ground segment;1=tau c from the ground segment, tau GPS on board;"
          "2=tau c on board, tau GPS from the ground segment;3=both on board" },
        { "DF123", 1, U, "GLONASS-M ln, third string", 1.0, nullptr, nullptr, glonassStringHealth },
        { "DF124", 22, S, "GLONASS satellite clock correction (tau n)", twoToMinus(30), "second" },
        { "DF125", 5, S, "GLONASS-M delay between L2 and L1 (delta tau n)", twoToMinus(30),
          "second" },
        { "DF126", 5, U, "GLONASS age of operational information (En)", 1.0, "day" },
        { "DF127", 1, U, "GLONASS-M P4, updated ephemeris", 1.0, nullptr, nullptr,
          "0=no updated ephemeris or frequency and time parameters;1=updated ephemeris or "
          "frequency and time parameters" },
        { "DF128", 4, U, "GLONASS-M FT, predicted user range accuracy index" },
        { "DF129", 11, U, "GLONASS-M NT, day in the four-year interval", 1.0, "day", nullptr,
          nullptr, "0" },
        { "DF130", 2, U, "GLONASS-M M, type of satellite", 1.0, nullptr, nullptr,
          "0=GLONASS;1=GLONASS-M" },
        { "DF131", 1, U, "GLONASS availability of additional data", 1.0, nullptr, nullptr,
          availability },
        { "DF132", 11, U, "GLONASS NA, day in the four-year interval of the almanac", 1.0, "day",
          nullptr, nullptr, "0" },
        { "DF133", 32, S, "GLONASS time scale correction to UTC(SU) (tau c)", twoToMinus(31),
          "second" },
        { "DF134", 5, U, "GLONASS-M N4, four-year interval since 1996", 1.0, nullptr, nullptr,
          nullptr, "0" },
        { "DF135", 22, S, "GLONASS-M correction to GPS time (tau GPS)", twoToMinus(30), "second" },
        { "DF136", 1, U, "GLONASS-M ln, fifth string", 1.0, nullptr, nullptr, glonassStringHealth },
        { "DF001", 7, U, "Reserved" },
    };
    return rows;
}

QVector<Row> beidou()
{
    QVector<Row> rows {
        { "DF488", 6, U, "BeiDou satellite ID" },
        { "DF489", 13, U, "BeiDou week number", 1.0, "week" },
        { "DF490", 4, U, "BeiDou user range accuracy index (URAI)", 1.0, nullptr, nullptr, nullptr,
          notUsedUra },
        inclinationRate("DF491"),
        { "DF492", 5, U, "BeiDou age of data, ephemeris (AODE)" },
        clockReference("DF493", 17, 8.0),
    };
    rows += clockPolynomial({ "DF494", "DF495", "DF496" }, { 11, 22, 24 }, { 66, 50, 33 });
    rows += Row { "DF497", 5, U, "BeiDou age of data, clock (AODC)" };
    rows += orbit({ "DF498", "DF499", "DF500", "DF501", "DF502", "DF503", "DF504", "DF505", "DF506",
                    "DF507", "DF508", "DF509", "DF510", "DF511", "DF512" },
                  18, 17, 8.0);
    rows += QVector<Row> {
        { "DF513", 10, I, "BeiDou group delay differential B1I (TGD1)", 0.1, "nanosecond" },
        { "DF514", 10, I, "BeiDou group delay differential B2I (TGD2)", 0.1, "nanosecond" },
        { "DF515", 1, U, "BeiDou satellite health (SatH1)", 1.0, nullptr, nullptr,
          "0=healthy;1=not healthy" },
    };
    return rows;
}

QVector<Row> qzss()
{
    QVector<Row> rows {
        { "DF429", 4, U, "QZSS satellite ID (PRN minus 192)" },
        clockReference("DF430", 16, 16.0),
    };
    rows += clockPolynomial({ "DF431", "DF432", "DF433" }, { 8, 16, 22 }, { 55, 43, 31 });
    rows += Row { "DF434", 8, U, "Issue of data, ephemeris (IODE)" };
    rows += orbit({ "DF435", "DF436", "DF437", "DF438", "DF439", "DF440", "DF441", "DF442", "DF443",
                    "DF444", "DF445", "DF446", "DF447", "DF448", "DF449" },
                  16, 16, 16.0);
    rows += QVector<Row> {
        inclinationRate("DF450"),
        { "DF451", 2, U, "QZSS codes on L2 channel" },
        { "DF452", 10, U, "QZSS week number, modulo 1024", 1.0, "week" },
        { "DF453", 4, U, "QZSS URA index", 1.0, nullptr, nullptr, nullptr, notUsedUra },
        { "DF454", 6, U, "QZSS SV health" },
        { "DF455", 8, I, "Group delay differential (tGD)", twoToMinus(31), "second" },
        { "DF456", 10, U, "Issue of data, clock (IODC)" },
        { "DF457", 1, U, "QZSS fit interval", 1.0, nullptr, nullptr,
          "0=two hours;1=more than two hours" },
    };
    return rows;
}

/// Galileo F/NAV and I/NAV up to the first broadcast group delay.
QVector<Row> galileo()
{
    QVector<Row> rows {
        { "DF252", 6, U, "Galileo satellite ID" },
        { "DF289", 12, U, "Galileo week number", 1.0, "week" },
        { "DF290", 10, U, "Galileo issue of data, navigation (IODnav)" },
        { "DF291", 8, U, "Galileo signal-in-space accuracy (SISA index)", 1.0, nullptr, nullptr,
          nullptr, "255" }, // no accuracy prediction available
        inclinationRate("DF292"),
        clockReference("DF293", 14, 60.0),
    };
    rows += clockPolynomial({ "DF294", "DF295", "DF296" }, { 6, 21, 31 }, { 59, 46, 34 });
    rows += orbit({ "DF297", "DF298", "DF299", "DF300", "DF301", "DF302", "DF303", "DF304", "DF305",
                    "DF306", "DF307", "DF308", "DF309", "DF310", "DF311" },
                  16, 14, 60.0);
    rows
        += Row { "DF312", 10, I, "Galileo broadcast group delay E5a/E1", twoToMinus(32), "second" };
    return rows;
}

} // namespace

QVector<Message> ephemerisMessages()
{
    return {
        { 1019, QStringLiteral("GPS ephemerides"),
          QStringLiteral("The orbit and clock parameters that a GPS satellite broadcasts in its "
                         "L1 C/A navigation message."),
          gps() },
        { 1020, QStringLiteral("GLONASS ephemerides"),
          QStringLiteral("The position, velocity and clock parameters that a GLONASS satellite "
                         "broadcasts in its navigation message."),
          glonass() },
        { 1042, QStringLiteral("BDS satellite ephemeris data"),
          QStringLiteral("The orbit and clock parameters that a BeiDou satellite broadcasts in "
                         "its D1 or D2 navigation message."),
          beidou() },
        { 1044, QStringLiteral("QZSS ephemerides"),
          QStringLiteral("The orbit and clock parameters that a QZSS satellite broadcasts in its "
                         "L1 C/A navigation message."),
          qzss() },
        { 1045, QStringLiteral("Galileo F/NAV satellite ephemeris data"),
          QStringLiteral("The orbit and clock parameters that a Galileo satellite broadcasts in "
                         "its E5a F/NAV message."),
          galileo()
              + QVector<Row> {
                  { "DF314", 2, U, "Galileo E5a signal health status", 1.0, nullptr, nullptr,
                    galileoSignalHealth },
                  { "DF315", 1, U, "Galileo E5a data validity status", 1.0, nullptr, nullptr,
                    galileoDataValidity },
                  { "DF001", 7, U, "Reserved" },
              } },
        { 1046, QStringLiteral("Galileo I/NAV satellite ephemeris data"),
          QStringLiteral("The orbit and clock parameters that a Galileo satellite broadcasts in "
                         "its E1-B and E5b I/NAV message."),
          galileo()
              + QVector<Row> {
                  { "DF313", 10, I, "Galileo broadcast group delay E5b/E1", twoToMinus(32),
                    "second" },
                  { "DF316", 2, U, "Galileo E5b signal health status", 1.0, nullptr, nullptr,
                    galileoSignalHealth },
                  { "DF317", 1, U, "Galileo E5b data validity status", 1.0, nullptr, nullptr,
                    galileoDataValidity },
                  { "DF287", 2, U, "Galileo E1-B signal health status", 1.0, nullptr, nullptr,
                    galileoSignalHealth },
                  { "DF288", 1, U, "Galileo E1-B data validity status", 1.0, nullptr, nullptr,
                    galileoDataValidity },
                  { "DF001", 2, U, "Reserved" },
              } },
    };
}

} // namespace Rtcm3Layout
