// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"

#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "testfieldinfo.h"

#include <initializer_list>
#include <utility>

struct DictionaryFixture::Field
{
    TestFieldInfo *field;

    Field &unit(char const *identifier)
    {
        field->setUnit(QString::fromLatin1(identifier));
        return *this;
    }
    Field &scale(double factor, signed char precision = -1)
    {
        field->setScaleFactor(factor);
        return this->precision(precision);
    }
    Field &precision(signed char precision)
    {
        field->setPrecision(precision);
        return *this;
    }
    Field &doNotUse(FieldValue const &value)
    {
        field->setDoNotUseValue(value);
        return *this;
    }
    Field &repeated()
    {
        field->setIsRepeated(true);
        return *this;
    }
    /// Symbolic texts for u8 values.
    Field &symbols(std::initializer_list<std::pair<unsigned, char const *>> symbols)
    {
        for (auto const &symbol : symbols)
            field->addSymbolicValue(FieldValue::u(symbol.first, 8),
                                    QString::fromLatin1(symbol.second));
        return *this;
    }
    Field &in(MessageInfo *message, int index, bool isKey = false)
    {
        message->addFieldInfo(field, index, isKey);
        return *this;
    }
    operator TestFieldInfo *() const { return field; }
};

DictionaryFixture::DictionaryFixture()
{
    buildVexa();
    buildRtcm3();
    buildRtcm2();
    buildCmr();
}

DictionaryFixture::~DictionaryFixture()
{
    qDeleteAll(mFields);
    qDeleteAll(mMessages);
    qDeleteAll(mFormats);
}

FormatInfo *DictionaryFixture::format(QString const &name) const
{
    for (FormatInfo *format : mFormats) {
        if (format->getName() == name)
            return format;
    }
    return nullptr;
}

MessageInfo *DictionaryFixture::message(QString const &format, QString const &name) const
{
    for (MessageInfo *message : mMessages) {
        if (message->getName() == name && message->getFormatInfo()->getName() == format)
            return message;
    }
    return nullptr;
}

TestFieldInfo *DictionaryFixture::field(QString const &format, QString const &message,
                                        QString const &name) const
{
    MessageInfo const *info = this->message(format, message);
    FieldInfo const *found = info ? info->getFieldInfo(name) : nullptr;
    for (TestFieldInfo *field : mFields) {
        if (field == found)
            return field;
    }
    return nullptr;
}

FormatInfo *DictionaryFixture::addFormat(char const *name, char const *description)
{
    auto *format = new FormatInfo(QString::fromLatin1(name));
    format->setDescriptiveText(QString::fromLatin1(description));
    mFormats.append(format);
    return format;
}

DictionaryFixture::Field DictionaryFixture::addField(char const *name, FieldType const &type)
{
    auto *field = new TestFieldInfo(QString::fromLatin1(name), type);
    mFields.append(field);
    return Field { field };
}

MessageInfo *DictionaryFixture::addMessage(FormatInfo *format, char const *name,
                                           char const *description)
{
    auto *message = new MessageInfo(QString::fromLatin1(name));
    message->setDescriptiveText(QString::fromLatin1(description));
    message->setFormatInfo(format);
    mMessages.append(message);
    return message;
}

