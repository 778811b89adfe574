// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3layout.h"

namespace Rtcm3Layout {

namespace {

const char *const codeL1 = "0=C/A code;1=P(Y) code direct";
const char *const codeL2 = "0=C/A or L2C code;1=P(Y) code direct;2=P(Y) code cross-correlated;"
                           "3=correlated P/Y";
const char *const glonassCodeL1 = "0=C/A code;1=P code";
const char *const glonassCodeL2 = "0=C/A code;1=P code;2=reserved;3=reserved";

// GPS 1001 to 1004: header, then one record per satellite.
const QVector<Row> gpsHeader {
    { "DF003", 12, U, "Reference station ID" },
    { "DF004", 30, U, "GPS epoch time (TOW)", 1.0, "millisecond" },
    { "DF005", 1, U, "Synchronous GNSS flag", 1.0, nullptr, nullptr,
      "0=no further observations of this epoch;1=more observations of this epoch follow" },
    { "DF006", 5, U, "Number of GPS satellite signals processed" },
    { "DF007", 1, U, "GPS divergence-free smoothing indicator" },
    { "DF008", 3, U, "GPS smoothing interval" },
    { "Satellites", 0, G, "Satellite observations", 1.0, nullptr, "DF006", nullptr, nullptr, 0 },
};
const QVector<Row> gpsL1 {
    { "DF009", 6, U, "GPS satellite ID" },
    { "DF010", 1, U, "GPS L1 code indicator", 1.0, nullptr, nullptr, codeL1 },
    { "DF011", 24, U, "GPS L1 pseudorange", 0.02, "meter" },
    { "DF012", 20, I, "GPS L1 phaserange minus L1 pseudorange", 0.0005, "meter", nullptr, nullptr,
      "-524288" },
    { "DF013", 7, U, "GPS L1 lock time indicator" },
};
const QVector<Row> gpsL1Extended {
    { "DF014", 8, U, "GPS integer L1 pseudorange modulus ambiguity", 299792.458, "meter" },
    { "DF015", 8, U, "GPS L1 CNR", 0.25, "decibelhertz", nullptr, nullptr, "0" },
};
const QVector<Row> gpsL2 {
    { "DF016", 2, U, "GPS L2 code indicator", 1.0, nullptr, nullptr, codeL2 },
    { "DF017", 14, I, "GPS L2 minus L1 pseudorange difference", 0.02, "meter", nullptr, nullptr,
      "-8192" },
    { "DF018", 20, I, "GPS L2 phaserange minus L1 pseudorange", 0.0005, "meter", nullptr, nullptr,
      "-524288" },
    { "DF019", 7, U, "GPS L2 lock time indicator" },
};
const Row gpsL2Cnr { "DF020", 8, U, "GPS L2 CNR", 0.25, "decibelhertz", nullptr, nullptr, "0" };

// GLONASS 1009 to 1012.
const QVector<Row> glonassHeader {
    { "DF003", 12, U, "Reference station ID" },
    { "DF034", 27, U, "GLONASS epoch time (tk)", 1.0, "millisecond" },
    { "DF005", 1, U, "Synchronous GNSS flag", 1.0, nullptr, nullptr,
      "0=no further observations of this epoch;1=more observations of this epoch follow" },
    { "DF035", 5, U, "Number of GLONASS satellite signals processed" },
    { "DF036", 1, U, "GLONASS divergence-free smoothing indicator" },
    { "DF037", 3, U, "GLONASS smoothing interval" },
    { "Satellites", 0, G, "Satellite observations", 1.0, nullptr, "DF035", nullptr, nullptr, 0 },
};
const QVector<Row> glonassL1 {
    { "DF038", 6, U, "GLONASS satellite ID (slot number)" },
    { "DF039", 1, U, "GLONASS L1 code indicator", 1.0, nullptr, nullptr, glonassCodeL1 },
    { "DF040", 5, U, "GLONASS satellite frequency channel number plus 7" },
    { "DF041", 25, U, "GLONASS L1 pseudorange", 0.02, "meter" },
    { "DF042", 20, I, "GLONASS L1 phaserange minus L1 pseudorange", 0.0005, "meter", nullptr,
      nullptr, "-524288" },
    { "DF043", 7, U, "GLONASS L1 lock time indicator" },
};
const QVector<Row> glonassL1Extended {
    { "DF044", 7, U, "GLONASS integer L1 pseudorange modulus ambiguity", 599584.916, "meter" },
    { "DF045", 8, U, "GLONASS L1 CNR", 0.25, "decibelhertz", nullptr, nullptr, "0" },
};
const QVector<Row> glonassL2 {
    { "DF046", 2, U, "GLONASS L2 code indicator", 1.0, nullptr, nullptr, glonassCodeL2 },
    { "DF047", 14, I, "GLONASS L2 minus L1 pseudorange difference", 0.02, "meter", nullptr, nullptr,
      "-8192" },
    { "DF048", 20, I, "GLONASS L2 phaserange minus L1 pseudorange", 0.0005, "meter", nullptr,
      nullptr, "-524288" },
    { "DF049", 7, U, "GLONASS L2 lock time indicator" },
};
const Row glonassL2Cnr { "DF050", 8,       U,  "GLONASS L2 CNR", 0.25, "decibelhertz",
                         nullptr, nullptr, "0" };

Message observations(int number, char const *title, QVector<Row> const &header,
                     QVector<Row> const &satellite)
{
    const QString text = QString::fromLatin1(title);
    return { number,
             text,
             QStringLiteral("%1 observations of the satellites the header counts.").arg(text),
             header,
             { { "satellite", "Observations of one satellite", false, satellite } } };
}

} // namespace

QVector<Message> legacyObservationMessages()
{
    return {
        observations(1001, "GPS L1-only RTK", gpsHeader, gpsL1),
        observations(1002, "GPS extended L1-only RTK", gpsHeader, gpsL1 + gpsL1Extended),
        observations(1003, "GPS L1&L2 RTK", gpsHeader, gpsL1 + gpsL2),
        observations(1004, "GPS extended L1&L2 RTK", gpsHeader,
                     gpsL1 + gpsL1Extended + gpsL2 + QVector<Row> { gpsL2Cnr }),
        observations(1009, "GLONASS L1-only RTK", glonassHeader, glonassL1),
        observations(1010, "GLONASS extended L1-only RTK", glonassHeader,
                     glonassL1 + glonassL1Extended),
        observations(1011, "GLONASS L1&L2 RTK", glonassHeader, glonassL1 + glonassL2),
        observations(1012, "GLONASS extended L1&L2 RTK", glonassHeader,
                     glonassL1 + glonassL1Extended + glonassL2 + QVector<Row> { glonassL2Cnr }),
    };
}

} // namespace Rtcm3Layout
