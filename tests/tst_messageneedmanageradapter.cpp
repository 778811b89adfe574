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

using Numbers = QList<unsigned short>;

namespace {

Numbers sorted(Numbers numbers)
{
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

/// The sample dictionary plus message types it lacks, for one test.
struct Dictionary : DictionaryFixture
{
    Dictionary()
    {
        auto add = [this](MessageInfo *info, FormatInfo const *format, FieldValue const &number) {
            info->setFormatInfo(format);
            info->addDiscriminantValue(&mNumber, number);
        };
        add(&mForeign, &mOther, FieldValue::u(4006, 16));
        add(&mRevised, vexa(), FieldValue::u(0x2F5A, 16));
        add(&mSameNumber, vexa(), FieldValue::u(0x0F5A, 16));
        add(&mWide, vexa(), FieldValue::u(4100, 32));
    }

    /// "FORMAT:Name" of the sample dictionary, or the name of an extra message type.
    QVector<MessageInfo const *> lookUp(QStringList const &names) const
    {
        QVector<MessageInfo const *> infos;
        for (QString const &name : names) {
            QStringList const pieces = name.split(QLatin1Char(':'));
            MessageInfo const *info = pieces.size() == 2 ? message(pieces[0], pieces[1]) : nullptr;
            for (MessageInfo const *extra : { &mForeign, &mRevised, &mSameNumber, &mWide }) {
                if (extra->getName() == name)
                    info = extra;
            }
            infos.append(info);
        }
        return infos;
    }

    TestFieldInfo mNumber { QStringLiteral("Number"), FieldType::u(16) };
    FormatInfo mOther { QStringLiteral("OTHER") };
    MessageInfo mForeign { QStringLiteral("Foreign") };
    MessageInfo mRevised { QStringLiteral("Revised") };
    MessageInfo mSameNumber { QStringLiteral("SameNumber") };
    MessageInfo mWide { QStringLiteral("Wide") };
};

} // namespace

class tst_MessageNeedManagerAdapter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void requiredMessages_data();
    void requiredMessages();
    void followsTheManagersOrder();
    void signalsEveryChangeOfTheSet();
    void withoutDiffCorrIn_data();
    void withoutDiffCorrIn();
    void messageWithoutUsableNumber_data();
    void messageWithoutUsableNumber();
};

void tst_MessageNeedManagerAdapter::requiredMessages_data()
{
    QTest::addColumn<QStringList>("needed");
    QTest::addColumn<Numbers>("expected"); // sorted: the adapter keeps the manager's hash order

    QTest::newRow("main messages")
        << QStringList { "VEXA:PosCart", "VEXA:VelGeod" } << Numbers { 4006, 4009 };
    QTest::newRow("two RTCM3 and a CMR fold into one")
        << QStringList { "RTCM3:Type1004", "RTCM3:Type1005", "CMR:CMRObs" } << Numbers { 5919 };
    QTest::newRow("correction input itself and RTCM2")
        << QStringList { "VEXA:DiffCorrIn", "RTCM2:Type1" } << Numbers { 5919 };
    QTest::newRow("corrections next to main messages")
        << QStringList { "RTCM2:Type3", "VEXA:PosGeod", "CMR:CMRRef", "VEXA:MeasEpoch" }
        << Numbers { 4007, 4027, 5919 };
    QTest::newRow("non-main message")
        << QStringList { "VEXA:ReceiverSetup", "VEXA:ReceiverStatus" } << Numbers { 4014 };
    QTest::newRow("other format, same number") << QStringList { "Foreign" } << Numbers();
    QTest::newRow("upper three bits cleared, equal numbers kept")
        << QStringList { "Revised", "SameNumber" } << Numbers { 0xF5A, 0xF5A };
}

void tst_MessageNeedManagerAdapter::requiredMessages()
{
    QFETCH(QStringList, needed);
    QFETCH(Numbers, expected);

    Dictionary dictionary;
    MessageNeedManager manager;
    auto *adapter = new MessageNeedManagerAdapter(&manager);
    {
        MessageNeed need(&manager);
        need.setMessagesNeeded(dictionary.lookUp(needed));
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
    MessageNeed need(&manager);
    need.setMessagesNeeded(QVector<MessageInfo const *>(numbers.keyBegin(), numbers.keyEnd()));
    // Built right in the constructor, from needs that were there before.
    MessageNeedManagerAdapter adapter(&manager);

    Numbers inManagerOrder;
    QList<MessageInfo const *> const needed = manager.getMessagesNeeded();
    for (MessageInfo const *info : needed)
        inManagerOrder.append(numbers.value(info));
    QCOMPARE(adapter.getRequiredMessagesList(), inManagerOrder);
}

void tst_MessageNeedManagerAdapter::signalsEveryChangeOfTheSet()
{
    DictionaryFixture dictionary;
    TracerRecorder recorder;
    {
        MessageNeedManager manager;
        auto *adapter = new MessageNeedManagerAdapter(&manager);
        QCOMPARE(adapter->getMessageNeedManager(), &manager);
        QCOMPARE(adapter->parent(), &manager);
        QSignalSpy spy(adapter, &MessageNeedManagerAdapter::requiredMessagesChanged);
        MessageNeed first(&manager), second(&manager);

        first.addMessageNeeded(dictionary.message("RTCM3", "Type1004"));
        QCOMPARE(spy.count(), 1);
        // The set changes, the list does not: still announced.
        second.addMessageNeeded(dictionary.message("CMR", "CMRObs"));
        QCOMPARE(spy.count(), 2);
        QCOMPARE(adapter->getRequiredMessagesList(), Numbers { 5919 });
        // A second need of a needed type leaves the set as it is.
        second.addMessageNeeded(dictionary.message("RTCM3", "Type1004"));
        first.clearMessagesNeeded();
        QCOMPARE(spy.count(), 2);
        second.clearMessagesNeeded();
        QCOMPARE(spy.count(), 3);
        QCOMPARE(adapter->getRequiredMessagesList(), Numbers());
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

void tst_MessageNeedManagerAdapter::messageWithoutUsableNumber_data()
{
    QTest::addColumn<QString>("needed");

    QTest::newRow("no discriminant") << "VEXA:MeasEpochChannel";
    QTest::newRow("wider than 16 bits") << "Wide";
}

void tst_MessageNeedManagerAdapter::messageWithoutUsableNumber()
{
    QFETCH(QString, needed);

    Dictionary dictionary;
    MessageNeedManager manager;
    MessageNeedManagerAdapter adapter(&manager);
    MessageNeed need(&manager);
    WarningCapture warnings;
    need.setMessagesNeeded(dictionary.lookUp({ needed, QStringLiteral("VEXA:PosCart") }));
    QCOMPARE(warnings.warnings(),
             QStringList { QStringLiteral("MessageNeedManagerAdapter::processMessageSetChange: %1 "
                                          "has no message number")
                               .arg(needed.section(QLatin1Char(':'), -1)) });
    QCOMPARE(adapter.getRequiredMessagesList(), Numbers { 4006 });
}

QTEST_GUILESS_MAIN(tst_MessageNeedManagerAdapter)

#include "tst_messageneedmanageradapter.moc"
