// SPDX-License-Identifier: LGPL-2.1-or-later
#include "childprocess.h"
#include "messageneed.h"
#include "messageneedmanager.h"
#include "tracerrecorder.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>

namespace {
// The manager only hashes and compares the pointers; it never looks at the message types.
MessageInfo const *info(int number)
{
    return reinterpret_cast<MessageInfo const *>(quintptr(number) * 16);
}

int numberOf(MessageInfo const *info)
{
    return int(reinterpret_cast<quintptr>(info) / 16);
}

QVector<MessageInfo const *> infos(QVector<int> const &numbers)
{
    QVector<MessageInfo const *> result;
    for (int number : numbers)
        result.append(info(number));
    return result;
}

QVector<int> numbers(QVector<MessageInfo const *> const &infos)
{
    QVector<int> result;
    for (MessageInfo const *info : infos)
        result.append(numberOf(info));
    return result;
}

/// The needed set, sorted so that hash order does not matter.
QVector<int> neededSet(MessageNeedManager const &manager)
{
    QVector<int> result;
    for (MessageInfo const *info : manager.getMessagesNeeded())
        result.append(numberOf(info));
    std::sort(result.begin(), result.end());
    return result;
}

unsigned int countOf(MessageNeedManager &manager, int number)
{
    return manager.getIterator(info(number)).value();
}
} // namespace

class tst_MessageNeed : public QObject
{
    Q_OBJECT

public:
    static void runChildScenario(QString const &scenario);

private Q_SLOTS:
    void signalsOnlyWhenTheSetChanges_data();
    void signalsOnlyWhenTheSetChanges();
    void replacingNeeds_data();
    void replacingNeeds();
    void copiesCountSeparately();
    void selfAssignmentWithdrawsAll();
    void setManagerMovesNeeds_data();
    void setManagerMovesNeeds();
    void nullManagerMeansProcessWideInstance();
    void tracesConstructionAndDestruction();
    void brokenCountsAreFatal_data();
    void brokenCountsAreFatal();
};

void tst_MessageNeed::runChildScenario(QString const &scenario)
{
    if (scenario == QLatin1String("remove not held")) {
        MessageNeedManager manager;
        MessageNeed holder(&manager);
        MessageNeed other(&manager);
        holder.addMessageNeeded(info(1));
        // The manager's count allows the decrement; only the need's own list refuses.
        other.removeMessageNeeded(info(1));
    } else if (scenario == QLatin1String("decrement unknown")) {
        MessageNeedManager manager;
        manager.decrement(info(1), false);
    } else if (scenario == QLatin1String("manager destroyed with needs")) {
        auto *manager = new MessageNeedManager;
        (new MessageNeed(manager))->addMessageNeeded(info(1));
        delete manager;
    } else if (scenario == QLatin1String("process-wide needs at exit")) {
        (new MessageNeed)->addMessageNeeded(info(1));
    } else if (scenario == QLatin1String("process-wide needs withdrawn")) {
        MessageNeed need;
        need.addMessageNeeded(info(1));
    }
}

void tst_MessageNeed::signalsOnlyWhenTheSetChanges_data()
{
    // Steps "a+3" / "b-3": need a or b adds or removes message type 3.
    QTest::addColumn<QStringList>("steps");
    QTest::addColumn<QVector<int>>("signalsAfterEachStep");
    QTest::addColumn<QVector<int>>("finalNeedsOfA");
    QTest::addColumn<QVector<int>>("finalSet");

    QTest::newRow("two needs, same type")
        << QStringList { "a+1", "b+1", "a-1", "b-1" } << QVector<int> { 1, 1, 1, 2 }
        << QVector<int> {} << QVector<int> {};
    QTest::newRow("one need, same type twice")
        << QStringList { "a+1", "a+1", "a-1", "a-1" } << QVector<int> { 1, 1, 1, 2 }
        << QVector<int> {} << QVector<int> {};
    QTest::newRow("removes the first occurrence")
        << QStringList { "a+1", "a+2", "a+1", "a-1" } << QVector<int> { 1, 2, 2, 2 }
        << QVector<int> { 2, 1 } << QVector<int> { 1, 2 };
    QTest::newRow("removed and added again")
        << QStringList { "a+1", "a-1", "b+1" } << QVector<int> { 1, 2, 3 } << QVector<int> {}
        << QVector<int> { 1 };
}

