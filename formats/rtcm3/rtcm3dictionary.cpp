// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3dictionary.h"

#include "auxiliary/rtcm3layout.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "rtcm3fieldinfo.h"

#include <QStringList>

#include <cmath>

namespace {

/// Digits after the decimal point that show one step of the scale factor: those of its
/// magnitude, and up to three more where they make the step exact (0.25, 299792.458).
signed char precisionFor(double scale)
{
    const int magnitude = scale >= 1.0 ? 0 : int(std::ceil(-std::log10(scale) - 1e-9));
    for (int digits = magnitude; digits <= magnitude + 3; ++digits) {
        const double steps = scale * std::pow(10.0, digits);
        if (std::abs(steps - std::round(steps)) < 1e-9 * steps)
            return static_cast<signed char>(digits);
    }
    return static_cast<signed char>(magnitude);
}

/// The index of the latest field of that name in the message type; -1 when there is none.
int indexOf(MessageInfo const *info, QString const &name)
{
    FieldInfo const *field = info->getFieldInfo(name);
    return field ? field->getIndexInMessageInfo(info) : -1;
}

void describe(Rtcm3FieldInfo *field, Rtcm3Layout::Row const &row)
{
    field->setShortDescriptiveText(QString::fromLatin1(row.label));
    if (row.scale != 1.0) {
        field->setScaleFactor(row.scale);
        field->setPrecision(precisionFor(row.scale));
    } else if (row.encoding == Rtcm3FieldInfo::Unsigned) {
        // Numbers, identifiers and counts read best as plain digits in every locale.
        field->setRepresentationMode(FieldValue::Decimal);
    }
    if (row.unit)
        field->setUnit(QString::fromLatin1(row.unit));
    if (row.symbols) {
        const QStringList pairs = QString::fromLatin1(row.symbols).split(QLatin1Char(';'));
        for (QString const &pair : pairs) {
            const int equals = pair.indexOf(QLatin1Char('='));
            field->addSymbolicValue(FieldValue::fromString(field->getType(), pair.left(equals)),
                                    pair.mid(equals + 1));
        }
    }
    if (row.doNotUse) {
        field->setDoNotUseValue(
            FieldValue::fromString(field->getType(), QString::fromLatin1(row.doNotUse)));
    }
}

/// Links the field to the earlier fields its row names: in its own message type for counts
/// and widths, in the enclosing one (parent) for virtual fields.
void linkSources(Rtcm3FieldInfo *field, Rtcm3Layout::Row const &row, MessageInfo const *own,
                 MessageInfo const *parent)
{
    if (!row.source)
        return;
    const QString source = QString::fromLatin1(row.source);
    if (!field->takesBits()) {
        const QStringList names = source.split(QLatin1Char(','));
        field->setMaskSources(indexOf(parent, names.value(0)),
                              names.size() > 1 ? indexOf(parent, names.value(1)) : -1,
                              names.size() > 2 ? indexOf(parent, names.value(2)) : -1);
    } else if (source.contains(QLatin1Char('*'))) {
        field->setWidthFromMasks(indexOf(own, source.section(QLatin1Char('*'), 0, 0)),
                                 indexOf(own, source.section(QLatin1Char('*'), 1, 1)));
    } else if (source.startsWith(QLatin1Char('#'))) {
        field->setCount(Rtcm3FieldInfo::MaskBits, indexOf(own, source.mid(1)));
    } else {
        field->setCount(Rtcm3FieldInfo::CountField, indexOf(own, source));
    }
}

} // namespace

Rtcm3Dictionary::Rtcm3Dictionary()
{
    mFormat = new FormatInfo(QStringLiteral("RTCM3"));
    mFormat->setDescriptiveText(
        QStringLiteral("RTCM 3 messages of reference stations, receivers and correction services"));

    const QVector<Rtcm3Layout::Message> layouts = Rtcm3Layout::stationMessages()
        + Rtcm3Layout::msmMessages() + Rtcm3Layout::ephemerisMessages()
        + Rtcm3Layout::legacyObservationMessages();
    // A field of a row, appended to the message type "into"; virtual fields read their masks
    // from "maskOwner", the enclosing message type.
    auto addField = [this](MessageInfo *into, Rtcm3Layout::Row const &row, unsigned int bits,
                           MessageInfo const *subMessage, MessageInfo const *maskOwner) {
        auto *field
            = new Rtcm3FieldInfo(QString::fromLatin1(row.name), row.encoding, bits, subMessage);
        mFieldInfos.append(field);
        describe(field, row);
        linkSources(field, row, into, maskOwner);
        const int index = into->getFieldInfos().size();
        into->addFieldInfo(field, index);
        field->setHome(into, index);
        return field;
    };
    for (Rtcm3Layout::Message const &layout : std::as_const(layouts)) {
        const QString number = QString::number(layout.number);
        MessageInfo *info = addMessageInfo(number, layout.title, layout.description);
        auto *messageNumber
            = new Rtcm3FieldInfo(QStringLiteral("DF002"), Rtcm3FieldInfo::Unsigned, 12);
        messageNumber->setShortDescriptiveText(QStringLiteral("Message number"));
        mFieldInfos.append(messageNumber);
        info->addFieldInfo(messageNumber, 0);
        messageNumber->setHome(info, 0);
        info->addDiscriminantValue(messageNumber, FieldValue::u(quint64(layout.number), 12));
        mFormat->addMessageInfo(info);

        for (Rtcm3Layout::Row const &row : layout.rows) {
            if (row.encoding != Rtcm3FieldInfo::Group) {
                addField(info, row, row.bits, nullptr, nullptr);
                continue;
            }
            Rtcm3Layout::Group const &group = layout.groups.at(row.group);
            MessageInfo *groupInfo
                = addMessageInfo(number + QLatin1Char(' ') + QLatin1String(group.name),
                                 QString::fromLatin1(group.title), QString());
            groupInfo->setIsMain(false);
            mFormat->addSubMessageInfo(groupInfo);
            unsigned int bits = 0;
            for (Rtcm3Layout::Row const &groupRow : group.rows) {
                Rtcm3FieldInfo *field = addField(groupInfo, groupRow, groupRow.bits, nullptr, info);
                field->setRecordOffset(bits);
                if (field->takesBits())
                    bits += groupRow.bits;
            }
            addField(info, row, bits, groupInfo, nullptr)->setColumnMajor(group.columnMajor);
        }
    }
}

Rtcm3Dictionary::~Rtcm3Dictionary()
{
    qDeleteAll(mFieldInfos);
    qDeleteAll(mMessageInfos);
    delete mFormat;
}

MessageInfo const *Rtcm3Dictionary::getMessageInfo(int number) const
{
    return mFormat->getMessageInfo(QString::number(number));
}

int Rtcm3Dictionary::getNumber(MessageInfo const *info)
{
    QVector<MessageInfo::Discriminant> const &discriminants = info->getDiscriminants();
    if (discriminants.isEmpty() || discriminants.first().ranges.isEmpty())
        return -1;
    return int(discriminants.first().ranges.first().low.getU64());
}

MessageInfo *Rtcm3Dictionary::addMessageInfo(QString const &name, QString const &title,
                                             QString const &description)
{
    auto *info = new MessageInfo(name);
    info->setShortDescriptiveText(title);
    info->setDescriptiveText(description);
    info->setFormatInfo(mFormat);
    mMessageInfos.append(info);
    return info;
}
