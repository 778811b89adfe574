// SPDX-License-Identifier: LGPL-2.1-or-later
#include "warningcapture.h"

namespace {
WarningCapture *current = nullptr;
}

WarningCapture::WarningCapture()
    : mOuter(current)
{
    current = this;
    mPreviousHandler = qInstallMessageHandler(&WarningCapture::handle);
}

WarningCapture::~WarningCapture()
{
    qInstallMessageHandler(mPreviousHandler);
    current = mOuter;
}

QStringList WarningCapture::warnings() const
{
    QStringList result;
    for (Entry const &entry : mEntries) {
        if (entry.type == QtWarningMsg)
            result.append(entry.text);
    }
    return result;
}

QStringList WarningCapture::debugLines() const
{
    QStringList result;
    for (Entry const &entry : mEntries) {
        if (entry.type == QtDebugMsg)
            result.append(entry.text);
    }
    return result;
}

void WarningCapture::handle(QtMsgType type, QMessageLogContext const &, QString const &text)
{
    if (current)
        current->mEntries.append(Entry { type, text });
}
