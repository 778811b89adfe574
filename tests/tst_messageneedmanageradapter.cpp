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

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <memory>

using Numbers = QList<unsigned short>;

namespace {

QString const diffCorrInMissing = QStringLiteral(
    "MessageNeedManagerAdapter::MessageNeedManagerAdapter: VEXA DiffCorrIn message info not "
    "available!");

Numbers sorted(Numbers numbers)
{
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

/// Message types outside the sample dictionary, alive for one test.
struct ExtraMessages
{
    explicit ExtraMessages(FormatInfo const *vexa)
    {
        foreign.setFormatInfo(&other);
        foreign.addDiscriminantValue(&number, FieldValue::u(4006, 16));
        revised.setFormatInfo(vexa);
        revised.addDiscriminantValue(&number, FieldValue::u(0x2F5A, 16));
        sameNumber.setFormatInfo(vexa);
        sameNumber.addDiscriminantValue(&number, FieldValue::u(0x0F5A, 16));
        wide.setFormatInfo(vexa);
        wide.addDiscriminantValue(&number, FieldValue::u(4100, 32));
    }

    MessageInfo const *find(QString const &name) const
    {
        for (MessageInfo const *info : { &foreign, &revised, &sameNumber, &wide, &formatless }) {
            if (info->getName() == name)
                return info;
        }
        return nullptr;
    }

    TestFieldInfo number { QStringLiteral("Number"), FieldType::u(16) };
    FormatInfo other { QStringLiteral("OTHER") };
    MessageInfo foreign { QStringLiteral("Foreign") };
    MessageInfo revised { QStringLiteral("Revised") };
    MessageInfo sameNumber { QStringLiteral("SameNumber") };
    MessageInfo wide { QStringLiteral("Wide") };
    MessageInfo formatless { QStringLiteral("Formatless") };
};

/// "FORMAT:Name" of the sample dictionary, or "Name" of an extra message type.
QVector<MessageInfo const *> lookUp(DictionaryFixture const &dictionary, ExtraMessages const &extra,
                                    QStringList const &names)
{
    QVector<MessageInfo const *> infos;
    for (QString const &name : names) {
        QStringList const pieces = name.split(QLatin1Char(':'));
        MessageInfo const *info
            = pieces.size() == 2 ? dictionary.message(pieces[0], pieces[1]) : extra.find(name);
        Q_ASSERT(info);
        infos.append(info);
    }
    return infos;
}

} // namespace

class tst_MessageNeedManagerAdapter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requiredMessages_data();
    void requiredMessages();
    void followsTheManagersOrder();
    void signalsEveryChangeOfTheSet();
    void listValidRightAfterConstruction();
    void withoutDiffCorrIn_data();
    void withoutDiffCorrIn();
    void messageWithoutUsableNumber_data();
    void messageWithoutUsableNumber();
    void tracing();
};

void tst_MessageNeedManagerAdapter::requiredMessages_data()
{
    QTest::addColumn<QStringList>("needed");
    QTest::addColumn<Numbers>("expected"); // sorted: the adapter keeps the manager's hash order

    QTest::newRow("nothing") << QStringList() << Numbers();
    QTest::newRow("main messages")
        << QStringList { "VEXA:PosCart", "VEXA:VelGeod" } << Numbers { 4006, 4009 };
    QTest::newRow("two RTCM3 and a CMR fold into one")
        << QStringList { "RTCM3:Type1004", "RTCM3:Type1005", "CMR:CMRObs" } << Numbers { 5919 };
    QTest::newRow("every correction format")
        << QStringList { "RTCM2:Type1", "RTCM3:MSM7", "CMR:CMRDesc" } << Numbers { 5919 };
    QTest::newRow("correction input itself and RTCM2")
        << QStringList { "VEXA:DiffCorrIn", "RTCM2:Type1" } << Numbers { 5919 };
    QTest::newRow("corrections next to main messages")
        << QStringList { "RTCM2:Type3", "VEXA:PosGeod", "CMR:CMRRef", "VEXA:MeasEpoch" }
        << Numbers { 4007, 4027, 5919 };
    QTest::newRow("non-main message") << QStringList { "VEXA:ReceiverSetup" } << Numbers();
    QTest::newRow("non-main next to main")
        << QStringList { "VEXA:ReceiverSetup", "VEXA:ReceiverStatus" } << Numbers { 4014 };
    QTest::newRow("other format, same number") << QStringList { "Foreign" } << Numbers();
    QTest::newRow("no format") << QStringList { "Formatless" } << Numbers();
    QTest::newRow("upper three bits cleared") << QStringList { "Revised" } << Numbers { 0xF5A };
    QTest::newRow("equal numbers kept twice")
        << QStringList { "Revised", "SameNumber" } << Numbers { 0xF5A, 0xF5A };
}

