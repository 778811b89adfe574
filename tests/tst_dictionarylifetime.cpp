// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "dictionaryfixture.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "memleaktracer.h"
#include "messageinfo.h"
#include "testfieldinfo.h"
#include "testmessage.h"
#include "tracerrecorder.h"

#include <QMap>
#include <QSet>
#include <QTest>

#include <algorithm>

namespace {

/**
 * A small dictionary whose objects are deleted one by one in a chosen order. Between steps,
 * walk() follows every pointer that the living objects hand out and checks that it leads to a
 * living object.
 *
 *   format F: main message M, sub-message type S
 *   M: a (u16, key, also M's first discriminant), b (sub-message S), p (u32) with sub-field q
 *   M's second discriminant is on h, a header field that is not a member of M
 *   S: c (u8, key)
 */
class Scene
{
public:
    Scene()
    {
        F = new FormatInfo(QStringLiteral("LifetimeFormat"));
        M = new MessageInfo(QStringLiteral("M"));
        S = new MessageInfo(QStringLiteral("S"));
        a = new TestFieldInfo(QStringLiteral("a"), FieldType::u(16));
        b = new TestFieldInfo(QStringLiteral("b"), FieldType::subMessage(S));
        c = new TestFieldInfo(QStringLiteral("c"), FieldType::u(8));
        h = new TestFieldInfo(QStringLiteral("h"), FieldType::u(8));
        p = new TestFieldInfo(QStringLiteral("p"), FieldType::u(32));
        q = new TestFieldInfo(QStringLiteral("q"), FieldType::u(1));
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
        fields = { { QStringLiteral("a"), a }, { QStringLiteral("b"), b },
                   { QStringLiteral("c"), c }, { QStringLiteral("h"), h },
                   { QStringLiteral("p"), p }, { QStringLiteral("q"), q } };
        messages = { { QStringLiteral("M"), M }, { QStringLiteral("S"), S } };
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

    /// Every pointer reachable from the living objects, dereferenced and checked.
    void walk() const
    {
        QSet<FieldInfo const *> liveFields;
        for (FieldInfo const *field : fields)
            liveFields.insert(field);
        QSet<MessageInfo const *> liveMessages;
        for (MessageInfo const *message : messages)
            liveMessages.insert(message);

        auto checkField = [&](FieldInfo const *field) {
            QVERIFY2(liveFields.contains(field), "pointer to a destroyed field");
            QVERIFY(!field->getName().isEmpty());
        };
        auto checkMessage = [&](MessageInfo const *message) {
            QVERIFY2(liveMessages.contains(message), "pointer to a destroyed message type");
            QVERIFY(!message->getName().isEmpty());
        };

        for (MessageInfo *message : messages) {
            for (FieldInfo const *field : message->getFieldInfos())
                checkField(field);
            for (FieldInfo const *field :
                 static_cast<MessageInfo const *>(message)->getFieldInfos())
                checkField(field);
            for (FieldInfo const *field : message->getKeyFieldInfos())
                checkField(field);
            for (FieldInfo const *field : message->getReferringFieldInfos())
                checkField(field);
            for (MessageInfo::Discriminant const &discriminant : message->getDiscriminants()) {
                if (discriminant.fieldInfo)
                    checkField(discriminant.fieldInfo);
            }
            for (QString const &name : fields.keys() + QStringList { QStringLiteral("gone") }) {
                if (FieldInfo const *field = message->getFieldInfo(name))
                    checkField(field);
            }
        }
        for (FieldInfo *field : fields) {
            for (MessageInfo const *message : field->getMessageInfos())
                checkMessage(message);
            for (FieldInfo const *sub : field->getSubFieldInfos())
                checkField(sub);
            if (field->hasParentFieldInfo())
                checkField(field->getParentFieldInfo());
            if (MessageInfo const *type = field->getType().getSubMessageInfo())
                checkMessage(type);
        }
        // A format is not told about its message types: its lists are only read while they
        // all live.
        if (F && !deadMessage) {
            for (MessageInfo const *message : F->getMessageInfosIncludingSubMessages())
                checkMessage(message);
            QCOMPARE(F->getMessageInfosForDiscriminant(FieldValue::u(1, 16)).size(), 0);
        }
    }

    FormatInfo *F;
    MessageInfo *M;
    MessageInfo *S;
    TestFieldInfo *a, *b, *c, *h, *p, *q;
    QMap<QString, TestFieldInfo *> fields;
    QMap<QString, MessageInfo *> messages;
    bool deadMessage = false;
};

} // namespace

class tst_DictionaryLifetime : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tracing_data();
    void tracing();
    void destructionOrders_data();
    void destructionOrders();
    void destroyedFieldLeavesMessage();
    void destroyedSubMessageTypeLeavesReferringField();
    void fixtureContents();
    void fixtureCleansUp();
};

