// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldinfo.h"
#include "formatinfo.h"
#include "literalreference.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "testfieldinfo.h"

#include <QTest>

#include <cmath>
#include <memory>
#include <random>
#include <vector>

namespace {
QStringList namesOf(QVector<MessageInfo const *> const &infos)
{
    QStringList names;
    for (MessageInfo const *info : infos)
        names.append(info->getName());
    return names;
}

// The plain scan's names, or the text of the exception it throws.
QStringList scanNames(FormatInfo const &format, QVector<FieldValue> const &values)
{
    try {
        return namesOf(scanForDiscriminant(format, values));
    } catch (MessageApiEvent const &event) {
        return { QStringLiteral("thrown: ") + event.getMessage() };
    }
}

QStringList lookupNames(FormatInfo const &format, QVector<FieldValue> const &values)
{
    try {
        QStringList const names = namesOf(format.getMessageInfosForDiscriminant(values));
        if (values.size() == 1
            && namesOf(format.getMessageInfosForDiscriminant(values.at(0))) != names)
            return { QStringLiteral("the single-value lookup differs") };
        return names;
    } catch (MessageApiEvent const &event) {
        return { QStringLiteral("thrown: ") + event.getMessage() };
    }
}

enum Change {
    AddValue,
    AddRange,
    AddMessage,
    AddPosition,
    WidenThroughEarlierReference,
    WidenThroughNewReference,
    ClearThroughEarlierReference,
    SetFormatInfo,
    DestroyOtherFormatWithItsMessages,
    ChangeMessageSharedWithOtherFormat
};
} // namespace

