// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DOCS_TINYFIELDINFO_H
#define MESSAGEAPI_DOCS_TINYFIELDINFO_H

#include <fieldinfo.h>

/// A field of the TINY format: one integer at a fixed byte offset of the block, most
/// significant byte first, as wide as its type.
class TinyFieldInfo : public FieldInfo
{
public:
    TinyFieldInfo(QString name, FieldType const &type, int offset);

    /// Present when the block is long enough to hold it.
    bool isPresent(Message const *message) const override;
    unsigned int getNumberOfValues(Message const *message) const override;
    /// An invalid value when the field is not present or index is not 0.
    FieldValue getValue(Message const *message, unsigned int index) const override;
    /// Decoded blocks are read-only.
    bool setValue(Message *message, unsigned int index, FieldValue const &value) const override;
    FieldValue getDefaultValue() const override { return FieldValue(getType()); }

private:
    int mOffset;
};

#endif // MESSAGEAPI_DOCS_TINYFIELDINFO_H
