// SPDX-License-Identifier: LGPL-2.1-or-later
#include "childprocess.h"
#include "dictionaryfixture.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "messageneed.h"
#include "messageneedmanager.h"
#include "messageneedmanageradapter.h"
#include "testfieldinfo.h"
#include "tracerrecorder.h"
#include "warningcapture.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>

using Numbers = QList<unsigned short>;

namespace {
// The manager only hashes and compares the pointers; it never looks at the message types.
MessageInfo const *info(int number)
{
    return reinterpret_cast<MessageInfo const *>(quintptr(number) * 16);
}

/// "1,2" as message types; an empty text gives none.
QVector<MessageInfo const *> infos(QString const &numbers)
{
    QVector<MessageInfo const *> result;
    for (QString const &number : numbers.split(QLatin1Char(','), Qt::SkipEmptyParts))
        result.append(info(number.toInt()));
    return result;
}

QString text(QVector<MessageInfo const *> const &infos)
{
    QStringList numbers;
    for (MessageInfo const *info : infos)
        numbers.append(QString::number(reinterpret_cast<quintptr>(info) / 16));
    return numbers.join(QLatin1Char(','));
}

/// The manager's counts as "type:count", sorted so that hash order does not matter.
QString counts(MessageNeedManager &manager)
{
    QStringList entries;
    for (MessageInfo const *needed : manager.getMessagesNeeded())
        entries.append(text({ needed }) + QLatin1Char(':')
                       + QString::number(manager.getIterator(needed).value()));
    std::sort(entries.begin(), entries.end());
    return entries.join(QLatin1Char(' '));
}
} // namespace

class tst_MessageNeed : public QObject
{
    Q_OBJECT

public:
    static void runChildScenario(QString const &scenario);

private Q_SLOTS:
    void counting_data()
    {
        // Steps on the needs a and b, both first with manager 1 (c is made by "c*a", a copy of a,
        // and destroyed by "c~"): "a+1" add, "a-1" remove, "a=1,2" set the list, "a!1" set the one
        // need ("a!": null), "b<a" assign a to b, "a@2" move a to manager 2 ("a@0": to none),
        // "flush" manager 1's emitPendingSignal(). Signals are those of both managers.
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("signalsAfterEachStep");
        QTest::addColumn<QString>("counts"); // manager 1's, then " | " and manager 2's, if any
        QTest::addColumn<QString>("needsOfA");
        auto row = [](char const *name, char const *steps, char const *signalCounts,
                      char const *counts, char const *needsOfA) {
            QTest::newRow(name) << steps << signalCounts << counts << needsOfA;
        };

        row("only 0 <-> 1 signals", "a+1 a+1 b+1 a-1 b-1 a-1", "1 1 1 1 1 2", "", "");
        row("removes the first occurrence", "a+1 a+2 a+1 a-1", "1 2 2 2", "1:1 2:1", "2,1");
        row("three types replace two", "a=1,2 a=3,4,5", "1 2", "3:1 4:1 5:1", "3,4,5");
        // Each type crosses 1 -> 0 -> 1 within the batch.
        row("set replaced by itself", "a=1,2 a=1,2", "1 2", "1:1 2:1", "1,2");
        row("empty replaced by empty", "a= a=", "0 0", "", "");
        row("one need, already exactly it", "a=1 a!1", "1 1", "1:1", "1");
        row("one need out of two", "a=1,2 a!1", "1 2", "1:1", "1");
        row("one need held twice", "a=1,1 a!1", "1 2", "1:1", "1");
        row("null need leaves the change pending", "a=1 a! flush", "1 1 2", "", "");
        row("a copy counts separately", "a=1,2 c*a", "1 1", "1:2 2:2", "1,2");
        row("a destroyed copy withdraws", "a=1,2 c*a c~", "1 1 1", "1:1 2:1", "1,2");
        row("assignment replaces the target's needs", "a=1 b=2 b<a", "1 2 3", "1:2", "1");
        // The clearing comes first, so the list copied from itself is empty.
        row("self-assignment withdraws all", "a=1,2 a<a", "1 2", "", "");
        row("no manager keeps the list uncounted", "a=1,1,2 a@0", "1 2", "", "1,1,2");
        row("needs move to another manager", "a=1,1,2 a@2 a@0 a@2", "1 3 4 5", " | 1:2 2:1",
            "1,1,2");
        // Withdrawn (one signal), then registered anew (another).
        row("the same manager again", "a=1 a@1", "1 3", "1:1", "1");
        row("assignment moves to the source's manager", "a@2 a=1 b+3 b<a", "0 1 2 3", " | 1:2",
            "1");
    }

