// SPDX-License-Identifier: LGPL-2.1-or-later
#include "demoreplayconnection.h"

#include <QIODevice>

DemoReplayConnection::DemoReplayConnection(QObject *parent)
    : QObject(parent)
{ }

DemoReplayConnection::~DemoReplayConnection() = default;

void DemoReplayConnection::replay(QIODevice *device, int chunkSize)
{
    Q_EMIT connected();
    while (!device->atEnd()) {
        const QByteArray chunk = device->read(chunkSize);
        if (chunk.isEmpty())
            break;
        Q_EMIT bytesReceived(chunk);
    }
    Q_EMIT connectionClosed();
}
