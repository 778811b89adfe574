// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"
#include "formatinfo.h"
#include "messageinfo.h"
#include "messageneed.h"
#include "messageneedmanager.h"
#include "messageneedmanageradapter.h"
#include "testfieldinfo.h"
#include "tracerrecorder.h"
#include "warningcapture.h"

#include <QTest>

#include <algorithm>

using Numbers = QList<unsigned short>;

class tst_MessageNeedManagerAdapter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requiredMessages_data();
    void requiredMessages();
    void followsEveryChangeInTheManagersOrder();
    void withoutDiffCorrIn_data();
    void withoutDiffCorrIn();
};

void tst_MessageNeedManagerAdapter::requiredMessages_data()
{
    QTest::addColumn<QString>("needed"); // "FORMAT:Name" of the fixture or an extra type's name
    QTest::addColumn<Numbers>("expected"); // sorted: the adapter keeps the manager's hash order
    QTest::addColumn<QString>("warnedAbout"); // the type reported without a message number
    auto row = [](char const *name, char const *needed, Numbers expected, char const *warned) {
        QTest::newRow(name) << needed << expected << warned;
    };

    row("main messages", "VEXA:PosCart VEXA:VelGeod", { 4006, 4009 }, "");
    row("two RTCM3 and a CMR fold into one", "RTCM3:Type1004 RTCM3:Type1005 CMR:CMRObs", { 5919 },
        "");
    row("correction input itself and RTCM2", "VEXA:DiffCorrIn RTCM2:Type1", { 5919 }, "");
    row("corrections next to main messages", "RTCM2:Type3 VEXA:PosGeod CMR:CMRRef VEXA:MeasEpoch",
        { 4007, 4027, 5919 }, "");
    row("non-main message", "VEXA:ReceiverSetup VEXA:ReceiverStatus", { 4014 }, "");
    row("other format, same number", "Foreign", {}, "");
    row("upper three bits cleared, equal numbers kept", "Revised SameNumber", { 0xF5A, 0xF5A }, "");
    row("no discriminant", "VEXA:MeasEpochChannel VEXA:PosCart", { 4006 }, "MeasEpochChannel");
    row("wider than 16 bits", "Wide VEXA:PosCart", { 4006 }, "Wide");
}

void tst_MessageNeedManagerAdapter::requiredMessages()
{
    QFETCH(QString, needed);
    QFETCH(Numbers, expected);
    QFETCH(QString, warnedAbout);

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
        MessageInfo const *info = dictionary.message(name.section(':', 0, 0), name.section(':', 1));
        for (MessageInfo const &extra : extras)
            info = extra.getName() == name ? &extra : info;
        infos.append(info);
    }

    MessageNeedManager manager;
    auto *adapter = new MessageNeedManagerAdapter(&manager);
    {
        MessageNeed need(&manager);
        WarningCapture warnings;
        need.setMessagesNeeded(infos);
        QCOMPARE(warnings.warnings().join(QLatin1Char('\n')),
                 warnedAbout.isEmpty() ? QString()
                                       : QStringLiteral("MessageNeedManagerAdapter::"
                                                        "processMessageSetChange: %1 has no "
                                                        "message number")
                                             .arg(warnedAbout));
        Numbers list = adapter->getRequiredMessagesList();
        std::sort(list.begin(), list.end());
        QCOMPARE(list, expected);
    }
    QCOMPARE(adapter->getRequiredMessagesList(), Numbers());
}

void tst_MessageNeedManagerAdapter::followsEveryChangeInTheManagersOrder()
{
    DictionaryFixture dictionary;
    QHash<MessageInfo const *, unsigned short> const numbers {
        { dictionary.posCart(), 4006 },        { dictionary.posGeod(), 4007 },
        { dictionary.velCart(), 4008 },        { dictionary.velGeod(), 4009 },
        { dictionary.receiverStatus(), 4014 }, { dictionary.measEpoch(), 4027 },
    };
    TracerRecorder recorder;
    {
        MessageNeedManager manager;
        MessageNeed need(&manager), other(&manager);
        need.setMessagesNeeded(QVector<MessageInfo const *>(numbers.keyBegin(), numbers.keyEnd()));
        // Built right in the constructor, from needs that were there before.
        auto *adapter = new MessageNeedManagerAdapter(&manager);
        QCOMPARE(adapter->parent(), &manager);
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
        QCOMPARE(sizes, QList<int>({ 7, 7, 2, 0 }));
    }
    QCOMPARE(recorder.eventsOf(QStringLiteral("MessageNeedManagerAdapter")),
             QStringList({ "+MessageNeedManagerAdapter", "-MessageNeedManagerAdapter" }));
}

void tst_MessageNeedManagerAdapter::withoutDiffCorrIn_data()
{
    QTest::addColumn<int>("diffCorrInCount");
    QTest::newRow("none") << 0;
    QTest::newRow("ambiguous") << 2;
}

void tst_MessageNeedManagerAdapter::withoutDiffCorrIn()
{
    QFETCH(int, diffCorrInCount);

    // A dictionary of its own, in which the correction input is missing or ambiguous.
    TestFieldInfo number(QStringLiteral("BlockNumber"), FieldType::u(16));
    FormatInfo vexa(QStringLiteral("VEXA")), rtcm3(QStringLiteral("RTCM3"));
    MessageInfo position(QStringLiteral("PosCart")), correction(QStringLiteral("Type1004"));
    position.setFormatInfo(&vexa);
    position.addDiscriminantValue(&number, FieldValue::u(4006, 16));
    correction.setFormatInfo(&rtcm3);
    MessageInfo diffCorrIns[2] { MessageInfo(QStringLiteral("DiffCorrIn")),
                                 MessageInfo(QStringLiteral("DiffCorrIn")) };
    for (int i = 0; i < diffCorrInCount; ++i) {
        diffCorrIns[i].addFieldInfo(&number, 0);
        vexa.addMessageInfo(&diffCorrIns[i]);
    }

    MessageNeedManager manager;
    WarningCapture warnings;
    MessageNeedManagerAdapter adapter(&manager);
    QCOMPARE(warnings.warnings(),
             QStringList { "MessageNeedManagerAdapter::MessageNeedManagerAdapter: VEXA DiffCorrIn "
                           "message info not available!" });
    MessageNeed need(&manager);
    need.setMessagesNeeded({ &correction, &position });
    QCOMPARE(adapter.getRequiredMessagesList(), Numbers { 4006 });
}

QTEST_GUILESS_MAIN(tst_MessageNeedManagerAdapter)
#include "tst_messageneedmanageradapter.moc"
