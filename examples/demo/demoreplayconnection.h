// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_DEMO_DEMOREPLAYCONNECTION_H
#define MESSAGEAPI_DEMO_DEMOREPLAYCONNECTION_H

#include <QByteArray>
#include <QObject>

class QIODevice;

/**
 * A connection to a receiver that replays a recorded stream: it opens, hands over the recorded
 * bytes in pieces as a serial line would, and closes.
 */
class DemoReplayConnection : public QObject
{
    Q_OBJECT

public:
    explicit DemoReplayConnection(QObject *parent = nullptr);
    ~DemoReplayConnection() override;

    /**
     * Emits connected(), then the device's bytes in pieces of chunkSize through
     * bytesReceived(), then connectionClosed(). The device must be open for reading.
     */
    void replay(QIODevice *device, int chunkSize = 500);

Q_SIGNALS:
    void connected();
    void bytesReceived(QByteArray const &bytes);
    void connectionClosed();

private:
    Q_DISABLE_COPY(DemoReplayConnection)
};

#endif // MESSAGEAPI_DEMO_DEMOREPLAYCONNECTION_H
