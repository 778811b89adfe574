// SPDX-License-Identifier: LGPL-2.1-or-later
#include "recordingdecoder.h"

#include <QTest>

class tst_AbstractDecoder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codeTable_data();
    void codeTable();
    void codesReachTheVirtualOperations_data();
    void codesReachTheVirtualOperations();
    void decodeByteArray_data();
    void decodeByteArray();
};

namespace {
// The table only compares message type pointers; it never looks behind them.
auto *const gInfo = reinterpret_cast<MessageInfo const *>(0x1000);
auto *const gOtherInfo = reinterpret_cast<MessageInfo const *>(0x2000);
} // namespace

void tst_AbstractDecoder::codeTable_data()
{
    QTest::addColumn<QList<int>>("codes"); // entered for gInfo, in order
    QTest::addColumn<int>("expected");

    QTest::newRow("empty table") << QList<int> {} << -1;
    QTest::newRow("one code") << QList<int> { 5 } << 5;
    QTest::newRow("replaced") << QList<int> { 5, 7 } << 7;
    QTest::newRow("zero is a code") << QList<int> { 0 } << 0;
    QTest::newRow("negative kept as entered") << QList<int> { 5, -3 } << -3;
}

void tst_AbstractDecoder::codeTable()
{
    QFETCH(QList<int>, codes);
    QFETCH(int, expected);

    RecordingDecoder decoder;
    decoder.setMessageEnum(gOtherInfo, 42);
    for (int code : codes)
        decoder.setMessageEnum(gInfo, code);
    QCOMPARE(decoder.getMessageEnum(gInfo), expected);
    QCOMPARE(decoder.getMessageEnum(gOtherInfo), 42);
}

void tst_AbstractDecoder::codesReachTheVirtualOperations_data()
{
    QTest::addColumn<bool>("hasCode");
    QTest::addColumn<int>("code");
    QTest::addColumn<bool>("enabledInDecoder");

    QTest::newRow("no code") << false << 0 << true;
    QTest::newRow("-1") << true << -1 << true;
    QTest::newRow("-3") << true << -3 << true;
    QTest::newRow("0, enabled") << true << 0 << true;
    QTest::newRow("5, enabled") << true << 5 << true;
    QTest::newRow("5, disabled") << true << 5 << false;
}

void tst_AbstractDecoder::codesReachTheVirtualOperations()
{
    QFETCH(bool, hasCode);
    QFETCH(int, code);
    QFETCH(bool, enabledInDecoder);

    RecordingDecoder decoder;
    if (hasCode)
        decoder.setMessageEnum(gInfo, code);
    if (enabledInDecoder)
        decoder.enabledCodes = { code };

    decoder.enableMessage(gInfo);
    decoder.disableMessage(gInfo);
    const bool enabled = decoder.isEnabledMessage(gInfo);

    // A negative code counts as none: the decoder is never asked about it.
    const bool reaches = hasCode && code >= 0;
    const QList<int32_t> expectedCalls = reaches ? QList<int32_t> { code } : QList<int32_t> {};
    QCOMPARE(decoder.enabledCalls, expectedCalls);
    QCOMPARE(decoder.disabledCalls, expectedCalls);
    QCOMPARE(decoder.queriedCodes, expectedCalls);
    QCOMPARE(enabled, reaches && enabledInDecoder);
}

void tst_AbstractDecoder::decodeByteArray_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("result");

    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("embedded zero bytes") << QByteArray("\x01\x00\x02\x00", 4) << 4;
    QTest::newRow("negative result") << QByteArray("abc") << -2;
}

void tst_AbstractDecoder::decodeByteArray()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, result);

    RecordingDecoder decoder;
    decoder.decodeResult = result;
    int32_t returned = 0;
    // Through the meta-object, as a string-based connection or invokeMethod would reach it.
    QVERIFY(QMetaObject::invokeMethod(&decoder, "decodeMessage", Qt::DirectConnection,
                                      Q_RETURN_ARG(int32_t, returned), Q_ARG(QByteArray, bytes)));
    QCOMPARE(returned, result);
    QCOMPARE(decoder.decodeMessage(bytes), result);

    QCOMPARE(decoder.decodeCalls.size(), 2);
    for (auto const &call : decoder.decodeCalls) {
        QCOMPARE(call.length, uint(bytes.size()));
        QCOMPARE(call.bytes, bytes);
    }
    // The direct call passes the array's own storage, not a copy.
    QCOMPARE(decoder.decodeCalls.last().buffer,
             reinterpret_cast<uint8_t const *>(bytes.constData()));
}

QTEST_GUILESS_MAIN(tst_AbstractDecoder)
#include "tst_abstractdecoder.moc"
