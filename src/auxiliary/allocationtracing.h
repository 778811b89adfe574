// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_AUXILIARY_ALLOCATIONTRACING_H
#define MESSAGEAPI_AUXILIARY_ALLOCATIONTRACING_H

// The reports of constructions and destructions to the platform's allocation tracer. Public
// because the value types build and drop themselves inline, in the caller's code.

#include "memleaktracer.h"

#include <QString>

namespace MessageApiTracing {

// Values report every copy, so a disabled tracer must cost no more than one test: the call is
// skipped when the tracer says it would not count. A literal name costs nothing to build and
// lets an enabled tracer find its counts by address.

/// Reports the construction of one object of the named class (pass a QStringLiteral).
inline void allocated(QString const &className)
{
    if (MemLeakTracer::mayCount())
        MemLeakTracer::getInstance()->doAllocateObject(className);
}

/// Reports the destruction of one object of the named class (pass a QStringLiteral).
inline void deallocated(QString const &className)
{
    if (MemLeakTracer::mayCount())
        MemLeakTracer::getInstance()->doDeallocateObject(className);
}

} // namespace MessageApiTracing

#endif // MESSAGEAPI_AUXILIARY_ALLOCATIONTRACING_H
