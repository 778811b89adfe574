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

QStringList WarningCapture::textsOf(QtMsgType type) const
{
    QStringList result;
    for (Entry const &entry : mEntries) {
        if (entry.type == type)
            result.append(entry.text);
    }
    return result;
}

void WarningCapture::handle(QtMsgType type, QMessageLogContext const &, QString const &text)
{
    if (current)
        current->mEntries.append(Entry { type, text });
}