    void counting()
    {
        QFETCH(QString, steps);
        QFETCH(QString, signalsAfterEachStep);
        QFETCH(QString, counts);
        QFETCH(QString, needsOfA);

        TracerRecorder recorder;
        {
            MessageNeedManager first, second;
            MessageNeedManager *const managers[] { nullptr, &first, &second };
            std::unique_ptr<MessageNeed> needs[3] { std::make_unique<MessageNeed>(&first),
                                                    std::make_unique<MessageNeed>(&first),
                                                    nullptr };
            QSignalSpy firstSpy(&first, &MessageNeedManager::messageSetChanged);
            QSignalSpy secondSpy(&second, &MessageNeedManager::messageSetChanged);
            QStringList signalCounts;
            auto need = [&needs](QChar name) -> std::unique_ptr<MessageNeed> & {
                return needs[name.toLatin1() - 'a'];
            };
            for (QString const &step : steps.split(QLatin1Char(' '))) {
                char const op = step.at(1).toLatin1();
                QString const argument = step.mid(2);
                if (step == QLatin1String("flush"))
                    first.emitPendingSignal();
                else if (op == '+')
                    need(step.at(0))->addMessageNeeded(info(argument.toInt()));
                else if (op == '-')
                    need(step.at(0))->removeMessageNeeded(info(argument.toInt()));
                else if (op == '=')
                    need(step.at(0))->setMessagesNeeded(infos(argument));
                else if (op == '!')
                    need(step.at(0))->setMessageNeeded(infos(argument).value(0));
                else if (op == '<')
                    *need(step.at(0)) = *need(argument.at(0));
                else if (op == '@')
                    need(step.at(0))->setManager(managers[argument.toInt()]);
                else if (op == '*')
                    need(step.at(0)) = std::make_unique<MessageNeed>(*need(argument.at(0)));
                else
                    need(step.at(0)).reset();
                signalCounts.append(QString::number(firstSpy.count() + secondSpy.count()));
            }
            QCOMPARE(signalCounts.join(QLatin1Char(' ')), signalsAfterEachStep);
            QString const secondCounts = ::counts(second);
            QCOMPARE(::counts(first) + (secondCounts.isEmpty() ? QString() : " | " + secondCounts),
                     counts);
            QCOMPARE(text(needs[0]->getMessagesNeeded()), needsOfA);
        }
        // Every need reports its life, copies included, and so do the managers.
        int const needs = 2 + steps.count(QLatin1Char('*'));
        QStringList const events = recorder.events();
        QCOMPARE(events.count(QStringLiteral("+MessageNeed")), needs);
        QCOMPARE(events.count(QStringLiteral("-MessageNeed")), needs);
        QCOMPARE(events.mid(0, 2) + events.mid(events.size() - 2),
                 QStringList({ "+MessageNeedManager", "+MessageNeedManager", "-MessageNeedManager",
                               "-MessageNeedManager" }));
    }

    void brokenCountsAreFatal_data()
    {
        QTest::addColumn<QString>("scenario");
        QTest::addColumn<QString>("fatalText"); // empty: the child must end normally
        auto row = [](char const *scenario, char const *fatalText) {
            QTest::newRow(scenario) << scenario << fatalText;
        };
        row("remove not held", "MessageNeed::removeMessageNeeded: removing non-registered message");
        row("decrement unknown", "MessageNeedManager::decrement: counter goes below 0.");
        row("process-wide needs at exit",
            "MessageNeedManager::~MessageNeedManager: not all needs have "
            "been withdrawn before destruction.");
        row("process-wide needs withdrawn", "");
    }

