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

// What the lookup finds (names, or the text it throws) when the plain scan and, for one value,
// the single-value lookup find the same; otherwise what each of them finds, joined by " | ".
QString lookup(FormatInfo const &format, QVector<FieldValue> const &values)
{
    auto names = [](auto const &find) {
        try {
            return namesOf(find()).join(QLatin1Char(' '));
        } catch (MessageApiEvent const &event) {
            return QStringLiteral("thrown: ") + event.getMessage();
        }
    };
    QStringList found { names([&] { return format.getMessageInfosForDiscriminant(values); }),
                        names([&] { return scanForDiscriminant(format, values); }) };
    if (values.size() == 1)
        found << names([&] { return format.getMessageInfosForDiscriminant(values.at(0)); });
    found.removeDuplicates();
    return found.join(QStringLiteral(" | "));
}

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
        format.setDescriptiveText(QStringLiteral("Receiver output"));
        QCOMPARE(format.getDescriptiveText(), QStringLiteral("Receiver output"));

        // A later name takes over the index; a sub-message is only in the full list.
        QCOMPARE(format.getMessageInfo(QStringLiteral("Pos")), &second);
        QVERIFY(format.getMessageInfo(QStringLiteral("Channel")) == nullptr);
        QCOMPARE(format.getMessageInfos(), Messages({ &first, &second }));
        QCOMPARE(format.getMessageInfosAlfabetically(), Messages({ &first, &second }));
        QCOMPARE(format.getMessageInfosIncludingSubMessages(), Messages({ &first, &sub, &second }));
        QVERIFY(format.getMessageInfosForDiscriminant(FieldValue::u(1, 8)).isEmpty());
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
                QVERIFY2(!lookup(format, { value }).contains(QLatin1Char('|')),
                         qPrintable(lookup(format, { value })));
            return;
        }

        // Small u8 and i8 values: overlapping ranges, ranges with low above high, ranges of two
        // types at one position, up to three positions (one accepting position is enough, and
        // only message types with as many positions as values take part); some message types
        // listed twice.
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
            QString const found = lookup(format, values);
            QVERIFY2(!found.contains(QLatin1Char('|')), qPrintable(found));

            if (!changes || below(4) != 0)
                continue;
            MessageInfo *info = infos[below(unsigned(infos.size()))].get();
            TestFieldInfo *field = fields[below(3)].get();
            switch (below(4)) {
            case 0:
                info->addDiscriminantValueRange(field, value(), value());
                break;
            case 1:
                addRanges(addMessage());
                break;
            case 2: // from now on checked directly
                info->getDiscriminant(field).ranges.append({ value(), value() });
                break;
            default:
                info->setFormatInfo(below(2) ? &format : nullptr);
            }
        }
    }

    void discriminantLookupAfterChange()
    {
        // Each change comes after a lookup that has built the index.
        TestFieldInfo header(QStringLiteral("Header"), FieldType::u(8));
        FormatInfo format(QStringLiteral("F"));
        MessageInfo a(QStringLiteral("A")), b(QStringLiteral("B"));
        a.addDiscriminantValue(&header, FieldValue::u(1, 8));
        a.addDiscriminantValueRange(&header, FieldValue::u(5, 8), FieldValue::u(9, 8));
        MessageInfo::Discriminant &earlier = b.getDiscriminant(&header);
        earlier.ranges.append({ FieldValue::u(7, 8), FieldValue::u(8, 8) });
        format.addMessageInfo(&a);
        format.addMessageInfo(&b);
        auto otherFormat = std::make_unique<FormatInfo>(QStringLiteral("G"));
        auto otherMessage = std::make_unique<MessageInfo>(QStringLiteral("D"));
        otherMessage->addDiscriminantValue(&header, FieldValue::u(1, 8));
        otherFormat->addMessageInfo(otherMessage.get());
        otherFormat->addMessageInfo(&b);
        auto names = [](FormatInfo const *in, unsigned value) {
            return lookup(*in, { FieldValue::u(value, 8) });
        };

        // A range widened through a reference taken before the first lookup.
        QCOMPARE(names(&format, 10), QString());
        QCOMPARE(names(otherFormat.get(), 10), QString());
        earlier.ranges.first().high = FieldValue::u(10, 8);
        QCOMPARE(names(&format, 10), QStringLiteral("B"));
        QCOMPARE(names(otherFormat.get(), 10), QStringLiteral("B"));
        // A message type of two formats changed through the other.
        QCOMPARE(names(otherFormat.get(), 2), QString());
        QCOMPARE(names(&format, 2), QString());
        b.addDiscriminantValue(&header, FieldValue::u(2, 8));
        QCOMPARE(names(otherFormat.get(), 2), QStringLiteral("B"));
        QCOMPARE(names(&format, 2), QStringLiteral("B"));
        // The other format destroyed with its message types.
        QCOMPARE(names(&format, 1), QStringLiteral("A"));
        otherMessage.reset();
        otherFormat.reset();
        QCOMPARE(names(&format, 1), QStringLiteral("A"));
        // The ranges cleared through the early reference.
        QCOMPARE(names(&format, 7), QStringLiteral("A B"));
        earlier.ranges.clear();
        QCOMPARE(names(&format, 7), QStringLiteral("A"));
    }
};

QTEST_GUILESS_MAIN(tst_FormatInfo)

#include "tst_formatinfo.moc"
