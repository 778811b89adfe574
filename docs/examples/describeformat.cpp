// SPDX-License-Identifier: LGPL-2.1-or-later
// Describing a format: lists the dictionary of the TINY format, then reads the fields of one
// block through it.
#include "tiny/tinydictionary.h"
#include "tiny/tinymessage.h"

#include <fieldinfo.h>
#include <messageinfo.h>

#include <cstdio>

int main()
{
    TinyDictionary dictionary;

    // The format is in the process-wide registry while the dictionary lives.
    FormatInfo const *format = FormatInfo::getFormatInfo(QStringLiteral("TINY"));
    for (MessageInfo const *info : format->getMessageInfos()) {
        std::printf("%s:%s  %s\n", qPrintable(format->getName()), qPrintable(info->getName()),
                    qPrintable(info->getShortDescriptiveText()));
        for (FieldInfo const *field : info->getFieldInfos())
            std::printf("    %-10s %-4s %-9s x %-6g %s\n", qPrintable(field->getName()),
                        qPrintable(field->getType().toShortString()),
                        qPrintable(field->getUnitString(false)), field->getScaleFactor(),
                        qPrintable(field->getShortDescriptiveText()));
    }

    // A message type is found by the values of its header: here the type byte.
    const QByteArray block = QByteArray::fromHex("02"
                                                 "09"
                                                 "ff");
    MessageInfo const *info
        = format->getMessageInfosForDiscriminant(FieldValue::u(quint8(block.at(0)), 8)).first();
    TinyMessage message(info, block);
    for (FieldInfo const *field : info->getFieldInfos()) {
        const FieldValue value = field->getValue(&message, 0);
        std::printf("%s = %s (raw %s)\n", qPrintable(field->getName()),
                    qPrintable(field->getInterpretedString(value, true)),
                    qPrintable(field->getRawString(value)));
    }
    return 0;
}