    void brokenCountsAreFatal()
    {
        QFETCH(QString, scenario);
        QFETCH(QString, fatalText);

        ChildProcess::Result const result = ChildProcess::run(scenario);
        QVERIFY(result.finished);
        QVERIFY2(result.crashed != fatalText.isEmpty(), qPrintable(result.standardError));
        if (fatalText.isEmpty())
            QCOMPARE(result.exitCode, ChildProcess::ScenarioReturned);
        else
            QVERIFY2(result.errorLines().contains(fatalText), qPrintable(result.standardError));
    }

    void adapterRequiredMessages_data()
    {
        QTest::addColumn<QString>("needed"); // "FORMAT:Name" of the fixture or an extra type's name
        QTest::addColumn<Numbers>("expected"); // sorted: the adapter keeps the manager's hash order
        QTest::addColumn<QString>("warning");
        QTest::addColumn<int>(
            "dictionaries"); // holding a correction input when the adapter is built
        auto row = [](char const *name, char const *needed, Numbers expected, char const *noNumber,
                      int dictionaries = 1) {
            QString const warning = *noNumber
                ? QStringLiteral("MessageNeedManagerAdapter::processMessageSetChange: %1 has no "
                                 "message number")
                      .arg(QLatin1String(noNumber))
                : QString();
            QTest::newRow(name) << needed << expected
                                << (dictionaries == 1
                                        ? warning
                                        : "MessageNeedManagerAdapter::"
                                          "MessageNeedManagerAdapter: VEXA DiffCorrIn "
                                          "message info not available!")
                                << dictionaries;
        };

        row("main messages", "VEXA:PosCart VEXA:VelGeod", { 4006, 4009 }, "");
        row("two RTCM3 and a CMR fold into one", "RTCM3:Type1004 RTCM3:Type1005 CMR:CMRObs",
            { 5919 }, "");
        row("correction input itself and RTCM2", "VEXA:DiffCorrIn RTCM2:Type1", { 5919 }, "");
        row("corrections next to main messages",
            "RTCM2:Type3 VEXA:PosGeod CMR:CMRRef VEXA:MeasEpoch", { 4007, 4027, 5919 }, "");
        row("non-main message", "VEXA:ReceiverSetup VEXA:ReceiverStatus", { 4014 }, "");
        row("other format, same number", "Foreign", {}, "");
        row("upper three bits cleared, equal numbers kept", "Revised SameNumber", { 0xF5A, 0xF5A },
            "");
        row("no discriminant", "VEXA:MeasEpochChannel VEXA:PosCart", { 4006 }, "MeasEpochChannel");
        row("wider than 16 bits", "Wide VEXA:PosCart", { 4006 }, "Wide");
        // Without a unique correction input, corrections are dropped.
        row("no correction input", "RTCM3:Type1004 VEXA:PosCart", { 4006 }, "", 0);
        row("two correction inputs", "RTCM3:Type1004 VEXA:PosCart", { 4006 }, "", 2);
    }