void DictionaryFixture::buildVexa()
{
    FormatInfo *vexa = addFormat("VEXA", "Receiver block format");
    mBlockNumber = addField("BlockNumber", FieldType::u(16));
    mBlockNumber->setShortDescriptiveText(QStringLiteral("Block number"));
    TestFieldInfo *tow = addField("TOW", FieldType::u(32))
                             .scale(0.001, 3)
                             .unit("second")
                             .doNotUse(FieldValue::u(4294967295u, 32));
    tow->setDescriptiveText(QStringLiteral("Time of week"));
    TestFieldInfo *wnc
        = addField("WNc", FieldType::u(16)).unit("week").doNotUse(FieldValue::u(65535, 16));
    wnc->setDescriptiveText(QStringLiteral("Week number"));

    auto addVexaMessage = [&](char const *name, unsigned number, char const *description) {
        MessageInfo *message = addMessage(vexa, name, description);
        message->addFieldInfo(mBlockNumber, 0);
        message->addFieldInfo(tow, 1);
        message->addFieldInfo(wnc, 2);
        message->addDiscriminantValue(mBlockNumber, FieldValue::u(number, 16));
        vexa->addMessageInfo(message);
        return message;
    };
    auto addPvtMode = [&](MessageInfo *message) {
        addField("Mode", FieldType::u(8))
            .symbols({ { 0, "No PVT" },
                       { 1, "Stand-Alone PVT" },
                       { 2, "Differential PVT" },
                       { 4, "RTK with fixed ambiguities" },
                       { 5, "RTK with float ambiguities" } })
            .in(message, 3);
    };
    auto addF64 = [&](MessageInfo *message, char const *name, int index, char const *unit,
                      signed char precision) {
        addField(name, FieldType::f64())
            .unit(unit)
            .precision(precision)
            .doNotUse(FieldValue::f64(-2e10))
            .in(message, index);
    };
    auto addVelocity = [&](char const *name, unsigned number, char const *description,
                           std::initializer_list<char const *> axes) {
        MessageInfo *message = addVexaMessage(name, number, description);
        addPvtMode(message);
        int index = 4;
        for (char const *axis : axes) {
            addField(axis, FieldType::f32())
                .unit("meterpersecond")
                .precision(3)
                .doNotUse(FieldValue::f32(-2e10f))
                .in(message, index++);
        }
    };

    MessageInfo *posCart = addVexaMessage("PosCart", 4006, "Position in Cartesian coordinates");
    addPvtMode(posCart);
    addField("Error", FieldType::u(8))
        .symbols({ { 0, "No Error" }, { 1, "Not enough measurements" } })
        .in(posCart, 4);
    addF64(posCart, "X", 5, "meter", 3);
    addF64(posCart, "Y", 6, "meter", 3);
    addF64(posCart, "Z", 7, "meter", 3);
    addField("NrSV", FieldType::u(8)).doNotUse(FieldValue::u(255, 8)).in(posCart, 8);
    addField("Datum", FieldType::u(8)).symbols({ { 0, "WGS84" } }).in(posCart, 9);

    MessageInfo *posGeod = addVexaMessage("PosGeod", 4007, "Position in geodetic coordinates");
    addPvtMode(posGeod);
    addF64(posGeod, "Latitude", 4, "radian", 9);
    addF64(posGeod, "Longitude", 5, "radian", 9);
    addF64(posGeod, "Height", 6, "meter", 3);

    addVelocity("VelCart", 4008, "Velocity in Cartesian coordinates", { "Vx", "Vy", "Vz" });
    addVelocity("VelGeod", 4009, "Velocity in a local frame", { "Vn", "Ve", "Vu" });

    MessageInfo *status = addVexaMessage("ReceiverStatus", 4014, "Overall receiver status");
    addField("CPULoad", FieldType::u(8))
        .unit("percent")
        .doNotUse(FieldValue::u(255, 8))
        .in(status, 3);
    addField("UpTime", FieldType::u(32)).unit("second").in(status, 4);
    TestFieldInfo *rxState = addField("RxState", FieldType::u(32));
    rxState->setRepresentationMode(FieldValue::Hexadecimal);
    rxState->addSubFieldInfo(addField("ActiveAntenna", FieldType::u(1)));
    rxState->addSubFieldInfo(addField("ExtFreq", FieldType::u(1)));
    status->addFieldInfo(rxState, 5);
    addField("Temperature", FieldType::i(8))
        .unit("celsius")
        .doNotUse(FieldValue::i(-128, 8))
        .in(status, 6);

    // The channel type exists before the field that embeds it, which registers with it.
    MessageInfo *channel = addMessage(vexa, "MeasEpochChannel", "Measurements of one channel");
    addField("SVID", FieldType::u(8)).in(channel, 0, true);
    addField("Doppler", FieldType::i(32)).scale(0.0001).unit("hertz").in(channel, 1);
    addField("CN0", FieldType::u(8))
        .scale(0.25, 2)
        .unit("decibelhertz")
        .doNotUse(FieldValue::u(255, 8))
        .in(channel, 2);
    MessageInfo *measEpoch = addVexaMessage("MeasEpoch", 4027, "Measurement set of one epoch");
    addField("N", FieldType::u(8)).in(measEpoch, 3);
    addField("Channel", FieldType::subMessage(channel)).repeated().in(measEpoch, 4);
    vexa->addSubMessageInfo(channel);

    MessageInfo *diffCorrIn
        = addVexaMessage("DiffCorrIn", 5919, "Incoming differential corrections");
    addField("Mode", FieldType::u(8))
        .symbols({ { 0, "RTCMv2" }, { 1, "CMRv2" }, { 2, "RTCMv3" } })
        .in(diffCorrIn, 3);
    addField("Source", FieldType::u(8)).symbols({ { 0, "COM1" }, { 1, "COM2" } }).in(diffCorrIn, 4);
    addField("Frame", FieldType::byte()).repeated().in(diffCorrIn, 5);

    MessageInfo *setup = addVexaMessage("ReceiverSetup", 5902, "General receiver information");
    setup->setIsMain(false);
    addField("MarkerName", FieldType::ch()).repeated().in(setup, 3);
    addField("RxVersion", FieldType::ch()).repeated().in(setup, 4);
}

