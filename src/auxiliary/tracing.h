// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_AUXILIARY_TRACING_H
#define MESSAGEAPI_AUXILIARY_TRACING_H

// Internal helpers shared by every source file of the library: allocation tracing, the
// per-file debug gating and the assertion report. Not installed; the tracing part is.

#include "allocationtracing.h"
#include "dbg.h"

#include <QString>

/// The module tag under which the library asks for debug output and reports assertions.
#define MSGAPI_MODULE_TAG "MSGAPI"

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
