// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"
#include "messageinfo.h"
#include "messageinfoset.h"
#include "tracerrecorder.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

using InfoSet = QSet<MessageInfo const *>;
Q_DECLARE_METATYPE(MessageInfo const *)

class tst_MessageInfoSet : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changesEmitOnlyWhenContentsChange_data();
    void changesEmitOnlyWhenContentsChange();
    void flippingAlternatesGeodeticAndCartesian();
    void tracing();

private:
    MessageInfo mA { QStringLiteral("A") };
    MessageInfo mB { QStringLiteral("B") };
    MessageInfo mC { QStringLiteral("C") };
};

namespace {
enum Operation { Add, Remove, SetContents, Clear };
}

void tst_MessageInfoSet::changesEmitOnlyWhenContentsChange_data()
{
    QTest::addColumn<InfoSet>("initial");
    QTest::addColumn<int>("operation");
    QTest::addColumn<InfoSet>("argument"); // one member for Add and Remove
    QTest::addColumn<InfoSet>("expected");
    QTest::addColumn<bool>("emits");

    InfoSet const none;
    InfoSet const a { &mA };
    InfoSet const ab { &mA, &mB };
    InfoSet const bc { &mB, &mC };

    QTest::newRow("add new") << a << int(Add) << InfoSet { &mB } << ab << true;
    QTest::newRow("add present") << ab << int(Add) << InfoSet { &mB } << ab << false;
    QTest::newRow("remove present") << ab << int(Remove) << InfoSet { &mB } << a << true;
    QTest::newRow("remove absent") << a << int(Remove) << InfoSet { &mB } << a << false;
    QTest::newRow("set other") << ab << int(SetContents) << bc << bc << true;
    QTest::newRow("set same") << ab << int(SetContents) << InfoSet { &mB, &mA } << ab << false;
    QTest::newRow("set subset") << ab << int(SetContents) << a << a << true;
    QTest::newRow("set empty") << ab << int(SetContents) << none << none << true;
    QTest::newRow("clear") << ab << int(Clear) << none << none << true;
    QTest::newRow("clear empty") << none << int(Clear) << none << none << false;
}

void tst_MessageInfoSet::changesEmitOnlyWhenContentsChange()
{
    QFETCH(InfoSet, initial);
    QFETCH(int, operation);
    QFETCH(InfoSet, argument);
    QFETCH(InfoSet, expected);
    QFETCH(bool, emits);

    MessageInfoSet set;
    set.setContents(initial);
    QSignalSpy spy(&set, &MessageInfoSet::changed);

    switch (Operation(operation)) {
    case Add:
        set.addMessageInfo(*argument.cbegin());
        break;
    case Remove:
        set.removeMessageInfo(*argument.cbegin());
        break;
    case SetContents:
        set.setContents(argument);
        break;
    case Clear:
        set.clear();
        break;
    }
    QCOMPARE(set.getMessageInfos(), expected);
    QCOMPARE(spy.count(), emits ? 1 : 0);
}

void tst_MessageInfoSet::flippingAlternatesGeodeticAndCartesian()
{
    DictionaryFixture dictionary;
    InfoSet const geodetic { dictionary.posGeod(), dictionary.velGeod() };
    InfoSet const cartesian { dictionary.posCart(), dictionary.velCart() };
    InfoSet const initial { dictionary.diffCorrIn() };

    MessageInfoSet set;
    set.setContents(initial);
    QSignalSpy spy(&set, &MessageInfoSet::changed);
    set.startFlipping();

    QCOMPARE(set.findChildren<QTimer *>().size(), 1);
    auto *timer = set.findChild<QTimer *>();
    QCOMPARE(timer->interval(), 2000);
    QVERIFY(!timer->isSingleShot());
    QVERIFY(timer->isActive());
    QCOMPARE(set.getMessageInfos(), initial);
    QCOMPARE(spy.count(), 0);

    // The period is checked above; shorten it so that the flips come without slowing the suite.
    timer->setInterval(1);
    InfoSet const expected[] = { geodetic, cartesian, geodetic, cartesian };
    for (int flip = 0; flip < 4; ++flip) {
        QVERIFY(spy.wait());
        QCOMPARE(spy.count(), flip + 1);
        QCOMPARE(set.getMessageInfos(), expected[flip]);
    }
    // The exported flag is kept for old applications only; the flip state is the set's own.
    QVERIFY(!mCurrentlyCart);
}

void tst_MessageInfoSet::tracing()
{
    TracerRecorder recorder;
    delete new MessageInfoSet;
    QCOMPARE(recorder.eventsOf(QStringLiteral("MessageInfoSet")),
             QStringList({ QStringLiteral("+MessageInfoSet"), QStringLiteral("-MessageInfoSet") }));
}

QTEST_GUILESS_MAIN(tst_MessageInfoSet)

#include "tst_messageinfoset.moc"
