// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "dictionarytestaccess.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "literalreference.h"
#include "memleaktracer.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "testfieldinfo.h"
#include "tracerrecorder.h"

#include <QMap>
#include <QTest>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <utility>
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

template <typename T> void swapFront(QVector<T const *> &list)
{
    std::swap(list[0], list[1]);
}

template <typename T> QVector<T const *> constOf(QVector<T *> const &list)
{
    return QVector<T const *>(list.cbegin(), list.cend());
}

/**
 * A small dictionary whose objects are deleted one by one in a chosen order:
 *   format F: main message M, sub-message type S
 *   M: a (u16, key, first discriminant), b (sub-message S), p (u32) with sub-field q, and a
 *      second discriminant on h, a header field that is not a member of M
 *   S: c (u8, key)
 */
struct Scene
{
    Scene()
    {
        for (TestFieldInfo *field : { a, b, c, h, p, q })
            fields.insert(field->getName(), field);
        messages = { { QStringLiteral("M"), M }, { QStringLiteral("S"), S } };
        M->setFormatInfo(F);
        S->setFormatInfo(F);
        F->addMessageInfo(M);
        F->addSubMessageInfo(S);
        M->addFieldInfo(a, 0, true);
        M->addFieldInfo(b, 1);
        M->addFieldInfo(p, 2);
        p->addSubFieldInfo(q);
        S->addFieldInfo(c, 0, true);
        M->addDiscriminantValue(a, FieldValue::u(1, 16));
        M->addDiscriminantValue(h, FieldValue::u(7, 8));
    }

    ~Scene()
    {
        qDeleteAll(fields);
        qDeleteAll(messages);
        delete F;
    }

    /// "x" deletes the object named x; "-x" removes field x from M.
    void step(QString const &action)
    {
        if (action.startsWith(QLatin1Char('-'))) {
            M->removeFieldInfo(fields.value(action.mid(1)));
        } else if (action == QLatin1String("F")) {
            delete F;
            F = nullptr;
        } else if (messages.contains(action)) {
            deadMessage = true;
            delete messages.take(action);
        } else {
            delete fields.take(action);
        }
    }

    /// Every pointer that the living objects hand out leads to a living object (or is null).
    void walk() const
    {
        QVector<FieldInfo const *> seenFields;
        QVector<MessageInfo const *> seenMessages;
        for (MessageInfo *message : messages) {
            MessageInfo const *constMessage = message;
            seenFields += constOf(message->getFieldInfos()) + constMessage->getFieldInfos()
                + constOf(message->getReferringFieldInfos())
                + constMessage->getReferringFieldInfos() + message->getKeyFieldInfos();
            for (MessageInfo::Discriminant const &discriminant : message->getDiscriminants())
                seenFields.append(discriminant.fieldInfo);
            for (QString const &name : QString::fromLatin1("a b c h p q").split(QLatin1Char(' ')))
                seenFields.append(message->getFieldInfo(name));
        }
        for (TestFieldInfo *field : fields) {
            FieldInfo const *constField = field;
            seenFields += constOf(field->getSubFieldInfos()) + constField->getSubFieldInfos();
            seenFields.append(field->getParentFieldInfo());
            seenMessages += constOf(field->getMessageInfos()) + constField->getMessageInfos();
            seenMessages.append(field->getType().getSubMessageInfo());
        }
        // A format is not told about its message types: its lists are only read while they all
        // live. M's discriminants outlive their fields.
        if (F && !deadMessage) {
            seenMessages += F->getMessageInfosIncludingSubMessages();
            QCOMPARE(
                F->getMessageInfosForDiscriminant({ FieldValue::u(1, 16), FieldValue::u(0, 8) }),
                QVector<MessageInfo const *> { M });
        }
        // A field whose sub-message type is gone keeps its basis type.
        if (fields.contains(QStringLiteral("b")))
            QCOMPARE(b->getType().getBasisType(), FieldType::SubMessage);

        auto lives = [](auto const &map, auto const *object) {
            return !object || std::find(map.cbegin(), map.cend(), object) != map.cend();
        };
        for (FieldInfo const *field : seenFields)
            QVERIFY2(lives(fields, field), "pointer to a destroyed field");
        for (MessageInfo const *message : seenMessages)
            QVERIFY2(lives(messages, message), "pointer to a destroyed message type");
    }