void tst_MessageNeedManagerAdapter::requiredMessages()
{
    QFETCH(QStringList, needed);
    QFETCH(Numbers, expected);

    DictionaryFixture dictionary;
    ExtraMessages extra(dictionary.vexa());
    MessageNeedManager manager;
    auto *adapter = new MessageNeedManagerAdapter(&manager);
    {
        MessageNeed need(&manager);
        need.setMessagesNeeded(lookUp(dictionary, extra, needed));
        QCOMPARE(sorted(adapter->getRequiredMessagesList()), expected);
    }
    QCOMPARE(adapter->getRequiredMessagesList(), Numbers());
}

void tst_MessageNeedManagerAdapter::followsTheManagersOrder()
{
    DictionaryFixture dictionary;
    QHash<MessageInfo const *, unsigned short> const numbers {
        { dictionary.posCart(), 4006 },        { dictionary.posGeod(), 4007 },
        { dictionary.velCart(), 4008 },        { dictionary.velGeod(), 4009 },
        { dictionary.receiverStatus(), 4014 }, { dictionary.measEpoch(), 4027 },
    };
    MessageNeedManager manager;
    MessageNeedManagerAdapter adapter(&manager);
    MessageNeed need(&manager);
    need.setMessagesNeeded(QVector<MessageInfo const *>(numbers.keyBegin(), numbers.keyEnd()));

    Numbers inManagerOrder;
    QList<MessageInfo const *> const needed = manager.getMessagesNeeded();
    for (MessageInfo const *info : needed)
        inManagerOrder.append(numbers.value(info));
    QCOMPARE(adapter.getRequiredMessagesList(), inManagerOrder);
}

void tst_MessageNeedManagerAdapter::signalsEveryChangeOfTheSet()
{
    DictionaryFixture dictionary;
    MessageNeedManager manager;
    MessageNeedManagerAdapter adapter(&manager);
    QCOMPARE(adapter.getMessageNeedManager(), &manager);
    QCOMPARE(adapter.parent(), &manager);
    QSignalSpy spy(&adapter, &MessageNeedManagerAdapter::requiredMessagesChanged);
    MessageNeed first(&manager);
    MessageNeed second(&manager);

    first.addMessageNeeded(dictionary.message("RTCM3", "Type1004"));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(adapter.getRequiredMessagesList(), Numbers { 5919 });

    // The set changes, the list does not: still announced.
    second.addMessageNeeded(dictionary.message("CMR", "CMRObs"));
    QCOMPARE(spy.count(), 2);
    QCOMPARE(adapter.getRequiredMessagesList(), Numbers { 5919 });

    // A second need of a needed type leaves the set as it is.
    second.addMessageNeeded(dictionary.message("RTCM3", "Type1004"));
    QCOMPARE(spy.count(), 2);
    first.clearMessagesNeeded();
    QCOMPARE(spy.count(), 2);

    second.clearMessagesNeeded();
    QCOMPARE(spy.count(), 3);
    QCOMPARE(adapter.getRequiredMessagesList(), Numbers());
}

