// SPDX-License-Identifier: LGPL-2.1-or-later
#include "fieldinfo.h"
#include "formatinfo.h"
#include "literalreference.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "testfieldinfo.h"

#include <QTest>

#include <algorithm>
#include <cmath>
#include <limits>
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

/// Random discriminant values of a few field types, with the values that compare oddly: NaN,
/// -0.0, sub-messages, invalid values, an unused kind, floats too wide to read.
class RandomValues
{
public:
    RandomValues(unsigned int seed, MessageInfo const *subA, MessageInfo const *subB)
        : mRandom(seed)
        , mSubA(subA)
        , mSubB(subB)
    { }

    unsigned int below(unsigned int n) { return unsigned(mRandom() % n); }

    static constexpr unsigned int kinds = 12;
    FieldValue value() { return ofKind(below(kinds)); }

    FieldValue ofKind(unsigned int kind)
    {
        unsigned int const small = below(12);
        switch (kind) {
        case 0:
            return FieldValue::u(small, 8);
        case 1:
            return FieldValue::u(small + 250, 16);
        case 2:
            return FieldValue::i(int(small) - 6, 8);
        case 3:
            return FieldValue::ch(char(small == 11 ? 200 : 'a' + small));
        case 4:
            return FieldValue::nch(char('a' + small));
        case 5:
            return FieldValue::byte(static_cast<unsigned char>(small * 23));
        case 6:
            return FieldValue::f32(small == 11 ? std::numeric_limits<float>::quiet_NaN()
                                               : float(small) - 5.5f);
        case 7:
            if (small == 11)
                return FieldValue::f64(std::nan(""));
            return FieldValue::f64(small == 10 ? -0.0 : double(small) - 5.0);
        case 8: {
            FieldValue value(FieldType::subMessage(below(2) ? mSubA : mSubB));
            return below(2) ? value : FieldValue(FieldType::subMessage(mSubA));
        }
        case 9:
            return FieldValue::invalid();
        case 10:
            return FieldValue(FieldType(FieldType::BasisType(7), 8));
        default:
            return FieldValue(FieldType(FieldType::Float, 100));
        }
    }

private:
    std::mt19937 mRandom;
    MessageInfo const *mSubA;
    MessageInfo const *mSubB;
};

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
    void registry();
    void alphabeticalOrder_data();
    void alphabeticalOrder();
    void messageLists();
    void discriminantLookup_data();
    void discriminantLookup();
    void discriminantLookupAsScan_data();
    void discriminantLookupAsScan();
    void discriminantLookupAfterChange_data();
    void discriminantLookupAfterChange();
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

void tst_FormatInfo::discriminantLookupAsScan_data()
{
    QTest::addColumn<unsigned int>("seed");
    QTest::addColumn<int>("messages"); // 0: one message type per pair of edge values
    QTest::addColumn<bool>("changes"); // change the dictionary between lookups

    QTest::newRow("edge values") << 0u << 0 << false;
    QTest::newRow("few messages") << 1u << 6 << false;
    QTest::newRow("many messages") << 2u << 60 << false;
    QTest::newRow("many messages, changed between lookups") << 3u << 60 << true;
    QTest::newRow("other seed, changed between lookups") << 4u << 30 << true;
}

