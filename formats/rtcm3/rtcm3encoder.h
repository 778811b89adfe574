// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3ENCODER_H
#define MESSAGEAPI_RTCM3_RTCM3ENCODER_H

#include "messageapirtcm3_export.h"

#include "fieldvalue.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QVector>

#include <memory>
#include <vector>

class Message;
class MessageInfo;
class Rtcm3BitWriter;

/**
 * Builds an RTCM 3 frame of one message type from field values: the way back from an
 * Rtcm3Message, for relays, simulators and streams with known faults.
 *
 *   Rtcm3Encoder msm(dictionary.getMessageInfo(1077));
 *   msm.setValue(QStringLiteral("DF003"), 7).setValue(QStringLiteral("DF004"), towMs);
 *   msm.addRecord(QStringLiteral("Satellites")).setValue(QStringLiteral("SatelliteId"), 5)...;
 *   msm.addRecord(QStringLiteral("Signals")).setValue(QStringLiteral("SatelliteId"), 5)
 *       .setValue(QStringLiteral("SignalId"), 2).setScaled(QStringLiteral("DF408"), 45.5)...;
 *   const QByteArray frame = msm.encode();
 *
 * Fields are named as in the dictionary; the message number (DF002) is filled in, and a field
 * left unset is written as zero. Values are raw, as the frame carries them, or, with
 * setScaled(), in the field's unit. A value that does not fit its field is refused: nothing is
 * ever cut to fit.
 *
 * Repeated records (the satellites and cells of MSM, the entries of 1013 and 1230, the
 * satellites of legacy observations) are added with addRecord(). Counts and masks need not be
 * set: encode() takes the counts from the values and records given, and the masks from the
 * records' SatelliteId and SignalId, writing the records in the order of their masks. Counts
 * and masks that are set must agree with the records.
 *
 * Every refusal throws a MessageApiEvent of type ClientError whose text names the function,
 * the value and the field.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3Encoder
{
    Q_DECLARE_TR_FUNCTIONS(Rtcm3Encoder)

public:
    /// info: a message type or record type of the dictionary, which must outlive the encoder.
    explicit Rtcm3Encoder(MessageInfo const *info);
    /// Takes every value and record of a decoded Rtcm3Message and the bytes that follow its fields,
    /// so that encode() gives its frame back.
    explicit Rtcm3Encoder(Message const *message);
    ~Rtcm3Encoder();
    Rtcm3Encoder(Rtcm3Encoder const &) = delete;
    Rtcm3Encoder &operator=(Rtcm3Encoder const &) = delete;

    /// The message type or record type being encoded.
    MessageInfo const *getInfo() const { return mInfo; }

    /// A raw value: an integer of either sign for a number, a character for a text. index
    /// counts the values of a repeated field; the values between are zero.
    ///@{
    Rtcm3Encoder &setValue(QString const &field, FieldValue const &value, unsigned int index = 0);
    Rtcm3Encoder &setValue(QString const &field, qint64 value, unsigned int index = 0);
    ///@}
    /// A value in the field's unit, divided by its scale factor and rounded to the nearest step.
    Rtcm3Encoder &setScaled(QString const &field, double value, unsigned int index = 0);
    /// The characters of a text field, Latin-1.
    Rtcm3Encoder &setText(QString const &field, QString const &text);
    /// Appends a record to the group field; the record belongs to this encoder.
    Rtcm3Encoder &addRecord(QString const &groupField);

    /// Bytes to write after the fields, as some receivers fill their frames up to a fixed size.
    ///@{
    void setTrailingBytes(QByteArray const &bytes) { mTrailingBytes = bytes; }
    QByteArray getTrailingBytes() const { return mTrailingBytes; }
    ///@}

    /// The whole frame: preamble, length, payload, CRC-24Q.
    QByteArray encode() const;
    /// A frame around a payload of up to 1023 bytes.
    static QByteArray frame(QByteArray const &payload);

private:
    struct Resolved;

    int indexOf(QString const &field, char const *function) const;
    void store(int index, unsigned int position, FieldValue const &value, char const *function);
    void resolve(Resolved *resolved) const;
    /// The fields' bits, padded to whole bytes.
    QByteArray encodeFields() const;
    /// The values of the message type's fields or a record's, as the frame carries them.
    void write(Resolved const &resolved, Rtcm3BitWriter *writer) const;
    void writeRecords(int group, QVector<Rtcm3Encoder const *> const &records,
                      Rtcm3BitWriter *writer) const;
    [[noreturn]] void refuse(char const *function, QString const &text) const;

    MessageInfo const *mInfo;
    /// Per field of the message type: the values set, in the field's own type.
    QVector<QVector<FieldValue>> mValues;
    /// Per field: the records added to a group field.
    std::vector<std::vector<std::unique_ptr<Rtcm3Encoder>>> mRecords;
    QByteArray mTrailingBytes;
};

#endif // MESSAGEAPI_RTCM3_RTCM3ENCODER_H
