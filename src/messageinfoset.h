// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_MESSAGEINFOSET_H
#define MESSAGEAPI_MESSAGEINFOSET_H

#include "messageapiframework_export.h"

#include <QObject>
#include <QSet>

class MessageInfo;

/// Kept for applications built against earlier versions; the library never reads or writes it.
extern MESSAGEAPIFRAMEWORK_EXPORT bool mCurrentlyCart;

/**
 * An observable set of message types: changed() follows every real change of the contents,
 * and only those. A PathExpression uses one to narrow its matches.
 *
 * After startFlipping() the set replaces its contents every two seconds, alternating between
 * the message types whose names match "*Geod*" and those matching "*Cart*".
 */
class MESSAGEAPIFRAMEWORK_EXPORT MessageInfoSet : public QObject
{
    Q_OBJECT

public:
    /// An empty set.
    explicit MessageInfoSet(QObject *parent = nullptr);
    ~MessageInfoSet() override;

    /// The message types in the set.
    QSet<MessageInfo const *> getMessageInfos() const { return mMessageInfos; }

    /// Adds or removes one message type; changed() when the set changed.
    ///@{
    void addMessageInfo(MessageInfo const *info);
    void removeMessageInfo(MessageInfo const *info);
    ///@}
    /// Emits changed() once when contents differ from the current set.
    void setContents(QSet<MessageInfo const *> contents);
    /// Empties the set; changed() when it was not empty.
    void clear();
    /**
     * Starts a repeating timer that flips the contents, first to the "*Geod*" types, then to
     * the "*Cart*" types, and so on. The contents stay as they are until the first timeout.
     * Only destroying the set stops it.
     */
    void startFlipping();

Q_SIGNALS:
    /// The contents changed.
    void changed();

private Q_SLOTS:
    void flip();

private:
    Q_DISABLE_COPY(MessageInfoSet)

    QSet<MessageInfo const *> mMessageInfos;
    bool mCurrentlyCartesian;
};

#endif // MESSAGEAPI_MESSAGEINFOSET_H