void tst_DictionaryLifetime::tracing_data()
{
    QTest::addColumn<QString>("className");
    QTest::newRow("format") << QStringLiteral("FormatInfo");
    QTest::newRow("message") << QStringLiteral("MessageInfo");
    QTest::newRow("field") << QStringLiteral("FieldInfo");
}

void tst_DictionaryLifetime::tracing()
{
    QFETCH(QString, className);
    TracerRecorder recorder;
    if (className == QLatin1String("FormatInfo"))
        delete new FormatInfo(QStringLiteral("T"));
    else if (className == QLatin1String("MessageInfo"))
        delete new MessageInfo(QStringLiteral("T"));
    else
        delete new TestFieldInfo(QStringLiteral("T"), FieldType::u(8));
    QCOMPARE(recorder.eventsOf(className),
             QStringList({ QLatin1Char('+') + className, QLatin1Char('-') + className }));
}

void tst_DictionaryLifetime::destructionOrders_data()
{
    QTest::addColumn<QStringList>("steps");

    auto row = [](char const *name, char const *steps) {
        QTest::newRow(name) << QString::fromLatin1(steps).split(QLatin1Char(' '));
    };
    row("fields, then message types, then format", "a b c h p q M S F");
    row("format, then message types, then fields", "F M S a b c h p q");
    row("message types, then fields", "M S a b c h p q F");
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
    QFETCH(QStringList, steps);
    AssertCapture capture;
    auto *scene = new Scene;
    scene->walk();
    for (QString const &step : steps) {
        scene->step(step);
        scene->walk();
        if (QTest::currentTestFailed())
            QFAIL(qPrintable(QStringLiteral("after step ") + step));
    }
    delete scene;
    QCOMPARE(capture.texts(), QStringList());
}

void tst_DictionaryLifetime::destroyedFieldLeavesMessage()
{
    Scene scene;
    scene.step(QStringLiteral("a"));
    QCOMPARE(scene.M->getFieldInfos(), QVector<FieldInfo *>({ scene.b, scene.p }));
    QVERIFY(scene.M->getFieldInfo(QStringLiteral("a")) == nullptr);
    QVERIFY(scene.M->getKeyFieldInfos().isEmpty());
    // The discriminant keeps its position and ranges, so lookups are unchanged.
    QCOMPARE(scene.M->getDiscriminants().size(), 2);
    QVERIFY(scene.M->getDiscriminants().at(0).fieldInfo == nullptr);
    QCOMPARE(scene.F->getMessageInfosForDiscriminant({ FieldValue::u(1, 16), FieldValue::u(0, 8) }),
             QVector<MessageInfo const *> { scene.M });
}

void tst_DictionaryLifetime::destroyedSubMessageTypeLeavesReferringField()
{
    Scene scene;
    QCOMPARE(scene.S->getReferringFieldInfos(), QVector<FieldInfo *> { scene.b });
    scene.step(QStringLiteral("S"));
    QCOMPARE(scene.b->getType().getBasisType(), FieldType::SubMessage);
    QVERIFY(scene.b->getType().getSubMessageInfo() == nullptr);
    QVERIFY(scene.c->getMessageInfos().isEmpty());
}

