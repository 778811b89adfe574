// SPDX-License-Identifier: LGPL-2.1-or-later
//
// Writes the recorded stream that messageapidemo replays: 89 seconds of a receiver sending
// demonstration blocks, from 2024-03-15 12:00:00 UTC on. Every value is computed from the
// epoch, so the output is the same byte for byte on every run and machine.
//
//   PosCart      1 Hz, except 12:00:40 to 12:00:42 (no position: one gap of three epochs)
//   VelCart      1 Hz until 12:00:30, then 2 Hz
//   ClockStatus  1 Hz; the block of 12:00:50 is damaged in transit (a CRC error)
//   SatInfo      every 5 s; the block of 12:01:00 is cut short (a decoder error)
//   block 99     once, at 12:00:20: a block number the dictionary does not know
//
// Usage: makedemostream <output file>

#include "demodictionary.h"
#include "demofieldinfo.h"
#include "demomessage.h"
#include "demostreamwriter.h"

#include "messageinfo.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

namespace {

/// 2024-03-15 12:00:00 UTC in milliseconds since the GPS epoch (no leap seconds).
constexpr quint64 startMillis = 1394539200000ULL;
/// Epochs are half seconds; the last one is at 89 s.
constexpr int halfSecondEpochs = 179;

class StreamBuilder
{
public:
    explicit StreamBuilder(DemoStreamWriter &writer)
        : mWriter(writer)
    { }

    void writeEpoch(int halfSeconds);

private:
    /// Starts a new block of the type at the time; set() fills its fields.
    void create(QString const &type, quint64 time, int records = 0)
    {
        mCurrent = mDictionary.createMessage(mDictionary.getMessageInfo(type), time, records);
    }
    /// A value of the wrong type or outside the block is a mistake in this program.
    void set(QString const &field, FieldValue const &value, unsigned int index = 0)
    {
        if (!mCurrent->getInfo()->getFieldInfo(field)->setValue(mCurrent, index, value))
            qFatal("makedemostream: cannot set %s", qPrintable(field));
    }
    /// The current block's bytes; the block itself is let go.
    QByteArray take()
    {
        const QByteArray block = mCurrent->getBlock();
        delete mCurrent;
        mCurrent = nullptr;
        return block;
    }

    DemoDictionary mDictionary;
    DemoStreamWriter &mWriter;
    DemoMessage *mCurrent = nullptr;
};

void StreamBuilder::writeEpoch(int halfSeconds)
{
    const quint64 time = startMillis + quint64(halfSeconds) * 500;
    const int s = halfSeconds / 2;
    const bool wholeSecond = halfSeconds % 2 == 0;

    if (wholeSecond && (s < 40 || s > 42)) {
        create(QStringLiteral("PosCart"), time);
        set(QStringLiteral("X"), FieldValue::f64(4027894.0 + 0.001 * ((s * 7) % 13 - 6)));
        set(QStringLiteral("Y"), FieldValue::f64(307045.6 + 0.001 * ((s * 5) % 11 - 5)));
        set(QStringLiteral("Z"), FieldValue::f64(4919474.9 + 0.001 * ((s * 3) % 17 - 8)));
        set(QStringLiteral("NrSat"), FieldValue::u(quint64(8 + (s / 20) % 3), 8));
        mWriter.writeBlock(take());
    }

    if (wholeSecond || s >= 30) {
        create(QStringLiteral("VelCart"), time);
        set(QStringLiteral("Vx"), FieldValue::i((halfSeconds * 37) % 11 - 5, 32));
        set(QStringLiteral("Vy"), FieldValue::i((halfSeconds * 29) % 9 - 4, 32));
        set(QStringLiteral("Vz"), FieldValue::i((halfSeconds * 17) % 7 - 3, 32));
        mWriter.writeBlock(take());
    }

    if (!wholeSecond)
        return;

    create(QStringLiteral("ClockStatus"), time);
    set(QStringLiteral("Bias"), FieldValue::i(120 + 3 * s, 32));
    set(QStringLiteral("Drift"), FieldValue::i(150 - s, 16));
    set(QStringLiteral("State"), FieldValue::u(s < 2 ? 0 : s < 10 ? 1 : 2, 8));
    if (s == 50)
        mWriter.writeDamagedBlock(take(), 12);
    else
        mWriter.writeBlock(take());

    if (s % 5 == 0) {
        static const int svids[] = { 3, 7, 8, 12, 17, 21, 24, 28, 30 };
        const int satellites = 6 + (s / 5) % 4;
        create(QStringLiteral("SatInfo"), time, satellites);
        for (int i = 0; i < satellites; ++i) {
            const auto index = unsigned(i);
            set(QStringLiteral("Svid"), FieldValue::u(quint64(svids[i]), 8), index);
            set(QStringLiteral("Elevation"), FieldValue::i((15 + 8 * i + s / 5) % 90, 8), index);
            set(QStringLiteral("CN0"), FieldValue::u(quint64(4 * (38 + 2 * i + (s / 5) % 3)), 8),
                index);
        }
        QByteArray block = take();
        // Two bytes short: the last satellite's elevation and CN0 are missing.
        if (s == 60)
            block.chop(2);
        mWriter.writeBlock(block);
    }

    if (s == 20) {
        // A header like any other, with a number the dictionary does not know.
        DemoMessage unknown(nullptr, QByteArray(DemoDictionary::headerSize, '\0') + "status");
        mDictionary.getNumberField()->setValue(&unknown, 0, FieldValue::u(99, 16));
        mDictionary.getTimeField()->setValue(&unknown, 0, FieldValue::u(time, 64));
        mWriter.writeBlock(unknown.getBlock());
    }
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: makedemostream <output file>\n");
        return 2;
    }
    QFile file(QString::fromLocal8Bit(argv[1]));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        std::fprintf(stderr, "makedemostream: cannot write %s\n", argv[1]);
        return 1;
    }
    DemoStreamWriter writer(&file);
    {
        StreamBuilder builder(writer);
        for (int halfSeconds = 0; halfSeconds < halfSecondEpochs; ++halfSeconds)
            builder.writeEpoch(halfSeconds);
    }
    file.close();
    if (!writer.isOk() || file.error() != QFileDevice::NoError) {
        std::fprintf(stderr, "makedemostream: writing %s failed\n", argv[1]);
        return 1;
    }
    return 0;
}
