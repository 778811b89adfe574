// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TESTS_TRACERRECORDER_H
#define MESSAGEAPI_TESTS_TRACERRECORDER_H

#include <QStringList>

/**
 * Records the allocation tracer's reports while it lives, in order, as "+Class" for an
 * allocation and "-Class" for a deallocation. Enables the tracer with fresh counts and
 * restores the previous state when destroyed.
 */
class TracerRecorder
{
public:
    TracerRecorder();
    ~TracerRecorder();
    Q_DISABLE_COPY(TracerRecorder)

    QStringList events() const { return mEvents; }
    /// The recorded events that name the class (with either sign), in order.
    QStringList eventsOf(QString const &className) const;
    void clear() { mEvents.clear(); }

private:
    static void observe(bool allocation, QString const &className);

    QStringList mEvents;
    bool mWasEnabled;
    void (*mPreviousObserver)(bool, QString const &);
};

#endif // MESSAGEAPI_TESTS_TRACERRECORDER_H
