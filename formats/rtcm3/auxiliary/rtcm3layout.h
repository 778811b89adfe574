// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3LAYOUT_H
#define MESSAGEAPI_RTCM3_RTCM3LAYOUT_H

#include "rtcm3fieldinfo.h"

#include <QVector>

/**
 * The layouts of RTCM 3 message types as data: one row per data field, in the order of the
 * bits, read by Rtcm3Dictionary into Rtcm3FieldInfo objects. Every message type starts with
 * DF002, the message number, which the dictionary adds itself.
 *
 * Each family of message types (station and descriptor messages, MSM, ephemerides, legacy
 * observations) lives in a file of its own and hands its layouts out through one function
 * declared here, so that families can be added independently.
 */
namespace Rtcm3Layout {

constexpr auto U = Rtcm3FieldInfo::Unsigned;
constexpr auto I = Rtcm3FieldInfo::TwosComplement;
constexpr auto S = Rtcm3FieldInfo::SignMagnitude;
constexpr auto C = Rtcm3FieldInfo::Character;
constexpr auto G = Rtcm3FieldInfo::Group;
constexpr auto MaskPosition = Rtcm3FieldInfo::MaskPosition;
constexpr auto CellSatellite = Rtcm3FieldInfo::CellSatellite;
constexpr auto CellSignal = Rtcm3FieldInfo::CellSignal;

/// One data field.
struct Row
{
    /// "DF025"; SatelliteId and SignalId for virtual fields; what the records are for groups
    char const *name;
    unsigned char bits; ///< of one value; 0 for groups, 8 for virtual fields
    Rtcm3FieldInfo::Encoding encoding;
    char const *label; ///< the short descriptive text
    double scale = 1.0; ///< the resolution of one unit of the raw value
    char const *unit = nullptr; ///< identifier of the unit table ("meter")
    /// Number of values: "DF029" the value of an earlier field, "#DF394" its set bits.
    /// Width of a mask of cells: "DF394*DF395". Virtual fields: the mask(s) of the enclosing
    /// message, "DF394" or "DF394,DF395,DF396".
    char const *source = nullptr;
    /// Symbolic values, "0=text;1=text".
    char const *symbols = nullptr;
    /// The value that stands for "not available", as text.
    char const *doNotUse = nullptr;
    /// For a group: the index in the message layout's groups.
    int group = -1;
};

/// Repeated records of a message type: a sub-message type.
struct Group
{
    char const *name; ///< appended to the message number: "1013 message"
    char const *title;
    bool columnMajor; ///< all values of a field, then the next field (as MSM stores them)
    QVector<Row> rows;
};

/// One message type.
struct Message
{
    int number;
    QString title; ///< "GPS MSM7"
    QString description; ///< one sentence
    QVector<Row> rows;
    QVector<Group> groups = {};
};

/// 1005, 1006, 1007, 1008, 1013, 1029, 1033, 1230.
QVector<Message> stationMessages();
/// Broadcast ephemerides: 1019, 1020, 1042, 1044, 1045, 1046; their file says which fields
/// give the full week.
QVector<Message> ephemerisMessages();
/// Legacy RTK observations: 1001 to 1004 (GPS), 1009 to 1012 (GLONASS).
QVector<Message> legacyObservationMessages();
/// MSM1 to MSM7 of GPS, GLONASS, Galileo, SBAS, QZSS, BeiDou and NavIC: 1071 to 1137.
QVector<Message> msmMessages();

} // namespace Rtcm3Layout

#endif // MESSAGEAPI_RTCM3_RTCM3LAYOUT_H
