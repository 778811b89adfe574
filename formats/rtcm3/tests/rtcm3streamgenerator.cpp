// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3streamgenerator.h"

#include "rtcm3testdata.h"

#include "rtcm3/rtcm3encoder.h"

namespace {

constexpr int satellites = 8;
constexpr int signalCount = 2;
constexpr int cells = satellites * signalCount;
constexpr quint64 weekMs = 604800000;

} // namespace

Rtcm3StreamGenerator::Rtcm3StreamGenerator(unsigned int seed)
    : mRandom(seed)
{
    using Rtcm3TestData::bits;
    auto randomBits = [this](int count) {
        QString text;
        for (int i = 0; i < count; ++i)
            text.append(mRandom() & 1 ? QLatin1Char('1') : QLatin1Char('0'));
        return text;
    };
    // Header (time of week 0, last message of its epoch), masks, then satellite and cell data.
    const QByteArray msm7 = Rtcm3TestData::frame(
        bits(1077, 12) + bits(0, 61) + bits(0xFF, 64) + bits(0x60000000, 32) + bits(-1, cells)
        + randomBits(36 * satellites + 80 * cells));
    mMsm7Payload = msm7.mid(3, msm7.size() - 6);
    mStationFrame = Rtcm3TestData::frame(bits(1005, 12) + randomBits(140));
    mProprietaryFrame = Rtcm3TestData::frame(bits(4072, 12) + randomBits(300));
    mShortFrame = Rtcm3Encoder::frame(mMsm7Payload.left(12));
}

void Rtcm3StreamGenerator::appendEpoch(QByteArray &stream)
{
    // The time of week, DF004, takes the 30 bits after the message number and station.
    QByteArray payload = mMsm7Payload;
    const quint64 tow = (mEpoch * 1000) % weekMs;
    quint64 word = 0;
    for (int i = 0; i < 8; ++i)
        word = (word << 8) | uchar(payload.at(i));
    word = (word & ~(quint64(0x3FFFFFFF) << 10)) | (tow << 10);
    for (int i = 7; i >= 0; --i, word >>= 8)
        payload[i] = char(word & 0xFF);

    appendDamage(stream);
    if (mEpoch % 10 == 0) {
        appendFrame(stream, mStationFrame);
        appendDamage(stream);
        appendFrame(stream, mProprietaryFrame);
        appendDamage(stream);
    }
    appendFrame(stream, Rtcm3Encoder::frame(payload));
    ++mEpoch;
}

void Rtcm3StreamGenerator::appendFrame(QByteArray &stream, QByteArray const &frame)
{
    stream.append(frame);
    ++mFrameCount;
    mFrameByteCount += quint64(frame.size());
}

void Rtcm3StreamGenerator::appendDamage(QByteArray &stream)
{
    switch (mRandom() % 10) {
    case 0:
    case 1: {
        const int length = 1 + int(mRandom() % 300);
        for (int i = 0; i < length; ++i) {
            const auto byte = char(mRandom());
            stream.append(byte == char(0xD3) ? '$' : byte);
        }
        break;
    }
    case 2: {
        QByteArray corrupted = mStationFrame;
        const int at = 3 + int(mRandom() % uint(corrupted.size() - 3));
        corrupted[at] = char(corrupted.at(at) ^ (1 + mRandom() % 255));
        stream.append(corrupted);
        ++mCorruptedFrameCount;
        break;
    }
    case 3:
        stream.append(Rtcm3Encoder::frame(mMsm7Payload).left(1 + int(mRandom() % 200)));
        break;
    case 4:
        appendFrame(stream, mShortFrame);
        ++mShortFrameCount;
        break;
    default:
        break;
    }
}