void DictionaryFixture::buildRtcm3()
{
    FormatInfo *rtcm3 = addFormat("RTCM3", "RTCM version 3");
    TestFieldInfo *number = addField("MessageNumber", FieldType::u(12));
    TestFieldInfo *station = addField("StationID", FieldType::u(12));
    auto addRtcm3Message
        = [&](char const *name, char const *description, std::initializer_list<unsigned> numbers) {
              MessageInfo *message = addMessage(rtcm3, name, description);
              message->addFieldInfo(number, 0);
              message->addFieldInfo(station, 1, true);
              rtcm3->addMessageInfo(message);
              for (unsigned value : numbers)
                  message->addDiscriminantValue(number, FieldValue::u(value, 12));
              return message;
          };

    MessageInfo *type1004
        = addRtcm3Message("Type1004", "Extended L1&L2 GPS RTK observables", { 1004 });
    addField("GPSEpochTime", FieldType::u(30)).scale(0.001).unit("second").in(type1004, 2);
    MessageInfo *type1005
        = addRtcm3Message("Type1005", "Stationary RTK reference station ARP", { 1005 });
    int index = 2;
    for (char const *axis : { "ECEFX", "ECEFY", "ECEFZ" })
        addField(axis, FieldType::i(38)).scale(0.0001, 4).unit("meter").in(type1005, index++);
    MessageInfo *type1033
        = addRtcm3Message("Type1033", "Receiver and antenna descriptors", { 1033 });
    addField("AntennaDescriptor", FieldType::ch()).repeated().in(type1033, 2);
    addRtcm3Message("MSM7", "Multiple signal message, full", { 1077, 1087, 1097, 1127 });
    addRtcm3Message("Proprietary", "Vendor messages", {})
        ->addDiscriminantValueRange(number, FieldValue::u(4001, 12), FieldValue::u(4095, 12));
}

void DictionaryFixture::buildRtcm2()
{
    FormatInfo *rtcm2 = addFormat("RTCM2", "RTCM version 2");
    TestFieldInfo *type = addField("MessageType", FieldType::u(6));
    TestFieldInfo *station = addField("StationID", FieldType::u(10));
    TestFieldInfo *zCount
        = addField("ModifiedZCount", FieldType::u(13)).scale(0.6, 1).unit("second");
    struct
    {
        char const *name;
        unsigned number;
        char const *description;
    } const rows[] = { { "Type1", 1, "Differential GPS corrections" },
                       { "Type3", 3, "GPS reference station parameters" },
                       { "Type18", 18, "RTK uncorrected carrier phases" } };
    for (auto const &row : rows) {
        MessageInfo *message = addMessage(rtcm2, row.name, row.description);
        message->addFieldInfo(type, 0);
        message->addFieldInfo(station, 1, true);
        message->addFieldInfo(zCount, 2);
        message->addDiscriminantValue(type, FieldValue::u(row.number, 6));
        rtcm2->addMessageInfo(message);
    }
}

void DictionaryFixture::buildCmr()
{
    FormatInfo *cmr = addFormat("CMR", "Compact measurement record");
    TestFieldInfo *type = addField("Type", FieldType::u(3));
    MessageInfo *message = nullptr;
    unsigned number = 0;
    for (char const *name : { "CMRObs", "CMRRef", "CMRDesc" }) {
        message = addMessage(cmr, name, nullptr);
        message->addFieldInfo(type, 0);
        message->addDiscriminantValue(type, FieldValue::u(number++, 3));
        cmr->addMessageInfo(message);
    }
    addField("ShortID", FieldType::ch()).repeated().in(message, 1); // in CMRDesc
}
