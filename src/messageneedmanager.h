// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGENEEDMANAGER_H
#define MESSAGEAPI_MESSAGENEEDMANAGER_H

#include "messageapiframework_export.h"

#include <QHash>
#include <QList>
#include <QObject>

class MessageInfo;

/**
 * Keeps, per message type, how many needs are outstanding, and tells when the set of needed
 * types (those with a count above zero) changes.
 *
 * MessageNeed objects report to a manager; clients rarely call increment() and decrement()
 * themselves. A change of the set only marks the signal as pending; emitPendingSignal() sends
 * it, so that a batch of changes ends in at most one messageSetChanged().
 *
 * Broken counts are fatal (qFatal): decrementing a type that has no count, and destroying a
 * manager while needs are still registered.
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageNeedManager : public QObject
{
    Q_OBJECT

public:
    /// The number of needs per message type.
    using Counts = QHash<MessageInfo const *, unsigned int>;

    MessageNeedManager();
    /// Fatal when some message type is still needed.
    ~MessageNeedManager() override;

    /// The message types with a count above zero, in hash order.
    QList<MessageInfo const *> getMessagesNeeded() const;

    /// The process-wide manager, made on first use and destroyed at program exit.
    static MessageNeedManager *getCurrentInstance();

    /// One more need of info; the set changes when its count becomes 1.
    /// Emits the pending signal unless postponeSignal is set.
    void increment(MessageInfo const *info, bool postponeSignal);
    /// One need of info less; the set changes when its count becomes 0. Fatal when info has no
    /// count. Emits the pending signal unless postponeSignal is set.
    void decrement(MessageInfo const *info, bool postponeSignal);
    /// Emits messageSetChanged() when the set has changed since the last emission.
    void emitPendingSignal();

    /// The count entry of info, inserted with count 0 when absent.
    Counts::iterator getIterator(MessageInfo const *info);

Q_SIGNALS:
    /// The set of needed message types has changed (see emitPendingSignal()).
    void messageSetChanged();

private:
    Q_DISABLE_COPY(MessageNeedManager)

    Counts mCounts;
    bool mSignalPending;
};

#endif // MESSAGEAPI_MESSAGENEEDMANAGER_H
