// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fuzzenvironment.h"

#include "dbg.h"

#include <QString>
#include <QtGlobal>

#include <cstdio>
#include <cstdlib>

namespace {

void dropMessage(QtMsgType type, QMessageLogContext const &, QString const &text)
{
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "fatal: %s\n", qPrintable(text));
        std::abort();
    }
}

void abortOnAssert(char const *module, char const *subModule, char const *function,
                   char const *file, int line, char const *text)
{
    std::fprintf(stderr, "assertion report %s/%s in %s (%s:%d): %s\n", module, subModule, function,
                 file, line, text);
    std::abort();
}

} // namespace

void FuzzEnvironment::setUp()
{
    qInstallMessageHandler(dropMessage);
    dbg_SetAssertHandler(abortOnAssert);
}
