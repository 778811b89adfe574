// SPDX-License-Identifier: LGPL-2.1-or-later
#include "ntripresponse.h"

#include <QUrl>

QByteArray NtripResponse::request(QUrl const &url)
{
    QByteArray text = "GET /" + url.path().mid(1).toUtf8()
        + " HTTP/1.1\r\nHost: " + url.host().toUtf8() + ':' + QByteArray::number(url.port(2101))
        + "\r\nNtrip-Version: Ntrip/2.0\r\nUser-Agent: NTRIP msgscan\r\n";
    if (!url.userName().isEmpty()) {
        const QByteArray credentials
            = (url.userName() + QLatin1Char(':') + url.password()).toUtf8();
        text += "Authorization: Basic " + credentials.toBase64() + "\r\n";
    }
    return text + "Connection: close\r\n\r\n";
}

QByteArray NtripResponse::addData(QByteArray const &bytes)
{
    switch (mState) {
    case WaitingForHeader:
        mBuffer += bytes;
        return readHeader();
    case Streaming:
        return mChunked ? unchunk(bytes) : bytes;
    case SourceTable:
        mBody += bytes;
        return {};
    case Refused:
        break;
    }
    return {};
}

bool NtripResponse::isSourceTableComplete() const
{
    return mState == SourceTable && mBody.contains("ENDSOURCETABLE");
}

QByteArray NtripResponse::readHeader()
{
    const int lineEnd = mBuffer.indexOf("\r\n");
    if (lineEnd < 0)
        return {};
    const QByteArray statusLine = mBuffer.left(lineEnd);
    mStatusLine = QString::fromLatin1(statusLine);
    // NTRIP 1: the stream or the table follows the status line, with or without header lines.
    if (statusLine == "ICY 200 OK") {
        mState = Streaming;
        return mBuffer.mid(lineEnd + 2);
    }
    // A refusal may come without header lines, so the status line alone decides it.
    if (!statusLine.endsWith(" 200 OK")) {
        mState = Refused;
        return {};
    }
    const int headerEnd = mBuffer.indexOf("\r\n\r\n");
    if (headerEnd < 0)
        return {};
    const QByteArray header = mBuffer.left(headerEnd).toLower();
    const QByteArray rest = mBuffer.mid(headerEnd + 4);
    mBuffer.clear();
    if (statusLine.startsWith("SOURCETABLE 200")
        || (statusLine.endsWith(" 200 OK") && header.contains("gnss/sourcetable"))) {
        mState = SourceTable;
        mBody = rest;
        return {};
    }
    if (!statusLine.startsWith("HTTP/1.")) {
        mState = Refused;
        return {};
    }
    mState = Streaming;
    mChunked = header.contains("transfer-encoding: chunked");
    return mChunked ? unchunk(rest) : rest;
}

QByteArray NtripResponse::unchunk(QByteArray const &bytes)
{
    mBuffer += bytes;
    QByteArray data;
    int position = 0;
    while (position < mBuffer.size()) {
        if (mChunkLeft < 0) {
            const int lineEnd = mBuffer.indexOf("\r\n", position);
            if (lineEnd < 0)
                break;
            // The size in hexadecimal, maybe with extensions after ';'; an empty line is the
            // end of the previous chunk's data.
            const QByteArray sizeText
                = mBuffer.mid(position, lineEnd - position).split(';').first();
            position = lineEnd + 2;
            if (!sizeText.trimmed().isEmpty())
                mChunkLeft = sizeText.trimmed().toLongLong(nullptr, 16);
            continue;
        }
        const int take = int(qMin<qint64>(mChunkLeft, mBuffer.size() - position));
        data += mBuffer.mid(position, take);
        position += take;
        mChunkLeft -= take;
        if (mChunkLeft == 0)
            mChunkLeft = -1;
    }
    mBuffer.remove(0, position);
    return data;
}
