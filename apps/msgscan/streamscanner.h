// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MSGSCAN_STREAMSCANNER_H
#define MSGSCAN_STREAMSCANNER_H

#include <rtcm3/rtcm3decoder.h>
#include <rtcm3/rtcm3framer.h>
#include <rtcm3/rtcm3streamtime.h>

#include <eventlog.h>
#include <messagesourcemultiplexer.h>
#include <messagestatisticscoordinator.h>
#include <timesource.h>

#include <QDate>
#include <QMap>
#include <QObject>

class FieldInfo;
class Message;
class MessageStatistics;

/**
 * Runs an RTCM 3 stream through the message flow and keeps what the report tells: bytes,
 * frames, bytes outside frames and CRC errors from the framer; per message type (unknown ones
 * included) the statistics of a MessageStatisticsCoordinator with gap detection; the event log;
 * and the latest station messages (1005, 1006, 1007, 1008, 1033).
 *
 * The stream's own epoch time drives the time source, and an epoch is closed when that time
 * moves on, so intervals and gaps are those of the receiver, not of the computer's clock.
 * Events are stamped with that time too.
 */
class StreamScanner : public QObject
{
    Q_OBJECT

public:
    /// fallbackDate gives the GPS week until the stream tells it. The dictionary is not owned
    /// and must outlive the scanner.
    StreamScanner(Rtcm3Dictionary const *dictionary, QString input,
                  QDate fallbackDate = QDate::currentDate(), QObject *parent = nullptr);
    ~StreamScanner() override;

    /**
     * The date in the GPS week that a file's own messages give (a 1013's date, an ephemeris'
     * week), read from its first 4 MiB, so that a recorded stream is timed in its own week from
     * its first message instead of jumping there from fallbackDate's week when the stream tells
     * it. fallbackDate when the input is no regular file or tells no week so early.
     */
    static QDate getStreamDate(Rtcm3Dictionary const *dictionary, QString const &input,
                               QDate fallbackDate);

    /// Logs the source's events (a connection's) with the decoder's.
    void addEventSource(MessageSource *source) { mMultiplexer.addSource(source); }

    Rtcm3Decoder *getDecoder() { return &mDecoder; }
    TimeSource *getTimeSource() { return &mTimeSource; }
    QString getInput() const { return mInput; }
    /// Bytes taken in.
    quint64 getByteCount() const { return mByteCount; }
    Rtcm3Framer const &getFramer() const { return mFramer; }
    MessageStatisticsCoordinator const &getCoordinator() const { return mCoordinator; }
    QList<EventLog::Entry> getEventLogEntries() const { return mEventLog->getEntries(); }
    /// The log itself, for views that follow it as it grows.
    EventLog *getEventLog() const { return mEventLog; }
    /// The statistics of every message type seen, by format and message number.
    QList<MessageStatistics const *> getMessageStatistics() const;
    /// The interval that currently repeats (two or more times), or 0.
    static long long getRegularInterval(MessageStatistics const *statistics);
    /// One thing the stream tells about its station, from the latest message that holds it.
    struct StationItem
    {
        QString key; ///< the name in the JSON report: "stationId", "x", "antennaDescriptor"
        FieldInfo const *field;
        Message const *message;
    };
    /// What the station messages (1005, 1006, 1007, 1008, 1033) told; empty when none came.
    QVector<StationItem> getStationItems() const;
    /// The first and the latest epoch time of the stream; 0 before the first.
    quint64 getFirstMillis() const { return mFirstMillis; }
    quint64 getLastMillis() const { return mTimeSource.getMillis(); }

    /// The report as text, the way msgscan prints it.
    QString getTextReport() const;

public Q_SLOTS:
    void addData(QByteArray const &bytes);
    /// The input has ended: what is left in the framer is reported.
    void finish();

private:
    Q_DISABLE_COPY(StreamScanner)

    void processEarly(Message const *message);

    QString mInput;
    Rtcm3Framer mFramer;
    Rtcm3Decoder mDecoder;
    MessageSourceMultiplexer mMultiplexer;
    mutable TimeSource mTimeSource;
    Rtcm3StreamTime mStreamTime;
    MessageStatisticsCoordinator mCoordinator;
    EventLog *mEventLog;
    QMap<int, Message const *> mStationMessages;
    quint64 mFirstMillis = 0;
    /// Whether the time source's time is in the stream's own week, not the fallback date's.
    bool mTimeHasStreamWeek = false;
    quint64 mByteCount = 0;
};

#endif // MSGSCAN_STREAMSCANNER_H
