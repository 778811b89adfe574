// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGESTATISTICSCOORDINATOR_H
#define MESSAGEAPI_MESSAGESTATISTICSCOORDINATOR_H

#include "messageapiframework_export.h"

#include "messageapievent.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>
#include <QString>

class FormatInfo;
class Message;
class MessageInfo;
class MessageSource;
class MessageStatistics;
class TimeSource;

/**
 * Measures the whole traffic of one message source: one MessageStatistics per message type
 * seen (and per unknown message, by format and name), event counts by type, and the time of
 * the newest message of any type.
 *
 * Statistics objects are made on demand and are Qt children of the coordinator. Known and
 * unknown messages share one name space, "<format name> <message name>": a look-up by format
 * and name returns whatever object holds that name, and an object made later for a known type
 * of the same name takes the name over (both stay listed).
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageStatisticsCoordinator : public QObject
{
    Q_OBJECT

public:
    /// Listens to the source from now on. Neither the source nor the time source is owned.
    MessageStatisticsCoordinator(MessageSource *source, TimeSource *timeSource,
                                 QObject *parent = nullptr);
    ~MessageStatisticsCoordinator() override;

    /// The statistics of the message type, made when it has none yet.
    MessageStatistics *getMessageStatistics(MessageInfo const *info);
    /// The statistics held under the format and message name, made (for an unknown message,
    /// without gap detection) when the name is free.
    MessageStatistics *getMessageStatistics(FormatInfo const *format, QString const &messageName);
    /// Every statistics object, in order of creation.
    QList<MessageStatistics *> getAllMessageStatistics() const { return mAllStatistics; }
    /// Whether the known message type has statistics (unknown messages never count here).
    bool hasStatistics(MessageInfo const *info) const;

    /// Asks for gap detection in the statistics of the message type made from now on; an
    /// existing object keeps its setting. Register before the messages flow.
    void enableGapDetection(MessageInfo const *info);

    /// Events of the type since construction or the last clear().
    unsigned int getEventCount(MessageApiEvent::Type type) const;

    /// The time of the newest message of any type, as read whether valid or not, and whether
    /// it was valid.
    ///@{
    unsigned long long getLastMessageMillis() const { return mLastMessageMillis; }
    bool hasValidLastMessageMillis() const { return mLastMessageMillisValid; }
    ///@}

    /// The source listened to.
    MessageSource *getMessageSource() const { return mSource; }
    /// Stops listening to the source for good.
    void disconnectFromSource();

public Q_SLOTS:
    /// Deletes every statistics object and forgets the event counts. The gap detection
    /// registrations, the source connection and the newest-message time stay.
    void clear();
    /// Ends an epoch for gap detection in every statistics object, in order of creation.
    void closeEpoch();

private Q_SLOTS:
    void processNewMessage(const Message *message);
    void processNewUnknownMessage(const FormatInfo *format, QString name);
    void processNewEvent(MessageApiEvent event);

private:
    Q_DISABLE_COPY(MessageStatisticsCoordinator)

    void readMessageTime();

    MessageSource *mSource;
    TimeSource *mTimeSource;
    QHash<MessageInfo const *, MessageStatistics *> mStatisticsByInfo;
    QHash<QString, MessageStatistics *> mStatisticsByName;
    QList<MessageStatistics *> mAllStatistics;
    QSet<MessageInfo const *> mGapDetectionInfos;
    QHash<MessageApiEvent::Type, unsigned int> mEventCounts;
    bool mLastMessageMillisValid;
    unsigned long long mLastMessageMillis;
};

#endif // MESSAGEAPI_MESSAGESTATISTICSCOORDINATOR_H
