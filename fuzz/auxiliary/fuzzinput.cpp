// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fuzzinput.h"

#include <algorithm>

QByteArray FuzzInput::takeBytes(size_t count)
{
    count = std::min(count, mSize - mPosition);
    const QByteArray bytes(reinterpret_cast<char const *>(mData + mPosition), int(count));
    mPosition += count;
    return bytes;
}

QString FuzzInput::takeText(uint8_t encoding)
{
    const QByteArray bytes = takeRest();
    switch (encoding % 3) {
    case 0:
        return QString::fromUtf8(bytes);
    case 1:
        return QString::fromLatin1(bytes);
    default:
        return QString(reinterpret_cast<QChar const *>(bytes.constData()), bytes.size() / 2);
    }
}
