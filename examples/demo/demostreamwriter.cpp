// SPDX-License-Identifier: LGPL-2.1-or-later
#include "demostreamwriter.h"

#include "demostreamparser.h"

#include <QIODevice>

DemoStreamWriter::DemoStreamWriter(QIODevice *device)
    : mDevice(device)
{ }

QByteArray DemoStreamWriter::frame(QByteArray const &block)
{
    Q_ASSERT(block.size() <= DemoStreamParser::maxBlockSize);
    QByteArray frame;
    frame.append(char(DemoStreamParser::syncByte1));
    frame.append(char(DemoStreamParser::syncByte2));
    frame.append(char(block.size() & 0xFF));
    frame.append(char(block.size() >> 8));
    frame.append(block);
    const quint16 crc = DemoStreamParser::crc16(frame.constData() + 2, 2 + block.size());
    frame.append(char(crc & 0xFF));
    frame.append(char(crc >> 8));
    return frame;
}

void DemoStreamWriter::writeBlock(QByteArray const &block)
{
    write(frame(block));
}

void DemoStreamWriter::writeDamagedBlock(QByteArray const &block, int byteIndex)
{
    QByteArray damaged = frame(block);
    const int index = DemoStreamParser::frameHeaderSize + byteIndex;
    damaged[index] = char(damaged.at(index) ^ 0x10);
    write(damaged);
}

void DemoStreamWriter::write(QByteArray const &bytes)
{
    mOk = mOk && mDevice->write(bytes) == bytes.size();
}
