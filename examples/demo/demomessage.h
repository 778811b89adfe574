// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DEMO_DEMOMESSAGE_H
#define MESSAGEAPI_DEMO_DEMOMESSAGE_H

#include "message.h"

#include <QByteArray>

/**
 * A decoded demonstration block: the message keeps a copy of the whole block (header and
 * payload), and DemoFieldInfo reads and writes its values in place. The block layout is
 * described with DemoDictionary.
 */
class DemoMessage : public Message
{
public:
    DemoMessage(MessageInfo const *info, QByteArray block);
    ~DemoMessage() override;

    unsigned int getRawSize() const override { return unsigned(mBlock.size()); }
    QByteArray const &getBlock() const { return mBlock; }
    /// The block for writing field values; its size stays the caller's business.
    QByteArray &block() { return mBlock; }

protected:
    uint8_t const *getRawRepresentation() const override;

private:
    QByteArray mBlock;
};

#endif // MESSAGEAPI_DEMO_DEMOMESSAGE_H
