// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGENEEDMANAGERADAPTER_H
#define MESSAGEAPI_MESSAGENEEDMANAGERADAPTER_H

#include "messageapiframework_export.h"

#include <QList>
#include <QObject>

class MessageInfo;
class MessageNeedManager;

/**
 * Turns the message types that a MessageNeedManager holds as needed into the list of receiver
 * block numbers to request: the main messages of the receiver's own format, with every needed
 * RTCM2, RTCM3 or CMR message folded into one entry for the receiver's differential
 * correction input message "DiffCorrIn". Messages of other formats are ignored.
 *
 * The adapter is a Qt child of its manager and rebuilds the list on every change of the
 * manager's set, emitting requiredMessagesChanged() each time, also when the list came out the
 * same.
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageNeedManagerAdapter : public QObject
{
    Q_OBJECT

public:
    /// Builds the list (and emits requiredMessagesChanged()) before returning. Warns when the
    /// dictionary has no "VEXA:DiffCorrIn"; corrections then yield no entry.
    explicit MessageNeedManagerAdapter(MessageNeedManager *manager);
    ~MessageNeedManagerAdapter() override;

    /// The manager whose needs are turned into the list.
    MessageNeedManager *getMessageNeedManager() const { return mManager; }
    /// Block numbers (13 bits) in the manager's order, not sorted.
    QList<unsigned short> const &getRequiredMessagesList() const { return mRequiredMessages; }

Q_SIGNALS:
    /// The list was built anew.
    void requiredMessagesChanged();

private Q_SLOTS:
    void processMessageSetChange();

private:
    Q_DISABLE_COPY(MessageNeedManagerAdapter)

    MessageNeedManager *mManager;
    QList<unsigned short> mRequiredMessages;
    MessageInfo const *mDiffCorrInInfo;
};

#endif // MESSAGEAPI_MESSAGENEEDMANAGERADAPTER_H
