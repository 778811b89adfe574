// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_TIMESOURCE_H
#define MESSAGEAPI_TIMESOURCE_H

#include "messageapiframework_export.h"

#include <QDateTime>
#include <QObject>
#include <QString>

/**
 * The clock of the message flow: the current receiver time, set by the application, in
 * milliseconds since the GPS epoch (1980-01-06 00:00:00 UTC, no leap seconds). 0 means that
 * no valid time is known; it is the starting value.
 *
 * getTime() and hasValidMillis() read the time through the virtual getMillis(), so a derived
 * clock that overrides getMillis() alone changes all three.
 */
class MESSAGEAPIFRAMEWORK_EXPORT TimeSource : public QObject
{
    Q_OBJECT

public:
    /// A clock with no valid time.
    explicit TimeSource(QObject *parent = nullptr);
    ~TimeSource() override;

    /// The time as a UTC date-time in whole seconds (the milliseconds are dropped); a null
    /// date-time when no valid time is known. Keeps the last date-time it built, so call it on
    /// the thread of the time source, like its other operations.
    virtual QDateTime getTime();
    /// Whether a valid time is known: getMillis() is not 0.
    virtual bool hasValidMillis();
    /// The time in milliseconds since the GPS epoch; 0 when unknown.
    virtual unsigned long long getMillis();
    /// Plain decimal digits: no grouping, unit or padding.
    virtual QString millisToString(unsigned long long millis);

    /// Sets the time in milliseconds since the GPS epoch; 0 for no valid time.
    void setMillis(unsigned long long millis) { mMillis = millis; }

private:
    Q_DISABLE_COPY(TimeSource)

    unsigned long long mMillis = 0;
    /// The date-time of the second mLastTimeSeconds (valid when mHasLastTime): events come in
    /// bursts, and building a date-time costs more than the rest of logging one.
    QDateTime mLastTime;
    unsigned long long mLastTimeSeconds = 0;
    bool mHasLastTime = false;
};

#endif // MESSAGEAPI_TIMESOURCE_H
