// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FW_MEMLEAKTRACER_H
#define FW_MEMLEAKTRACER_H

#include "fw_export.h"

#include <QHash>
#include <QString>

/**
 * Process-wide allocation tracer of the platform framework.
 *
 * Every traced class reports each construction and destruction by its bare class name.
 * Counting is off until enabled, either with setEnabled() or by setting the environment
 * variable FW_MEMLEAKTRACER to a non-empty value other than "0" before the first use. When
 * enabled, the tracer writes a leak report to standard error at exit naming every class
 * whose live count is not 0.
 */
class FW_EXPORT MemLeakTracer
{
public:
    /// The one tracer of the process, built on first use and destroyed at exit.
    static MemLeakTracer *getInstance();

    void doAllocateObject(QString const &className);
    void doDeallocateObject(QString const &className);

    void setEnabled(bool enabled);
    bool isEnabled() const;
    /// Allocations minus deallocations counted for the class while enabled.
    qint64 getLiveCount(QString const &className) const;
    quint64 getAllocationCount(QString const &className) const;
    quint64 getDeallocationCount(QString const &className) const;
    /// Forgets every count; the enabled state is kept.
    void reset();

    /// Called for every report while enabled, after counting (true for an allocation).
    typedef void (*Observer)(bool allocation, QString const &className);
    /// Installs an observer (null removes it) and returns the previous one.
    Observer setObserver(Observer observer);

private:
    MemLeakTracer();
    ~MemLeakTracer();
    Q_DISABLE_COPY(MemLeakTracer)

    void writeLeakReport() const;

    struct Counts
    {
        quint64 allocations = 0;
        quint64 deallocations = 0;
    };

    bool mEnabled = false;
    Observer mObserver = nullptr;
    QHash<QString, Counts> mCounts;
};

#endif // FW_MEMLEAKTRACER_H
