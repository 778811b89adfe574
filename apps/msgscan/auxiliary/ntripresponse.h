// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MSGSCAN_NTRIPRESPONSE_H
#define MSGSCAN_NTRIPRESPONSE_H

#include <QByteArray>
#include <QString>

class QUrl;

/**
 * The client side of one NTRIP request: the request for a mount point, and the caster's answer
 * read as it arrives.
 *
 * The request is NTRIP 2 (HTTP/1.1 with "Ntrip-Version: Ntrip/2.0"); casters that speak only
 * NTRIP 1 ignore that line and answer "ICY 200 OK", after which the stream follows at once. An
 * NTRIP 2 answer "HTTP/1.x 200 OK" has header lines up to an empty line, and its stream may be
 * sent in chunks ("Transfer-Encoding: chunked"), which are taken apart here. A source table
 * ("SOURCETABLE 200 OK", or an HTTP answer of type gnss/sourcetable) is what a caster sends for
 * a mount point it does not have; any other status is a refusal.
 */
class NtripResponse
{
public:
    enum State { WaitingForHeader, Streaming, SourceTable, Refused };

    /// The request for the URL's mount point, with its user and password when it has them.
    static QByteArray request(QUrl const &url);

    /// Takes the next bytes from the caster and returns the stream bytes among them.
    QByteArray addData(QByteArray const &bytes);
    State getState() const { return mState; }
    /// The caster's status line, "ICY 200 OK" or "HTTP/1.1 401 Unauthorized".
    QString getStatusLine() const { return mStatusLine; }
    /// The source table received so far, without its header.
    QByteArray getSourceTable() const { return mBody; }
    /// Whether the source table has arrived whole ("ENDSOURCETABLE").
    bool isSourceTableComplete() const;

private:
    QByteArray readHeader();
    QByteArray unchunk(QByteArray const &bytes);

    State mState = WaitingForHeader;
    QString mStatusLine;
    QByteArray mBuffer;
    QByteArray mBody;
    bool mChunked = false;
    /// Bytes left in the current chunk; -1 while its size line is being read.
    qint64 mChunkLeft = -1;
};

#endif // MSGSCAN_NTRIPRESPONSE_H
