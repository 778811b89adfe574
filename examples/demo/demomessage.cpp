// SPDX-License-Identifier: LGPL-2.1-or-later
#include "demomessage.h"

#include <utility>

DemoMessage::DemoMessage(MessageInfo const *info, QByteArray block)
    : Message(info)
    , mBlock(std::move(block))
{ }

DemoMessage::~DemoMessage() = default;

uint8_t const *DemoMessage::getRawRepresentation() const
{
    return reinterpret_cast<uint8_t const *>(mBlock.constData());
}