void tst_FormatInfo::discriminantLookupAsScan()
{
    QFETCH(unsigned int, seed);
    QFETCH(int, messages);
    QFETCH(bool, changes);

    MessageInfo subA(QStringLiteral("SubA")), subB(QStringLiteral("SubB"));
    RandomValues random(seed, &subA, &subB);
    FormatInfo format(QStringLiteral("Random"));
    format.addSubMessageInfo(&subA); // never looked up
    subA.addDiscriminantValue(nullptr, FieldValue::u(1, 8));
    std::vector<std::unique_ptr<TestFieldInfo>> fields;
    for (int i = 0; i < 3; ++i)
        fields.emplace_back(new TestFieldInfo(QStringLiteral("H%1").arg(i), FieldType::u(8)));
    std::vector<std::unique_ptr<MessageInfo>> infos;
    // References handed out by getDiscriminant(), kept and used after later lookups; each is
    // valid until its message type gains a discriminant.
    std::vector<std::pair<MessageInfo *, MessageInfo::Discriminant *>> heldReferences;
    auto beforeNewDiscriminant = [&heldReferences](MessageInfo *info, FieldInfo const *field) {
        for (MessageInfo::Discriminant const &discriminant : info->getDiscriminants()) {
            if (discriminant.fieldInfo == field)
                return;
        }
        heldReferences.erase(
            std::remove_if(heldReferences.begin(), heldReferences.end(),
                           [info](auto const &held) { return held.first == info; }),
            heldReferences.end());
    };

    auto addRanges = [&](MessageInfo *info) {
        // Up to three positions (one field each), up to three ranges of each: single values,
        // overlapping ranges, ranges with low above high, ranges with ends of two types.
        unsigned int const positions = random.below(4);
        for (unsigned int p = 0; p < positions; ++p) {
            unsigned int const ranges = random.below(4);
            for (unsigned int r = 0; r < ranges; ++r) {
                unsigned int const kind = random.below(RandomValues::kinds);
                FieldValue const low = random.ofKind(kind);
                if (random.below(3) == 0)
                    info->addDiscriminantValue(fields[p].get(), low);
                else // mostly both ends of one kind
                    info->addDiscriminantValueRange(fields[p].get(), low,
                                                    random.below(8) ? random.ofKind(kind)
                                                                    : random.value());
            }
        }
    };
    auto addMessage = [&] {
        infos.emplace_back(new MessageInfo(QStringLiteral("M%1").arg(infos.size())));
        addRanges(infos.back().get());
        format.addMessageInfo(infos.back().get());
        if (random.below(10) == 0) // listed twice
            format.addMessageInfo(infos.back().get());
    };
    for (int i = 0; i < messages; ++i)
        addMessage();

    if (messages == 0) {
        // Every pair of values that compare oddly is a range of its own message type, and every
        // value is looked up.
        // clang-format off
        QVector<FieldValue> const edges {
            FieldValue::f64(0.0), FieldValue::f64(-0.0), FieldValue::f64(std::nan("")),
            FieldValue::f64(1.0), FieldValue::f32(0.0f), FieldValue::f32(-0.0f),
            FieldValue::f32(1.0f), FieldValue::ch(char(200)), FieldValue::ch('A'),
            FieldValue::nch('A'), FieldValue::byte(200), FieldValue::byte(65),
            FieldValue::i(-1, 8), FieldValue::i(1, 8), FieldValue::u(0, 8), FieldValue::u(255, 8),
            FieldValue::u(0, 64), FieldValue::u(~0ull, 64), FieldValue::i(-1, 64),
            FieldValue::invalid(), FieldValue(FieldType(FieldType::Invalid, 5)),
            FieldValue(FieldType::subMessage(&subA)), FieldValue(FieldType::subMessage(&subB)),
            FieldValue(FieldType(FieldType::BasisType(7), 8))
        };
        // clang-format on
        for (FieldValue const &low : edges) {
            for (FieldValue const &high : edges) {
                infos.emplace_back(new MessageInfo(QStringLiteral("M%1").arg(infos.size())));
                infos.back()->addDiscriminantValueRange(fields[0].get(), low, high);
                format.addMessageInfo(infos.back().get());
            }
        }
        for (FieldValue const &value : edges)
            QCOMPARE(lookupNames(format, { value }), scanNames(format, { value }));
        infos.clear();
        return;
    }

    for (int round = 0; round < 400; ++round) {
        QVector<FieldValue> values;
        unsigned int const count = random.below(5);
        for (unsigned int i = 0; i < count; ++i)
            values.append(random.value());
        QCOMPARE(lookupNames(format, values), scanNames(format, values));

        if (!changes || random.below(4) != 0)
            continue;
        MessageInfo *info = infos[random.below(unsigned(infos.size()))].get();
        TestFieldInfo *field = fields[random.below(3)].get();
        switch (random.below(5)) {
        case 0:
            beforeNewDiscriminant(info, field);
            info->addDiscriminantValue(field, random.value());
            break;
        case 1:
            addMessage();
            break;
        case 2:
            beforeNewDiscriminant(info, field);
            heldReferences.emplace_back(info, &info->getDiscriminant(field));
            break;
        case 3:
            if (!heldReferences.empty()) {
                MessageInfo::Discriminant *held
                    = heldReferences[random.below(unsigned(heldReferences.size()))].second;
                if (held->ranges.isEmpty() || random.below(2))
                    held->ranges.append({ random.value(), random.value() });
                else
                    held->ranges.first().high = random.value();
            }
            break;
        default:
            info->setFormatInfo(random.below(2) ? &format : nullptr);
        }
    }
    infos.clear();
}

void tst_FormatInfo::discriminantLookupAfterChange_data()
{
    QTest::addColumn<int>("change");
    QTest::addColumn<FieldValue>("value");
    QTest::addColumn<QStringList>("before");
    QTest::addColumn<QStringList>("after");

    // "A" accepts 1 and 5..9, "B" 7..8; a lookup is made before the change.
    QTest::newRow("value added") << int(AddValue) << FieldValue::u(3, 8) << QStringList()
                                 << QStringList { "B" };
    QTest::newRow("range added") << int(AddRange) << FieldValue::u(12, 8) << QStringList()
                                 << QStringList { "A" };
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

void tst_FormatInfo::discriminantLookupAfterChange()
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

QTEST_GUILESS_MAIN(tst_FormatInfo)

#include "tst_formatinfo.moc"
