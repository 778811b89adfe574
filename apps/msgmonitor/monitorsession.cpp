// SPDX-License-Identifier: LGPL-2.1-or-later
#include "monitorsession.h"

#include <message.h>

MonitorSession::MonitorSession(Rtcm3Dictionary const *dictionary, QString const &input,
                               QDate fallbackDate, int reconnectSeconds, QObject *parent)
    : QObject(parent)
    , mInput(input)
    , mScanner(dictionary, input, fallbackDate)
{
    mInput.setReconnectSeconds(reconnectSeconds);
    mScanner.addEventSource(&mInput);
    connect(&mInput, &ScanInput::dataReceived, &mScanner, &StreamScanner::addData);
    connect(&mInput, &ScanInput::finished, this, [this]() {
        mScanner.finish();
        setRunning(false);
        Q_EMIT finished();
    });
    connect(&mInput, &ScanInput::failed, this, [this](QString const &why) {
        setRunning(false);
        Q_EMIT failed(why);
    });
    connect(mScanner.getDecoder(), &MessageSource::newMessage, this, &MonitorSession::keepMessage);
}

MonitorSession::~MonitorSession()
{
    mInput.close();
    for (Message const *message : qAsConst(mLastMessages))
        message->removeReference();
}

void MonitorSession::start()
{
    if (mRunning || !getUsageError().isEmpty())
        return;
    setRunning(true);
    mInput.open();
}

void MonitorSession::stop()
{
    if (!mRunning)
        return;
    mInput.close();
    mScanner.finish();
    setRunning(false);
}

void MonitorSession::keepMessage(Message const *message)
{
    message->addReference();
    Message const *&kept = mLastMessages[message->getInfo()];
    if (kept)
        kept->removeReference();
    kept = message;
}

void MonitorSession::setRunning(bool running)
{
    if (running == mRunning)
        return;
    mRunning = running;
    Q_EMIT runningChanged(running);
}
