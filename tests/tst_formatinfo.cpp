// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "testfieldinfo.h"

#include <QTest>

#include <memory>
#include <vector>

namespace {
QStringList namesOf(QVector<MessageInfo const *> const &infos)
{
    QStringList names;
    for (MessageInfo const *info : infos)
        names.append(info->getName());
    return names;
}
} // namespace

class tst_FormatInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registry();
    void sameNameAsymmetry();
    void alphabeticalOrder_data();
    void alphabeticalOrder();
    void nameIndexAndSubMessages();
    void discriminantLookup_data();
    void discriminantLookup();
    void fixtureLookup_data();
    void fixtureLookup();
};

void tst_FormatInfo::registry()
{
    QVERIFY(FormatInfo::getFormatInfos().isEmpty());
    auto *vexa = new FormatInfo(QStringLiteral("VEXA"));
    auto *cmr = new FormatInfo(QStringLiteral("CMR"));
    vexa->setDescriptiveText(QStringLiteral("Receiver blocks"));
    QCOMPARE(vexa->getName(), QStringLiteral("VEXA"));
    QCOMPARE(vexa->getDescriptiveText(), QStringLiteral("Receiver blocks"));
    QCOMPARE(FormatInfo::getFormatInfos(), QVector<FormatInfo const *>({ vexa, cmr }));
    QCOMPARE(FormatInfo::getFormatInfo(QStringLiteral("CMR")), cmr);
    QVERIFY(FormatInfo::getFormatInfo(QStringLiteral("cmr")) == nullptr);
    delete vexa;
    QCOMPARE(FormatInfo::getFormatInfos(), QVector<FormatInfo const *> { cmr });
    QVERIFY(FormatInfo::getFormatInfo(QStringLiteral("VEXA")) == nullptr);
    delete cmr;
    QVERIFY(FormatInfo::getFormatInfos().isEmpty());
    QVERIFY(FormatInfo::sFormatInfoMap.isEmpty());
}

void tst_FormatInfo::sameNameAsymmetry()
{
    auto *first = new FormatInfo(QStringLiteral("X"));
    auto *second = new FormatInfo(QStringLiteral("X"));
    QCOMPARE(FormatInfo::getFormatInfos(), QVector<FormatInfo const *>({ first, second }));
    QCOMPARE(FormatInfo::getFormatInfo(QStringLiteral("X")), second);

    // Destroying the older one takes the name from the newer one too.
    delete first;
    QVERIFY(FormatInfo::getFormatInfo(QStringLiteral("X")) == nullptr);
    QCOMPARE(FormatInfo::getFormatInfos(), QVector<FormatInfo const *> { second });
    delete second;
    QVERIFY(FormatInfo::getFormatInfos().isEmpty());
}

void tst_FormatInfo::alphabeticalOrder_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QList<int>>("expected"); // positions in names

    QTest::newRow("upper case before lower case") << QStringList(
        { QStringLiteral("b"), QStringLiteral("A"), QStringLiteral("a"), QStringLiteral("B") })
                                                  << QList<int>({ 1, 3, 2, 0 });
    QTest::newRow("equal names keep their order")
        << QStringList({ QStringLiteral("Pos"), QStringLiteral("Att"), QStringLiteral("Pos"),
                         QStringLiteral("Pos") })
        << QList<int>({ 1, 0, 2, 3 });
    QTest::newRow("prefix sorts first") << QStringList(
        { QStringLiteral("PosCart"), QStringLiteral("Pos"), QStringLiteral("PosCartX") })
                                        << QList<int>({ 1, 0, 2 });
    QTest::newRow("digits before letters, code units not numbers")
        << QStringList({ QStringLiteral("Type18"), QStringLiteral("Type3"), QStringLiteral("Type1"),
                         QStringLiteral("TypeA") })
        << QList<int>({ 2, 0, 1, 3 });
    QTest::newRow("empty name first")
        << QStringList({ QStringLiteral("a"), QString() }) << QList<int>({ 1, 0 });
}

void tst_FormatInfo::alphabeticalOrder()
{
    QFETCH(QStringList, names);
    QFETCH(QList<int>, expected);

    FormatInfo format(QStringLiteral("F"));
    std::vector<std::unique_ptr<MessageInfo>> infos;
    for (QString const &name : names) {
        infos.emplace_back(new MessageInfo(name));
        format.addMessageInfo(infos.back().get());
    }
    QVector<MessageInfo const *> expectedOrder;
    for (int position : expected)
        expectedOrder.append(infos.at(size_t(position)).get());
    QCOMPARE(format.getMessageInfosAlfabetically(), expectedOrder);
    QCOMPARE(namesOf(format.getMessageInfos()), names);
}

void tst_FormatInfo::nameIndexAndSubMessages()
{
    FormatInfo format(QStringLiteral("F"));
    MessageInfo first(QStringLiteral("Pos"));
    MessageInfo second(QStringLiteral("Pos"));
    MessageInfo sub(QStringLiteral("Channel"));
    sub.addDiscriminantValue(nullptr, FieldValue::u(1, 8));
    format.addMessageInfo(&first);
    format.addSubMessageInfo(&sub);
    format.addMessageInfo(&second);

    QCOMPARE(format.getMessageInfo(QStringLiteral("Pos")), &second);
    QVERIFY(format.getMessageInfo(QStringLiteral("Channel")) == nullptr);
    QCOMPARE(format.getMessageInfos(), QVector<MessageInfo const *>({ &first, &second }));
    QCOMPARE(format.getMessageInfosAlfabetically(),
             QVector<MessageInfo const *>({ &first, &second }));
    QCOMPARE(format.getMessageInfosIncludingSubMessages(),
             QVector<MessageInfo const *>({ &first, &sub, &second }));
    QVERIFY(format.getMessageInfosForDiscriminant(FieldValue::u(1, 8)).isEmpty());
}

