// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_AUXILIARY_TRACING_H
#define MESSAGEAPI_AUXILIARY_TRACING_H

// Internal helpers shared by every source file of the library: allocation tracing, the
// per-file debug gating and the assertion report. Not installed.

#include "dbg.h"
#include "memleaktracer.h"

#include <QString>

/// The module tag under which the library asks for debug output and reports assertions.
#define MSGAPI_MODULE_TAG "MSGAPI"

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

/**
 * Declares the debug identity of a source file: its sub-module tag and the path under which
 * its assertion reports name it. Defines the file's cached debug flag, isDebugActive(), which
 * asks the platform once whether debug output of this file is switched on.
 */
#define MSGAPI_SOURCE_FILE(subModuleTag, sourcePath)                                               \
    namespace {                                                                                    \
    constexpr char const msgapiSubModule[] = subModuleTag;                                         \
    [[maybe_unused]] constexpr char const msgapiSourceFile[] = sourcePath;                         \
    [[maybe_unused]] bool isDebugActive()                                                          \
    {                                                                                              \
        static const bool active = dbg_SubModActive(MSGAPI_MODULE_TAG, msgapiSubModule);           \
        return active;                                                                             \
    }                                                                                              \
    }

/// Reports a broken invariant through the platform's assertion hook; execution goes on.
/// function is the bare function name that the report carries ("removeFieldInfo").
#define MSGAPI_ASSERT_REPORT(function, text)                                                       \
    dbg_Assert(MSGAPI_MODULE_TAG, msgapiSubModule, function, msgapiSourceFile, __LINE__, text)

#endif // MESSAGEAPI_AUXILIARY_TRACING_H