void tst_MessageNeed::signalsOnlyWhenTheSetChanges()
{
    QFETCH(QStringList, steps);
    QFETCH(QVector<int>, signalsAfterEachStep);
    QFETCH(QVector<int>, finalNeedsOfA);
    QFETCH(QVector<int>, finalSet);

    MessageNeedManager manager;
    MessageNeed a(&manager);
    MessageNeed b(&manager);
    QSignalSpy spy(&manager, &MessageNeedManager::messageSetChanged);
    for (int i = 0; i < steps.size(); ++i) {
        MessageNeed &need = steps[i].at(0) == QLatin1Char('a') ? a : b;
        MessageInfo const *type = info(steps[i].mid(2).toInt());
        if (steps[i].at(1) == QLatin1Char('+'))
            need.addMessageNeeded(type);
        else
            need.removeMessageNeeded(type);
        QVERIFY2(spy.count() == signalsAfterEachStep[i], qPrintable(steps[i]));
    }
    QCOMPARE(numbers(a.getMessagesNeeded()), finalNeedsOfA);
    QCOMPARE(neededSet(manager), finalSet);
}

void tst_MessageNeed::replacingNeeds_data()
{
    // replacement: the new list for setMessagesNeeded, or with oneNeed the single type for
    // setMessageNeeded (no element: a null type).
    QTest::addColumn<QVector<int>>("before");
    QTest::addColumn<bool>("oneNeed");
    QTest::addColumn<QVector<int>>("replacement");
    QTest::addColumn<int>("signalsNow");
    QTest::addColumn<int>("signalsAfterFlush");
    QTest::addColumn<QVector<int>>("finalSet");

    QTest::newRow("three types replace two")
        << QVector<int> { 1, 2 } << false << QVector<int> { 3, 4, 5 } << 1 << 1
        << QVector<int> { 3, 4, 5 };
    QTest::newRow("set replaced by itself")
        << QVector<int> { 1, 2 } << false << QVector<int> { 1, 2 } << 1 << 1
        << QVector<int> { 1, 2 };
    QTest::newRow("empty replaced by empty")
        << QVector<int> {} << false << QVector<int> {} << 0 << 0 << QVector<int> {};
    QTest::newRow("one type, already exactly it")
        << QVector<int> { 1 } << true << QVector<int> { 1 } << 0 << 0 << QVector<int> { 1 };
    QTest::newRow("one type out of two")
        << QVector<int> { 1, 2 } << true << QVector<int> { 1 } << 1 << 1 << QVector<int> { 1 };
    QTest::newRow("one type held twice")
        << QVector<int> { 1, 1 } << true << QVector<int> { 1 } << 1 << 1 << QVector<int> { 1 };
    QTest::newRow("null type leaves the change pending")
        << QVector<int> { 1 } << true << QVector<int> {} << 0 << 1 << QVector<int> {};
}

void tst_MessageNeed::replacingNeeds()
{
    QFETCH(QVector<int>, before);
    QFETCH(bool, oneNeed);
    QFETCH(QVector<int>, replacement);
    QFETCH(int, signalsNow);
    QFETCH(int, signalsAfterFlush);
    QFETCH(QVector<int>, finalSet);

    MessageNeedManager manager;
    MessageNeed need(&manager);
    need.setMessagesNeeded(infos(before));
    QSignalSpy spy(&manager, &MessageNeedManager::messageSetChanged);
    if (oneNeed)
        need.setMessageNeeded(replacement.isEmpty() ? nullptr : info(replacement.first()));
    else
        need.setMessagesNeeded(infos(replacement));
    QCOMPARE(spy.count(), signalsNow);
    QCOMPARE(numbers(need.getMessagesNeeded()), replacement);
    QCOMPARE(neededSet(manager), finalSet);
    manager.emitPendingSignal();
    QCOMPARE(spy.count(), signalsAfterFlush);
}

void tst_MessageNeed::copiesCountSeparately()
{
    MessageNeedManager manager;
    MessageNeed original(&manager);
    original.setMessagesNeeded(infos({ 1, 2 }));
    QSignalSpy spy(&manager, &MessageNeedManager::messageSetChanged);
    {
        MessageNeed copy(original);
        QCOMPARE(copy.getManager(), &manager);
        QCOMPARE(numbers(copy.getMessagesNeeded()), QVector<int>({ 1, 2 }));
        QCOMPARE(countOf(manager, 1), 2u);
        QCOMPARE(countOf(manager, 2), 2u);
    }
    QCOMPARE(countOf(manager, 1), 1u);
    QCOMPARE(spy.count(), 0);

    // Assignment moves the target to the source's manager and withdraws its old needs there.
    MessageNeedManager otherManager;
    MessageNeed target(&otherManager);
    target.addMessageNeeded(info(3));
    QSignalSpy otherSpy(&otherManager, &MessageNeedManager::messageSetChanged);
    target = original;
    QCOMPARE(target.getManager(), &manager);
    QCOMPARE(neededSet(otherManager), QVector<int> {});
    QCOMPARE(otherSpy.count(), 1);
    QCOMPARE(countOf(manager, 2), 2u);
    QCOMPARE(spy.count(), 0);
}

