// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_DICTIONARYFIXTURE_H
#define MESSAGEAPI_TESTS_DICTIONARYFIXTURE_H

#include <QString>
#include <QVector>

class FieldType;
class FormatInfo;
class MessageInfo;
class TestFieldInfo;

/**
 * A small dictionary of four formats for tests, built in the constructor and deleted in the
 * destructor (its formats leave the process-wide registry then). Two fixtures alive at once
 * register each format name twice.
 *
 * Every message type starts with its format's header fields, shared by all its types; the
 * first header field is the discriminant, those named "...ID" are keys. All other fields are
 * u8 TestFieldInfo of their own.
 *
 *   VEXA  header BlockNumber u16, TOW, WNc
 *         PosCart 4006 (Mode Error X Y Z NrSV Datum), PosGeod 4007 (Mode Latitude Longitude
 *         Height), VelCart 4008 (Mode Vx Vy Vz), VelGeod 4009 (Mode Vn Ve Vu),
 *         ReceiverStatus 4014 (CPULoad UpTime RxState Temperature), MeasEpoch 4027 (N Channel),
 *         DiffCorrIn 5919 (Mode Source Frame), ReceiverSetup 5902, not main (MarkerName
 *         RxVersion); sub-message MeasEpochChannel (header SVID, Doppler CN0), the type of the
 *         repeated field Channel
 *   RTCM3 header MessageNumber u12, StationID key
 *         Type1004 1004 (GPSEpochTime), Type1005 1005 (ECEFX ECEFY ECEFZ)
 *   RTCM2 header MessageType u6, StationID key, ModifiedZCount
 *         Type1 1, Type3 3, Type18 18
 *   CMR   header Type u3
 *         CMRObs 0, CMRRef 1, CMRDesc 2 (ShortID)
 */
class DictionaryFixture
{
public:
    DictionaryFixture();
    ~DictionaryFixture();
    DictionaryFixture(DictionaryFixture const &) = delete;
    DictionaryFixture &operator=(DictionaryFixture const &) = delete;

    FormatInfo *vexa() const { return mFormats.at(0); }
    FormatInfo *rtcm3() const { return mFormats.at(1); }
    FormatInfo *rtcm2() const { return mFormats.at(2); }
    FormatInfo *cmr() const { return mFormats.at(3); }

    /// The fixture's message type of that name in the format (sub-messages included), or null.
    MessageInfo *message(QString const &format, QString const &name) const;
    /// The field of that name in the message type, or null.
    TestFieldInfo *field(QString const &format, QString const &message, QString const &name) const;

    MessageInfo *posCart() const { return vexaMessage("PosCart"); }
    MessageInfo *posGeod() const { return vexaMessage("PosGeod"); }
    MessageInfo *velCart() const { return vexaMessage("VelCart"); }
    MessageInfo *velGeod() const { return vexaMessage("VelGeod"); }
    MessageInfo *receiverStatus() const { return vexaMessage("ReceiverStatus"); }
    MessageInfo *measEpoch() const { return vexaMessage("MeasEpoch"); }
    MessageInfo *measEpochChannel() const { return vexaMessage("MeasEpochChannel"); }
    MessageInfo *diffCorrIn() const { return vexaMessage("DiffCorrIn"); }
    /// The VEXA discriminant field, shared by every VEXA main type.
    TestFieldInfo *blockNumber() const { return mBlockNumber; }

private:
    MessageInfo *vexaMessage(char const *name) const
    {
        return message(QStringLiteral("VEXA"), QLatin1String(name));
    }

    TestFieldInfo *addField(char const *name, FieldType const &type);
    /// A type of the format with its header, its number on the first header field (none when
    /// negative) and the space-separated fields after the header.
    MessageInfo *addMessage(FormatInfo *format, QVector<TestFieldInfo *> const &header,
                            char const *name, int number, char const *fields);

    QVector<FormatInfo *> mFormats;
    QVector<MessageInfo *> mMessages;
    QVector<TestFieldInfo *> mFields;
    TestFieldInfo *mBlockNumber = nullptr;
};

#endif // MESSAGEAPI_TESTS_DICTIONARYFIXTURE_H
