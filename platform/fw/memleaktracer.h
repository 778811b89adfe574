// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FW_MEMLEAKTRACER_H
#define FW_MEMLEAKTRACER_H

#include "fw_export.h"

#include <QHash>
#include <QString>

#include <deque>

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

    /**
     * Whether a report could be counted now: false once the tracer is built with counting off
     * (or is gone at exit), true before it is built, so that the first report still builds it
     * and reads the environment. One load, for callers that report so often that even the call
     * into a disabled tracer shows: when false, the reports may be skipped.
     */
    static bool mayCount() { return sCountingState != CountingOff; }

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

    /// A class name whose characters stay where they are for the life of the program (a
    /// string literal), remembered by their address with the counts it names.
    struct StaticName
    {
        QChar const *characters = nullptr;
        qsizetype size = 0;
        Counts *counts = nullptr;
    };
    static constexpr int staticNameSlots = 256;

    enum CountingState : unsigned char { NotBuilt, CountingOff, CountingOn };
    static CountingState sCountingState;

    Counts &countsOf(QString const &className);
    Counts &countsByName(QString const &className);
    static int staticNameSlot(QChar const *characters);

    bool mEnabled = false;
    Observer mObserver = nullptr;
    QHash<QString, Counts *> mCounts;
    std::deque<Counts> mCountStorage; ///< keeps the counts in place as classes are added
    StaticName mStaticNames[staticNameSlots];
};

#endif // FW_MEMLEAKTRACER_H
