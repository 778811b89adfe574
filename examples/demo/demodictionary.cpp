// SPDX-License-Identifier: LGPL-2.1-or-later
#include "demodictionary.h"

#include "demofieldinfo.h"
#include "demomessage.h"
#include "formatinfo.h"
#include "messageinfo.h"

#include <algorithm>

namespace {
char const *const axisNames[] = { "X", "Y", "Z" };
char const *const velocityNames[] = { "Vx", "Vy", "Vz" };
} // namespace

DemoDictionary::DemoDictionary()
{
    mFormat = new FormatInfo(QStringLiteral("VEXA"));
    mFormat->setDescriptiveText(QStringLiteral("Demonstration receiver blocks"));

    mNumberField = addField(new DemoFieldInfo(QStringLiteral("Number"), FieldType::u(16), 0));
    mNumberField->setShortDescriptiveText(QStringLiteral("Block number"));
    mTimeField = addField(new DemoFieldInfo(QStringLiteral("Time"), FieldType::u(64), 2));
    mTimeField->setShortDescriptiveText(QStringLiteral("Receiver time"));
    mTimeField->setUnit(QStringLiteral("millisecond"));

    auto payload = [this](MessageInfo *message, DemoFieldInfo *field, QString const &unit = {}) {
        addField(field);
        if (!unit.isEmpty())
            field->setUnit(unit);
        message->addFieldInfo(field, message->getFieldInfos().size());
        return field;
    };

    MessageInfo *posCart
        = addMessage(QStringLiteral("PosCart"), 1, QStringLiteral("Position, Cartesian"));
    for (int axis = 0; axis < 3; ++axis) {
        payload(posCart,
                new DemoFieldInfo(QLatin1String(axisNames[axis]), FieldType::f64(), 10 + 8 * axis),
                QStringLiteral("meter"))
            ->setPrecision(3);
    }
    payload(posCart, new DemoFieldInfo(QStringLiteral("NrSat"), FieldType::u(8), 34))
        ->setDoNotUseValue(FieldValue::u(255, 8));

    MessageInfo *velCart
        = addMessage(QStringLiteral("VelCart"), 2, QStringLiteral("Velocity, Cartesian"));
    for (int axis = 0; axis < 3; ++axis) {
        DemoFieldInfo *field = payload(
            velCart,
            new DemoFieldInfo(QLatin1String(velocityNames[axis]), FieldType::i(32), 10 + 4 * axis),
            QStringLiteral("meterpersecond"));
        field->setScaleFactor(0.001);
        field->setPrecision(3);
        field->setDoNotUseValue(FieldValue::i(-2147483647 - 1, 32));
    }

    MessageInfo *clock
        = addMessage(QStringLiteral("ClockStatus"), 3, QStringLiteral("Receiver clock"));
    payload(clock, new DemoFieldInfo(QStringLiteral("Bias"), FieldType::i(32), 10),
            QStringLiteral("nanosecond"));
    DemoFieldInfo *drift
        = payload(clock, new DemoFieldInfo(QStringLiteral("Drift"), FieldType::i(16), 14),
                  QStringLiteral("ppm"));
    drift->setScaleFactor(0.001);
    drift->setPrecision(3);
    DemoFieldInfo *state
        = payload(clock, new DemoFieldInfo(QStringLiteral("State"), FieldType::u(8), 16));
    state->addSymbolicValue(FieldValue::u(0, 8), QStringLiteral("free running"));
    state->addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("steering"));
    state->addSymbolicValue(FieldValue::u(2, 8), QStringLiteral("locked"));

    MessageInfo *satInfo
        = addMessage(QStringLiteral("SatInfo"), 4, QStringLiteral("Satellites in view"));
    DemoFieldInfo *count
        = payload(satInfo, new DemoFieldInfo(QStringLiteral("N"), FieldType::u(8), 10));
    constexpr int recordSize = 3;
    payload(satInfo,
            new DemoFieldInfo(QStringLiteral("Svid"), FieldType::u(8), 11, recordSize, count));
    payload(satInfo,
            new DemoFieldInfo(QStringLiteral("Elevation"), FieldType::i(8), 12, recordSize, count),
            QStringLiteral("degree"));
    DemoFieldInfo *cn0 = payload(
        satInfo, new DemoFieldInfo(QStringLiteral("CN0"), FieldType::u(8), 13, recordSize, count),
        QStringLiteral("decibelhertz"));
    cn0->setScaleFactor(0.25);
    cn0->setPrecision(2);
}

DemoDictionary::~DemoDictionary()
{
    qDeleteAll(mFields);
    qDeleteAll(mMessages);
    delete mFormat;
}

FormatInfo const *DemoDictionary::getFormat() const
{
    return mFormat;
}

MessageInfo const *DemoDictionary::getMessageInfo(QString const &name) const
{
    return mFormat->getMessageInfo(name);
}

quint16 DemoDictionary::getNumber(MessageInfo const *info)
{
    return quint16(info->getDiscriminants().first().ranges.first().low.getU64());
}

DemoMessage *DemoDictionary::createMessage(MessageInfo const *info, quint64 timeMillis,
                                           int records) const
{
    int size = headerSize;
    for (FieldInfo const *field : info->getFieldInfos())
        size = std::max(size, static_cast<DemoFieldInfo const *>(field)->getEndOffset(records));

    auto *message = new DemoMessage(info, QByteArray(size, '\0'));
    mNumberField->setValue(message, 0, FieldValue::u(getNumber(info), 16));
    mTimeField->setValue(message, 0, FieldValue::u(timeMillis, 64));
    for (FieldInfo const *field : info->getFieldInfos()) {
        DemoFieldInfo const *countField
            = static_cast<DemoFieldInfo const *>(field)->getCountField();
        if (countField)
            countField->setValue(message, 0, FieldValue::u(quint64(records), 8));
    }
    return message;
}

DemoFieldInfo *DemoDictionary::addField(DemoFieldInfo *field)
{
    mFields.append(field);
    return field;
}

MessageInfo *DemoDictionary::addMessage(QString const &name, quint16 number,
                                        QString const &description)
{
    auto *message = new MessageInfo(name);
    message->setDescriptiveText(description);
    message->setFormatInfo(mFormat);
    message->addFieldInfo(mNumberField, 0);
    message->addFieldInfo(mTimeField, 1);
    message->addDiscriminantValue(mNumberField, FieldValue::u(number, 16));
    mFormat->addMessageInfo(message);
    mMessages.append(message);
    return message;
}
