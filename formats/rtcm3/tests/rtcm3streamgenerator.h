// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_TESTS_RTCM3STREAMGENERATOR_H
#define MESSAGEAPI_RTCM3_TESTS_RTCM3STREAMGENERATOR_H

#include <QByteArray>

#include <random>

/**
 * Makes an endless RTCM 3 stream, one second's epoch at a time, and counts what it put in.
 *
 * Each epoch holds a GPS MSM7 (1077, eight satellites, two signals) with the epoch's time of
 * week, every tenth epoch also a 1005 and a proprietary 4072. Between frames it puts, at
 * random: runs of foreign bytes (never 0xD3, so that they start no frame), a 1005 with one
 * corrupted byte (a CRC error), the beginning of a 1077 cut off, or a frame whose CRC holds
 * but whose payload is too short for a 1077 (a decoder error). The same seed gives the same
 * stream.
 */
class Rtcm3StreamGenerator
{
public:
    explicit Rtcm3StreamGenerator(unsigned int seed);

    /// Appends the next epoch to stream.
    void appendEpoch(QByteArray &stream);

    /// Frames with a valid CRC put in, the too-short ones included.
    quint64 getFrameCount() const { return mFrameCount; }
    /// Bytes of those frames.
    quint64 getFrameByteCount() const { return mFrameByteCount; }
    /// Of those frames, the ones too short for their message.
    quint64 getShortFrameCount() const { return mShortFrameCount; }
    /// Frames put in with a corrupted byte.
    quint64 getCorruptedFrameCount() const { return mCorruptedFrameCount; }

private:
    void appendFrame(QByteArray &stream, QByteArray const &frame);
    void appendDamage(QByteArray &stream);

    std::mt19937 mRandom;
    QByteArray mMsm7Payload;
    QByteArray mStationFrame;
    QByteArray mProprietaryFrame;
    QByteArray mShortFrame;
    quint64 mEpoch = 0;
    quint64 mFrameCount = 0;
    quint64 mFrameByteCount = 0;
    quint64 mShortFrameCount = 0;
    quint64 mCorruptedFrameCount = 0;
};

#endif // MESSAGEAPI_RTCM3_TESTS_RTCM3STREAMGENERATOR_H