void tst_DictionaryLifetime::fixtureContents()
{
    DictionaryFixture dictionary;
    QCOMPARE(FormatInfo::getFormatInfos().size(), 4);
    for (FormatInfo *format : dictionary.formats())
        QCOMPARE(FormatInfo::getFormatInfo(format->getName()), format);

    MessageInfo *diffCorrIn = dictionary.diffCorrIn();
    QVERIFY(diffCorrIn);
    QCOMPARE(diffCorrIn->getDiscriminants().at(0).fieldInfo, dictionary.blockNumber());
    QCOMPARE(diffCorrIn->getDiscriminants().at(0).ranges.at(0).low.getType(), FieldType::u(16));
    QCOMPARE(dictionary.field(QStringLiteral("VEXA"), QStringLiteral("PosGeod"),
                              QStringLiteral("BlockNumber")),
             dictionary.blockNumber());
    QVERIFY(!dictionary.receiverSetup()->isMain());
    QCOMPARE(dictionary.vexa()->getMessageInfosIncludingSubMessages().size(),
             dictionary.vexa()->getMessageInfos().size() + 1);

    int const cartOrGeod = int(std::count_if(
        dictionary.messages().cbegin(), dictionary.messages().cend(), [](MessageInfo *m) {
            return m->getName().contains(QLatin1String("Cart"))
                || m->getName().contains(QLatin1String("Geod"));
        }));
    QCOMPARE(cartOrGeod, 4);

    TestFieldInfo *channel = dictionary.field(QStringLiteral("VEXA"), QStringLiteral("MeasEpoch"),
                                              QStringLiteral("Channel"));
    QVERIFY(channel);
    QCOMPARE(dictionary.measEpochChannel()->getReferringFieldInfos(),
             QVector<FieldInfo *> { channel });
    QCOMPARE(dictionary.measEpochChannel()->getKeyFieldInfos().size(), 1);

    TestFieldInfo *marker = dictionary.field(
        QStringLiteral("VEXA"), QStringLiteral("ReceiverSetup"), QStringLiteral("MarkerName"));
    TestMessage message(dictionary.receiverSetup());
    message.setValues(marker,
                      { FieldValue::ch('B'), FieldValue::ch('A'), FieldValue::ch('S'),
                        FieldValue::ch('E'), FieldValue::ch(0) });
    QCOMPARE(marker->getValueString(&message), QStringLiteral("BASE"));

    TestFieldInfo *x
        = dictionary.field(QStringLiteral("VEXA"), QStringLiteral("PosCart"), QStringLiteral("X"));
    QCOMPARE(x->getUnitString(true), QStringLiteral("m"));
    QVERIFY(x->isDoNotUseValue(FieldValue::f64(-2e10)));
    QVERIFY(dictionary.field(QStringLiteral("VEXA"), QStringLiteral("PosCart"),
                             QStringLiteral("Nothing"))
            == nullptr);
    QVERIFY(dictionary.message(QStringLiteral("CMR"), QStringLiteral("PosCart")) == nullptr);
}

void tst_DictionaryLifetime::fixtureCleansUp()
{
    AssertCapture capture;
    TracerRecorder recorder;
    delete new DictionaryFixture;
    MemLeakTracer *tracer = MemLeakTracer::getInstance();
    for (QString const &className : { QStringLiteral("FormatInfo"), QStringLiteral("MessageInfo"),
                                      QStringLiteral("FieldInfo") }) {
        QVERIFY(tracer->getAllocationCount(className) > 0);
        QCOMPARE(tracer->getLiveCount(className), 0);
    }
    QVERIFY(FormatInfo::getFormatInfos().isEmpty());
    QCOMPARE(capture.count(), 0);
}

QTEST_GUILESS_MAIN(tst_DictionaryLifetime)

#include "tst_dictionarylifetime.moc"
