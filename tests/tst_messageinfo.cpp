// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "dictionarytestaccess.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "memleaktracer.h"
#include "messageinfo.h"
#include "testfieldinfo.h"
#include "tracerrecorder.h"

#include <QMap>
#include <QTest>

#include <algorithm>
#include <utility>

namespace {

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
 *
 *   format F: main message M, sub-message type S
 *   M: a (u16, key, also M's first discriminant), b (sub-message S), p (u32) with sub-field q
 *   M's second discriminant is on h, a header field that is not a member of M
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

class tst_MessageInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fields()
    {
        using Fields = QVector<FieldInfo *>;
        AssertCapture capture;
        MessageInfo info(QStringLiteral("M"));
        QVERIFY(info.isMain());
        TestFieldInfo number(QStringLiteral("Number"), FieldType::u(16));
        TestFieldInfo key(QStringLiteral("SVID"), FieldType::u(8));
        TestFieldInfo mode(QStringLiteral("Mode"), FieldType::u(8));
        TestFieldInfo sameName(QStringLiteral("SVID"), FieldType::u(16));
        TestFieldInfo stranger(QStringLiteral("Mode"), FieldType::u(8));
        info.addFieldInfo(&number, 0);
        info.addFieldInfo(&key, 12, true);
        info.addFieldInfo(&mode, 5);
        QCOMPARE(info.getFieldInfo(QStringLiteral("SVID")), &key);
        // A second field of the same name takes over the name only.
        info.addFieldInfo(&sameName, 3);
        QCOMPARE(info.getFieldInfo(QStringLiteral("SVID")), &sameName);
        QCOMPARE(info.getFieldInfos(), Fields({ &number, &key, &mode, &sameName }));

        // A removed key field stays a key field and keeps its index (the caller's, not its
        // position). The name entry goes by name, though it named the other field.
        info.removeFieldInfo(&key);
        QCOMPARE(std::as_const(info).getFieldInfos(),
                 QVector<FieldInfo const *>({ &number, &mode, &sameName }));
        QVERIFY(info.getFieldInfo(QStringLiteral("SVID")) == nullptr);
        QCOMPARE(info.getKeyFieldInfos(), QVector<FieldInfo const *> { &key });
        QVERIFY(!key.occursIn(&info));
        QCOMPARE(key.getIndexInMessageInfo(&info), 12);

        // The field is asked first, then the message checks its own lists; a stranger's name still
        // takes the entry.
        info.removeFieldInfo(&stranger);
        QCOMPARE(capture.texts().join(QLatin1Char('\n')),
                 QStringLiteral("FieldInfo::removeMessageInfo: Trying to remove a non-member\n"
                                "MessageInfo::removeFieldInfo: Trying to remove a non-member"));
        QCOMPARE(capture.functions().join(QLatin1Char(' ')),
                 QStringLiteral("removeMessageInfo removeFieldInfo"));
        QCOMPARE(info.getFieldInfos(), Fields({ &number, &mode, &sameName }));
        QVERIFY(info.getFieldInfo(QStringLiteral("Mode")) == nullptr);
    }

    void referringFields()
    {
        AssertCapture capture;
        MessageInfo channel(QStringLiteral("Channel"));
        TestFieldInfo first(QStringLiteral("Type1"), FieldType::subMessage(&channel));
        TestFieldInfo second(QStringLiteral("Type2"), FieldType::subMessage(&channel));
        QCOMPARE(channel.getReferringFieldInfos(), QVector<FieldInfo *>({ &first, &second }));
        QCOMPARE(std::as_const(channel).getReferringFieldInfos(),
                 QVector<FieldInfo const *>({ &first, &second }));

        // No duplicate check: a second entry needs a second removal.
        channel.addReferringFieldInfo(&first);
        channel.removeReferringFieldInfo(&first);
        QCOMPARE(channel.getReferringFieldInfos(), QVector<FieldInfo *>({ &second, &first }));

        TestFieldInfo plain(QStringLiteral("N"), FieldType::u(8));
        channel.removeReferringFieldInfo(&plain);
        QCOMPARE(capture.texts(),
                 QStringList(QStringLiteral(
                     "MessageInfo::removeReferringFieldInfo: Trying to remove a non-member")));
        QCOMPARE(capture.functions(), QStringList(QStringLiteral("removeReferringFieldInfo")));
    }

    void discriminants()
    {
        MessageInfo info(QStringLiteral("M"));
        TestFieldInfo number(QStringLiteral("Number"), FieldType::u(16));
        TestFieldInfo revision(QStringLiteral("Revision"), FieldType::u(3));
        auto positions = [&info] { // "field: low-high ..." for each position
            QStringList texts;
            for (MessageInfo::Discriminant const &discriminant : info.getDiscriminants()) {
                texts << discriminant.fieldInfo->getName() + QLatin1Char(':');
                for (MessageInfo::DiscriminantValueRange const &range : discriminant.ranges)
                    texts.last() += QLatin1Char(' ') + range.low.toString(true) + QLatin1Char('-')
                        + range.high.toString(true);
            }
            return texts;
        };

        QVERIFY(info.getDiscriminant(&number).ranges.isEmpty()); // created empty at position 0
        info.addDiscriminantValue(&number, FieldValue::u(4006, 16));
        // The next position, stored as given.
        info.addDiscriminantValueRange(&revision, FieldValue::u(7, 3), FieldValue::u(1, 3));
        info.addDiscriminantValue(&number, FieldValue::u(4006, 16)); // kept twice
        QCOMPARE(
            positions(),
            QStringList({ QStringLiteral("Number: 4006 (u16)-4006 (u16) 4006 (u16)-4006 (u16)"),
                          QStringLiteral("Revision: 7 (u3)-1 (u3)") }));

        // The reference is into the message's own list.
        info.getDiscriminant(&revision).ranges.clear();
        QCOMPARE(positions().last(), QStringLiteral("Revision:"));
    }

    void listsOutOfStep()
    {
        // Each pair of lists gets two elements, swapped in the const list only, and the front
        // one is removed. Then the const list is put back in step and the rest unlinked, so that
        // the destructors meet consistent lists.
        AssertCapture capture;
        MessageInfo info(QStringLiteral("M"));
        MessageInfo other(QStringLiteral("N"));
        TestFieldInfo first(QStringLiteral("first"), FieldType::u(8));
        TestFieldInfo second(QStringLiteral("second"), FieldType::u(8));
        TestFieldInfo third(QStringLiteral("third"), FieldType::u(8));

        info.addFieldInfo(&first, 0);
        info.addFieldInfo(&second, 1);
        swapFront(DictionaryTestAccess::constFieldInfos(info));
        info.removeFieldInfo(&first);
        DictionaryTestAccess::constFieldInfos(info) = { &second };
        info.removeFieldInfo(&second);

        info.addReferringFieldInfo(&first);
        info.addReferringFieldInfo(&second);
        swapFront(DictionaryTestAccess::constReferringFieldInfos(info));
        info.removeReferringFieldInfo(&first);
        DictionaryTestAccess::constReferringFieldInfos(info) = { &second };
        info.removeReferringFieldInfo(&second);

        first.addMessageInfo(&info, 0);
        first.addMessageInfo(&other, 0);
        swapFront(DictionaryTestAccess::constMessageInfos(first));
        first.removeMessageInfo(&info);
        DictionaryTestAccess::constMessageInfos(first) = { &other };
        first.removeMessageInfo(&other);

        first.addSubFieldInfo(&second);
        first.addSubFieldInfo(&third);
        swapFront(DictionaryTestAccess::constSubFieldInfos(first));
        first.removeSubFieldInfo(&second);
        DictionaryTestAccess::constSubFieldInfos(first) = { &third };
        first.removeSubFieldInfo(&third);

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
};

QTEST_GUILESS_MAIN(tst_MessageInfo)

#include "tst_messageinfo.moc"
