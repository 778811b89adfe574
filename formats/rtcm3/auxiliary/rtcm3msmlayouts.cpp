// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3layout.h"

namespace Rtcm3Layout {

namespace {

// Resolutions of the MSM observables.
constexpr double twoToMinus10 = 1.0 / 1024.0;
constexpr double twoToMinus24 = 1.0 / 16777216.0;
constexpr double twoToMinus29 = 1.0 / 536870912.0;
constexpr double twoToMinus31 = 1.0 / 2147483648.0;

/// A satellite system's MSM types: numbers base+1 to base+7.
struct System
{
    int base;
    char const *name;
    QVector<Row> epochTime;
    /// The 4 bits of extended satellite information of MSM5 and MSM7.
    Row extendedInfo;
    /// RINEX observation codes of the signal IDs.
    char const *signals;
};

const Row extendedInfo { "ExtendedInfo", 4, U, "Extended satellite information" };

const QVector<System> systems {
    { 1070,
      "GPS",
      { { "DF004", 30, U, "GPS epoch time (TOW)", 1.0, "millisecond" } },
      extendedInfo,
      "2=1C;3=1P;4=1W;8=2C;9=2P;10=2W;15=2S;16=2L;17=2X;22=5I;23=5Q;24=5X;30=1S;31=1L;32=1X" },
    { 1080,
      "GLONASS",
      { { "DF416", 3, U, "GLONASS day of week", 1.0, nullptr, nullptr,
          "0=Sunday;1=Monday;2=Tuesday;3=Wednesday;4=Thursday;5=Friday;6=Saturday;7=unknown" },
        { "DF034", 27, U, "GLONASS epoch time (tk)", 1.0, "millisecond" } },
      { "DF419", 4, U, "GLONASS satellite frequency channel number plus 7" },
      "2=1C;3=1P;8=2C;9=2P" },
    { 1090,
      "Galileo",
      { { "DF248", 30, U, "Galileo epoch time (TOW)", 1.0, "millisecond" } },
      extendedInfo,
      "2=1C;3=1A;4=1B;5=1X;6=1Z;8=6C;9=6A;10=6B;11=6X;12=6Z;14=7I;15=7Q;16=7X;18=8I;19=8Q;"
      "20=8X;22=5I;23=5Q;24=5X" },
    { 1100,
      "SBAS",
      { { "DF004", 30, U, "SBAS epoch time (GPS TOW)", 1.0, "millisecond" } },
      extendedInfo,
      "2=1C;22=5I;23=5Q;24=5X" },
    { 1110,
      "QZSS",
      { { "DF428", 30, U, "QZSS epoch time (TOW)", 1.0, "millisecond" } },
      extendedInfo,
      "2=1C;9=6S;10=6L;11=6X;15=2S;16=2L;17=2X;22=5I;23=5Q;24=5X;30=1S;31=1L;32=1X" },
    { 1120,
      "BeiDou",
      { { "DF427", 30, U, "BeiDou epoch time (TOW)", 1.0, "millisecond" } },
      extendedInfo,
      "2=2I;3=2Q;4=2X;8=6I;9=6Q;10=6X;14=7I;15=7Q;16=7X" },
    { 1130,
      "NavIC",
      { { "DF546", 30, U, "NavIC epoch time (TOW)", 1.0, "millisecond" } },
      extendedInfo,
      "8=9A;22=5A" },
};

const QVector<Row> headerAfterEpoch {
    { "DF393", 1, U, "Multiple message bit", 1.0, nullptr, nullptr,
      "0=last message of the epoch;1=more messages of the epoch follow" },
    { "DF409", 3, U, "Issue of data station" },
    { "DF001", 7, U, "Reserved" },
    { "DF411", 2, U, "Clock steering indicator", 1.0, nullptr, nullptr,
      "0=clock steering not applied;1=clock steering applied;2=unknown;3=reserved" },
    { "DF412", 2, U, "External clock indicator", 1.0, nullptr, nullptr,
      "0=internal clock;1=external clock, locked;2=external clock, not locked;3=unknown" },
    { "DF417", 1, U, "Divergence-free smoothing indicator", 1.0, nullptr, nullptr,
      "0=not used;1=used" },
    { "DF418", 3, U, "Smoothing interval" },
    { "DF394", 64, U, "Satellite mask" },
    { "DF395", 32, U, "Signal mask" },
    { "DF396", 64, U, "Cell mask", 1.0, nullptr, "DF394*DF395" },
    { "Satellites", 0, G, "Satellite data", 1.0, nullptr, "#DF394", nullptr, nullptr, 0 },
    { "Signals", 0, G, "Signal data", 1.0, nullptr, "#DF396", nullptr, nullptr, 1 },
};

const Row roughRangeMs {
    "DF397", 8, U, "Rough range, whole milliseconds", 1.0, "millisecond", nullptr, nullptr, "255"
};
const Row roughRangeModulo { "DF398",      10,           U, "Rough range modulo 1 millisecond",
                             twoToMinus10, "millisecond" };
const Row roughRate { "DF399", 14,      I,      "Rough phaserange rate", 1.0, "meterpersecond",
                      nullptr, nullptr, "-8192" };

const Row finePseudorange {
    "DF400", 15, I, "Fine pseudorange", twoToMinus24, "millisecond", nullptr, nullptr, "-16384"
};
const Row finePhaserange { "DF401",       22,      I,       "Fine phaserange", twoToMinus29,
                           "millisecond", nullptr, nullptr, "-2097152" };
const Row lockTime { "DF402", 4, U, "Phaserange lock time indicator" };
const Row halfCycle {
    "DF420", 1,       U,       "Half-cycle ambiguity indicator",
    1.0,     nullptr, nullptr, "0=no half-cycle ambiguity;1=half-cycle ambiguity"
};
const Row cnr { "DF403", 6, U, "Signal CNR", 1.0, "decibelhertz", nullptr, nullptr, "0" };
const Row fineRate { "DF404", 15,      I,       "Fine phaserange rate", 0.0001, "meterpersecond",
                     nullptr, nullptr, "-16384" };
const Row finePseudorangeExtended { "DF405",
                                    20,
                                    I,
                                    "Fine pseudorange, extended resolution",
                                    twoToMinus29,
                                    "millisecond",
                                    nullptr,
                                    nullptr,
                                    "-524288" };
const Row finePhaserangeExtended { "DF406",
                                   24,
                                   I,
                                   "Fine phaserange, extended resolution",
                                   twoToMinus31,
                                   "millisecond",
                                   nullptr,
                                   nullptr,
                                   "-8388608" };
const Row lockTimeExtended { "DF407", 10, U, "Phaserange lock time indicator, extended range" };
const Row cnrExtended {
    "DF408", 10,      U,  "Signal CNR, extended resolution", 1.0 / 16.0, "decibelhertz",
    nullptr, nullptr, "0"
};

/// Stands for the system's extended satellite information.
const Row systemExtendedInfo { nullptr, 4, U, nullptr };

/// MSM1 to MSM7: what each sends per satellite and per signal.
struct Kind
{
    char const *title;
    QVector<Row> satellite;
    QVector<Row> signal;
};

const QVector<Kind> kinds {
    { "compact pseudoranges", { roughRangeModulo }, { finePseudorange } },
    { "compact phaseranges", { roughRangeModulo }, { finePhaserange, lockTime, halfCycle } },
    { "compact pseudoranges and phaseranges",
      { roughRangeMs, roughRangeModulo },
      { finePseudorange, finePhaserange, lockTime, halfCycle } },
    { "full pseudoranges and phaseranges plus CNR",
      { roughRangeMs, roughRangeModulo },
      { finePseudorange, finePhaserange, lockTime, halfCycle, cnr } },
    { "full pseudoranges, phaseranges, phaserange rates and CNR",
      { roughRangeMs, systemExtendedInfo, roughRangeModulo, roughRate },
      { finePseudorange, finePhaserange, lockTime, halfCycle, cnr, fineRate } },
    { "full pseudoranges and phaseranges plus CNR, high resolution",
      { roughRangeMs, roughRangeModulo },
      { finePseudorangeExtended, finePhaserangeExtended, lockTimeExtended, halfCycle,
        cnrExtended } },
    { "full pseudoranges, phaseranges, phaserange rates and CNR, high resolution",
      { roughRangeMs, systemExtendedInfo, roughRangeModulo, roughRate },
      { finePseudorangeExtended, finePhaserangeExtended, lockTimeExtended, halfCycle, cnrExtended,
        fineRate } },
};

} // namespace

QVector<Message> msmMessages()
{
    QVector<Message> messages;
    for (System const &system : systems) {
        for (int msm = 1; msm <= 7; ++msm) {
            Kind const &kind = kinds.at(msm - 1);
            QVector<Row> satellite {
                { "SatelliteId", 8, MaskPosition, "Satellite", 1.0, nullptr, "DF394" },
            };
            for (Row const &row : kind.satellite)
                satellite.append(row.name ? row : system.extendedInfo);
            QVector<Row> signal {
                { "SatelliteId", 8, CellSatellite, "Satellite", 1.0, nullptr, "DF394,DF395,DF396" },
                { "SignalId", 8, CellSignal, "Signal", 1.0, nullptr, "DF394,DF395,DF396",
                  system.signals },
            };
            signal += kind.signal;
            const QString title
                = QStringLiteral("%1 MSM%2").arg(QLatin1String(system.name)).arg(msm);
            messages.append({ system.base + msm,
                              title,
                              QStringLiteral("%1: %2 of the satellites and signals in its masks.")
                                  .arg(title, QLatin1String(kind.title)),
                              QVector<Row> { { "DF003", 12, U, "Reference station ID" } }
                                  + system.epochTime + headerAfterEpoch,
                              { { "satellite", "Satellite data", true, satellite },
                                { "signal", "Signal data", true, signal } } });
        }
    }
    return messages;
}

} // namespace Rtcm3Layout
