// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Writes the RTCM 3 stream of a made-up reference station, station.rtcm3, and its notes,
// station.rtcm3.md, with the format library's own encoder: ten minutes of 1 Hz MSM7 of GPS,
// GLONASS, Galileo and BeiDou across the GPS week rollover, with satellites rising and setting,
// 1005, 1033 and 1230 every 10 s, GPS and GLONASS ephemerides, and at known places the faults
// of a real stream (a damaged frame, NMEA sentences in between, a lost packet, a change of
// rate, a frame cut off at the end). The notes say where each is.
//
// Every value is computed from the epoch with plain arithmetic and a fixed hash for the noise,
// so the output is the same byte for byte on every run and machine.
//
// Usage: makestationstream <output file>   (the notes go beside it, with ".md" appended)

#include <messageinfo.h>
#include <rtcm3/rtcm3dictionary.h>
#include <rtcm3/rtcm3encoder.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>
#include <QMap>
#include <QStringList>

#include <cmath>
#include <cstdio>

namespace {

constexpr double speedOfLight = 299792458.0; // m/s
constexpr int stationId = 2301;
constexpr int epochs = 600;
/// The first epoch: GPS week 2399, Saturday 2026-01-03 23:55:00 GPS time.
constexpr int firstWeek = 2399;
constexpr qint64 firstTowS = 604500;
constexpr qint64 weekS = 604800;
constexpr int leapSeconds = 18;

// Where the faults are, in epochs from the first.
constexpr int rateChangeEpoch = 200; // 1230 from every 10 s to every 5 s after this one
constexpr int rolloverEpoch = 300; // time of week 0; new GPS ephemerides follow
constexpr int damagedEphemeris = 2; // of the 1019s at the rollover
constexpr int glonassUpdateEpoch = 320; // new GLONASS ephemerides (tb 03:15 Moscow time)
constexpr int lostFirstEpoch = 420; // 1087 lost for three epochs
constexpr int lostEpochs = 3;
constexpr int nmeaEpoch = 450;
constexpr int cutFrameBytes = 40;

// Antenna reference point (46.9512 N, 7.4463 E, 572.4 m above the ellipsoid).
constexpr double arpX = 4325258.3762, arpY = 565307.5003, arpZ = 4638481.4751;

QString df(int number)
{
    return QStringLiteral("DF%1").arg(number, 3, 10, QLatin1Char('0'));
}

/// Noise in [-1, 1) that depends only on its arguments.
double noise(uint32_t a, uint32_t b, uint32_t c)
{
    uint32_t h
        = a * 0x9E3779B1u ^ (b + 0x7F4A7C15u) * 0x85EBCA77u ^ (c + 0x165667B1u) * 0xC2B2AE3Du;
    h ^= h >> 15;
    h *= 0x2C1B3C6Du;
    h ^= h >> 12;
    h *= 0x297A2D39u;
    h ^= h >> 15;
    return double(h) / 2147483648.0 - 1.0;
}

/// The MSM lock time indicator of the extended range (DF407) for a lock of ms milliseconds.
int lockTimeIndicator(qint64 ms)
{
    if (ms < 64)
        return int(ms);
    if (ms >= (qint64(64) << 20))
        return 704;
    int n = 1;
    while (ms >= (qint64(64) << n))
        ++n;
    return int(ms / (qint64(1) << n)) + 32 * n;
}

struct Satellite
{
    int id;
    int rise; ///< first epoch in view
    int set; ///< first epoch out of view
    double culmination; ///< seconds from the first epoch to the least range
    int channel = 0; ///< GLONASS frequency channel
};

struct System
{
    int msm7;
    double leastRange; ///< m, at culmination
    QVector<int> signalIds;
    QVector<double> frequencies; ///< Hz (GLONASS: channel 0)
    QVector<Satellite> satellites;
};

constexpr int always = -100000;
constexpr int never = 100000;

const QVector<System> systems {
    { 1077,
      20200e3,
      { 2, 10 },
      { 1575.42e6, 1227.60e6 },
      { { 2, always, never, -2100 },
        { 5, always, never, 900 },
        { 7, always, 470, -4400 },
        { 13, 150, never, 5150 },
        { 15, always, never, 2600 },
        { 29, always, never, 1700 } } },
    { 1087,
      19100e3,
      { 2 },
      { 1602.0e6 },
      { { 1, always, never, -1500, 1 },
        { 7, always, 330, -4700, 5 },
        { 8, always, never, 1200, 6 },
        { 14, always, never, 2400, -7 },
        { 22, 90, never, 5090, -3 } } },
    { 1097,
      23200e3,
      { 2 },
      { 1575.42e6 },
      { { 3, always, never, 300 },
        { 5, always, never, -2500 },
        { 13, always, never, 3100 },
        { 21, 240, never, 5240 },
        { 26, always, 560, -4440 } } },
    { 1127,
      21500e3,
      { 2 },
      { 1561.098e6 },
      { { 11, always, never, -800 },
        { 12, always, never, 2200 },
        { 23, always, 380, -4620 },
        { 25, always, never, 3600 },
        { 34, 500, never, 5500 } } },
};

struct Signal
{
    double pseudorange; // m
    double phaserange; // m
    double rate; // m/s
    double cnr; // dB-Hz
};

/// What the station measures of one signal of a satellite t seconds after the first epoch.
Signal measure(System const &system, Satellite const &satellite, int signal, int t)
{
    constexpr double curvature = 0.04; // m/s^2: range changes by 1000 km in 5000 s
    const double frequency
        = system.frequencies[signal] + satellite.channel * (signal == 0 ? 0.5625e6 : 0.4375e6);
    const double since = t - satellite.culmination;
    const double range = system.leastRange + curvature * since * since;
    const double elevation = qBound(0.0, 1.0 - (range - system.leastRange) / 1.2e6, 1.0);
    const double clock = 9.7 + 0.004 * t; // steered receiver clock, m
    const double ratio = system.frequencies[0] / frequency;
    const double iono = (1.2 + 5.0 * (1.0 - elevation)) * ratio * ratio;
    const uint32_t key = uint32_t(system.msm7 * 100 + satellite.id) * 4u + uint32_t(signal);
    const double wavelength = speedOfLight / frequency;
    const double ambiguity = std::floor(40.0 * noise(key, 0, 1));
    return { range + clock + iono + 0.3 * noise(key, uint32_t(t), 2),
             range + clock - iono + ambiguity * wavelength + 0.002 * noise(key, uint32_t(t), 3),
             2.0 * curvature * since + 0.004 + 0.02 * noise(key, uint32_t(t), 4),
             30.0 + 17.0 * elevation - 3.0 * signal + 0.6 * noise(key, uint32_t(t), 5) };
}

class StreamMaker
{
public:
    void makeEpoch(int t);
    /// The first bytes of the 1077 that the next epoch would begin with.
    void cutOff();
    QByteArray const &getStream() const { return mStream; }
    QString notes() const;

private:
    QByteArray msm(System const &system, int t, bool last) const;
    QByteArray gpsEphemeris(Satellite const &satellite, int t) const;
    QByteArray glonassEphemeris(Satellite const &satellite, int t) const;
    QByteArray stationMessage(int number) const;
    QByteArray biases() const;
    QByteArray nmea(int t) const;
    void addStationMessages(int t);
    void add(QByteArray const &frame, int number);
    void note(int t, QString const &what);
    MessageInfo const *info(int number) const { return mDictionary.getMessageInfo(number); }

