// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"

#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "testfieldinfo.h"

#include <QStringList>

DictionaryFixture::DictionaryFixture()
{
    for (char const *name : { "VEXA", "RTCM3", "RTCM2", "CMR" })
        mFormats.append(new FormatInfo(QLatin1String(name)));

    mBlockNumber = addField("BlockNumber", FieldType::u(16));
    QVector<TestFieldInfo *> header { mBlockNumber, addField("TOW", FieldType::u(32)),
                                      addField("WNc", FieldType::u(16)) };
    addMessage(vexa(), header, "PosCart", 4006, "Mode Error X Y Z NrSV Datum");
    addMessage(vexa(), header, "PosGeod", 4007, "Mode Latitude Longitude Height");
    addMessage(vexa(), header, "VelCart", 4008, "Mode Vx Vy Vz");
    addMessage(vexa(), header, "VelGeod", 4009, "Mode Vn Ve Vu");
    addMessage(vexa(), header, "ReceiverStatus", 4014, "CPULoad UpTime RxState Temperature");
    // The channel type exists before the field that embeds it, which registers with it.
    MessageInfo *channel = addMessage(vexa(), { addField("SVID", FieldType::u(8)) },
                                      "MeasEpochChannel", -1, "Doppler CN0");
    MessageInfo *measEpoch = addMessage(vexa(), header, "MeasEpoch", 4027, "N");
    TestFieldInfo *channels = addField("Channel", FieldType::subMessage(channel));
    channels->setIsRepeated(true);
    measEpoch->addFieldInfo(channels, 4);
    vexa()->addSubMessageInfo(channel);
    addMessage(vexa(), header, "DiffCorrIn", 5919, "Mode Source Frame");
    addMessage(vexa(), header, "ReceiverSetup", 5902, "MarkerName RxVersion")->setIsMain(false);

    TestFieldInfo *station = addField("StationID", FieldType::u(12));
    header = { addField("MessageNumber", FieldType::u(12)), station };
    addMessage(rtcm3(), header, "Type1004", 1004, "GPSEpochTime");
    addMessage(rtcm3(), header, "Type1005", 1005, "ECEFX ECEFY ECEFZ");

    header = { addField("MessageType", FieldType::u(6)), addField("StationID", FieldType::u(10)),
               addField("ModifiedZCount", FieldType::u(13)) };
    for (int number : { 1, 3, 18 })
        addMessage(rtcm2(), header, qPrintable(QStringLiteral("Type%1").arg(number)), number, "");

    header = { addField("Type", FieldType::u(3)) };
    addMessage(cmr(), header, "CMRObs", 0, "");
    addMessage(cmr(), header, "CMRRef", 1, "");
    addMessage(cmr(), header, "CMRDesc", 2, "ShortID");
}

DictionaryFixture::~DictionaryFixture()
{
    qDeleteAll(mFields);
    qDeleteAll(mMessages);
    qDeleteAll(mFormats);
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

TestFieldInfo *DictionaryFixture::addField(char const *name, FieldType const &type)
{
    auto *field = new TestFieldInfo(QLatin1String(name), type);
    mFields.append(field);
    return field;
}

MessageInfo *DictionaryFixture::addMessage(FormatInfo *format,
                                           QVector<TestFieldInfo *> const &header, char const *name,
                                           int number, char const *fields)
{
    auto *message = new MessageInfo(QLatin1String(name));
    message->setFormatInfo(format);
    mMessages.append(message);
    int index = 0;
    for (TestFieldInfo *field : header)
        message->addFieldInfo(field, index++, field->getName().endsWith(QLatin1String("ID")));
    QStringList const names
        = QString::fromLatin1(fields).split(QLatin1Char(' '), Qt::SkipEmptyParts);
    for (QString const &field : names)
        message->addFieldInfo(addField(qPrintable(field), FieldType::u(8)), index++);
    if (number >= 0) {
        unsigned const bits = header.first()->getType().getBitSize();
        message->addDiscriminantValue(header.first(), FieldValue::u(unsigned(number), bits));
        format->addMessageInfo(message);
    }
    return message;
}
