// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_RTCM3FRAMER_H
#define MESSAGEAPI_RTCM3_RTCM3FRAMER_H

#include "messageapirtcm3_export.h"

#include "messagesource.h"

#include <QByteArray>

#include <cstdint>

/**
 * Finds RTCM 3 frames in a byte stream that arrives in chunks of any size, as a socket or a
 * file delivers them.
 *
 *   +------+----------+--------+------------------------+----------+
 *   | 0xD3 | 6 bits 0 | length |  payload: length bytes |  CRC-24Q |
 *   |  8   |          |   10   |  (message number first) |    24    |
 *   +------+----------+--------+------------------------+----------+
 *
 * Each frame whose CRC-24Q (over header and payload) holds is emitted with frameFound(), the
 * whole frame from its 0xD3 to the end of its CRC. A frame cut by the end of a chunk waits for
 * the next chunk. A candidate whose CRC fails is reported as a CRC error of the format, and the
 * search resumes one byte after its false 0xD3, so a 0xD3 inside foreign data never costs a
 * valid frame that follows. Bytes outside frames are reported as one "Decoder Error" event per
 * run, with the run's length and stream offset; from the 101st run of a stream on, every run
 * has one shared text, so that an event log's repeat limit keeps a stream of foreign data for
 * weeks from filling it (getForeignByteCount() still counts every byte). finish() tells the framer
 * that the input has ended: what is left is reported, an incomplete frame as such.
 *
 * The framer is a MessageSource, so its events travel with a decoder's through a multiplexer;
 * it announces no messages itself. Feed it from outside its own signals. Connect frameFound() to a
 * decoder's decodeMessage(const uint8_t*, uint) directly: the bytes are valid during the signal
 * only.
 */
class MESSAGEAPIRTCM3_EXPORT Rtcm3Framer : public MessageSource
{
    Q_OBJECT

public:
    /// format is the RTCM3 format that CRC errors and the other events name; not owned.
    Rtcm3Framer(FormatInfo const *format, QString name, QObject *parent = nullptr);
    ~Rtcm3Framer() override;

    /// Frames emitted so far.
    quint64 getFrameCount() const { return mFrameCount; }
    /// Candidate frames whose CRC failed.
    quint64 getCrcErrorCount() const { return mCrcErrorCount; }
    /// Bytes outside frames reported so far, the bytes of an incomplete last frame included.
    quint64 getForeignByteCount() const { return mForeignByteCount; }
    /// Of those, the bytes of the incomplete frame that finish() found at the end of the input.
    quint64 getIncompleteFrameByteCount() const { return mIncompleteFrameByteCount; }
    /// Bytes taken in so far: the stream offset of the next byte.
    quint64 getStreamOffset() const { return mStreamOffset; }

public Q_SLOTS:
    /// Takes the next chunk of the stream and emits the frames it completes.
    void addData(QByteArray const &chunk);
    /// The input has ended: emits what frames are left and reports the remaining bytes, a
    /// started frame as an incomplete frame. The framer then starts afresh at offset 0.
    void finish();
    /// Drops buffered bytes and counts and starts afresh at stream offset 0.
    void reset();

Q_SIGNALS:
    /// One whole frame whose CRC holds, valid during the signal only.
    void frameFound(const uint8_t *frame, uint length);

private:
    Q_DISABLE_COPY(Rtcm3Framer)

    /// Frames and foreign bytes from the start of the buffer; at the end of the input a frame
    /// that cannot complete is no reason to wait.
    void scan(bool atEnd);
    /// The length of the complete frame with a valid CRC at index, or 0.
    int validFrameAt(int index) const;
    /// Whether a complete frame with a valid CRC starts after index.
    bool validFrameAfter(int index) const;
    /// Extends the unreported run of foreign bytes (starting one at offset).
    void addForeignBytes(quint64 offset, int count);
    void reportForeignRun();
    void reportError(QString const &text);

    FormatInfo const *mFormat;
    QByteArray mBuffer;
    /// Stream offset of mBuffer's first byte.
    quint64 mBufferOffset = 0;
    quint64 mStreamOffset = 0;
    /// The run of foreign bytes not yet reported: its stream offset and length.
    quint64 mRunOffset = 0;
    quint64 mRunLength = 0;
    /// Runs reported with their own length and offset since the start of the stream.
    quint64 mLocatedRunCount = 0;
    quint64 mFrameCount = 0;
    quint64 mCrcErrorCount = 0;
    quint64 mForeignByteCount = 0;
    quint64 mIncompleteFrameByteCount = 0;
};

#endif // MESSAGEAPI_RTCM3_RTCM3FRAMER_H
