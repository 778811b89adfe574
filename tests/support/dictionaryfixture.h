// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_DICTIONARYFIXTURE_H
#define MESSAGEAPI_TESTS_DICTIONARYFIXTURE_H

#include <QHash>
#include <QString>
#include <QVector>

class FieldInfo;
class FieldType;
class FormatInfo;
class MessageInfo;
class TestFieldInfo;

/**
 * A small but realistic dictionary for tests, built in the constructor and deleted in the
 * destructor (its formats leave the process-wide registry then). Create one per test, or one
 * per test class in initTestCase() and delete it in cleanupTestCase(); two fixtures alive at
 * once register each format name twice.
 *
 * All fields are TestFieldInfo, so TestMessage objects carry their values. Discriminants are
 * single-position, on the format's message-number field, with unsigned values of that field's
 * size. Message types, in order of addition (numbers are the discriminant values):
 *
 * Format "VEXA" (block header fields "BlockNumber" u16, "TOW" u32 (scale 0.001, [s], do-not-use
 * 4294967295), "WNc" u16 ([w], do-not-use 65535) at indexes 0-2 of every VEXA message; the
 * discriminant is on "BlockNumber"; f64 fields have do-not-use -2e10):
 *
 *   name              number  main  fields after the header
 *   PosCart           4006    yes   Mode u8 (symbolic), Error u8 (symbolic), X Y Z f64 [m],
 *                                   NrSV u8 (do-not-use 255), Datum u8
 *   PosGeod           4007    yes   Mode u8 (symbolic), Latitude Longitude f64 [rad],
 *                                   Height f64 [m]
 *   VelCart           4008    yes   Mode u8 (symbolic), Vx Vy Vz f32 [m/s] (do-not-use -2e10)
 *   VelGeod           4009    yes   Mode u8 (symbolic), Vn Ve Vu f32 [m/s]
 *   ReceiverStatus    4014    yes   CPULoad u8 [%] (do-not-use 255), UpTime u32 [s],
 *                                   RxState u32 hexadecimal with sub-fields ActiveAntenna u1,
 *                                   ExtFreq u1 (not members of the message), Temperature i8
 *                                   [°C] (do-not-use -128)
 *   MeasEpoch         4027    yes   N u8, Channel (repeated sub-message MeasEpochChannel)
 *   DiffCorrIn        5919    yes   Mode u8 (symbolic), Source u8 (symbolic), Frame byte
 *                                   (repeated)
 *   ReceiverSetup     5902    no    MarkerName c8 (repeated, a string field),
 *                                   RxVersion c8 (repeated)
 *   MeasEpochChannel  -       -     sub-message only: SVID u8 (key), Doppler i32 (scale 0.0001,
 *                                   [Hz]), CN0 u8 (scale 0.25, [dB-Hz], do-not-use 255)
 *
 * Format "RTCM3" (every message: "MessageNumber" u12 at index 0, "StationID" u12 key at 1):
 *   Type1004 1004 (GPSEpochTime u30, scale 0.001, [s]), Type1005 1005 (ECEFX ECEFY ECEFZ i38,
 *   scale 0.0001, [m]), Type1033 1033 (AntennaDescriptor c8 repeated), MSM7 (four single
 *   values 1077, 1087, 1097, 1127), Proprietary (one range 4001..4095).
 *
 * Format "RTCM2" ("MessageType" u6, "StationID" u10 key, "ModifiedZCount" u13 scale 0.6 [s]):
 *   Type1 1, Type3 3, Type18 18.
 *
 * Format "CMR" ("Type" u3): CMRObs 0, CMRRef 1, CMRDesc 2 (ShortID c8 repeated).
 */
class DictionaryFixture
{
public:
    DictionaryFixture();
    ~DictionaryFixture();
    DictionaryFixture(DictionaryFixture const &) = delete;
    DictionaryFixture &operator=(DictionaryFixture const &) = delete;

    FormatInfo *vexa() const { return format(QStringLiteral("VEXA")); }
    FormatInfo *rtcm3() const { return format(QStringLiteral("RTCM3")); }
    FormatInfo *rtcm2() const { return format(QStringLiteral("RTCM2")); }
    FormatInfo *cmr() const { return format(QStringLiteral("CMR")); }

    /// The fixture's format of that name, or null.
    FormatInfo *format(QString const &name) const;
    /// The fixture's message type of that name in the format (sub-messages included), or null.
    MessageInfo *message(QString const &format, QString const &name) const;
    /// The field of that name in the message type, or null. Header fields are shared: the
    /// "BlockNumber" of every VEXA message is the same object.
    TestFieldInfo *field(QString const &format, QString const &message, QString const &name) const;

    /// Shorthands for the VEXA message types.
    MessageInfo *posCart() const { return vexaMessage(QStringLiteral("PosCart")); }
    MessageInfo *posGeod() const { return vexaMessage(QStringLiteral("PosGeod")); }
    MessageInfo *velCart() const { return vexaMessage(QStringLiteral("VelCart")); }
    MessageInfo *velGeod() const { return vexaMessage(QStringLiteral("VelGeod")); }
    MessageInfo *receiverStatus() const { return vexaMessage(QStringLiteral("ReceiverStatus")); }
    MessageInfo *measEpoch() const { return vexaMessage(QStringLiteral("MeasEpoch")); }
    MessageInfo *measEpochChannel() const
    {
        return vexaMessage(QStringLiteral("MeasEpochChannel"));
    }
    MessageInfo *diffCorrIn() const { return vexaMessage(QStringLiteral("DiffCorrIn")); }
    MessageInfo *receiverSetup() const { return vexaMessage(QStringLiteral("ReceiverSetup")); }

    /// The VEXA block-header message-number field (the discriminant field of every VEXA type).
    TestFieldInfo *blockNumber() const { return mBlockNumber; }

    /// Everything the fixture created, in creation order.
    QVector<FormatInfo *> formats() const { return mFormats; }
    QVector<MessageInfo *> messages() const { return mMessages; }
    QVector<TestFieldInfo *> fields() const { return mFields; }

private:
    MessageInfo *vexaMessage(QString const &name) const
    {
        return message(QStringLiteral("VEXA"), name);
    }

    struct Field; // sets up one new field in a chain of calls

    FormatInfo *addFormat(char const *name, char const *description);
    Field addField(char const *name, FieldType const &type);
    MessageInfo *addMessage(FormatInfo *format, char const *name, char const *description);

    void buildVexa();
    void buildRtcm3();
    void buildRtcm2();
    void buildCmr();

    QVector<FormatInfo *> mFormats;
    QVector<MessageInfo *> mMessages;
    QVector<TestFieldInfo *> mFields;
    TestFieldInfo *mBlockNumber = nullptr;
};

#endif // MESSAGEAPI_TESTS_DICTIONARYFIXTURE_H