void tst_MessageNeed::selfAssignmentWithdrawsAll()
{
    MessageNeedManager manager;
    MessageNeed need(&manager);
    need.setMessagesNeeded(infos({ 1, 2 }));
    QSignalSpy spy(&manager, &MessageNeedManager::messageSetChanged);
    MessageNeed &alias = need;
    need = alias;
    QVERIFY(need.getMessagesNeeded().isEmpty());
    QCOMPARE(need.getManager(), &manager);
    QCOMPARE(neededSet(manager), QVector<int> {});
    QCOMPARE(spy.count(), 1);
}

void tst_MessageNeed::setManagerMovesNeeds_data()
{
    QTest::addColumn<bool>("throughNoManager");
    QTest::newRow("directly") << false;
    // Without a manager the list is kept but counted nowhere.
    QTest::newRow("through no manager") << true;
}

void tst_MessageNeed::setManagerMovesNeeds()
{
    QFETCH(bool, throughNoManager);

    MessageNeedManager first;
    MessageNeedManager second;
    MessageNeed need(&first);
    need.setMessagesNeeded(infos({ 1, 1, 2 }));
    QSignalSpy firstSpy(&first, &MessageNeedManager::messageSetChanged);
    QSignalSpy secondSpy(&second, &MessageNeedManager::messageSetChanged);
    if (throughNoManager) {
        need.setManager(nullptr);
        QCOMPARE(numbers(need.getMessagesNeeded()), QVector<int>({ 1, 1, 2 }));
        QCOMPARE(firstSpy.count(), 1);
    }
    need.setManager(&second);
    QCOMPARE(need.getManager(), &second);
    QCOMPARE(numbers(need.getMessagesNeeded()), QVector<int>({ 1, 1, 2 }));
    QCOMPARE(neededSet(first), QVector<int> {});
    QCOMPARE(neededSet(second), QVector<int>({ 1, 2 }));
    QCOMPARE(countOf(second, 1), 2u);
    QCOMPARE(firstSpy.count(), 1);
    QCOMPARE(secondSpy.count(), 1);

    // Setting the same manager again withdraws (one signal: the set is empty) and then
    // registers anew (another signal).
    need.setManager(&second);
    QCOMPARE(secondSpy.count(), 3);
    QCOMPARE(countOf(second, 1), 2u);
}

void tst_MessageNeed::nullManagerMeansProcessWideInstance()
{
    MessageNeedManager *instance = MessageNeedManager::getCurrentInstance();
    QVERIFY(instance);
    QCOMPARE(MessageNeedManager::getCurrentInstance(), instance);
    QSignalSpy spy(instance, &MessageNeedManager::messageSetChanged);
    {
        MessageNeed need(nullptr);
        QCOMPARE(need.getManager(), instance);
        need.addMessageNeeded(info(7));
        QCOMPARE(neededSet(*instance), QVector<int> { 7 });
    }
    QCOMPARE(neededSet(*instance), QVector<int> {});
    QCOMPARE(spy.count(), 2);
}

void tst_MessageNeed::tracesConstructionAndDestruction()
{
    TracerRecorder recorder;
    {
        MessageNeedManager manager;
        MessageNeed need(&manager);
        MessageNeed copy(need);
        copy = need;
    }
    QCOMPARE(recorder.events(),
             QStringList({ "+MessageNeedManager", "+MessageNeed", "+MessageNeed", "-MessageNeed",
                           "-MessageNeed", "-MessageNeedManager" }));
}

void tst_MessageNeed::brokenCountsAreFatal_data()
{
    QTest::addColumn<QString>("scenario");
    QTest::addColumn<QString>("fatalText"); // empty: the child must end normally

    QTest::newRow("remove not held")
        << "remove not held"
        << "MessageNeed::removeMessageNeeded: removing non-registered message";
    QTest::newRow("decrement unknown") << "decrement unknown"
                                       << "MessageNeedManager::decrement: counter goes below 0.";
    const QString destroyedText = QStringLiteral(
        "MessageNeedManager::~MessageNeedManager: not all needs have been withdrawn before "
        "destruction.");
    QTest::newRow("manager destroyed with needs")
        << "manager destroyed with needs" << destroyedText;
    QTest::newRow("process-wide needs at exit") << "process-wide needs at exit" << destroyedText;
    QTest::newRow("process-wide needs withdrawn") << "process-wide needs withdrawn" << QString();
}

void tst_MessageNeed::brokenCountsAreFatal()
{
    QFETCH(QString, scenario);
    QFETCH(QString, fatalText);

    const ChildProcess::Result result = ChildProcess::run(scenario);
    QVERIFY(result.finished);
    if (fatalText.isEmpty()) {
        QVERIFY2(!result.crashed, qPrintable(result.standardError));
        QCOMPARE(result.exitCode, ChildProcess::ScenarioReturned);
    } else {
        QVERIFY(result.crashed);
        QVERIFY2(result.errorLines().contains(fatalText), qPrintable(result.standardError));
    }
}

MSGAPI_TEST_MAIN_WITH_SCENARIOS(tst_MessageNeed)
#include "tst_messageneed.moc"
