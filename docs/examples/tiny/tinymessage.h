// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DOCS_TINYMESSAGE_H
#define MESSAGEAPI_DOCS_TINYMESSAGE_H

#include <message.h>

#include <QByteArray>

#include <utility>

/// A decoded block of the TINY format: the message keeps its own copy of the block, and
/// TinyFieldInfo reads the values out of it when asked.
class TinyMessage : public Message
{
public:
    TinyMessage(MessageInfo const *info, QByteArray block)
        : Message(info)
        , mBlock(std::move(block))
    { }

    QByteArray const &getBlock() const { return mBlock; }
    unsigned int getRawSize() const override { return unsigned(mBlock.size()); }

protected:
    uint8_t const *getRawRepresentation() const override
    {
        return reinterpret_cast<uint8_t const *>(mBlock.constData());
    }

private:
    QByteArray mBlock;
};

#endif // MESSAGEAPI_DOCS_TINYMESSAGE_H
