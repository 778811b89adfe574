// SPDX-License-Identifier: LGPL-2.1-or-later
#include "testparser.h"

#include <QtGlobal>

#include <cstring>

TestParser::TestParser(QObject *parent)
    : QObject(parent)
    , mBuffer(capacity, '\0')
{ }

void TestParser::deliverBlock(unsigned int id, QByteArray const &block)
{
    Q_ASSERT(block.size() <= capacity);
    std::memcpy(mBuffer.data(), block.constData(), size_t(block.size()));
    Q_EMIT vexa(id, unsigned(block.size()));
}
