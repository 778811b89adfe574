// SPDX-License-Identifier: LGPL-2.1-or-later
#include "auxiliary/rtcm3bitreader.h"
#include "auxiliary/rtcm3crc24q.h"

#include <QTest>

class tst_Rtcm3BitReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void read_data();
    void read();
    void refusesReadsPastTheEnd_data();
    void refusesReadsPastTheEnd();
    void crc24q_data();
    void crc24q();
};

namespace {

enum Kind { U, I, S };

// 0x12 0x34 0x56 0x78 0x9A 0xBC 0xDE 0xF0, then 0xFF 0x00 0x80 0x01 0x7F 0xFF 0xFF 0xFF
const QByteArray block = QByteArray::fromHex("123456789abcdef0ff0080017fffffff");

} // namespace

void tst_Rtcm3BitReader::read_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("width");
    QTest::addColumn<qint64>("expected");

    QTest::newRow("unsigned, one byte aligned") << int(U) << 0 << 8 << qint64(0x12);
    QTest::newRow("unsigned, 12 bits (message number)") << int(U) << 0 << 12 << qint64(0x123);
    QTest::newRow("unsigned, across three bytes") << int(U) << 4 << 20 << qint64(0x23456);
    QTest::newRow("unsigned, single bit set") << int(U) << 3 << 1 << qint64(1);
    QTest::newRow("unsigned, single bit clear") << int(U) << 0 << 1 << qint64(0);
    QTest::newRow("unsigned, zero width") << int(U) << 5 << 0 << qint64(0);
    QTest::newRow("unsigned, 64 bits aligned") << int(U) << 0 << 64 << qint64(0x123456789abcdef0LL);
    QTest::newRow("unsigned, 64 bits unaligned")
        << int(U) << 4 << 64 << qint64(0x23456789abcdef0fLL);
    QTest::newRow("unsigned, last bit of the block") << int(U) << 127 << 1 << qint64(1);
    QTest::newRow("signed, positive") << int(I) << 0 << 8 << qint64(0x12);
    QTest::newRow("signed, all ones is -1") << int(I) << 64 << 8 << qint64(-1);
    QTest::newRow("signed, 38 bits negative") << int(I) << 64 << 38 << qint64(-1071644577);
    QTest::newRow("signed, smallest of 8 bits") << int(I) << 80 << 8 << qint64(-128);
    QTest::newRow("signed, 64 bits") << int(I) << 64 << 64 << qint64(-71916850107121665LL);
    QTest::newRow("sign-magnitude, positive") << int(S) << 0 << 8 << qint64(0x12);
    QTest::newRow("sign-magnitude, negative") << int(S) << 64 << 8 << qint64(-127);
    QTest::newRow("sign-magnitude, negative zero is 0") << int(S) << 80 << 8 << qint64(0);
    QTest::newRow("sign-magnitude, 1 bit") << int(S) << 64 << 1 << qint64(0);
    QTest::newRow("sign-magnitude, 27 bits unaligned") << int(S) << 93 << 27 << qint64(25165823);
}

void tst_Rtcm3BitReader::read()
{
    QFETCH(int, kind);
    QFETCH(int, position);
    QFETCH(int, width);
    QFETCH(qint64, expected);

    const Rtcm3BitReader reader(reinterpret_cast<uint8_t const *>(block.constData()),
                                std::size_t(block.size()));
    if (kind == U) {
        uint64_t value = 99;
        QVERIFY(reader.readUnsigned(std::size_t(position), unsigned(width), &value));
        QCOMPARE(value, uint64_t(expected));
    } else {
        int64_t value = 99;
        QVERIFY(kind == I
                    ? reader.readSigned(std::size_t(position), unsigned(width), &value)
                    : reader.readSignMagnitude(std::size_t(position), unsigned(width), &value));
        QCOMPARE(value, int64_t(expected));
    }
}

void tst_Rtcm3BitReader::refusesReadsPastTheEnd_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<int>("position");
    QTest::addColumn<int>("width");

    QTest::newRow("unsigned, one bit past the end") << int(U) << 120 << 9;
    QTest::newRow("unsigned, starting past the end") << int(U) << 129 << 0;
    QTest::newRow("unsigned, wider than 64 bits") << int(U) << 0 << 65;
    QTest::newRow("unsigned, huge position") << int(U) << 0x7fffffff << 8;
    QTest::newRow("signed, one bit past the end") << int(I) << 100 << 29;
    QTest::newRow("signed, zero width") << int(I) << 0 << 0;
    QTest::newRow("sign-magnitude, one bit past the end") << int(S) << 127 << 2;
}

void tst_Rtcm3BitReader::refusesReadsPastTheEnd()
{
    QFETCH(int, kind);
    QFETCH(int, position);
    QFETCH(int, width);

    // The reader sees only the first 16 bytes of a longer buffer: the bytes after them must
    // never be read.
    const QByteArray longer = block + QByteArray(8, '\xAA');
    const Rtcm3BitReader reader(reinterpret_cast<uint8_t const *>(longer.constData()),
                                std::size_t(block.size()));
    uint64_t unsignedValue = 42;
    int64_t signedValue = 42;
    bool accepted = true;
    if (kind == U)
        accepted = reader.readUnsigned(std::size_t(position), unsigned(width), &unsignedValue);
    else if (kind == I)
        accepted = reader.readSigned(std::size_t(position), unsigned(width), &signedValue);
    else
        accepted = reader.readSignMagnitude(std::size_t(position), unsigned(width), &signedValue);
    QVERIFY(!accepted);
    QCOMPARE(unsignedValue, uint64_t(42));
    QCOMPARE(signedValue, int64_t(42));
}

void tst_Rtcm3BitReader::crc24q_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<uint>("expected");

    QTest::newRow("empty") << QByteArray() << 0u;
    // The usual check value of this CRC.
    QTest::newRow("123456789") << QByteArray("123456789") << 0xCDE703u;
    QTest::newRow("header of an empty frame") << QByteArray::fromHex("d30000") << 0x47EA4Bu;
}

void tst_Rtcm3BitReader::crc24q()
{
    QFETCH(QByteArray, data);
    QFETCH(uint, expected);
    QCOMPARE(
        rtcm3Crc24q(reinterpret_cast<uint8_t const *>(data.constData()), std::size_t(data.size())),
        uint32_t(expected));
}

QTEST_GUILESS_MAIN(tst_Rtcm3BitReader)
#include "tst_rtcm3bitreader.moc"
