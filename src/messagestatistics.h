// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGESTATISTICS_H
#define MESSAGEAPI_MESSAGESTATISTICS_H

#include "messageapiframework_export.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QString>
#include <QVector>

#include <climits>

class FormatInfo;
class Message;
class MessageInfo;
class MessageStatisticsCoordinator;
class TimeSource;

/**
 * Arrival statistics of one message type: the number of messages, a histogram of the intervals
 * between consecutive messages, the interval that currently repeats and, when switched on, gap
 * detection, which recognises a regular rate and counts the epochs in which the message did not
 * come.
 *
 * Only the arrival time matters, read from the time source in milliseconds since the GPS epoch;
 * the message contents are never looked at. An object describes either a known message type or
 * an unknown message named by its format and a message name. Its coordinator creates it, feeds
 * it, closes its epochs and is its Qt parent.
 *
 * Gap detection needs two consecutive equal positive intervals to take that interval as the
 * regular rate. A shorter repeated interval replaces it; a longer one replaces it and withdraws
 * the stored gaps that lie within two of the new intervals before the last message (they were
 * the longer rate, not lost messages). An interval that is not a whole multiple of the regular
 * one cancels it; whole multiples, which are what a gap looks like, keep it.
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageStatistics : public QObject
{
    Q_OBJECT

public:
    /// One run of epochs without a message.
    struct Gap
    {
        /// The first missing epoch: the last message before the gap plus the regular interval.
        unsigned long long startMillis;
        /// Epochs missing in this gap so far.
        unsigned int missingEpochs;
        /// The regular interval in force when the gap was detected.
        unsigned long long intervalMillis;
    };

    /// Stands for an interval that could not be measured (no time for this or the previous
    /// message). It never enters the interval histogram.
    static constexpr long long unknownIntervalMarker = LLONG_MIN;
    /// Gaps beyond this many are counted but not stored.
    static constexpr int maxStoredGaps = 20;

    /// Statistics of a known message type; format and name are taken from the message info.
    MessageStatistics(MessageInfo const *messageInfo, TimeSource *timeSource,
                      MessageStatisticsCoordinator *coordinator);
    /// Statistics of messages that the decoder could not place, named by format and name.
    MessageStatistics(FormatInfo const *formatInfo, QString messageName, TimeSource *timeSource,
                      MessageStatisticsCoordinator *coordinator);
    ~MessageStatistics() override;

    /// Sets every counter and flag to zero and false. The histogram, the recent intervals and
    /// the stored gaps are left alone.
    void initStatistics();

    /// Null for an unknown message.
    MessageInfo const *getMessageInfo() const { return mMessageInfo; }
    /// The format and the message name that the statistics stand for.
    ///@{
    FormatInfo const *getFormatInfo() const { return mFormatInfo; }
    QString getMessageName() const { return mMessageName; }
    ///@}

    /// Messages counted.
    unsigned int getCount() const { return mCount; }
    /// Messages whose interval to the previous one could not be measured, the first included.
    unsigned int getCountWithUnknownInterval() const { return mCountWithUnknownInterval; }
    /// Of those, the messages that came while the time source had no valid time, and the
    /// others.
    ///@{
    unsigned int getCountWithUnknownTime() const { return mCountWithUnknownTime; }
    unsigned int getCountWithKnownTimeButUnknownInterval() const
    {
        return mCountWithUnknownInterval - mCountWithUnknownTime;
    }
    ///@}

    /// Whether the most recent interval was measured.
    bool hasValidLastInterval() const { return mLastIntervalValid; }
    /// The most recent interval in ms, unknownIntervalMarker when it was not measured.
    long long getLastInterval() const { return mLastInterval; }
    /// How many consecutive messages came with the last interval.
    unsigned int getLastIntervalRepeatCount() const { return mLastIntervalRepeatCount; }

    /// Interval in ms to the number of times it occurred; entries stay when their count is 0.
    QHash<long long, unsigned int> getIntervalCountHash() const { return mIntervalCounts; }
    /// Every interval of the histogram, ascending.
    QList<long long> getIntervalsSortedOnDuration() const;
    /**
     * The intervals from the most frequent down, a whole group of equally frequent intervals at
     * a time (in no promised order within a group), until at least maxCount are listed; so the
     * result may hold more than maxCount, and maxCount 0 gives the most frequent group. A
     * negative maxCount lists every interval.
     */
    QList<long long> getIntervalsSortedOnFrequency(int maxCount) const;

    /// Whether the message keeps its rate: its last interval repeated and positive, and since
    /// the newest message of any type of the coordinator at most one such interval has passed.
    bool isCurrentlyRegular() const;

    /// Whether gaps are detected (off at first; the coordinator switches it on for the types
    /// registered with it).
    ///@{
    void setGapDetectionEnabled(bool enabled) { mGapDetectionEnabled = enabled; }
    bool isGapDetectionEnabled() const { return mGapDetectionEnabled; }
    ///@}

    /// The stored gaps, at most maxStoredGaps, oldest first.
    QVector<Gap> const &getGaps() const { return mGaps; }
    /// Every gap detected, stored or not.
    int getNumberOfGaps() const { return mNumberOfGaps; }
    /// Epochs missing in every gap detected, stored or not.
    int getNumberOfMissingEpochs() const { return mNumberOfMissingEpochs; }
    /// Whether a gap was detected while maxStoredGaps were already stored.
    bool hasUnstoredGaps() const { return mHasUnstoredGaps; }

    /**
     * Measures a gap from the previous message to the current time. Called with false for each
     * message before it is counted, and by the coordinator with true when an epoch is closed:
     * then an epoch that has just ended without the message counts as missing, whereas a message
     * that arrives exactly on a whole multiple fills that epoch itself. An open gap is
     * re-measured at each call and only its growth is added to the totals.
     */
    void updateGaps(bool epochClosed);

    /// "2 s" for whole seconds above one; otherwise seconds in general format, preceded by the
    /// rate when the interval divides a second evenly ("10 Hz/0.1 s", "1 Hz/1 s", "0.3 s").
    QString getIntervalString(unsigned long long millis) const;
    /// The rate of an interval: "4 Hz" for 250 ms.
    QString getRateString(unsigned long long millis) const;
    /// A time in ms as the time source renders it.
    QString getTimeString(unsigned long long millis) const;

    /// Writes the counts, the interval histogram and the stored gaps to the debug output.
    void printStatistics() const;