void tst_MessageNeedManagerAdapter::listValidRightAfterConstruction()
{
    DictionaryFixture dictionary;
    MessageNeedManager manager;
    MessageNeed need(&manager);
    need.setMessagesNeeded({ dictionary.velCart(), dictionary.message("RTCM2", "Type18") });

    MessageNeedManagerAdapter adapter(&manager);
    QCOMPARE(sorted(adapter.getRequiredMessagesList()), Numbers({ 4008, 5919 }));
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

    // A dictionary of its own, so that the correction input is missing or ambiguous.
    TestFieldInfo number(QStringLiteral("BlockNumber"), FieldType::u(16));
    FormatInfo vexa(QStringLiteral("VEXA"));
    FormatInfo rtcm3(QStringLiteral("RTCM3"));
    MessageInfo position(QStringLiteral("PosCart"));
    position.setFormatInfo(&vexa);
    position.addDiscriminantValue(&number, FieldValue::u(4006, 16));
    MessageInfo correction(QStringLiteral("Type1004"));
    correction.setFormatInfo(&rtcm3);
    std::vector<std::unique_ptr<MessageInfo>> diffCorrIns;
    for (int i = 0; i < diffCorrInCount; ++i) {
        diffCorrIns.emplace_back(new MessageInfo(QStringLiteral("DiffCorrIn")));
        diffCorrIns.back()->setFormatInfo(&vexa);
        diffCorrIns.back()->addFieldInfo(&number, 0);
        vexa.addMessageInfo(diffCorrIns.back().get());
    }

    MessageNeedManager manager;
    WarningCapture warnings;
    MessageNeedManagerAdapter adapter(&manager);
    QCOMPARE(warnings.warnings(), QStringList { diffCorrInMissing });

    MessageNeed need(&manager);
    need.setMessagesNeeded({ &correction, &position });
    QCOMPARE(adapter.getRequiredMessagesList(), Numbers { 4006 });
}

void tst_MessageNeedManagerAdapter::messageWithoutUsableNumber_data()
{
    QTest::addColumn<QString>("needed");
    QTest::addColumn<QString>("warning");

    QTest::newRow("no discriminant")
        << "VEXA:MeasEpochChannel"
        << "MessageNeedManagerAdapter::processMessageSetChange: MeasEpochChannel has no message "
           "number";
    QTest::newRow("wider than 16 bits")
        << "Wide"
        << "MessageNeedManagerAdapter::processMessageSetChange: Wide has no message number";
}

void tst_MessageNeedManagerAdapter::messageWithoutUsableNumber()
{
    QFETCH(QString, needed);
    QFETCH(QString, warning);

    DictionaryFixture dictionary;
    ExtraMessages extra(dictionary.vexa());
    MessageNeedManager manager;
    MessageNeedManagerAdapter adapter(&manager);
    MessageNeed need(&manager);
    WarningCapture warnings;
    need.setMessagesNeeded(lookUp(dictionary, extra, { needed, QStringLiteral("VEXA:PosCart") }));
    QCOMPARE(warnings.warnings(), QStringList { warning });
    QCOMPARE(adapter.getRequiredMessagesList(), Numbers { 4006 });
}

void tst_MessageNeedManagerAdapter::tracing()
{
    DictionaryFixture dictionary;
    TracerRecorder recorder;
    {
        MessageNeedManager manager;
        new MessageNeedManagerAdapter(&manager);
        QCOMPARE(recorder.eventsOf(QStringLiteral("MessageNeedManagerAdapter")),
                 QStringList { QStringLiteral("+MessageNeedManagerAdapter") });
    }
    QCOMPARE(recorder.eventsOf(QStringLiteral("MessageNeedManagerAdapter")),
             QStringList({ QStringLiteral("+MessageNeedManagerAdapter"),
                           QStringLiteral("-MessageNeedManagerAdapter") }));
}

QTEST_GUILESS_MAIN(tst_MessageNeedManagerAdapter)

#include "tst_messageneedmanageradapter.moc"
