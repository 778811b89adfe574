// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"

#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "testfieldinfo.h"

namespace {

void addPvtModes(FieldInfo *mode)
{
    mode->addSymbolicValue(FieldValue::u(0, 8), QStringLiteral("No PVT"));
    mode->addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("Stand-Alone PVT"));
    mode->addSymbolicValue(FieldValue::u(2, 8), QStringLiteral("Differential PVT"));
    mode->addSymbolicValue(FieldValue::u(4, 8), QStringLiteral("RTK with fixed ambiguities"));
    mode->addSymbolicValue(FieldValue::u(5, 8), QStringLiteral("RTK with float ambiguities"));
}

FieldValue u16(unsigned number)
{
    return FieldValue::u(number, 16);
}

} // namespace

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
        if (found && field == found)
            return field;
    }
    return nullptr;
}

FormatInfo *DictionaryFixture::addFormat(QString const &name, QString const &description)
{
    auto *format = new FormatInfo(name);
    format->setDescriptiveText(description);
    mFormats.append(format);
    return format;
}

TestFieldInfo *DictionaryFixture::addField(QString const &name, FieldType const &type)
{
    auto *field = new TestFieldInfo(name, type);
    mFields.append(field);
    return field;
}

MessageInfo *DictionaryFixture::addMessage(FormatInfo *format, QString const &name,
                                           QString const &description)
{
    auto *message = new MessageInfo(name);
    message->setDescriptiveText(description);
    message->setFormatInfo(format);
    mMessages.append(message);
    return message;
}

