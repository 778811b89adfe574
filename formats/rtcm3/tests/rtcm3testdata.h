// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_TESTS_RTCM3TESTDATA_H
#define MESSAGEAPI_RTCM3_TESTS_RTCM3TESTDATA_H

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

class FieldValue;
class Message;
class Rtcm3Dictionary;

/// The real captures of ../shared/data/rtcm beside the checkout, and crafted frames.
namespace Rtcm3TestData {

/// The folder of the captures; empty when it is absent.
QString captureDir();
/// The whole capture; empty when the folder or the file is absent.
QByteArray readCapture(QString const &fileName);
/// A frame around the payload: preamble, length, payload, CRC-24Q.
QByteArray frame(QByteArray const &payload);
/// A frame whose payload holds the bits of the text ("0101..."; blanks ignored), padded with
/// zero bits to whole bytes.
QByteArray frameFromBits(QString const &bits);

/// The messages of a whole stream, framed and decoded, each with a reference held until the
/// list is destroyed; and the events of framer and decoder, as "type: text".
struct DecodedStream
{
    DecodedStream(Rtcm3Dictionary const &dictionary, QByteArray const &input);
    ~DecodedStream();
    DecodedStream(DecodedStream const &) = delete;
    DecodedStream &operator=(DecodedStream const &) = delete;

    /// The messages of that number, in stream order.
    QVector<Message const *> ofNumber(int number) const;

    QVector<Message const *> messages;
    QStringList unknown;
    QStringList events;
};

/// Value index of the field of that name in the message; an invalid value when it has none.
FieldValue value(Message const *message, QString const &field, unsigned int index = 0);
/// The text of a character field.
QString text(Message const *message, QString const &field);

} // namespace Rtcm3TestData

/// Skips the test when the captures are not beside the checkout.
#define RTCM3_REQUIRE_CAPTURES()                                                                   \
    do {                                                                                           \
        if (Rtcm3TestData::captureDir().isEmpty())                                                 \
            QSKIP("the RTCM 3 captures (../shared/data/rtcm beside the checkout) are absent");     \
    } while (false)

#endif // MESSAGEAPI_RTCM3_TESTS_RTCM3TESTDATA_H
