// SPDX-License-Identifier: LGPL-2.1-or-later
#include "recordingdecoder.h"

#include <QTest>

class tst_AbstractDecoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codeTable_data();
    void codeTable();
    void decodeByteArray();
};

void tst_AbstractDecoder::codeTable_data()
{
    QTest::addColumn<QList<int>>("codes"); // entered for the type, in order
    QTest::addColumn<bool>("decoderEnables"); // what the decoder's own query answers
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("enabled");

    QTest::newRow("empty table") << QList<int> {} << true << -1 << false;
    QTest::newRow("entered, then replaced") << QList<int> { 5, 7 } << true << 7 << true;
    QTest::newRow("zero is a code") << QList<int> { 0 } << true << 0 << true;
    QTest::newRow("negative acts as none") << QList<int> { 5, -3 } << true << -3 << false;
    QTest::newRow("disabled in decoder") << QList<int> { 5 } << false << 5 << false;
}

void tst_AbstractDecoder::codeTable()
{
    QFETCH(QList<int>, codes);
    QFETCH(bool, decoderEnables);
    QFETCH(int, code);
    QFETCH(bool, enabled);

    // The table only compares message type pointers; it never looks behind them.
    auto *const info = reinterpret_cast<MessageInfo const *>(0x1000);
    auto *const otherInfo = reinterpret_cast<MessageInfo const *>(0x2000);
    RecordingDecoder decoder;
    decoder.setMessageEnum(otherInfo, 42);
    for (int entered : codes)
        decoder.setMessageEnum(info, entered);
    if (decoderEnables)
        decoder.enabledCodes = { code };

    QCOMPARE(decoder.getMessageEnum(info), code);
    QCOMPARE(decoder.getMessageEnum(otherInfo), 42);
    decoder.enableMessage(info);
    decoder.disableMessage(info);
    QCOMPARE(decoder.isEnabledMessage(info), enabled);
    // A negative code counts as none: the decoder is never asked about it.
    const QList<int32_t> calls = code >= 0 ? QList<int32_t> { code } : QList<int32_t> {};
    QCOMPARE(decoder.enabledCalls, calls);
    QCOMPARE(decoder.disabledCalls, calls);
    QCOMPARE(decoder.queriedCodes, calls);
}

void tst_AbstractDecoder::decodeByteArray()
{
    RecordingDecoder decoder;
    decoder.decodeResult = -2;
    const QByteArray bytes("\x01\x00\x02", 3);
    QCOMPARE(decoder.decodeMessage(bytes), -2);
    QCOMPARE(decoder.decodeCalls.size(), 1);
    // The array's own storage and its whole size, zero bytes included.
    QCOMPARE(decoder.decodeCalls[0].buffer, reinterpret_cast<uint8_t const *>(bytes.constData()));
    QCOMPARE(decoder.decodeCalls[0].length, 3u);
}

QTEST_GUILESS_MAIN(tst_AbstractDecoder)
#include "tst_abstractdecoder.moc"
