// SPDX-License-Identifier: LGPL-2.1-or-later
#include "interruptnotifier.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace {

int sSocketPair[2] = { -1, -1 };

void handleSignal(int)
{
    const char byte = 1;
    // Nothing to do when the pair is full: one pending byte already ends the scan.
    [[maybe_unused]] const ssize_t written = ::write(sSocketPair[0], &byte, 1);
}

} // namespace

InterruptNotifier::InterruptNotifier(QObject *parent)
    : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, sSocketPair) != 0)
        return;
    mNotifier = new QSocketNotifier(sSocketPair[1], QSocketNotifier::Read, this);
    connect(mNotifier, &QSocketNotifier::activated, this, &InterruptNotifier::readSignal);
    struct sigaction action = {};
    action.sa_handler = handleSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

InterruptNotifier::~InterruptNotifier()
{
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    for (int &fd : sSocketPair) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}

void InterruptNotifier::readSignal()
{
    char byte;
    [[maybe_unused]] const ssize_t read = ::read(sSocketPair[1], &byte, 1);
    Q_EMIT interrupted();
}