void DictionaryFixture::buildVexa()
{
    FormatInfo *vexa = addFormat(QStringLiteral("VEXA"), QStringLiteral("Receiver block format"));

    mBlockNumber = addField(QStringLiteral("BlockNumber"), FieldType::u(16));
    mBlockNumber->setShortDescriptiveText(QStringLiteral("Block number"));
    TestFieldInfo *tow = addField(QStringLiteral("TOW"), FieldType::u(32));
    tow->setDescriptiveText(QStringLiteral("Time of week"));
    tow->setScaleFactor(0.001);
    tow->setPrecision(3);
    tow->setUnit(QStringLiteral("second"));
    tow->setDoNotUseValue(FieldValue::u(4294967295u, 32));
    TestFieldInfo *wnc = addField(QStringLiteral("WNc"), FieldType::u(16));
    wnc->setDescriptiveText(QStringLiteral("Week number"));
    wnc->setUnit(QStringLiteral("week"));
    wnc->setDoNotUseValue(u16(65535));

    auto addVexaMessage = [&](QString const &name, unsigned number, QString const &description) {
        MessageInfo *message = addMessage(vexa, name, description);
        message->addFieldInfo(mBlockNumber, 0);
        message->addFieldInfo(tow, 1);
        message->addFieldInfo(wnc, 2);
        message->addDiscriminantValue(mBlockNumber, u16(number));
        vexa->addMessageInfo(message);
        return message;
    };
    auto addModeField = [&](MessageInfo *message, int index) {
        TestFieldInfo *mode = addField(QStringLiteral("Mode"), FieldType::u(8));
        addPvtModes(mode);
        message->addFieldInfo(mode, index);
        return mode;
    };
    auto addF64 = [&](MessageInfo *message, QString const &name, int index, QString const &unit,
                      signed char precision) {
        TestFieldInfo *field = addField(name, FieldType::f64());
        field->setUnit(unit);
        field->setPrecision(precision);
        field->setDoNotUseValue(FieldValue::f64(-2e10));
        message->addFieldInfo(field, index);
        return field;
    };
    auto addF32 = [&](MessageInfo *message, QString const &name, int index) {
        TestFieldInfo *field = addField(name, FieldType::f32());
        field->setUnit(QStringLiteral("meterpersecond"));
        field->setPrecision(3);
        field->setDoNotUseValue(FieldValue::f32(-2e10f));
        message->addFieldInfo(field, index);
        return field;
    };

    MessageInfo *posCart = addVexaMessage(QStringLiteral("PosCart"), 4006,
                                          QStringLiteral("Position in Cartesian coordinates"));
    addModeField(posCart, 3);
    TestFieldInfo *error = addField(QStringLiteral("Error"), FieldType::u(8));
    error->addSymbolicValue(FieldValue::u(0, 8), QStringLiteral("No Error"));
    error->addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("Not enough measurements"));
    posCart->addFieldInfo(error, 4);
    addF64(posCart, QStringLiteral("X"), 5, QStringLiteral("meter"), 3);
    addF64(posCart, QStringLiteral("Y"), 6, QStringLiteral("meter"), 3);
    addF64(posCart, QStringLiteral("Z"), 7, QStringLiteral("meter"), 3);
    TestFieldInfo *nrSv = addField(QStringLiteral("NrSV"), FieldType::u(8));
    nrSv->setDoNotUseValue(FieldValue::u(255, 8));
    posCart->addFieldInfo(nrSv, 8);
    TestFieldInfo *datum = addField(QStringLiteral("Datum"), FieldType::u(8));
    datum->addSymbolicValue(FieldValue::u(0, 8), QStringLiteral("WGS84"));
    posCart->addFieldInfo(datum, 9);

    MessageInfo *posGeod = addVexaMessage(QStringLiteral("PosGeod"), 4007,
                                          QStringLiteral("Position in geodetic coordinates"));
    addModeField(posGeod, 3);
    addF64(posGeod, QStringLiteral("Latitude"), 4, QStringLiteral("radian"), 9);
    addF64(posGeod, QStringLiteral("Longitude"), 5, QStringLiteral("radian"), 9);
    addF64(posGeod, QStringLiteral("Height"), 6, QStringLiteral("meter"), 3);

    MessageInfo *velCart = addVexaMessage(QStringLiteral("VelCart"), 4008,
                                          QStringLiteral("Velocity in Cartesian coordinates"));
    addModeField(velCart, 3);
    addF32(velCart, QStringLiteral("Vx"), 4);
    addF32(velCart, QStringLiteral("Vy"), 5);
    addF32(velCart, QStringLiteral("Vz"), 6);

    MessageInfo *velGeod = addVexaMessage(QStringLiteral("VelGeod"), 4009,
                                          QStringLiteral("Velocity in a local frame"));
    addModeField(velGeod, 3);
    addF32(velGeod, QStringLiteral("Vn"), 4);
    addF32(velGeod, QStringLiteral("Ve"), 5);
    addF32(velGeod, QStringLiteral("Vu"), 6);

    MessageInfo *status = addVexaMessage(QStringLiteral("ReceiverStatus"), 4014,
                                         QStringLiteral("Overall receiver status"));
    TestFieldInfo *cpuLoad = addField(QStringLiteral("CPULoad"), FieldType::u(8));
    cpuLoad->setUnit(QStringLiteral("percent"));
    cpuLoad->setDoNotUseValue(FieldValue::u(255, 8));
    status->addFieldInfo(cpuLoad, 3);
    TestFieldInfo *upTime = addField(QStringLiteral("UpTime"), FieldType::u(32));
    upTime->setUnit(QStringLiteral("second"));
    status->addFieldInfo(upTime, 4);
    TestFieldInfo *rxState = addField(QStringLiteral("RxState"), FieldType::u(32));
    rxState->setRepresentationMode(FieldValue::Hexadecimal);
    rxState->addSubFieldInfo(addField(QStringLiteral("ActiveAntenna"), FieldType::u(1)));
    rxState->addSubFieldInfo(addField(QStringLiteral("ExtFreq"), FieldType::u(1)));
    status->addFieldInfo(rxState, 5);
    TestFieldInfo *temperature = addField(QStringLiteral("Temperature"), FieldType::i(8));
    temperature->setUnit(QStringLiteral("celsius"));
    temperature->setDoNotUseValue(FieldValue::i(-128, 8));
    status->addFieldInfo(temperature, 6);

    // The channel type exists before the field that embeds it, which registers with it.
    MessageInfo *channel = addMessage(vexa, QStringLiteral("MeasEpochChannel"),
                                      QStringLiteral("Measurements of one channel"));
    TestFieldInfo *svid = addField(QStringLiteral("SVID"), FieldType::u(8));
    channel->addFieldInfo(svid, 0, true);
    TestFieldInfo *doppler = addField(QStringLiteral("Doppler"), FieldType::i(32));
    doppler->setScaleFactor(0.0001);
    doppler->setUnit(QStringLiteral("hertz"));
    channel->addFieldInfo(doppler, 1);
    TestFieldInfo *cn0 = addField(QStringLiteral("CN0"), FieldType::u(8));
    cn0->setScaleFactor(0.25);
    cn0->setPrecision(2);
    cn0->setUnit(QStringLiteral("decibelhertz"));
    cn0->setDoNotUseValue(FieldValue::u(255, 8));
    channel->addFieldInfo(cn0, 2);

    MessageInfo *measEpoch = addVexaMessage(QStringLiteral("MeasEpoch"), 4027,
                                            QStringLiteral("Measurement set of one epoch"));
    measEpoch->addFieldInfo(addField(QStringLiteral("N"), FieldType::u(8)), 3);
    TestFieldInfo *channels = addField(QStringLiteral("Channel"), FieldType::subMessage(channel));
    channels->setIsRepeated(true);
    measEpoch->addFieldInfo(channels, 4);
    vexa->addSubMessageInfo(channel);

    MessageInfo *diffCorrIn = addVexaMessage(QStringLiteral("DiffCorrIn"), 5919,
                                             QStringLiteral("Incoming differential corrections"));
    TestFieldInfo *mode = addField(QStringLiteral("Mode"), FieldType::u(8));
    mode->addSymbolicValue(FieldValue::u(0, 8), QStringLiteral("RTCMv2"));
    mode->addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("CMRv2"));
    mode->addSymbolicValue(FieldValue::u(2, 8), QStringLiteral("RTCMv3"));
    diffCorrIn->addFieldInfo(mode, 3);
    TestFieldInfo *source = addField(QStringLiteral("Source"), FieldType::u(8));
    source->addSymbolicValue(FieldValue::u(0, 8), QStringLiteral("COM1"));
    source->addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("COM2"));
    diffCorrIn->addFieldInfo(source, 4);
    TestFieldInfo *frame = addField(QStringLiteral("Frame"), FieldType::byte());
    frame->setIsRepeated(true);
    diffCorrIn->addFieldInfo(frame, 5);

    MessageInfo *setup = addVexaMessage(QStringLiteral("ReceiverSetup"), 5902,
                                        QStringLiteral("General receiver information"));
    setup->setIsMain(false);
    TestFieldInfo *markerName = addField(QStringLiteral("MarkerName"), FieldType::ch());
    markerName->setIsRepeated(true);
    setup->addFieldInfo(markerName, 3);
    TestFieldInfo *rxVersion = addField(QStringLiteral("RxVersion"), FieldType::ch());
    rxVersion->setIsRepeated(true);
    setup->addFieldInfo(rxVersion, 4);
}