public Q_SLOTS:
    /// Counts the message when it is of this object's (known) message type.
    void processNewMessage(Message const *message);
    /// Counts an unknown message when this object stands for that format and name.
    void processNewUnknownMessage(FormatInfo const *format, QString messageName);
    /// Counts one message arriving now.
    void processNewMessage();

private:
    Q_DISABLE_COPY(MessageStatistics)

    /// How many of the latest intervals the propagation keeps.
    static constexpr int recentIntervalCapacity = 4;

    void addIntervalCount(long long interval, int delta);
    void handleIntervalPropagation(long long interval);
    void updateRegularIntervalForGapDetection();

    MessageInfo const *mMessageInfo;
    FormatInfo const *mFormatInfo;
    QString mMessageName;
    TimeSource *mTimeSource;
    MessageStatisticsCoordinator *mCoordinator;
    unsigned int mCount;
    unsigned int mCountWithUnknownInterval;
    unsigned int mCountWithUnknownTime;
    QHash<long long, unsigned int> mIntervalCounts;
    /// The count of mCachedInterval inside mIntervalCounts, or null: the same interval comes
    /// again and again, so its count is kept at hand until the hash grows.
    unsigned int *mCachedIntervalCount = nullptr;
    long long mCachedInterval = 0;
    bool mLastTimeValid;
    unsigned long long mLastMillis;
    bool mLastIntervalValid;
    long long mLastInterval;
    unsigned int mLastIntervalRepeatCount;
    /// The latest intervals passed to the propagation, oldest first; a fixed array, since it
    /// is shifted for every message.
    long long mRecentIntervals[recentIntervalCapacity] = {};
    int mRecentIntervalCount = 0;
    QVector<Gap> mGaps;
    int mNumberOfGaps;
    int mNumberOfMissingEpochs;
    unsigned int mMissingEpochsInOpenGap;
    bool mHasUnstoredGaps;
    long long mRegularInterval;
    bool mHasRegularInterval;
    bool mGapOpen;
    bool mGapDetectionEnabled;
};

#endif // MESSAGEAPI_MESSAGESTATISTICS_H
