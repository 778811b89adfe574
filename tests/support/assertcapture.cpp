// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"

#include "dbg.h"

namespace {
AssertCapture *current = nullptr;
}

AssertCapture::AssertCapture()
    : mOuter(current)
{
    current = this;
    mPreviousHandler = dbg_SetAssertHandler(&AssertCapture::handle);
}

AssertCapture::~AssertCapture()
{
    dbg_SetAssertHandler(mPreviousHandler);
    current = mOuter;
}

QStringList AssertCapture::collect(QByteArray Report::*part) const
{
    QStringList result;
    for (Report const &report : mReports)
        result.append(QString::fromUtf8(report.*part));
    return result;
}

void AssertCapture::handle(char const *module, char const *subModule, char const *function,
                           char const *file, int line, char const *text)
{
    if (!current)
        return;
    current->mReports.append(Report { module, subModule, function, file, line, text });
}
