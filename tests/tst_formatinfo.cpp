// SPDX-License-Identifier: LGPL-2.1-or-later
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
    void alphabeticalOrder_data();
    void alphabeticalOrder();
    void messageLists();
    void discriminantLookup_data();
    void discriminantLookup();
};

void tst_FormatInfo::registry()
{
    using Formats = QVector<FormatInfo const *>;
    QVERIFY(FormatInfo::getFormatInfos().isEmpty());
    auto *vexa = new FormatInfo(QStringLiteral("VEXA"));
    auto *older = new FormatInfo(QStringLiteral("X"));
    auto *newer = new FormatInfo(QStringLiteral("X"));
    QCOMPARE(FormatInfo::getFormatInfos(), Formats({ vexa, older, newer }));
    QCOMPARE(FormatInfo::getFormatInfo(QStringLiteral("VEXA")), vexa);
    QVERIFY(FormatInfo::getFormatInfo(QStringLiteral("vexa")) == nullptr);
    QCOMPARE(FormatInfo::getFormatInfo(QStringLiteral("X")), newer);

    // Destroying the older one takes the name from the newer one too.
    delete older;
    QVERIFY(FormatInfo::getFormatInfo(QStringLiteral("X")) == nullptr);
    QCOMPARE(FormatInfo::getFormatInfos(), Formats({ vexa, newer }));
    delete vexa;
    QCOMPARE(FormatInfo::getFormatInfos(), Formats { newer });
    QVERIFY(FormatInfo::getFormatInfo(QStringLiteral("VEXA")) == nullptr);
    delete newer;
    QVERIFY(FormatInfo::getFormatInfos().isEmpty());
    QVERIFY(FormatInfo::sFormatInfoMap.isEmpty());
}

void tst_FormatInfo::alphabeticalOrder_data()
{
    QTest::addColumn<QString>("names");
    QTest::addColumn<QString>("order"); // positions in names
    auto row = [](char const *name, char const *names, char const *order) {
        QTest::newRow(name) << QString::fromLatin1(names) << QString::fromLatin1(order);
    };
    row("upper case before lower case", "b A a B", "1 3 2 0");
    row("equal names keep their order", "P Att P P", "1 0 2 3");
    row("prefix first", "PosCart Pos PosCartX", "1 0 2");
    row("code units, not numbers", "T18 T3 T1 TA", "2 0 1 3");
}

void tst_FormatInfo::alphabeticalOrder()
{
    QFETCH(QString, names);
    QFETCH(QString, order);

    FormatInfo format(QStringLiteral("F"));
    std::vector<std::unique_ptr<MessageInfo>> infos;
    for (QString const &name : names.split(QLatin1Char(' '))) {
        infos.emplace_back(new MessageInfo(name));
        format.addMessageInfo(infos.back().get());
    }
    QVector<MessageInfo const *> expected;
    for (QString const &position : order.split(QLatin1Char(' ')))
        expected.append(infos.at(position.toUInt()).get());
    QCOMPARE(format.getMessageInfosAlfabetically(), expected);
    QCOMPARE(namesOf(format.getMessageInfos()).join(QLatin1Char(' ')), names);
}

void tst_FormatInfo::messageLists()
{
    using Messages = QVector<MessageInfo const *>;
    FormatInfo format(QStringLiteral("F"));
    MessageInfo first(QStringLiteral("Pos"));
    MessageInfo second(QStringLiteral("Pos"));
    MessageInfo sub(QStringLiteral("Channel"));
    sub.addDiscriminantValue(nullptr, FieldValue::u(1, 8));
    format.addMessageInfo(&first);
    format.addSubMessageInfo(&sub);
    format.addMessageInfo(&second);

    // A later name takes over the index; a sub-message is only in the full list.
    QCOMPARE(format.getMessageInfo(QStringLiteral("Pos")), &second);
    QVERIFY(format.getMessageInfo(QStringLiteral("Channel")) == nullptr);
    QCOMPARE(format.getMessageInfos(), Messages({ &first, &second }));
    QCOMPARE(format.getMessageInfosAlfabetically(), Messages({ &first, &second }));
    QCOMPARE(format.getMessageInfosIncludingSubMessages(), Messages({ &first, &sub, &second }));
    QVERIFY(format.getMessageInfosForDiscriminant(FieldValue::u(1, 8)).isEmpty());
}

void tst_FormatInfo::discriminantLookup_data()
{
    QTest::addColumn<QVector<FieldValue>>("values");
    QTest::addColumn<QStringList>("expected");

    // Added in this order: "None" has no discriminant; "Pair" has {5}, {8} at position 0;
    // "Two" {1} at position 0 and {7..9} at position 1; "Wide" {1..3}; "Late" {4..6}.
    auto row = [](char const *name, QVector<unsigned> values, char const *expected) {
        QVector<FieldValue> fieldValues;
        for (unsigned value : values)
            fieldValues.append(FieldValue::u(value, 8));
        QTest::newRow(name) << fieldValues
                            << QString::fromLatin1(expected).split(QLatin1Char(' '),
                                                                   Qt::SkipEmptyParts);
    };
    row("second position alone matches", { 5, 8 }, "Two");
    row("first position alone matches", { 1, 0 }, "Two");
    row("both positions match, listed once", { 1, 9 }, "Two");
    row("neither position matches", { 2, 10 }, "");
    row("count decides who takes part", { 1 }, "Wide");
    row("range closed at the top", { 3 }, "Wide");
    row("second range of a position", { 8 }, "Pair");
    row("several, in addition order", { 5 }, "Pair Late");
    row("empty vector matches nothing", {}, "");
}

void tst_FormatInfo::discriminantLookup()
{
    QFETCH(QVector<FieldValue>, values);
    QFETCH(QStringList, expected);

    auto u8 = [](unsigned value) { return FieldValue::u(value, 8); };
    FormatInfo format(QStringLiteral("F"));
    TestFieldInfo a(QStringLiteral("A"), FieldType::u(8));
    TestFieldInfo b(QStringLiteral("B"), FieldType::u(8));
    MessageInfo none(QStringLiteral("None"));
    MessageInfo pair(QStringLiteral("Pair"));
    pair.addDiscriminantValue(&a, u8(5));
    pair.addDiscriminantValue(&a, u8(8));
    MessageInfo two(QStringLiteral("Two"));
    two.addDiscriminantValue(&a, u8(1));
    two.addDiscriminantValueRange(&b, u8(7), u8(9));
    MessageInfo wide(QStringLiteral("Wide"));
    wide.addDiscriminantValueRange(&b, u8(1), u8(3));
    MessageInfo late(QStringLiteral("Late"));
    late.addDiscriminantValueRange(&a, u8(4), u8(6));
    for (MessageInfo *info : { &none, &pair, &two, &wide, &late })
        format.addMessageInfo(info);

    QCOMPARE(namesOf(format.getMessageInfosForDiscriminant(values)), expected);
    if (values.size() == 1)
        QCOMPARE(namesOf(format.getMessageInfosForDiscriminant(values.at(0))), expected);
}

QTEST_GUILESS_MAIN(tst_FormatInfo)

#include "tst_formatinfo.moc"
