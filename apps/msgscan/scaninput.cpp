// SPDX-License-Identifier: LGPL-2.1-or-later
#include "scaninput.h"

#include <QSerialPort>
#include <QSocketNotifier>
#include <QTcpSocket>
#include <QUrlQuery>

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace {

/// Bytes taken from a file per turn of the event loop: small enough to keep an interrupt and
/// the progress line responsive.
constexpr int readChunkBytes = 65536;

/// The input as events and messages name it: a caster's password left out.
QString displayName(QString const &text)
{
    return text.startsWith(QLatin1String("ntrip://"), Qt::CaseInsensitive)
        ? QUrl(text).toDisplayString(QUrl::RemovePassword)
        : text;
}

} // namespace

ScanInput::ScanInput(QString const &text, QObject *parent)
    : MessageSource(displayName(text), parent)
    , mText(text)
{
    parse(text);
    mReconnectTimer.setSingleShot(true);
    mReconnectTimer.setInterval(10000);
    connect(&mReconnectTimer, &QTimer::timeout, this, &ScanInput::open);
}

ScanInput::~ScanInput() = default;

void ScanInput::parse(QString const &text)
{
    if (text == QLatin1String("-")) {
        mKind = StandardInput;
        return;
    }
    if (!text.contains(QLatin1String("://"))) {
        mKind = File;
        return;
    }
    mUrl = QUrl(text, QUrl::StrictMode);
    const QString scheme = mUrl.scheme().toLower();
    const QString bad = tr("bad input URL %1: ").arg(text);
    if (!mUrl.isValid()) {
        mUsageError = bad + mUrl.errorString();
    } else if (scheme == QLatin1String("tcp")) {
        mKind = Tcp;
        if (mUrl.host().isEmpty() || mUrl.port() <= 0)
            mUsageError = bad + tr("a host and a port are needed (tcp://host:port)");
    } else if (scheme == QLatin1String("ntrip")) {
        mKind = Ntrip;
        if (mUrl.host().isEmpty())
            mUsageError
                = bad + tr("a host is needed (ntrip://[user:password@]host[:port]/mountpoint)");
    } else if (scheme == QLatin1String("serial")) {
        mKind = Serial;
        const QString baud = QUrlQuery(mUrl).queryItemValue(QStringLiteral("baud"));
        bool ok = true;
        if (!baud.isEmpty())
            mBaudRate = baud.toInt(&ok);
        if (mUrl.path().isEmpty())
            mUsageError = bad + tr("a device is needed (serial:///dev/ttyUSB0?baud=115200)");
        else if (!ok || mBaudRate <= 0)
            mUsageError = bad + tr("the baud rate must be a positive whole number");
    } else {
        mUsageError = bad
            + tr("unknown kind of input %1 (use a file, -, tcp://, ntrip:// or serial://)")
                  .arg(mUrl.scheme());
    }
}

qint64 ScanInput::getSize() const
{
    return mKind == File && mFile.isOpen() ? mFile.size() : -1;
}

QString ScanInput::getDescription() const
{
    return getName();
}

void ScanInput::open()
{
    mClosed = false;
    switch (mKind) {
    case File:
    case StandardInput:
        openFile();
        break;
    case Tcp:
    case Ntrip:
        connectSocket();
        break;
    case Serial:
        openSerialPort();
        break;
    }
}

void ScanInput::close()
{
    mClosed = true;
    mReconnectTimer.stop();
    if (mNotifier)
        mNotifier->setEnabled(false);
    if (mSocket)
        mSocket->abort();
    if (mSerialPort)
        mSerialPort->close();
}

