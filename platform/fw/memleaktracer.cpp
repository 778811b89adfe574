// SPDX-License-Identifier: LGPL-2.1-or-later
#include "memleaktracer.h"

#include <QByteArray>
#include <QStringList>

#include <algorithm>
#include <cstdio>

MemLeakTracer *MemLeakTracer::getInstance()
{
    static MemLeakTracer instance;
    return &instance;
}

MemLeakTracer::MemLeakTracer()
{
    const QByteArray setting = qgetenv("FW_MEMLEAKTRACER");
    mEnabled = !setting.isEmpty() && setting != "0";
}

MemLeakTracer::~MemLeakTracer()
{
    if (mEnabled)
        writeLeakReport();
}

void MemLeakTracer::doAllocateObject(QString const &className)
{
    // Disabled tracing must cost next to nothing: the library reports every value it copies.
    if (!mEnabled)
        return;
    ++mCounts[className].allocations;
    if (mObserver)
        mObserver(true, className);
}

void MemLeakTracer::doDeallocateObject(QString const &className)
{
    if (!mEnabled)
        return;
    ++mCounts[className].deallocations;
    if (mObserver)
        mObserver(false, className);
}

void MemLeakTracer::setEnabled(bool enabled)
{
    mEnabled = enabled;
}

bool MemLeakTracer::isEnabled() const
{
    return mEnabled;
}

qint64 MemLeakTracer::getLiveCount(QString const &className) const
{
    const Counts counts = mCounts.value(className);
    return qint64(counts.allocations) - qint64(counts.deallocations);
}

quint64 MemLeakTracer::getAllocationCount(QString const &className) const
{
    return mCounts.value(className).allocations;
}

quint64 MemLeakTracer::getDeallocationCount(QString const &className) const
{
    return mCounts.value(className).deallocations;
}

void MemLeakTracer::reset()
{
    mCounts.clear();
}

MemLeakTracer::Observer MemLeakTracer::setObserver(Observer observer)
{
    const Observer previous = mObserver;
    mObserver = observer;
    return previous;
}

void MemLeakTracer::writeLeakReport() const
{
    QStringList names = mCounts.keys();
    std::sort(names.begin(), names.end());
    for (QString const &name : std::as_const(names)) {
        const qint64 live = getLiveCount(name);
        if (live != 0)
            std::fprintf(stderr, "MemLeakTracer: %lld live object(s) of class %s at exit\n",
                         static_cast<long long>(live), qPrintable(name));
    }
}
