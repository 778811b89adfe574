// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3layout.h"

namespace Rtcm3Layout {

namespace {

const Row stationId { "DF003", 12, U, "Reference station ID" };
const char *const indicator = "0=no;1=yes";

// 1005; 1006 adds the antenna height.
const QVector<Row> antennaReferencePoint {
    stationId,
    { "DF021", 6, U, "Reserved for ITRF realization year" },
    { "DF022", 1, U, "GPS indicator", 1.0, nullptr, nullptr, indicator },
    { "DF023", 1, U, "GLONASS indicator", 1.0, nullptr, nullptr, indicator },
    { "DF024", 1, U, "Reserved for Galileo indicator", 1.0, nullptr, nullptr, indicator },
    { "DF141", 1, U, "Reference station indicator", 1.0, nullptr, nullptr,
      "0=real, physical reference station;1=non-physical or computed reference station" },
    { "DF025", 38, I, "Antenna reference point ECEF-X", 0.0001, "meter" },
    { "DF142", 1, U, "Single receiver oscillator indicator", 1.0, nullptr, nullptr,
      "0=all raw data may be measured at different instants;1=all raw data measured at the "
      "same instant" },
    { "DF001", 1, U, "Reserved" },
    { "DF026", 38, I, "Antenna reference point ECEF-Y", 0.0001, "meter" },
    { "DF364", 2, U, "Quarter cycle indicator", 1.0, nullptr, nullptr,
      "0=correction status unknown;1=quarter-cycle phase corrections not applied;"
      "2=quarter-cycle phase corrections applied;3=reserved" },
    { "DF027", 38, I, "Antenna reference point ECEF-Z", 0.0001, "meter" },
};

// 1007; 1008 adds the serial number, 1033 that and the receiver's descriptors.
const QVector<Row> antennaDescriptor {
    stationId,
    { "DF029", 8, U, "Antenna descriptor counter" },
    { "DF030", 8, C, "Antenna descriptor", 1.0, nullptr, "DF029" },
    { "DF031", 8, U, "Antenna setup ID" },
};
const QVector<Row> antennaSerialNumber {
    { "DF032", 8, U, "Antenna serial number counter" },
    { "DF033", 8, C, "Antenna serial number", 1.0, nullptr, "DF032" },
};
const QVector<Row> receiverDescriptors {
    { "DF227", 8, U, "Receiver type descriptor counter" },
    { "DF228", 8, C, "Receiver type descriptor", 1.0, nullptr, "DF227" },
    { "DF229", 8, U, "Receiver firmware version counter" },
    { "DF230", 8, C, "Receiver firmware version", 1.0, nullptr, "DF229" },
    { "DF231", 8, U, "Receiver serial number counter" },
    { "DF232", 8, C, "Receiver serial number", 1.0, nullptr, "DF231" },
};

const Row modifiedJulianDay { "DF051", 16, U, "Modified Julian Day number", 1.0, "day" };
const Row secondsOfDay { "DF052", 17, U, "Seconds of day (UTC)", 1.0, "second" };

} // namespace

QVector<Message> stationMessages()
{
    return {
        { 1005, QStringLiteral("Stationary RTK reference station ARP"),
          QStringLiteral("The reference station's antenna reference point in Earth-centred, "
                         "Earth-fixed coordinates and the systems it serves."),
          antennaReferencePoint },
        { 1006, QStringLiteral("Stationary RTK reference station ARP with antenna height"),
          QStringLiteral("The antenna reference point of 1005 and the antenna's height above "
                         "the survey monument."),
          antennaReferencePoint
              + QVector<Row> { { "DF028", 16, U, "Antenna height", 0.0001, "meter" } } },
        { 1007, QStringLiteral("Antenna descriptor"),
          QStringLiteral("The name of the reference station's antenna type and its setup."),
          antennaDescriptor },
        { 1008, QStringLiteral("Antenna descriptor and serial number"),
          QStringLiteral("The antenna descriptor of 1007 and the antenna's serial number."),
          antennaDescriptor + antennaSerialNumber },
        { 1013,
          QStringLiteral("System parameters"),
          QStringLiteral("The station's date and time, the GPS-UTC leap seconds and the messages "
                         "it sends with their intervals."),
          {
              stationId,
              modifiedJulianDay,
              secondsOfDay,
              { "DF053", 5, U, "Number of message IDs announced" },
              { "DF054", 8, U, "Leap seconds, GPS-UTC", 1.0, "second" },
              { "Messages", 0, G, "Announced messages", 1.0, nullptr, "DF053", nullptr, nullptr,
                0 },
          },
          { { "message",
              "Announced message",
              false,
              {
                  { "DF055", 12, U, "Message ID" },
                  { "DF056", 1, U, "Message sync flag", 1.0, nullptr, nullptr,
                    "0=asynchronous;1=synchronous" },
                  { "DF057", 16, U, "Message transmission interval", 0.1, "second" },
              } } } },
        { 1029,
          QStringLiteral("Unicode text string"),
          QStringLiteral("A text message of the station, in UTF-8."),
          {
              stationId,
              modifiedJulianDay,
              secondsOfDay,
              { "DF138", 7, U, "Number of characters to follow" },
              { "DF139", 8, U, "Number of UTF-8 code units" },
              { "DF140", 8, C, "UTF-8 character code units", 1.0, nullptr, "DF139" },
          } },
        { 1033, QStringLiteral("Receiver and antenna descriptors"),
          QStringLiteral("The antenna descriptor and serial number of 1008 and the receiver's "
                         "type, firmware version and serial number."),
          antennaDescriptor + antennaSerialNumber + receiverDescriptors },
        { 1230,
          QStringLiteral("GLONASS L1 and L2 code-phase biases"),
          QStringLiteral("The station's GLONASS code-phase biases for the FDMA signals that its "
                         "mask names."),
          {
              stationId,
              { "DF421", 1, U, "GLONASS code-phase bias indicator", 1.0, nullptr, nullptr,
                "0=pseudorange and phaserange not aligned;1=pseudorange and phaserange aligned" },
              { "DF001", 3, U, "Reserved" },
              { "DF422", 4, U, "GLONASS FDMA signals mask" },
              { "Biases", 0, G, "Code-phase biases", 1.0, nullptr, "#DF422", nullptr, nullptr, 0 },
          },
          { { "bias",
              "Code-phase bias of one signal",
              false,
              {
                  { "SignalId", 8, MaskPosition, "Signal", 1.0, nullptr, "DF422",
                    "1=L1 C/A;2=L1 P;3=L2 C/A;4=L2 P" },
                  // DF423 to DF426, the bias of L1 C/A, L1 P, L2 C/A and L2 P, share one
                  // layout; SignalId tells them apart.
                  { "DF423", 16, I, "GLONASS code-phase bias", 0.02, "meter" },
              } } } },
    };
}

} // namespace Rtcm3Layout
