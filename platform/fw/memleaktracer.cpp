// SPDX-License-Identifier: LGPL-2.1-or-later
#include "memleaktracer.h"

#include <QByteArray>
#include <QStringList>

#include <algorithm>
#include <cstdio>

namespace {

/// Whether the text's characters are not owned by any string: a literal's static data (or, in
/// Qt 6, raw data the caller keeps unchanged). Such characters never move or change, so their
/// address names the text for good.
bool hasStaticCharacters(QString const &text)
{
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return !text.data_ptr().isMutable();
#else
    return const_cast<QString &>(text).data_ptr()->ref.isStatic();
#endif
}

} // namespace

MemLeakTracer::CountingState MemLeakTracer::sCountingState = MemLeakTracer::NotBuilt;

MemLeakTracer *MemLeakTracer::getInstance()
{
    static MemLeakTracer instance;
    return &instance;
}

MemLeakTracer::MemLeakTracer()
{
    const QByteArray setting = qgetenv("FW_MEMLEAKTRACER");
    setEnabled(!setting.isEmpty() && setting != "0");
}

MemLeakTracer::~MemLeakTracer()
{
    if (mEnabled)
        writeLeakReport();
    // Objects destroyed after the tracer at exit still report; let them skip it.
    mEnabled = false;
    sCountingState = CountingOff;
}

void MemLeakTracer::doAllocateObject(QString const &className)
{
    // Disabled tracing must cost next to nothing: the library reports every value it copies.
    if (!mEnabled)
        return;
    ++countsOf(className).allocations;
    if (mObserver)
        mObserver(true, className);
}

void MemLeakTracer::doDeallocateObject(QString const &className)
{
    if (!mEnabled)
        return;
    ++countsOf(className).deallocations;
    if (mObserver)
        mObserver(false, className);
}

MemLeakTracer::Counts &MemLeakTracer::countsOf(QString const &className)
{
    // Nearly every report names its class with a string literal: those are found by the
    // address of their characters, without hashing the text, which enabled tracing would
    // otherwise do twice for every value copied.
    if (!hasStaticCharacters(className))
        return countsByName(className);
    QChar const *characters = className.constData();
    StaticName &slot = mStaticNames[staticNameSlot(characters)];
    if (slot.characters != characters || slot.size != className.size()) {
        slot.counts = &countsByName(className);
        slot.characters = characters;
        slot.size = className.size();
    }
    return *slot.counts;
}

MemLeakTracer::Counts &MemLeakTracer::countsByName(QString const &className)
{
    Counts *&counts = mCounts[className];
    if (!counts) {
        mCountStorage.emplace_back();
        counts = &mCountStorage.back();
    }
    return *counts;
}

int MemLeakTracer::staticNameSlot(QChar const *characters)
{
    // Fibonacci hashing of the address: literals lie close together, so mix in every bit and
    // take the top byte.
    static_assert(staticNameSlots == 256, "one slot per value of the top byte");
    const auto address = static_cast<quint64>(reinterpret_cast<quintptr>(characters));
    return int((address * 0x9E3779B97F4A7C15ULL) >> 56);
}

void MemLeakTracer::setEnabled(bool enabled)
{
    mEnabled = enabled;
    sCountingState = enabled ? CountingOn : CountingOff;
}

bool MemLeakTracer::isEnabled() const
{
    return mEnabled;
}

qint64 MemLeakTracer::getLiveCount(QString const &className) const
{
    return qint64(getAllocationCount(className)) - qint64(getDeallocationCount(className));
}

quint64 MemLeakTracer::getAllocationCount(QString const &className) const
{
    Counts const *counts = mCounts.value(className);
    return counts ? counts->allocations : 0;
}

quint64 MemLeakTracer::getDeallocationCount(QString const &className) const
{
    Counts const *counts = mCounts.value(className);
    return counts ? counts->deallocations : 0;
}

void MemLeakTracer::reset()
{
    std::fill(std::begin(mStaticNames), std::end(mStaticNames), StaticName());
    mCounts.clear();
    mCountStorage.clear();
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
