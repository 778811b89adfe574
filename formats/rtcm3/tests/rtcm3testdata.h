// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_RTCM3_TESTS_RTCM3TESTDATA_H
#define MESSAGEAPI_RTCM3_TESTS_RTCM3TESTDATA_H

#include <QByteArray>
#include <QString>

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

} // namespace Rtcm3TestData

/// Skips the test when the captures are not beside the checkout.
#define RTCM3_REQUIRE_CAPTURES()                                                                   \
    do {                                                                                           \
        if (Rtcm3TestData::captureDir().isEmpty())                                                 \
            QSKIP("the RTCM 3 captures (../shared/data/rtcm beside the checkout) are absent");     \
    } while (false)

#endif // MESSAGEAPI_RTCM3_TESTS_RTCM3TESTDATA_H
