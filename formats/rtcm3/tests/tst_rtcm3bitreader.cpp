// SPDX-License-Identifier: LGPL-2.1-or-later
#include "auxiliary/rtcm3bitreader.h"

#include <QTest>

#include <cstring>
#include <memory>

/// Bit fields read most significant bit first: the one-load paths (eight bytes, nine bytes,
/// the bytes left at the end of a block, with and without bytes that may be loaded after it)
/// against bit strings, and the refusals.
class tst_Rtcm3BitReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data();
    void reads();
};

namespace {

/// The bytes of a string of '0' and '1', zero-padded to whole bytes.
QByteArray bytesOf(QString const &bitString)
{
    QByteArray bytes((bitString.size() + 7) / 8, '\0');
    for (int i = 0; i < bitString.size(); ++i) {
        if (bitString[i] == QLatin1Char('1'))
            bytes[i / 8] = char(bytes[i / 8] | (0x80 >> (i % 8)));
    }
    return bytes;
}

} // namespace

void tst_Rtcm3BitReader::reads_data()
{
    QTest::addColumn<QString>("block"); // the block's bits; the reader sees its whole bytes
    QTest::addColumn<int>("slack"); // readable bytes after the block (the test adds 0xFF bytes)
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("expected"); // unsigned, two's complement, sign-magnitude

    const QString ones64(64, QLatin1Char('1'));
    const QString pattern = QStringLiteral("1011001110001111000011111000001111110000001111111000000"
                                           "011111111");
    QTest::newRow("a byte") << QStringLiteral("10100101") << 0 << 0 << 8 << "165 -91 -37";
    QTest::newRow("across bytes") << QStringLiteral("000101101100") << 0 << 3 << 7 << "91 -37 -27";
    QTest::newRow("64 bits aligned") << ones64 << 0 << 0 << 64
                                     << "18446744073709551615 -1 "
                                        "-9223372036854775807";
    QTest::newRow("nine bytes") << QStringLiteral("00000") + pattern << 0 << 5 << 64
                                << "12938577313804550399 -5508166759905001217 "
                                   "-3715205276949774591";
    QTest::newRow("last seven bytes")
        << QString(8, QLatin1Char('0')) + pattern.left(56) << 0 << 8 << 56
        << "50541317632049024 -21516276405878912 "
           "-14512520613085056";
    QTest::newRow("last bits, with slack")
        << QStringLiteral("000000001110") << 8 << 8 << 4 << "14 -2 -6";
    QTest::newRow("last bits, no slack")
        << QStringLiteral("000000001110") << 0 << 8 << 4 << "14 -2 -6";
    QTest::newRow("negative zero") << QStringLiteral("10000000") << 0 << 0 << 8 << "128 -128 0";
    QTest::newRow("empty field") << QStringLiteral("10000000") << 0 << 8 << 0 << "0 - -";
    QTest::newRow("past the end") << QStringLiteral("10000000") << 8 << 4 << 5 << "- - -";
    QTest::newRow("wider than 64 bits") << ones64 + ones64 << 0 << 0 << 65 << "- - -";
}

void tst_Rtcm3BitReader::reads()
{
    QFETCH(QString, block);
    QFETCH(int, slack);
    QFETCH(int, position);
    QFETCH(int, width);
    QFETCH(QString, expected);

    const QByteArray bytes = bytesOf(block);
    // Exactly the block and its slack, so that the sanitizer build sees any read past them.
    // Slack bytes are readable but never part of a value: all ones would show if they were.
    const auto memory = std::make_unique<uint8_t[]>(std::size_t(bytes.size() + slack));
    std::memcpy(memory.get(), bytes.constData(), std::size_t(bytes.size()));
    std::memset(memory.get() + bytes.size(), 0xFF, std::size_t(slack));
    const Rtcm3BitReader reader(memory.get(), std::size_t(bytes.size()), std::size_t(slack));
    uint64_t unsignedValue = 0;
    int64_t twos = 0;
    int64_t signMagnitude = 0;
    const QStringList outcome {
        reader.readUnsigned(std::size_t(position), unsigned(width), &unsignedValue)
            ? QString::number(unsignedValue)
            : QStringLiteral("-"),
        reader.readSigned(std::size_t(position), unsigned(width), &twos) ? QString::number(twos)
                                                                         : QStringLiteral("-"),
        reader.readSignMagnitude(std::size_t(position), unsigned(width), &signMagnitude)
            ? QString::number(signMagnitude)
            : QStringLiteral("-"),
    };
    QCOMPARE(outcome.join(QLatin1Char(' ')), expected);
}

QTEST_GUILESS_MAIN(tst_Rtcm3BitReader)
#include "tst_rtcm3bitreader.moc"