    Rtcm3Dictionary mDictionary;
    QByteArray mStream;
    QMap<int, int> mFrames;
    int mForeignBytes = 0;
    QStringList mSituations;
};

bool inView(Satellite const &satellite, int t)
{
    return satellite.rise <= t && t < satellite.set;
}

qint64 towMs(int t)
{
    return (firstTowS + t) % weekS * 1000;
}

QString gpsTime(int t)
{
    return QDateTime(QDate(2026, 1, 3), QTime(23, 55), Qt::UTC)
        .addSecs(t)
        .toString(QStringLiteral("yyyy-MM-dd hh:mm:ss"));
}

QByteArray StreamMaker::msm(System const &system, int t, bool last) const
{
    Rtcm3Encoder message(info(system.msm7));
    message.setValue(df(3), stationId).setValue(df(393), last ? 0 : 1).setValue(df(411), 1);
    switch (system.msm7) {
    case 1087: { // Moscow time: UTC + 3 h, as day of week and time of day
        const qint64 moscowMs = (towMs(t) + (3 * 3600 - leapSeconds) * 1000) % (weekS * 1000);
        message.setValue(df(416), moscowMs / 86400000).setValue(df(34), moscowMs % 86400000);
        break;
    }
    case 1127: // BeiDou time is 14 s behind
        message.setValue(df(427), (towMs(t) + (weekS - 14) * 1000) % (weekS * 1000));
        break;
    default:
        message.setValue(df(system.msm7 == 1077 ? 4 : 248), towMs(t));
    }
    for (Satellite const &satellite : system.satellites) {
        if (!inView(satellite, t))
            continue;
        const Signal first = measure(system, satellite, 0, t);
        // Rough range in units of 2^-10 ms, from the first signal's pseudorange.
        const qint64 rough = std::llround(first.pseudorange / speedOfLight * 1000.0 * 1024.0);
        const qint64 roughRate = std::llround(first.rate);
        message.addRecord(QStringLiteral("Satellites"))
            .setValue(QStringLiteral("SatelliteId"), satellite.id)
            .setValue(df(397), rough >> 10)
            .setValue(system.msm7 == 1087 ? df(419) : QStringLiteral("ExtendedInfo"),
                      system.msm7 == 1087 ? satellite.channel + 7 : 0)
            .setValue(df(398), rough & 1023)
            .setValue(df(399), roughRate);
        const qint64 lockStart = qMax(satellite.rise, -3000);
        for (int s = 0; s < system.signalIds.size(); ++s) {
            const Signal signal = measure(system, satellite, s, t);
            const double roughMs = double(rough) / 1024.0;
            message.addRecord(QStringLiteral("Signals"))
                .setValue(QStringLiteral("SatelliteId"), satellite.id)
                .setValue(QStringLiteral("SignalId"), system.signalIds[s])
                .setScaled(df(405), signal.pseudorange / speedOfLight * 1000.0 - roughMs)
                .setScaled(df(406), signal.phaserange / speedOfLight * 1000.0 - roughMs)
                .setValue(df(407), lockTimeIndicator((t - lockStart) * 1000))
                .setScaled(df(408), signal.cnr)
                .setScaled(df(404), signal.rate - double(roughRate));
        }
    }
    return message.encode();
}

QByteArray StreamMaker::gpsEphemeris(Satellite const &satellite, int t) const
{
    const auto id = uint32_t(satellite.id);
    const bool next = t >= rolloverEpoch;
    const double toe = next ? 7200.0 : 597600.0;
    auto n = [id](uint32_t k) { return noise(id, k, 7); };
    Rtcm3Encoder message(info(1019));
    message.setValue(df(9), satellite.id)
        .setValue(df(76), (firstWeek + (next ? 1 : 0)) % 1024)
        .setValue(df(77), 1)
        .setValue(df(78), 1)
        .setScaled(df(79), 2e-10 * n(1))
        .setValue(df(71), (satellite.id * 7 + (next ? 1 : 0)) % 256)
        .setScaled(df(81), toe)
        .setScaled(df(83), 1e-12 * n(2))
        .setScaled(df(84), 1e-4 * n(3))
        .setValue(df(85), (satellite.id * 7 + (next ? 1 : 0)) % 256)
        .setScaled(df(86), 60.0 * n(4))
        .setScaled(df(87), 1.4e-9 + 2e-10 * n(5))
        .setScaled(df(88), n(6))
        .setScaled(df(89), 5e-6 * n(8))
        .setScaled(df(90), 0.009 + 0.007 * n(9))
        .setScaled(df(91), 5e-6 * n(10))
        .setScaled(df(92), 5153.6 + 0.1 * n(11))
        .setScaled(df(93), toe)
        .setScaled(df(94), 1e-7 * n(12))
        .setScaled(df(95), n(13))
        .setScaled(df(96), 1e-7 * n(14))
        .setScaled(df(97), 0.3058 + 0.01 * n(15))
        .setScaled(df(98), 220.0 + 60.0 * n(16))
        .setScaled(df(99), 0.9 * n(17))
        .setScaled(df(100), -2.6e-9 + 2e-10 * n(18))
        .setScaled(df(101), -1e-8 + 4e-9 * n(19));
    return message.encode();
}

QByteArray StreamMaker::glonassEphemeris(Satellite const &satellite, int t) const
{
    const auto id = uint32_t(satellite.id);
    const bool next = t >= glonassUpdateEpoch;
    auto n = [id](uint32_t k) { return noise(id, k, 11); };
    // A point of the orbit (radius 25510 km) from a rational parametrisation of the circle.
    const double u = n(1), radius = 25510.0;
    const double x = 0.8 * radius * (1 - u * u) / (1 + u * u);
    const double y = 0.8 * radius * 2 * u / (1 + u * u);
    const double z = 0.6 * radius * (n(2) < 0 ? -1 : 1);
    const qint64 moscowS = (firstTowS + t + 3 * 3600 - leapSeconds) % 86400;
    Rtcm3Encoder message(info(1020));
    message.setValue(df(38), satellite.id)
        .setValue(df(40), satellite.channel + 7)
        .setValue(df(104), 1)
        .setValue(df(105), 1)
        .setValue(df(107), (moscowS / 3600) << 7 | (moscowS / 60 % 60) << 1 | (moscowS % 60) / 30)
        .setValue(df(109), 1)
        .setScaled(df(110), next ? 195.0 : 165.0)
        .setScaled(df(111), 3.1 * y / radius)
        .setScaled(df(112), x)
        .setScaled(df(113), 1e-9 * n(3))
        .setScaled(df(114), -3.1 * x / radius)
        .setScaled(df(115), y)
        .setScaled(df(116), 1e-9 * n(4))
        .setScaled(df(117), 0.4 * n(5))
        .setScaled(df(118), z)
        .setScaled(df(119), 1e-9 * n(6))
        .setScaled(df(121), 1e-12 * n(7))
        .setScaled(df(124), 1e-5 * n(8))
        .setScaled(df(125), 2e-9 * n(9))
        .setValue(df(128), 2)
        .setValue(df(129), 735)
        .setValue(df(130), 1)
        .setValue(df(131), 1)
        .setValue(df(132), 735)
        .setScaled(df(133), 1e-8)
        .setValue(df(134), 8)
        .setScaled(df(135), 5e-9);
    return message.encode();
}

QByteArray StreamMaker::stationMessage(int number) const
{
    Rtcm3Encoder message(info(number));
    message.setValue(df(3), stationId);
    if (number == 1005) {
        message.setValue(df(22), 1)
            .setValue(df(23), 1)
            .setValue(df(24), 1)
            .setValue(df(142), 1)
            .setScaled(df(25), arpX)
            .setScaled(df(26), arpY)
            .setScaled(df(27), arpZ);
    } else {
        message.setText(df(30), QStringLiteral("MSGAPI-CHOKE    NONE"))
            .setText(df(33), QStringLiteral("00417"))
            .setText(df(228), QStringLiteral("MSGAPI REFERENCE"))
            .setText(df(230), QStringLiteral("1.4.0"))
            .setText(df(232), QStringLiteral("RS-0042"));
    }
    return message.encode();
}

QByteArray StreamMaker::biases() const
{
    Rtcm3Encoder message(info(1230));
    message.setValue(df(3), stationId).setValue(df(421), 1);
    message.addRecord(QStringLiteral("Biases"))
        .setValue(QStringLiteral("SignalId"), 1)
        .setScaled(df(423), 1.28);
    message.addRecord(QStringLiteral("Biases"))
        .setValue(QStringLiteral("SignalId"), 3)
        .setScaled(df(423), -0.54);
    return message.encode();
}

QByteArray StreamMaker::nmea(int t) const
{
    const QTime utc = QTime(23, 55).addSecs(t - leapSeconds);
    const QString hms = utc.toString(QStringLiteral("hhmmss")) + QStringLiteral(".00");
    const QStringList sentences {
        QStringLiteral("GPGGA,%1,4657.0720,N,00726.7780,E,2,19,0.7,523.1,M,49.3,M,1.0,0000")
            .arg(hms),
        QStringLiteral("GPRMC,%1,A,4657.0720,N,00726.7780,E,0.0,0.0,040126,,,D").arg(hms),
        QStringLiteral("GPZDA,%1,04,01,2026,00,00").arg(hms),
    };
    QByteArray text;
    for (QString const &sentence : sentences) {
        const QByteArray body = sentence.toLatin1();
        uint8_t checksum = 0;
        for (char c : body)
            checksum ^= uint8_t(c);
        text += '$' + body + '*' + QByteArray::number(checksum, 16).toUpper().rightJustified(2, '0')
            + "\r\n";
    }
    return text;
}

void StreamMaker::add(QByteArray const &frame, int number)
{
    mStream += frame;
    ++mFrames[number];
}

void StreamMaker::note(int t, QString const &what)
{
    mSituations.append(
        QStringLiteral("| %1 | %2 | %3 |").arg(gpsTime(t)).arg(mStream.size()).arg(what));
}

void StreamMaker::addStationMessages(int t)
{
    if (t % 10 == 0) {
        add(stationMessage(1005), 1005);
        add(stationMessage(1033), 1033);
    }
    if (t == rateChangeEpoch + 5)
        note(t, QStringLiteral("1230 comes every 5 s from here on, every 10 s before"));
    if (t % 10 == 0 || (t > rateChangeEpoch && t % 5 == 0))
        add(biases(), 1230);
    if (t == 0 || t == rolloverEpoch) {
        int sent = 0;
        for (Satellite const &satellite : systems[0].satellites) {
            if (!inView(satellite, t))
                continue;
            QByteArray frame = gpsEphemeris(satellite, t);
            if (t == rolloverEpoch && sent++ == damagedEphemeris) {
                note(t,
                     QStringLiteral("the 1019 of G%1 is damaged in transit: a CRC error; its "
                                    "%2 bytes are outside frames")
                         .arg(satellite.id, 2, 10, QLatin1Char('0'))
                         .arg(frame.size()));
                frame[20] = char(frame.at(20) ^ 0x10);
                mStream += frame;
                mForeignBytes += frame.size();
                continue;
            }
            add(frame, 1019);
        }
    }
    if (t == 0 || t == glonassUpdateEpoch) {
        for (Satellite const &satellite : systems[1].satellites) {
            if (inView(satellite, t))
                add(glonassEphemeris(satellite, t), 1020);
        }
    }
}

void StreamMaker::makeEpoch(int t)
{
    if (t == rolloverEpoch) {
        note(t,
             QStringLiteral("GPS week rollover: time of week 0 of week %1; new 1019s with the "
                            "new week follow the 1077")
                 .arg(firstWeek + 1));
    }
    // The epoch's 1077 comes first, its 1127 last: the other messages lie between, so that they
    // carry the epoch's time and arrive before the epoch ends. Only at the start do they come
    // first, so that the ephemerides give the week before the first observations.
    if (t == 0)
        addStationMessages(t);
    add(msm(systems[0], t, false), systems[0].msm7);
    if (t != 0)
        addStationMessages(t);
    for (System const &system : systems.mid(1)) {
        const bool lost
            = system.msm7 == 1087 && t >= lostFirstEpoch && t < lostFirstEpoch + lostEpochs;
        if (lost && t == lostFirstEpoch) {
            note(t,
                 QStringLiteral("1087 is lost for %1 epochs, up to %2: one gap")
                     .arg(lostEpochs)
                     .arg(gpsTime(t + lostEpochs - 1)));
        }
        if (!lost)
            add(msm(system, t, system.msm7 == systems.last().msm7), system.msm7);
    }
    if (t == nmeaEpoch) {
        const QByteArray text = nmea(t);
        note(t,
             QStringLiteral("%1 bytes of NMEA sentences (GGA, RMC, ZDA) between frames")
                 .arg(text.size()));
        mStream += text;
        mForeignBytes += text.size();
    }
}

void StreamMaker::cutOff()
{
    note(epochs,
         QStringLiteral("the stream ends %1 bytes into the 1077 of this epoch: an "
                        "incomplete frame")
             .arg(cutFrameBytes));
    mStream += msm(systems.first(), epochs, false).left(cutFrameBytes);
    mForeignBytes += cutFrameBytes;
}

QString StreamMaker::notes() const
{
    QStringList counts;
    int frames = 0;
    for (auto it = mFrames.begin(); it != mFrames.end(); ++it) {
        counts.append(QStringLiteral("%1:%2").arg(it.key()).arg(it.value()));
        frames += it.value();
    }
    return QStringLiteral(
               "# station.rtcm3\n\n"
               "The stream of a made-up reference station (ID %1), written by "
               "`examples/makestationstream.cpp` with the format library's encoder. Every value "
               "is computed from the epoch, so the program writes the same bytes on every run: "
               "`makestationstream examples/data/station.rtcm3` rewrites this file and the "
               "stream. Licence CC0-1.0.\n\n"
               "%2 epochs of 1 Hz MSM7 from %3 to %4 GPS time (GPS week %5, time of week %6 s, "
               "to week %7): 1077 (GPS L1 C/A and L2 P(Y)), 1087 (GLONASS L1 C/A), 1097 "
               "(Galileo E1 C), 1127 (BeiDou B1I, the last of each epoch), satellites "
               "rising and setting. 1005 and 1033 every 10 s, 1230 (every 10 s, later 5 s), and "
               "1019 and 1020 at the start and when new ephemerides are out follow the 1077 "
               "of their epoch (the first epoch: precede it).\n\n"
               "## Where things are\n\n"
               "| GPS time | byte offset | what |\n"
               "|---|---|---|\n"
               "%8\n\n"
               "## Counts\n\n"
               "%9 bytes: %10 frames; %11; %12 bytes outside frames (the damaged 1019, the NMEA "
               "sentences and the incomplete frame at the end).\n")
        .arg(stationId)
        .arg(epochs)
        .arg(gpsTime(0), gpsTime(epochs - 1))
        .arg(firstWeek)
        .arg(firstTowS)
        .arg(firstWeek + 1)
        .arg(mSituations.join(QLatin1Char('\n')))
        .arg(mStream.size())
        .arg(frames)
        .arg(counts.join(QLatin1Char(' ')))
        .arg(mForeignBytes);
}

bool write(QString const &fileName, QByteArray const &bytes)
{
    QFile file(fileName);
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size())
        return true;
    std::fprintf(stderr, "makestationstream: cannot write %s: %s\n", qPrintable(fileName),
                 qPrintable(file.errorString()));
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString output = app.arguments().value(1);
    if (output.isEmpty()) {
        std::fprintf(stderr, "usage: makestationstream <output file>\n");
        return 2;
    }
    StreamMaker maker;
    for (int t = 0; t < epochs; ++t)
        maker.makeEpoch(t);
    maker.cutOff();
    return write(output, maker.getStream())
            && write(output + QStringLiteral(".md"), maker.notes().toUtf8())
        ? 0
        : 1;
}