void ScanInput::openFile()
{
    const bool opened = mKind == StandardInput
        ? mFile.open(STDIN_FILENO, QIODevice::ReadOnly | QIODevice::Unbuffered)
        : (mFile.setFileName(mText), mFile.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
    if (!opened) {
        Q_EMIT failed(tr("cannot open %1: %2").arg(mText, mFile.errorString()));
        return;
    }
    // Also for a file: poll() finds it always readable, and reading in turns of the event loop
    // keeps an interrupt working.
    mNotifier = new QSocketNotifier(mFile.handle(), QSocketNotifier::Read, this);
    connect(mNotifier, &QSocketNotifier::activated, this, &ScanInput::readFile);
}

void ScanInput::readFile()
{
    QByteArray chunk(readChunkBytes, Qt::Uninitialized);
    const ssize_t count = ::read(mFile.handle(), chunk.data(), size_t(chunk.size()));
    if (count < 0 && errno == EINTR)
        return;
    if (count <= 0) {
        mNotifier->setEnabled(false);
        if (count < 0)
            Q_EMIT failed(
                tr("cannot read %1: %2").arg(mText, QString::fromLocal8Bit(std::strerror(errno))));
        else
            Q_EMIT finished();
        return;
    }
    chunk.truncate(int(count));
    deliver(chunk);
}

void ScanInput::deliver(QByteArray const &bytes)
{
    if (bytes.isEmpty())
        return;
    mBytesRead += quint64(bytes.size());
    Q_EMIT dataReceived(bytes);
}

void ScanInput::failOrRetry(QString const &why)
{
    if (mClosed)
        return;
    if (!mWasOpen) {
        Q_EMIT failed(why);
        return;
    }
    reportEvent(MessageApiEvent(MessageApiEvent::ApplicationError, why, nullptr));
    mReconnectTimer.start();
}

void ScanInput::connectSocket()
{
    if (!mSocket) {
        mSocket = new QTcpSocket(this);
        connect(mSocket, &QTcpSocket::connected, this, &ScanInput::handleSocketConnected);
        connect(mSocket, &QTcpSocket::readyRead, this, &ScanInput::handleSocketData);
        connect(mSocket, &QTcpSocket::disconnected, this, &ScanInput::handleSocketClosed);
        connect(mSocket, &QTcpSocket::errorOccurred, this, &ScanInput::handleSocketError);
    }
    mNtripResponse = NtripResponse();
    mSocket->connectToHost(mUrl.host(), quint16(mUrl.port(mKind == Ntrip ? 2101 : 0)));
}

void ScanInput::handleSocketConnected()
{
    mConnected = true;
    // A caster's connection counts as open once it streams.
    if (mKind == Ntrip) {
        mSocket->write(NtripResponse::request(mUrl));
        return;
    }
    mWasOpen = true;
    reportConnectionOpenedEvent();
}

void ScanInput::handleSocketData()
{
    const QByteArray bytes = mSocket->readAll();
    if (mKind == Tcp) {
        deliver(bytes);
        return;
    }
    const bool wasStreaming = mNtripResponse.getState() == NtripResponse::Streaming;
    const QByteArray stream = mNtripResponse.addData(bytes);
    if (!wasStreaming && mNtripResponse.getState() == NtripResponse::Streaming) {
        mWasOpen = true;
        reportConnectionOpenedEvent();
    }
    deliver(stream);
    handleCasterAnswer();
}

void ScanInput::handleCasterAnswer()
{
    const QString mountPoint = mUrl.path().mid(1);
    switch (mNtripResponse.getState()) {
    case NtripResponse::Refused:
        close();
        Q_EMIT failed(
            tr("%1: the caster refused: %2").arg(getDescription(), mNtripResponse.getStatusLine()));
        break;
    case NtripResponse::SourceTable:
        if (!mNtripResponse.isSourceTableComplete()
            && mSocket->state() == QAbstractSocket::ConnectedState)
            break;
        close();
        Q_EMIT failed(
            (mountPoint.isEmpty()
                 ? tr("%1: no mount point given; the caster's source table:").arg(getDescription())
                 : tr("%1: the caster has no mount point %2; its source table:")
                       .arg(getDescription(), mountPoint))
            + QLatin1Char('\n')
            + QString::fromUtf8(mNtripResponse.getSourceTable())
                  .replace(QLatin1String("\r\n"), QLatin1String("\n"))
                  .trimmed());
        break;
    case NtripResponse::WaitingForHeader:
    case NtripResponse::Streaming:
        break;
    }
}

void ScanInput::handleSocketError()
{
    if (!mConnected)
        failOrRetry(tr("cannot connect to %1: %2").arg(getDescription(), mSocket->errorString()));
}

void ScanInput::handleSocketClosed()
{
    if (!mConnected || mClosed)
        return;
    // A caster's last words (a refusal, the end of a source table) may still be unread.
    if (mSocket->bytesAvailable() > 0)
        handleSocketData();
    if (mClosed)
        return;
    mConnected = false;
    if (mKind == Ntrip && mNtripResponse.getState() == NtripResponse::SourceTable) {
        handleCasterAnswer();
        return;
    }
    if (mKind == Ntrip && mNtripResponse.getState() == NtripResponse::WaitingForHeader) {
        failOrRetry(
            tr("%1: the caster closed the connection without an answer").arg(getDescription()));
        return;
    }
    reportConnectionClosedEvent();
    mReconnectTimer.start();
}

void ScanInput::openSerialPort()
{
    if (!mSerialPort) {
        mSerialPort = new QSerialPort(this);
        mSerialPort->setPortName(mUrl.path());
        connect(mSerialPort, &QSerialPort::readyRead, this,
                [this]() { deliver(mSerialPort->readAll()); });
        connect(mSerialPort, &QSerialPort::errorOccurred, this, &ScanInput::handleSerialError);
    }
    mSerialPort->setBaudRate(mBaudRate);
    if (!mSerialPort->open(QIODevice::ReadOnly)) {
        failOrRetry(tr("cannot open %1: %2").arg(mText, mSerialPort->errorString()));
        return;
    }
    mWasOpen = true;
    mConnected = true;
    reportConnectionOpenedEvent();
}

void ScanInput::handleSerialError()
{
    // A device that goes away (unplugged) is a dropped connection; errors while opening are
    // handled where the port is opened.
    if (!mConnected || mSerialPort->error() != QSerialPort::ResourceError)
        return;
    mConnected = false;
    mSerialPort->close();
    reportConnectionClosedEvent();
    mReconnectTimer.start();
}
