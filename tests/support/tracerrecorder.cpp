// SPDX-License-Identifier: LGPL-2.1-or-later
#include "tracerrecorder.h"

#include "memleaktracer.h"

namespace {
TracerRecorder *current = nullptr;
}

TracerRecorder::TracerRecorder()
{
    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    mWasEnabled = tracer->isEnabled();
    tracer->reset();
    tracer->setEnabled(true);
    mPreviousObserver = tracer->setObserver(&TracerRecorder::observe);
    current = this;
}

TracerRecorder::~TracerRecorder()
{
    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    tracer->setObserver(mPreviousObserver);
    tracer->setEnabled(mWasEnabled);
    tracer->reset();
    current = nullptr;
}

QStringList TracerRecorder::eventsOf(QString const &className) const
{
    QStringList result;
    for (QString const &event : mEvents) {
        if (event.mid(1) == className)
            result.append(event);
    }
    return result;
}

void TracerRecorder::observe(bool allocation, QString const &className)
{
    if (current)
        current->mEvents.append((allocation ? QStringLiteral("+") : QStringLiteral("-"))
                                + className);
}