void DictionaryFixture::buildRtcm3()
{
    FormatInfo *rtcm3 = addFormat(QStringLiteral("RTCM3"), QStringLiteral("RTCM version 3"));
    TestFieldInfo *number = addField(QStringLiteral("MessageNumber"), FieldType::u(12));
    TestFieldInfo *station = addField(QStringLiteral("StationID"), FieldType::u(12));
    auto addRtcm3Message = [&](QString const &name, QString const &description) {
        MessageInfo *message = addMessage(rtcm3, name, description);
        message->addFieldInfo(number, 0);
        message->addFieldInfo(station, 1, true);
        rtcm3->addMessageInfo(message);
        return message;
    };
    auto u12 = [](unsigned value) { return FieldValue::u(value, 12); };

    MessageInfo *type1004 = addRtcm3Message(QStringLiteral("Type1004"),
                                            QStringLiteral("Extended L1&L2 GPS RTK observables"));
    type1004->addDiscriminantValue(number, u12(1004));
    TestFieldInfo *epoch = addField(QStringLiteral("GPSEpochTime"), FieldType::u(30));
    epoch->setScaleFactor(0.001);
    epoch->setUnit(QStringLiteral("second"));
    type1004->addFieldInfo(epoch, 2);

    MessageInfo *type1005 = addRtcm3Message(QStringLiteral("Type1005"),
                                            QStringLiteral("Stationary RTK reference station ARP"));
    type1005->addDiscriminantValue(number, u12(1005));
    int index = 2;
    for (QString const &axis :
         { QStringLiteral("ECEFX"), QStringLiteral("ECEFY"), QStringLiteral("ECEFZ") }) {
        TestFieldInfo *coordinate = addField(axis, FieldType::i(38));
        coordinate->setScaleFactor(0.0001);
        coordinate->setPrecision(4);
        coordinate->setUnit(QStringLiteral("meter"));
        type1005->addFieldInfo(coordinate, index++);
    }

    MessageInfo *type1033 = addRtcm3Message(QStringLiteral("Type1033"),
                                            QStringLiteral("Receiver and antenna descriptors"));
    type1033->addDiscriminantValue(number, u12(1033));
    TestFieldInfo *antenna = addField(QStringLiteral("AntennaDescriptor"), FieldType::ch());
    antenna->setIsRepeated(true);
    type1033->addFieldInfo(antenna, 2);

    MessageInfo *msm7
        = addRtcm3Message(QStringLiteral("MSM7"), QStringLiteral("Multiple signal message, full"));
    for (unsigned value : { 1077u, 1087u, 1097u, 1127u })
        msm7->addDiscriminantValue(number, u12(value));

    MessageInfo *proprietary
        = addRtcm3Message(QStringLiteral("Proprietary"), QStringLiteral("Vendor messages"));
    proprietary->addDiscriminantValueRange(number, u12(4001), u12(4095));
}

