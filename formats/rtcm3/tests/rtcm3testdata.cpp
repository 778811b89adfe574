// SPDX-License-Identifier: LGPL-2.1-or-later
#include "rtcm3testdata.h"

#include "auxiliary/rtcm3crc24q.h"

#include <QDir>
#include <QFile>

namespace Rtcm3TestData {

QString captureDir()
{
    const QDir dir(QStringLiteral(RTCM3_CAPTURE_DIR));
    return dir.exists(QStringLiteral("SOURCES.md")) ? dir.absolutePath() : QString();
}

QByteArray readCapture(QString const &fileName)
{
    QFile file(captureDir() + QLatin1Char('/') + fileName);
    if (captureDir().isEmpty() || !file.open(QIODevice::ReadOnly))
        return {};
    return file.readAll();
}

QByteArray frame(QByteArray const &payload)
{
    QByteArray result;
    result.append(char(0xD3));
    result.append(char((payload.size() >> 8) & 0x03));
    result.append(char(payload.size() & 0xFF));
    result.append(payload);
    const uint32_t crc
        = rtcm3Crc24q(reinterpret_cast<uint8_t const *>(result.constData()), size_t(result.size()));
    result.append(char(crc >> 16));
    result.append(char(crc >> 8));
    result.append(char(crc));
    return result;
}

QByteArray frameFromBits(QString const &bits)
{
    QByteArray payload;
    int count = 0;
    for (QChar c : bits) {
        if (c != QLatin1Char('0') && c != QLatin1Char('1'))
            continue;
        if (count % 8 == 0)
            payload.append('\0');
        if (c == QLatin1Char('1'))
            payload[count / 8] = char(payload.at(count / 8) | (0x80 >> (count % 8)));
        ++count;
    }
    return frame(payload);
}

} // namespace Rtcm3TestData