void tst_FormatInfo::discriminantLookup_data()
{
    QTest::addColumn<QVector<FieldValue>>("values");
    QTest::addColumn<QStringList>("expected");

    auto u8 = [](unsigned v) { return FieldValue::u(v, 8); };
    // "Two" has {1..1} at position 0 and {7..9} at position 1; "Wide" {1..3}; "Pair" {5}, {8};
    // "None" has no discriminant.
    QTest::newRow("second position alone matches")
        << QVector<FieldValue>({ u8(5), u8(8) }) << QStringList { QStringLiteral("Two") };
    QTest::newRow("first position alone matches")
        << QVector<FieldValue>({ u8(1), u8(0) }) << QStringList { QStringLiteral("Two") };
    QTest::newRow("both positions match, listed once")
        << QVector<FieldValue>({ u8(1), u8(9) }) << QStringList { QStringLiteral("Two") };
    QTest::newRow("neither position matches")
        << QVector<FieldValue>({ u8(2), u8(10) }) << QStringList();
    QTest::newRow("count decides who takes part")
        << QVector<FieldValue> { u8(1) } << QStringList { QStringLiteral("Wide") };
    QTest::newRow("range is closed at the top")
        << QVector<FieldValue> { u8(3) } << QStringList { QStringLiteral("Wide") };
    QTest::newRow("second range of a position")
        << QVector<FieldValue> { u8(8) } << QStringList { QStringLiteral("Pair") };
    QTest::newRow("several messages in addition order")
        << QVector<FieldValue> { u8(5) }
        << QStringList({ QStringLiteral("Pair"), QStringLiteral("Late") });
    QTest::newRow("other type is never in range")
        << QVector<FieldValue> { FieldValue::u(2, 16) } << QStringList();
    QTest::newRow("empty vector matches nothing") << QVector<FieldValue>() << QStringList();
    QTest::newRow("more values than any message has")
        << QVector<FieldValue>({ u8(1), u8(8), u8(1) }) << QStringList();
}

void tst_FormatInfo::discriminantLookup()
{
    QFETCH(QVector<FieldValue>, values);
    QFETCH(QStringList, expected);

    FormatInfo format(QStringLiteral("F"));
    TestFieldInfo a(QStringLiteral("A"), FieldType::u(8));
    TestFieldInfo b(QStringLiteral("B"), FieldType::u(8));
    MessageInfo none(QStringLiteral("None"));
    MessageInfo pair(QStringLiteral("Pair"));
    pair.addDiscriminantValue(&a, FieldValue::u(5, 8));
    pair.addDiscriminantValue(&a, FieldValue::u(8, 8));
    MessageInfo two(QStringLiteral("Two"));
    two.addDiscriminantValue(&a, FieldValue::u(1, 8));
    two.addDiscriminantValueRange(&b, FieldValue::u(7, 8), FieldValue::u(9, 8));
    MessageInfo wide(QStringLiteral("Wide"));
    wide.addDiscriminantValueRange(&b, FieldValue::u(1, 8), FieldValue::u(3, 8));
    MessageInfo late(QStringLiteral("Late"));
    late.addDiscriminantValueRange(&a, FieldValue::u(4, 8), FieldValue::u(6, 8));
    for (MessageInfo *info : { &none, &pair, &two, &wide, &late })
        format.addMessageInfo(info);

    QCOMPARE(namesOf(format.getMessageInfosForDiscriminant(values)), expected);
    if (values.size() == 1)
        QCOMPARE(namesOf(format.getMessageInfosForDiscriminant(values.at(0))), expected);
}

void tst_FormatInfo::fixtureLookup_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("VEXA block number") << QStringLiteral("VEXA") << FieldValue::u(4006, 16)
                                       << QStringList { QStringLiteral("PosCart") };
    QTest::newRow("VEXA non-main message") << QStringLiteral("VEXA") << FieldValue::u(5902, 16)
                                           << QStringList { QStringLiteral("ReceiverSetup") };
    QTest::newRow("RTCM3 one of several values")
        << QStringLiteral("RTCM3") << FieldValue::u(1097, 12)
        << QStringList { QStringLiteral("MSM7") };
    QTest::newRow("RTCM3 inside a range") << QStringLiteral("RTCM3") << FieldValue::u(4050, 12)
                                          << QStringList { QStringLiteral("Proprietary") };
    QTest::newRow("CMR type 0") << QStringLiteral("CMR") << FieldValue::u(0, 3)
                                << QStringList { QStringLiteral("CMRObs") };
    QTest::newRow("RTCM2 type 18") << QStringLiteral("RTCM2") << FieldValue::u(18, 6)
                                   << QStringList { QStringLiteral("Type18") };
}

void tst_FormatInfo::fixtureLookup()
{
    QFETCH(QString, format);
    QFETCH(FieldValue, value);
    QFETCH(QStringList, expected);

    DictionaryFixture dictionary;
    FormatInfo const *info = FormatInfo::getFormatInfo(format);
    QCOMPARE(info, dictionary.format(format));
    QCOMPARE(namesOf(info->getMessageInfosForDiscriminant(value)), expected);
}

QTEST_GUILESS_MAIN(tst_FormatInfo)

#include "tst_formatinfo.moc"
