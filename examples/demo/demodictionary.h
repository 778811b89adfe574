// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DEMO_DEMODICTIONARY_H
#define MESSAGEAPI_DEMO_DEMODICTIONARY_H

#include <QString>
#include <QVector>

class DemoFieldInfo;
class DemoMessage;
class FormatInfo;
class MessageInfo;

/**
 * The dictionary of the demonstration receiver format "VEXA": the format, its message types
 * and their fields, built in the constructor and deleted in the destructor. The format enters
 * the process-wide registry, so only one dictionary may live at a time, and it must outlive
 * every decoder, message and statistics object that points into it.
 *
 * Every block starts with the same header; all values are little-endian:
 *
 *   offset 0        2                                10
 *          +--------+--------------------------------+-------------------+
 *          | Number |              Time              |      payload      |
 *          |  u16   |  u64, ms since the GPS epoch   | per message type  |
 *          +--------+--------------------------------+-------------------+
 *
 * Number tells the message types apart (it is their discriminant); Time is the receiver time
 * of the epoch the block belongs to. Payloads, by offset:
 *
 *   1 PosCart      10 X f64 [m]  18 Y f64 [m]  26 Z f64 [m]  34 NrSat u8 (N/A 255)
 *   2 VelCart      10 Vx i32  14 Vy i32  18 Vz i32, each 0.001 m/s (N/A -2147483648)
 *   3 ClockStatus  10 Bias i32 [ns]  14 Drift i16, 0.001 ppm  16 State u8 (symbolic)
 *   4 SatInfo      10 N u8, then N records of 3 bytes:
 *                  11 Svid u8  12 Elevation i8 [deg]  13 CN0 u8, 0.25 dB-Hz
 */
class DemoDictionary
{
public:
    static constexpr int headerSize = 10;

    DemoDictionary();
    ~DemoDictionary();
    DemoDictionary(DemoDictionary const &) = delete;
    DemoDictionary &operator=(DemoDictionary const &) = delete;

    FormatInfo const *getFormat() const;
    /// The message type of that name, or null.
    MessageInfo const *getMessageInfo(QString const &name) const;
    /// The message type's block number (its discriminant value).
    static quint16 getNumber(MessageInfo const *info);
    DemoFieldInfo const *getNumberField() const { return mNumberField; }
    DemoFieldInfo const *getTimeField() const { return mTimeField; }

    /**
     * A new zero-filled block of the type with room for that many records, its number, time
     * and record count set. The caller owns it (reference count 0).
     */
    DemoMessage *createMessage(MessageInfo const *info, quint64 timeMillis, int records = 0) const;

private:
    DemoFieldInfo *addField(DemoFieldInfo *field);
    MessageInfo *addMessage(QString const &name, quint16 number, QString const &description);

    FormatInfo *mFormat = nullptr;
    QVector<MessageInfo *> mMessages;
    QVector<DemoFieldInfo *> mFields;
    DemoFieldInfo *mNumberField = nullptr;
    DemoFieldInfo *mTimeField = nullptr;
};

#endif // MESSAGEAPI_DEMO_DEMODICTIONARY_H
