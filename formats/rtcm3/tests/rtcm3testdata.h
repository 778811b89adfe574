// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_TESTS_RTCM3TESTDATA_H
#define MESSAGEAPI_RTCM3_TESTS_RTCM3TESTDATA_H

#include <QByteArray>
#include <QStringList>
#include <QVector>

class FieldValue;
class Message;
class Rtcm3Dictionary;

namespace Rtcm3TestData {

/// The folder of the captures; empty when it is absent.
QString captureDir();
/// The whole capture; empty when the folder or the file is absent.
QByteArray readCapture(QString const &fileName);
/// width bits of value, most significant first.
QString bits(qint64 value, int width);
/// A frame around the payload bits (zero-padded to whole bytes): preamble, length, CRC-24Q.
QByteArray frame(QString const &payloadBits);
/// The standard output of the program, with standard input from the file when one is given.
QByteArray run(QString const &program, QStringList const &arguments, QString const &input = {});

/// A whole stream, fed in chunks of chunkSize bytes (0: at once), framed and decoded. Messages
/// are referenced until destruction; events are kept as "type: text", then the framer's
/// "N foreign, M incomplete".
struct DecodedStream
{
    DecodedStream(Rtcm3Dictionary const &dictionary, QByteArray const &input, int chunkSize = 0);
    ~DecodedStream();
    Q_DISABLE_COPY(DecodedStream)

    QVector<Message const *> ofNumber(int number) const;

    QStringList frames; // in hexadecimal
    QVector<Message const *> messages;
    QStringList unknown;
    QStringList events;
};

/// The value of the field of that name; invalid when the message has none.
FieldValue value(Message const *message, QString const &field, unsigned int index = 0);

} // namespace Rtcm3TestData

/// Skips the test when the captures are not beside the checkout.
#define RTCM3_REQUIRE_CAPTURES()                                                                   \
    do {                                                                                           \
        if (Rtcm3TestData::captureDir().isEmpty())                                                 \
            QSKIP("the RTCM 3 captures (../shared/data/rtcm beside the checkout) are absent");     \
    } while (false)

/// Skips the test when a program that it runs is not installed.
#define RTCM3_REQUIRE_TOOL(program, package)                                                       \
    do {                                                                                           \
        if (QStandardPaths::findExecutable(QStringLiteral(program)).isEmpty())                     \
            QSKIP(program " (Debian package " package ") is not installed");                       \
    } while (false)

#endif // MESSAGEAPI_RTCM3_TESTS_RTCM3TESTDATA_H
