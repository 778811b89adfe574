// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DEMO_DEMOSTREAMWRITER_H
#define MESSAGEAPI_DEMO_DEMOSTREAMWRITER_H

#include <QByteArray>

class QIODevice;

/**
 * Writes blocks as the frames that DemoStreamParser reads (layout there), as a receiver sends
 * them. The device is not owned and must be open for writing.
 */
class DemoStreamWriter
{
public:
    explicit DemoStreamWriter(QIODevice *device);

    /// The frame of a block of at most DemoStreamParser::maxBlockSize bytes.
    static QByteArray frame(QByteArray const &block);

    void writeBlock(QByteArray const &block);
    /// Writes the block's frame with one bit of block byte byteIndex flipped after the CRC was
    /// computed, as a transmission error would.
    void writeDamagedBlock(QByteArray const &block, int byteIndex);

    /// Whether every write so far succeeded.
    bool isOk() const { return mOk; }

private:
    void write(QByteArray const &bytes);

    QIODevice *mDevice;
    bool mOk = true;
};

#endif // MESSAGEAPI_DEMO_DEMOSTREAMWRITER_H
