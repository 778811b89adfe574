// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGENEED_H
#define MESSAGEAPI_MESSAGENEED_H

#include "messageapiframework_export.h"

#include <QVector>

class MessageInfo;
class MessageNeedManager;

/**
 * The message types that one client needs, registered with a MessageNeedManager.
 *
 * Every entry of the list counts once in the manager, duplicates included. Copies register
 * their own needs, so each copy counts separately; a destroyed need withdraws its needs.
 * Assigning a need to itself withdraws everything: the list is cleared before it is copied.
 *
 * A need without a manager (possible only after setManager(nullptr)) keeps its list without
 * counting it anywhere; the entries are counted when a manager is set again.
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageNeed
{
public:
    /// Registers with manager, or with MessageNeedManager::getCurrentInstance() when it is null.
    explicit MessageNeed(MessageNeedManager *manager = nullptr);
    /// The same needs, registered once more with the other's manager.
    ///@{
    MessageNeed(MessageNeed const &other);
    MessageNeed &operator=(MessageNeed const &other);
    ///@}
    virtual ~MessageNeed();

    /// The manager the needs are registered with.
    MessageNeedManager *getManager() const { return mManager; }
    /// The needed message types in order of addition, duplicates included.
    QVector<MessageInfo const *> getMessagesNeeded() const { return mMessagesNeeded; }

    /// Moves the needs from the current manager to manager.
    void setManager(MessageNeedManager *manager);

    /// Adds one need of info; no duplicate check.
    void addMessageNeeded(MessageInfo const *info);
    /// Withdraws one need of info. Fatal when this need does not hold info.
    void removeMessageNeeded(MessageInfo const *info);
    /**
     * Makes info the only need; nothing happens when it already is. A null info just clears
     * the needs and leaves the change pending: the manager reports it with its next signal.
     */
    void setMessageNeeded(MessageInfo const *info);
    /// Replaces all needs; the manager signals at most once for the whole replacement.
    void setMessagesNeeded(QVector<MessageInfo const *> infos);
    /// Withdraws all needs. With postponeSignal, a resulting change stays pending, for a
    /// caller that signals once itself after further changes.
    void clearMessagesNeeded(bool postponeSignal = false);

private:
    MessageNeedManager *mManager;
    QVector<MessageInfo const *> mMessagesNeeded;
};

#endif // MESSAGEAPI_MESSAGENEED_H
