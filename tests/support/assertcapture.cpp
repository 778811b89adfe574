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

QStringList AssertCapture::texts() const
{
    QStringList result;
    for (Report const &report : mReports)
        result.append(QString::fromUtf8(report.text));
    return result;
}

QStringList AssertCapture::functions() const
{
    QStringList result;
    for (Report const &report : mReports)
        result.append(QString::fromUtf8(report.function));
    return result;
}

void AssertCapture::handle(char const *module, char const *subModule, char const *function,
                           char const *file, int line, char const *text)
{
    if (!current)
        return;
    Report report;
    report.module = module;
    report.subModule = subModule;
    report.function = function;
    report.file = file;
    report.line = line;
    report.text = text;
    current->mReports.append(report);
}
