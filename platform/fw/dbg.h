// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef FW_DBG_H
#define FW_DBG_H

#include "fw_export.h"

/// Receives a failed assertion: module and sub-module tags, function, source file, line, text.
typedef void (*dbg_AssertHandler)(char const *module, char const *subModule, char const *function,
                                  char const *file, int line, char const *text);

/**
 * Reports a failed assertion to the installed handler and returns: an assertion never stops
 * the program. The default handler writes one warning line with all six items.
 */
FW_EXPORT void dbg_Assert(char const *module, char const *subModule, char const *function,
                          char const *file, int line, char const *text);

/**
 * Whether debug output of a module and sub-module is switched on. The environment variable
 * FW_DEBUG holds a comma-separated list of "MODULE:SUBMODULE" pairs, where either side may be
 * "*"; it is read once.
 */
FW_EXPORT bool dbg_SubModActive(char const *module, char const *subModule);

/// Installs a handler (null restores the default one) and returns the previous handler.
FW_EXPORT dbg_AssertHandler dbg_SetAssertHandler(dbg_AssertHandler handler);

#endif // FW_DBG_H