    void adapterRequiredMessages()
    {
        QFETCH(QString, needed);
        QFETCH(Numbers, expected);
        QFETCH(QString, warning);
        QFETCH(int, dictionaries);

        MessageNeedManager manager;
        WarningCapture warnings;
        std::unique_ptr<DictionaryFixture> const second(dictionaries > 1 ? new DictionaryFixture
                                                                         : nullptr);
        auto *adapter = dictionaries ? nullptr : new MessageNeedManagerAdapter(&manager);
        // The fixture plus message types that it lacks, numbered by their first discriminant.
        DictionaryFixture dictionary;
        TestFieldInfo number(QStringLiteral("Number"), FieldType::u(16));
        FormatInfo other(QStringLiteral("OTHER"));
        MessageInfo extras[4] { MessageInfo(QStringLiteral("Foreign")),
                                MessageInfo(QStringLiteral("Revised")),
                                MessageInfo(QStringLiteral("SameNumber")),
                                MessageInfo(QStringLiteral("Wide")) };
        FieldValue const values[4] { FieldValue::u(4006, 16), FieldValue::u(0x2F5A, 16),
                                     FieldValue::u(0x0F5A, 16), FieldValue::u(4100, 32) };
        for (int i = 0; i < 4; ++i) {
            extras[i].setFormatInfo(i == 0 ? &other : dictionary.vexa());
            extras[i].addDiscriminantValue(&number, values[i]);
        }
        QVector<MessageInfo const *> infos;
        for (QString const &name : needed.split(QLatin1Char(' '))) {
            MessageInfo const *info
                = dictionary.message(name.section(':', 0, 0), name.section(':', 1));
            for (MessageInfo const &extra : extras)
                info = extra.getName() == name ? &extra : info;
            infos.append(info);
        }

        adapter = adapter ? adapter : new MessageNeedManagerAdapter(&manager);
        {
            MessageNeed need(&manager);
            need.setMessagesNeeded(infos);
            QCOMPARE(warnings.warnings().join(QLatin1Char('\n')), warning);
            Numbers list = adapter->getRequiredMessagesList();
            std::sort(list.begin(), list.end());
            QCOMPARE(list, expected);
        }
        QCOMPARE(adapter->getRequiredMessagesList(), Numbers());
    }

    void adapterFollowsEveryChangeInTheManagersOrder()
    {
        DictionaryFixture dictionary;
        QHash<MessageInfo const *, unsigned short> const numbers { { dictionary.posCart(), 4006 },
                                                                   { dictionary.posGeod(), 4007 },
                                                                   { dictionary.velCart(), 4008 },
                                                                   { dictionary.measEpoch(),
                                                                     4027 } };
        TracerRecorder recorder;
        {
            MessageNeedManager manager;
            MessageNeed need(&manager), other(&manager);
            need.setMessagesNeeded(
                QVector<MessageInfo const *>(numbers.keyBegin(), numbers.keyEnd()));
            // Built right in the constructor, from needs that were there before; it dies with the
            // manager.
            auto *adapter = new MessageNeedManagerAdapter(&manager);
            QCOMPARE(adapter->getMessageNeedManager(), &manager);
            Numbers inManagerOrder;
            for (MessageInfo const *info : manager.getMessagesNeeded())
                inManagerOrder.append(numbers.value(info));
            QCOMPARE(adapter->getRequiredMessagesList(), inManagerOrder);

            // The list size at each announcement.
            QList<int> sizes;
            connect(adapter, &MessageNeedManagerAdapter::requiredMessagesChanged, this,
                    [&] { sizes << adapter->getRequiredMessagesList().size(); });
            other.addMessageNeeded(dictionary.message("RTCM3", "Type1004"));
            other.addMessageNeeded(dictionary.message("CMR", "CMRObs")); // the list stays the same
            other.addMessageNeeded(dictionary.posCart()); // the set stays the same: not announced
            need.clearMessagesNeeded();
            other.clearMessagesNeeded();
            QCOMPARE(sizes, QList<int>({ 5, 5, 2, 0 }));
        }
        QCOMPARE(recorder.eventsOf(QStringLiteral("MessageNeedManagerAdapter")),
                 QStringList({ "+MessageNeedManagerAdapter", "-MessageNeedManagerAdapter" }));
    }
};

void tst_MessageNeed::runChildScenario(QString const &scenario)
{
    if (scenario == QLatin1String("remove not held")) {
        MessageNeedManager manager;
        MessageNeed holder(&manager), other(&manager);
        holder.addMessageNeeded(info(1));
        // The manager's count allows the decrement; only the need's own list refuses.
        other.removeMessageNeeded(info(1));
    } else if (scenario == QLatin1String("decrement unknown")) {
        MessageNeedManager().decrement(info(1), false);
    } else if (scenario == QLatin1String("process-wide needs at exit")) {
        // Without a manager, a need reports to the process-wide one.
        (new MessageNeed)->addMessageNeeded(info(1));
    } else if (scenario == QLatin1String("process-wide needs withdrawn")) {
        MessageNeed().addMessageNeeded(info(1));
    }
}

MSGAPI_TEST_MAIN_WITH_SCENARIOS(tst_MessageNeed)
#include "tst_messageneed.moc"
