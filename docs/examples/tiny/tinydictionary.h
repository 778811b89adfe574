// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DOCS_TINYDICTIONARY_H
#define MESSAGEAPI_DOCS_TINYDICTIONARY_H

#include <formatinfo.h>

#include <QVector>

class FieldInfo;
class MessageInfo;

/**
 * The dictionary of TINY, a small block format made up for the guides. A block is a type
 * byte, which tells the message types apart, and the fields of its type:
 *
 *   type 1, "Position"   +------+----------+-----------+----------+
 *                         | 0x01 | Latitude | Longitude |  Height  |
 *                         |  u8  |   i32    |    i32    |   i32    |
 *                         +------+----------+-----------+----------+
 *   type 2, "Status"     +------+------------+-----+
 *                         | 0x02 | Satellites | Fix |
 *                         |  u8  |     u8     | u8  |
 *                         +------+------------+-----+
 *
 * Latitude and longitude count 1e-7 degrees, the height millimetres; a fix of 255 means
 * that the receiver does not know.
 */
class TinyDictionary
{
public:
    TinyDictionary();
    ~TinyDictionary();

    FormatInfo const *getFormat() const { return &mFormat; }

private:
    /// A message type of the format, with the type byte as its first field and discriminant.
    MessageInfo *addMessageInfo(QString name, QString title, unsigned char type);
    /// A field appended to the message type.
    FieldInfo *addField(MessageInfo *info, QString name, QString label, FieldType const &type);

    FormatInfo mFormat;
    FieldInfo *mTypeField;
    QVector<MessageInfo *> mMessageInfos;
    QVector<FieldInfo *> mFieldInfos;
};

#endif // MESSAGEAPI_DOCS_TINYDICTIONARY_H
