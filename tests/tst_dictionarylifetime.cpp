// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "dictionaryfixture.h"
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

class tst_DictionaryLifetime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void destructionOrders_data();
    void destructionOrders();
    void fixtureCleansUp();
};

void tst_DictionaryLifetime::destructionOrders_data()
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

void tst_DictionaryLifetime::destructionOrders()
{
    QFETCH(QString, steps);
    AssertCapture capture;
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
}

void tst_DictionaryLifetime::fixtureCleansUp()
{
    AssertCapture capture;
    TracerRecorder recorder;
    {
        DictionaryFixture dictionary;
        QCOMPARE(FormatInfo::getFormatInfos().size(), 4);
    }
    for (QString const &className : { QStringLiteral("FormatInfo"), QStringLiteral("MessageInfo"),
                                      QStringLiteral("FieldInfo") }) {
        QVERIFY(MemLeakTracer::getInstance()->getAllocationCount(className) > 0);
        QCOMPARE(MemLeakTracer::getInstance()->getLiveCount(className), 0);
    }
    QVERIFY(FormatInfo::getFormatInfos().isEmpty());
    QCOMPARE(capture.count(), 0);
}

QTEST_GUILESS_MAIN(tst_DictionaryLifetime)

#include "tst_dictionarylifetime.moc"
