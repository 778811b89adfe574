// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dbg.h"

#include <QByteArray>
#include <QList>
#include <QtGlobal>

namespace {

void defaultAssertHandler(char const *module, char const *subModule, char const *function,
                          char const *file, int line, char const *text)
{
    qWarning("ASSERTION FAILED [%s/%s] %s (%s:%d): %s", module, subModule, function, file, line,
             text);
}

dbg_AssertHandler currentHandler = &defaultAssertHandler;

bool matches(QByteArray const &pattern, char const *value)
{
    return pattern == "*" || pattern == value;
}

} // namespace

void dbg_Assert(char const *module, char const *subModule, char const *function, char const *file,
                int line, char const *text)
{
    currentHandler(module, subModule, function, file, line, text);
}

bool dbg_SubModActive(char const *module, char const *subModule)
{
    static const QList<QByteArray> enabledPairs = qgetenv("FW_DEBUG").split(',');
    for (QByteArray const &pair : enabledPairs) {
        const int colon = pair.indexOf(':');
        if (colon < 0)
            continue;
        if (matches(pair.left(colon).trimmed(), module)
            && matches(pair.mid(colon + 1).trimmed(), subModule))
            return true;
    }
    return false;
}

dbg_AssertHandler dbg_SetAssertHandler(dbg_AssertHandler handler)
{
    const dbg_AssertHandler previous = currentHandler;
    currentHandler = handler ? handler : &defaultAssertHandler;
    return previous;
}
