// SPDX-License-Identifier: LGPL-2.1-or-later
#include "tinydictionary.h"

#include "tinyfieldinfo.h"

#include <messageinfo.h>

TinyDictionary::TinyDictionary()
    : mFormat(QStringLiteral("TINY"))
{
    mFormat.setDescriptiveText(QStringLiteral("A small block format for the guides"));
    // One field object may belong to many message types: every block starts with its type.
    mTypeField = new TinyFieldInfo(QStringLiteral("Type"), FieldType::u(8), 0);
    mTypeField->setShortDescriptiveText(QStringLiteral("Block type"));
    mFieldInfos.append(mTypeField);

    MessageInfo *position
        = addMessageInfo(QStringLiteral("Position"), QStringLiteral("Position of the antenna"), 1);
    for (char const *name : { "Latitude", "Longitude" }) {
        FieldInfo *angle
            = addField(position, QLatin1String(name), QLatin1String(name), FieldType::i(32));
        angle->setUnit(QStringLiteral("degree"));
        angle->setScaleFactor(1e-7);
        angle->setPrecision(7);
    }
    FieldInfo *height = addField(position, QStringLiteral("Height"),
                                 QStringLiteral("Height above the ellipsoid"), FieldType::i(32));
    height->setUnit(QStringLiteral("meter"));
    height->setScaleFactor(0.001);
    height->setPrecision(3);

    MessageInfo *status
        = addMessageInfo(QStringLiteral("Status"), QStringLiteral("Receiver status"), 2);
    addField(status, QStringLiteral("Satellites"), QStringLiteral("Satellites in use"),
             FieldType::u(8));
    FieldInfo *fix
        = addField(status, QStringLiteral("Fix"), QStringLiteral("Kind of fix"), FieldType::u(8));
    fix->addSymbolicValue(FieldValue::u(0, 8), QStringLiteral("no fix"));
    fix->addSymbolicValue(FieldValue::u(1, 8), QStringLiteral("2D"));
    fix->addSymbolicValue(FieldValue::u(2, 8), QStringLiteral("3D"));
    fix->setDoNotUseValue(FieldValue::u(255, 8));
}

TinyDictionary::~TinyDictionary()
{
    // The descriptors unlink themselves from each other; the format goes last, as a member.
    qDeleteAll(mMessageInfos);
    qDeleteAll(mFieldInfos);
}

MessageInfo *TinyDictionary::addMessageInfo(QString name, QString title, unsigned char type)
{
    auto *info = new MessageInfo(std::move(name));
    info->setShortDescriptiveText(std::move(title));
    info->setFormatInfo(&mFormat);
    info->addFieldInfo(mTypeField, 0);
    info->addDiscriminantValue(mTypeField, FieldValue::u(type, 8));
    mFormat.addMessageInfo(info);
    mMessageInfos.append(info);
    return info;
}

FieldInfo *TinyDictionary::addField(MessageInfo *info, QString name, QString label,
                                    FieldType const &type)
{
    // Each field starts where the previous one of its message type ends.
    int offset = 0;
    for (FieldInfo const *field : info->getFieldInfos())
        offset += int(field->getType().getBitSize() / 8);
    auto *field = new TinyFieldInfo(std::move(name), type, offset);
    field->setShortDescriptiveText(std::move(label));
    info->addFieldInfo(field, info->getFieldInfos().size());
    mFieldInfos.append(field);
    return field;
}
