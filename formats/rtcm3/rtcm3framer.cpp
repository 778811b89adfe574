// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3framer.h"

#include "auxiliary/rtcm3crc24q.h"

#include <utility>

namespace {

constexpr uint8_t preamble = 0xD3;
constexpr int headerBytes = 3;
constexpr int crcBytes = 3;
// Runs of foreign bytes reported with their own length and offset; later runs share one text.
constexpr quint64 maxLocatedRuns = 100;

} // namespace

Rtcm3Framer::Rtcm3Framer(FormatInfo const *format, QString name, QObject *parent)
    : MessageSource(std::move(name), parent)
    , mFormat(format)
{ }

Rtcm3Framer::~Rtcm3Framer() = default;

void Rtcm3Framer::addData(QByteArray const &chunk)
{
    mBuffer.append(chunk);
    mStreamOffset += quint64(chunk.size());
    scan(false);
}

void Rtcm3Framer::finish()
{
    scan(true);
    reportForeignRun();
    if (!mBuffer.isEmpty()) {
        const auto *bytes = reinterpret_cast<uint8_t const *>(mBuffer.constData());
        const QString expected = mBuffer.size() >= headerBytes
            ? tr(" of %1").arg((((bytes[1] & 0x03) << 8) | bytes[2]) + headerBytes + crcBytes)
            : QString();
        reportError(tr("%1: incomplete frame at stream offset %2: %3%4 bytes when the input ended")
                        .arg(getName())
                        .arg(mBufferOffset)
                        .arg(mBuffer.size())
                        .arg(expected));
        mIncompleteFrameByteCount += quint64(mBuffer.size());
        mForeignByteCount += quint64(mBuffer.size());
    }
    mBuffer.clear();
    mBufferOffset = 0;
    mStreamOffset = 0;
    mLocatedRunCount = 0;
}

void Rtcm3Framer::reset()
{
    mBuffer.clear();
    mBufferOffset = mStreamOffset = 0;
    mRunOffset = mRunLength = mLocatedRunCount = 0;
    mFrameCount = mCrcErrorCount = mForeignByteCount = mIncompleteFrameByteCount = 0;
}

int Rtcm3Framer::validFrameAt(int index) const
{
    const auto *bytes = reinterpret_cast<uint8_t const *>(mBuffer.constData()) + index;
    const int available = mBuffer.size() - index;
    if (available < headerBytes || bytes[0] != preamble || (bytes[1] & 0xFC) != 0)
        return 0;
    const int total = (((bytes[1] & 0x03) << 8) | bytes[2]) + headerBytes + crcBytes;
    if (available < total)
        return 0;
    const uint32_t crc
        = (uint32_t(bytes[total - 3]) << 16) | (uint32_t(bytes[total - 2]) << 8) | bytes[total - 1];
    return rtcm3Crc24q(bytes, std::size_t(total - crcBytes)) == crc ? total : 0;
}

bool Rtcm3Framer::validFrameAfter(int index) const
{
    for (int i = index + 1; i < mBuffer.size(); ++i) {
        if (validFrameAt(i) > 0)
            return true;
    }
    return false;
}

void Rtcm3Framer::scan(bool atEnd)
{
    const auto *bytes = reinterpret_cast<uint8_t const *>(mBuffer.constData());
    const int size = mBuffer.size();
    int i = 0;
    int foreignStart = 0;
    auto takeForeign = [&](int end) {
        addForeignBytes(mBufferOffset + quint64(foreignStart), end - foreignStart);
        foreignStart = end;
    };
    while (i < size) {
        if (bytes[i] != preamble) {
            ++i;
            continue;
        }
        if (size - i < headerBytes) {
            if (atEnd && validFrameAfter(i)) {
                ++i;
                continue;
            }
            break;
        }
        if ((bytes[i + 1] & 0xFC) != 0) {
            ++i;
            continue;
        }
        const int total = (((bytes[i + 1] & 0x03) << 8) | bytes[i + 2]) + headerBytes + crcBytes;
        if (size - i < total) {
            // A started frame waits for more input; at the end of the input it is the
            // incomplete last frame, unless a whole frame inside it proves it false.
            if (atEnd && validFrameAfter(i)) {
                ++i;
                continue;
            }
            break;
        }
        const int frameLength = validFrameAt(i);
        if (frameLength == 0) {
            ++mCrcErrorCount;
            reportCRCErrorEvent(mFormat);
            ++i;
            continue;
        }
        takeForeign(i);
        reportForeignRun();
        ++mFrameCount;
        Q_EMIT frameFound(bytes + i, uint(frameLength));
        i += frameLength;
        foreignStart = i;
    }
    takeForeign(i);
    // Only the unfinished tail stays: removing from the front of a chunk that the buffer
    // shares with the caller would copy the whole chunk and keep its capacity.
    if (i >= size)
        mBuffer.clear();
    else if (i > 0)
        mBuffer = mBuffer.mid(i);
    mBufferOffset += quint64(i);
}

void Rtcm3Framer::addForeignBytes(quint64 offset, int count)
{
    if (count <= 0)
        return;
    if (mRunLength == 0)
        mRunOffset = offset;
    mRunLength += quint64(count);
}

void Rtcm3Framer::reportForeignRun()
{
    if (mRunLength == 0)
        return;
    mForeignByteCount += mRunLength;
    const quint64 length = std::exchange(mRunLength, 0);
    // An event log keeps each text up to its repeat limit, and every located run has a text of
    // its own: a stream that carries foreign data for weeks would fill the log without end.
    // Later runs therefore share one text; the counts stay exact.
    if (mLocatedRunCount == maxLocatedRuns) {
        reportError(
            tr("%1: more bytes outside frames, counted without their offsets").arg(getName()));
        return;
    }
    ++mLocatedRunCount;
    reportError(tr("%1: %2 bytes outside frames at stream offset %3")
                    .arg(getName())
                    .arg(length)
                    .arg(mRunOffset));
}

void Rtcm3Framer::reportError(QString const &text)
{
    reportEvent(MessageApiEvent(MessageApiEvent::DecoderError, text, mFormat));
}