void DictionaryFixture::buildRtcm2()
{
    FormatInfo *rtcm2 = addFormat(QStringLiteral("RTCM2"), QStringLiteral("RTCM version 2"));
    TestFieldInfo *type = addField(QStringLiteral("MessageType"), FieldType::u(6));
    TestFieldInfo *station = addField(QStringLiteral("StationID"), FieldType::u(10));
    TestFieldInfo *zCount = addField(QStringLiteral("ModifiedZCount"), FieldType::u(13));
    zCount->setScaleFactor(0.6);
    zCount->setPrecision(1);
    zCount->setUnit(QStringLiteral("second"));
    struct
    {
        char const *name;
        unsigned number;
        char const *description;
    } const rows[] = { { "Type1", 1, "Differential GPS corrections" },
                       { "Type3", 3, "GPS reference station parameters" },
                       { "Type18", 18, "RTK uncorrected carrier phases" } };
    for (auto const &row : rows) {
        MessageInfo *message = addMessage(rtcm2, QString::fromLatin1(row.name),
                                          QString::fromLatin1(row.description));
        message->addFieldInfo(type, 0);
        message->addFieldInfo(station, 1, true);
        message->addFieldInfo(zCount, 2);
        message->addDiscriminantValue(type, FieldValue::u(row.number, 6));
        rtcm2->addMessageInfo(message);
    }
}

void DictionaryFixture::buildCmr()
{
    FormatInfo *cmr
        = addFormat(QStringLiteral("CMR"), QStringLiteral("Compact measurement record"));
    TestFieldInfo *type = addField(QStringLiteral("Type"), FieldType::u(3));
    struct
    {
        char const *name;
        unsigned number;
    } const rows[] = { { "CMRObs", 0 }, { "CMRRef", 1 }, { "CMRDesc", 2 } };
    for (auto const &row : rows) {
        MessageInfo *message = addMessage(cmr, QString::fromLatin1(row.name), QString());
        message->addFieldInfo(type, 0);
        message->addDiscriminantValue(type, FieldValue::u(row.number, 3));
        cmr->addMessageInfo(message);
    }
    TestFieldInfo *shortId = addField(QStringLiteral("ShortID"), FieldType::ch());
    shortId->setIsRepeated(true);
    message(QStringLiteral("CMR"), QStringLiteral("CMRDesc"))->addFieldInfo(shortId, 1);
}