class tst_FormatInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registry()
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

    void alphabeticalOrder_data()
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

    void alphabeticalOrder()
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

    void messageLists()
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

    void discriminantLookup_data()
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

    void discriminantLookup()
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

    void discriminantLookupAsScan_data()
    {
        QTest::addColumn<unsigned int>("seed");
        QTest::addColumn<int>("messages"); // 0: one message type per pair of edge values
        QTest::addColumn<bool>("changes"); // change the dictionary between lookups

        QTest::newRow("edge values") << 0u << 0 << false;
        QTest::newRow("few messages") << 1u << 6 << false;
        QTest::newRow("many messages") << 2u << 60 << false;
        QTest::newRow("many messages, changed between lookups") << 3u << 60 << true;
    }

    void discriminantLookupAsScan()
    {
        QFETCH(unsigned int, seed);
        QFETCH(int, messages);
        QFETCH(bool, changes);

        MessageInfo subA(QStringLiteral("SubA")), subB(QStringLiteral("SubB"));
        FormatInfo format(QStringLiteral("Random"));
        format.addSubMessageInfo(&subA); // never looked up
        subA.addDiscriminantValue(nullptr, FieldValue::u(1, 8));
        std::vector<std::unique_ptr<TestFieldInfo>> fields;
        for (int i = 0; i < 3; ++i)
            fields.emplace_back(new TestFieldInfo(QStringLiteral("H%1").arg(i), FieldType::u(8)));
        std::vector<std::unique_ptr<MessageInfo>> infos;
        auto addMessage = [&] {
            infos.emplace_back(new MessageInfo(QStringLiteral("M%1").arg(infos.size())));
            format.addMessageInfo(infos.back().get());
            return infos.back().get();
        };

        if (messages == 0) {
            // Every pair of values that compare oddly is a range of its own message type, and every
            // value is looked up.
            // clang-format off
            QVector<FieldValue> const edges {
                FieldValue::f64(0.0), FieldValue::f64(-0.0), FieldValue::f64(std::nan("")),
                FieldValue::f64(1.0), FieldValue::f32(0.0f), FieldValue::f32(-0.0f),
                FieldValue::f32(1.0f), FieldValue::f32(std::nanf("")), FieldValue::ch(char(200)),
                FieldValue::ch('A'), FieldValue::nch('A'), FieldValue::byte(200), FieldValue::byte(65),
                FieldValue::i(-1, 8), FieldValue::i(1, 8), FieldValue::u(0, 8), FieldValue::u(255, 8),
                FieldValue::u(0, 64), FieldValue::u(~0ull, 64), FieldValue::i(-1, 64),
                FieldValue::invalid(), FieldValue(FieldType(FieldType::Invalid, 5)),
                FieldValue(FieldType::subMessage(&subA)), FieldValue(FieldType::subMessage(&subB)),
                FieldValue(FieldType(FieldType::BasisType(7), 8)),
                FieldValue(FieldType(FieldType::Float, 100))
            };
            // clang-format on
            for (FieldValue const &low : edges) {
                for (FieldValue const &high : edges)
                    addMessage()->addDiscriminantValueRange(fields[0].get(), low, high);
            }
            for (FieldValue const &value : edges)
                QCOMPARE(lookupNames(format, { value }), scanNames(format, { value }));
            return;
        }

        // Small u8 and i8 values: overlapping ranges, ranges with low above high, ranges of two
        // types at one position, up to three positions; some message types listed twice.
        std::mt19937 random(seed);
        auto below = [&random](unsigned int n) { return unsigned(random() % n); };
        auto value = [&below] {
            return below(2) ? FieldValue::u(below(12), 8) : FieldValue::i(int(below(12)) - 6, 8);
        };
        auto addRanges = [&](MessageInfo *info) {
            unsigned int const positions = below(4);
            for (unsigned int p = 0; p < positions; ++p) {
                for (unsigned int r = below(4); r > 0; --r) {
                    if (below(3) == 0)
                        info->addDiscriminantValue(fields[p].get(), value());
                    else
                        info->addDiscriminantValueRange(fields[p].get(), value(), value());
                }
            }
            if (below(10) == 0)
                format.addMessageInfo(info);
        };
        for (int i = 0; i < messages; ++i)
            addRanges(addMessage());

        for (int round = 0; round < 400; ++round) {
            QVector<FieldValue> values;
            for (unsigned int i = below(5); i > 0; --i)
                values.append(value());
            QCOMPARE(lookupNames(format, values), scanNames(format, values));

            if (!changes || below(4) != 0)
                continue;
            MessageInfo *info = infos[below(unsigned(infos.size()))].get();
            switch (below(3)) {
            case 0:
                info->addDiscriminantValue(fields[below(3)].get(), value());
                break;
            case 1:
                addRanges(addMessage());
                break;
            default:
                info->setFormatInfo(below(2) ? &format : nullptr);
            }
        }
    }

    void discriminantLookupAfterChange_data()
    {
        QTest::addColumn<int>("change");
        QTest::addColumn<FieldValue>("value");
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QStringList>("after");

        // "A" accepts 1 and 5..9, "B" 7..8; a lookup is made before the change.
        QTest::newRow("value added")
            << int(AddValue) << FieldValue::u(3, 8) << QStringList() << QStringList { "B" };
        QTest::newRow("range added")
            << int(AddRange) << FieldValue::u(12, 8) << QStringList() << QStringList { "A" };
        QTest::newRow("message type added")
            << int(AddMessage) << FieldValue::u(8, 8) << QStringList({ "A", "B" })
            << QStringList({ "A", "B", "C" });
        QTest::newRow("position added")
            << int(AddPosition) << FieldValue::u(1, 8) << QStringList { "A" } << QStringList();
        QTest::newRow("range widened through a reference taken before the lookup")
            << int(WidenThroughEarlierReference) << FieldValue::u(10, 8) << QStringList()
            << QStringList { "B" };
        QTest::newRow("range widened through a new reference")
            << int(WidenThroughNewReference) << FieldValue::u(10, 8) << QStringList()
            << QStringList { "B" };
        QTest::newRow("ranges cleared through a reference taken before the lookup")
            << int(ClearThroughEarlierReference) << FieldValue::u(7, 8) << QStringList({ "A", "B" })
            << QStringList { "A" };
        QTest::newRow("format set on a message type")
            << int(SetFormatInfo) << FieldValue::u(7, 8) << QStringList({ "A", "B" })
            << QStringList({ "A", "B" });
        QTest::newRow("other format destroyed with its message types")
            << int(DestroyOtherFormatWithItsMessages) << FieldValue::u(1, 8) << QStringList { "A" }
            << QStringList { "A" };
        QTest::newRow("message type of two formats changed through the other")
            << int(ChangeMessageSharedWithOtherFormat) << FieldValue::u(2, 8) << QStringList()
            << QStringList { "B" };
    }

    void discriminantLookupAfterChange()
    {
        QFETCH(int, change);
        QFETCH(FieldValue, value);
        QFETCH(QStringList, before);
        QFETCH(QStringList, after);

        TestFieldInfo header(QStringLiteral("Header"), FieldType::u(8));
        TestFieldInfo other(QStringLiteral("Other"), FieldType::u(8));
        FormatInfo format(QStringLiteral("F"));
        MessageInfo a(QStringLiteral("A")), b(QStringLiteral("B")), c(QStringLiteral("C"));
        a.addDiscriminantValue(&header, FieldValue::u(1, 8));
        a.addDiscriminantValueRange(&header, FieldValue::u(5, 8), FieldValue::u(9, 8));
        MessageInfo::Discriminant &earlier = b.getDiscriminant(&header);
        earlier.ranges.append({ FieldValue::u(7, 8), FieldValue::u(8, 8) });
        c.addDiscriminantValue(&header, FieldValue::u(8, 8));
        format.addMessageInfo(&a);
        format.addMessageInfo(&b);
        auto otherFormat = std::make_unique<FormatInfo>(QStringLiteral("G"));
        auto otherMessage = std::make_unique<MessageInfo>(QStringLiteral("D"));
        otherMessage->addDiscriminantValue(&header, FieldValue::u(1, 8));
        otherFormat->addMessageInfo(otherMessage.get());
        otherFormat->addMessageInfo(&b);

        QCOMPARE(namesOf(format.getMessageInfosForDiscriminant(value)), before);
        QCOMPARE(namesOf(otherFormat->getMessageInfosForDiscriminant(value)).contains("B"),
                 before.contains("B"));

        switch (Change(change)) {
        case AddValue:
            b.addDiscriminantValue(&header, FieldValue::u(3, 8));
            break;
        case AddRange:
            a.addDiscriminantValueRange(&header, FieldValue::u(11, 8), FieldValue::u(13, 8));
            break;
        case AddMessage:
            format.addMessageInfo(&c);
            break;
        case AddPosition:
            a.addDiscriminantValue(&other, FieldValue::u(1, 8));
            break;
        case WidenThroughEarlierReference:
            earlier.ranges.first().high = FieldValue::u(10, 8);
            break;
        case WidenThroughNewReference:
            b.getDiscriminant(&header).ranges.first().high = FieldValue::u(10, 8);
            break;
        case ClearThroughEarlierReference:
            earlier.ranges.clear();
            break;
        case SetFormatInfo:
            a.setFormatInfo(otherFormat.get());
            b.setFormatInfo(&format);
            break;
        case DestroyOtherFormatWithItsMessages:
            otherMessage.reset();
            otherFormat.reset();
            break;
        case ChangeMessageSharedWithOtherFormat:
            QCOMPARE(namesOf(otherFormat->getMessageInfosForDiscriminant(FieldValue::u(2, 8))),
                     QStringList());
            b.addDiscriminantValue(&header, FieldValue::u(2, 8));
            QCOMPARE(namesOf(otherFormat->getMessageInfosForDiscriminant(FieldValue::u(2, 8))),
                     QStringList { "B" });
            break;
        }
        QCOMPARE(namesOf(format.getMessageInfosForDiscriminant(value)), after);
        QCOMPARE(scanNames(format, { value }), after);
    }
};

QTEST_GUILESS_MAIN(tst_FormatInfo)

#include "tst_formatinfo.moc"