    FormatInfo *F = new FormatInfo(QStringLiteral("LifetimeFormat"));
    MessageInfo *M = new MessageInfo(QStringLiteral("M"));
    MessageInfo *S = new MessageInfo(QStringLiteral("S"));
    TestFieldInfo *a = new TestFieldInfo(QStringLiteral("a"), FieldType::u(16));
    TestFieldInfo *b = new TestFieldInfo(QStringLiteral("b"), FieldType::subMessage(S));
    TestFieldInfo *c = new TestFieldInfo(QStringLiteral("c"), FieldType::u(8));
    TestFieldInfo *h = new TestFieldInfo(QStringLiteral("h"), FieldType::u(8));
    TestFieldInfo *p = new TestFieldInfo(QStringLiteral("p"), FieldType::u(32));
    TestFieldInfo *q = new TestFieldInfo(QStringLiteral("q"), FieldType::u(1));
    QMap<QString, TestFieldInfo *> fields;
    QMap<QString, MessageInfo *> messages;
    bool deadMessage = false;
};

} // namespace

class tst_Dictionary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fieldsAndReferringFields()
    {
        using Fields = QVector<FieldInfo *>;
        AssertCapture capture;
        Scene scene;
        MessageInfo *info = scene.M;
        QVERIFY(info->isMain());
        // A second field of the same name takes over the name only.
        TestFieldInfo sameName(QStringLiteral("a"), FieldType::u(8));
        info->addFieldInfo(&sameName, 12);
        QCOMPARE(info->getFieldInfo(QStringLiteral("a")), &sameName);

        // A removed key field stays a key field; the name entry goes by name, though it named the
        // other field. An index is the caller's, not the position in the list.
        info->removeFieldInfo(scene.a);
        QCOMPARE(std::as_const(*info).getFieldInfos(),
                 QVector<FieldInfo const *>({ scene.b, scene.p, &sameName }));
        QVERIFY(info->getFieldInfo(QStringLiteral("a")) == nullptr);
        QCOMPARE(info->getKeyFieldInfos(), QVector<FieldInfo const *> { scene.a });
        QVERIFY(!scene.a->occursIn(info));
        QCOMPARE(sameName.getIndexInMessageInfo(info), 12);

        // No duplicate check for referring fields: a second entry needs a second removal.
        TestFieldInfo second(QStringLiteral("b2"), FieldType::subMessage(scene.S));
        QCOMPARE(std::as_const(*scene.S).getReferringFieldInfos(),
                 QVector<FieldInfo const *>({ scene.b, &second }));
        scene.S->addReferringFieldInfo(scene.b);
        scene.S->removeReferringFieldInfo(scene.b);
        QCOMPARE(scene.S->getReferringFieldInfos(), Fields({ &second, scene.b }));

        // Removing a stranger: the field is asked first, then the message checks its own lists; a
        // stranger's name still takes the entry.
        TestFieldInfo stranger(QStringLiteral("p"), FieldType::u(8));
        info->removeFieldInfo(&stranger);
        scene.S->removeReferringFieldInfo(&stranger);
        QCOMPARE(
            capture.texts().join(QLatin1Char('\n')),
            QStringLiteral("FieldInfo::removeMessageInfo: Trying to remove a non-member\n"
                           "MessageInfo::removeFieldInfo: Trying to remove a non-member\n"
                           "MessageInfo::removeReferringFieldInfo: Trying to remove a non-member"));
        QCOMPARE(capture.functions().join(QLatin1Char(' ')),
                 QStringLiteral("removeMessageInfo removeFieldInfo removeReferringFieldInfo"));
        QCOMPARE(info->getFieldInfos(), Fields({ scene.b, scene.p, &sameName }));
        QVERIFY(info->getFieldInfo(QStringLiteral("p")) == nullptr);
    }

    void discriminants()
    {
        Scene scene;
        auto positions = [&scene] { // "field: low-high ..." for each position of M
            QStringList texts;
            for (MessageInfo::Discriminant const &discriminant : scene.M->getDiscriminants()) {
                texts << discriminant.fieldInfo->getName() + QLatin1Char(':');
                for (MessageInfo::DiscriminantValueRange const &range : discriminant.ranges)
                    texts.last() += QLatin1Char(' ') + range.low.toString(true) + QLatin1Char('-')
                        + range.high.toString(true);
            }
            return texts;
        };
        // A value is kept twice; a new field's range takes the next position, stored as given.
        scene.M->addDiscriminantValue(scene.a, FieldValue::u(1, 16));
        scene.M->addDiscriminantValueRange(scene.c, FieldValue::u(7, 8), FieldValue::u(1, 8));
        QCOMPARE(positions(),
                 QStringList({ QStringLiteral("a: 1 (u16)-1 (u16) 1 (u16)-1 (u16)"),
                               QStringLiteral("h: 7 (u8)-7 (u8)"),
                               QStringLiteral("c: 7 (u8)-1 (u8)") }));
        // The reference is into the message's own list; a new position is created empty.
        scene.M->getDiscriminant(scene.c).ranges.clear();
        QVERIFY(scene.M->getDiscriminant(scene.q).ranges.isEmpty());
        QCOMPARE(positions().mid(2), QStringList({ QStringLiteral("c:"), QStringLiteral("q:") }));
    }

    void listsOutOfStep()
    {
        // In each pair of the scene's lists, two elements are swapped in the const list only and
        // one of them is removed; then the const list is put back in step for the destructors.
        AssertCapture capture;
        Scene scene;
        swapFront(DictionaryTestAccess::constFieldInfos(*scene.M));
        scene.M->removeFieldInfo(scene.a);
        DictionaryTestAccess::constFieldInfos(*scene.M) = { scene.b, scene.p };

        scene.S->addReferringFieldInfo(scene.q);
        swapFront(DictionaryTestAccess::constReferringFieldInfos(*scene.S));
        scene.S->removeReferringFieldInfo(scene.q);
        DictionaryTestAccess::constReferringFieldInfos(*scene.S) = { scene.b };

        scene.c->addMessageInfo(scene.M, 0);
        swapFront(DictionaryTestAccess::constMessageInfos(*scene.c));
        scene.c->removeMessageInfo(scene.M);
        DictionaryTestAccess::constMessageInfos(*scene.c) = { scene.S };

        scene.p->addSubFieldInfo(scene.h);
        swapFront(DictionaryTestAccess::constSubFieldInfos(*scene.p));
        scene.p->removeSubFieldInfo(scene.h);
        DictionaryTestAccess::constSubFieldInfos(*scene.p) = { scene.q };

        QCOMPARE(capture.texts().join(QLatin1Char('\n')),
                 QStringLiteral("MessageInfo::removeFieldInfo: vectors not consistent\n"
                                "MessageInfo::removeReferringFieldInfo: vectors not consistent\n"
                                "FieldInfo::removeMessageInfo: vectors not consistent\n"
                                "FieldInfo::removeSubFieldInfo: vectors not consistent"));
        QCOMPARE(capture.functions().join(QLatin1Char(' ')),
                 QStringLiteral("removeFieldInfo removeReferringFieldInfo removeMessageInfo "
                                "removeSubFieldInfo"));
    }

    void destructionOrders_data()
    {
        QTest::addColumn<QString>("steps");
        auto row = [](char const *name, char const *steps) {
            QTest::newRow(name) << QString::fromLatin1(steps);
        };
        row("fields, message types, format", "a b c h p q M S F");
        row("format, message types, fields", "F M S a b c h p q");
        row("message types, fields, format", "M S a b c h p q F");
        row("sub-message type before its referring field", "S b M a c h p q F");
        row("referring field before its sub-message type", "b S M a c h p q F");
        row("parent field before its sub-field", "p q a b c h M S F");
        row("sub-field before its parent field", "q p a b c h M S F");
        row("key field removed, then destroyed", "-a a M S b c h p q F");
        row("discriminant field that is no member", "h a M S b c p q F");
        row("reverse of creation", "q p h c b a S M F");
    }

    void destructionOrders()
    {
        QFETCH(QString, steps);
        AssertCapture capture;
        TracerRecorder recorder;
        auto *scene = new Scene;
        scene->walk();
        for (QString const &step : steps.split(QLatin1Char(' '))) {
            scene->step(step);
            scene->walk();
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(QStringLiteral("after step ") + step));
        }
        delete scene;
        QCOMPARE(capture.texts(), QStringList());
        for (QString const &className :
             { QStringLiteral("FormatInfo"), QStringLiteral("MessageInfo"),
               QStringLiteral("FieldInfo") }) {
            QVERIFY(MemLeakTracer::getInstance()->getAllocationCount(className) > 0);
            QCOMPARE(MemLeakTracer::getInstance()->getLiveCount(className), 0);
        }
    }

    void formats()
    {
        // A later name takes over the index; a sub-message type is only in the full list and is
        // never found by its discriminant.
        using Formats = QVector<FormatInfo const *>;
        using Messages = QVector<MessageInfo const *>;
        QVERIFY(FormatInfo::getFormatInfos().isEmpty());
        MessageInfo second(QStringLiteral("M"));
        Scene scene;
        scene.S->addDiscriminantValue(nullptr, FieldValue::u(1, 8));
        scene.F->addMessageInfo(&second);
        scene.F->setDescriptiveText(QStringLiteral("Receiver output"));
        QCOMPARE(scene.F->getDescriptiveText(), QStringLiteral("Receiver output"));
        QCOMPARE(scene.F->getMessageInfo(QStringLiteral("M")), &second);
        QVERIFY(scene.F->getMessageInfo(QStringLiteral("S")) == nullptr);
        QCOMPARE(scene.F->getMessageInfos(), Messages({ scene.M, &second }));
        QCOMPARE(scene.F->getMessageInfosIncludingSubMessages(),
                 Messages({ scene.M, scene.S, &second }));
        QCOMPARE(lookup(*scene.F, { FieldValue::u(1, 8) }), QString());

        // So does a later format's name, and destroying the older one takes the name from both.
        auto *older = new FormatInfo(QStringLiteral("X"));
        auto *newer = new FormatInfo(QStringLiteral("X"));
        QCOMPARE(FormatInfo::getFormatInfos(), Formats({ scene.F, older, newer }));
        QCOMPARE(FormatInfo::getFormatInfo(QStringLiteral("LifetimeFormat")), scene.F);
        QVERIFY(FormatInfo::getFormatInfo(QStringLiteral("lifetimeformat")) == nullptr);
        QCOMPARE(FormatInfo::getFormatInfo(QStringLiteral("X")), newer);
        delete older;
        QVERIFY(FormatInfo::getFormatInfo(QStringLiteral("X")) == nullptr);
        QCOMPARE(FormatInfo::getFormatInfos(), Formats({ scene.F, newer }));
        scene.step(QStringLiteral("F"));
        QVERIFY(FormatInfo::getFormatInfo(QStringLiteral("LifetimeFormat")) == nullptr);
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
        auto names = [&](unsigned value) { // in format, then in the other format
            QStringList found { lookup(format, { FieldValue::u(value, 8) }) };
            if (otherFormat)
                found << lookup(*otherFormat, { FieldValue::u(value, 8) });
            return found.join(QLatin1String(" / "));
        };

        // A range widened through a reference taken before the first lookup.
        QCOMPARE(names(10), QStringLiteral(" / "));
        earlier.ranges.first().high = FieldValue::u(10, 8);
        QCOMPARE(names(10), QStringLiteral("B / B"));
        // A message type of two formats changed.
        QCOMPARE(names(2), QStringLiteral(" / "));
        b.addDiscriminantValue(&header, FieldValue::u(2, 8));
        QCOMPARE(names(2), QStringLiteral("B / B"));
        // The other format destroyed with its message types.
        QCOMPARE(names(1), QStringLiteral("A / D"));
        otherMessage.reset();
        otherFormat.reset();
        QCOMPARE(names(1), QStringLiteral("A"));
        // The ranges cleared through the early reference.
        QCOMPARE(names(7), QStringLiteral("A B"));
        earlier.ranges.clear();
        QCOMPARE(names(7), QStringLiteral("A"));
    }
};

QTEST_GUILESS_MAIN(tst_Dictionary)

#include "tst_dictionary.moc"
