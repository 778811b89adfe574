// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionaryfixture.h"
#include "testfieldinfo.h"
#include "testmessage.h"

#include <dictionarytreemodel.h>
#include <eventlogmodel.h>
#include <messagefieldsmodel.h>
#include <statisticstablemodel.h>

#include <eventlog.h>
#include <formatinfo.h>
#include <messageapi.h>
#include <messageinfo.h>
#include <messagesource.h>
#include <messagestatistics.h>
#include <messagestatisticscoordinator.h>
#include <pathexpression.h>
#include <timesource.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QTest>

namespace {

/// Every shown row below parent as "name/name/...", depth first.
QStringList paths(QAbstractItemModel const &model, QModelIndex const &parent = {},
                  QString const &prefix = {})
{
    QStringList result;
    for (int row = 0; row < model.rowCount(parent); ++row) {
        const QModelIndex index = model.index(row, 0, parent);
        const QString path = prefix + index.data().toString();
        result.append(path);
        result += paths(model, index, path + QLatin1Char('/'));
    }
    return result;
}

/// The texts of a row's cells, from the second column on.
QStringList cells(QAbstractItemModel const &model, QModelIndex const &index)
{
    QStringList result;
    for (int column = 1; column < model.columnCount(index.parent()); ++column)
        result.append(index.sibling(index.row(), column).data().toString());
    return result;
}

/// A message with sub-messages, which TestMessage lacks.
class ParentMessage : public TestMessage
{
public:
    using TestMessage::TestMessage;
    ~ParentMessage() override
    {
        for (Message *subMessage : qAsConst(mSubMessages))
            subMessage->removeReference();
    }
    void addSubMessage(TestMessage *subMessage)
    {
        subMessage->setParentMessage(this);
        subMessage->addReference();
        mSubMessages.append(subMessage);
    }
    QVector<Message const *> getSubMessages() const override
    {
        return QVector<Message const *>(mSubMessages.cbegin(), mSubMessages.cend());
    }
    QVector<Message *> getSubMessages() override { return mSubMessages; }

private:
    QVector<Message *> mSubMessages;
};

} // namespace

class tst_Models : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dictionaryTree_data();
    void dictionaryTree();
    void dictionaryColumns();
    void statisticsTable();
    void eventLog();
    void messageFields();
};

void tst_Models::dictionaryTree_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("field prefix, one match")
        << QString() << QString() << "x"
        << QStringList { "VEXA", "VEXA/PosCart", "VEXA/PosCart/X" };
    QTest::newRow("message prefix and field")
        << "vexa"
        << "pos"
        << "mode"
        << QStringList { "VEXA", "VEXA/PosCart", "VEXA/PosCart/Mode", "VEXA/PosGeod",
                         "VEXA/PosGeod/Mode" };
    QTest::newRow("field of a sub-message, under its parent")
        << QString() << QString() << "cn"
        << QStringList { "VEXA", "VEXA/MeasEpoch", "VEXA/MeasEpoch/Channel",
                         "VEXA/MeasEpoch/Channel/CN0" };
    QTest::newRow("alternatives across formats")
        << "RTCM3|CMR"
        << "Type1005|CMRDesc"
        << "ECEFZ|ShortID" << QStringList { "RTCM3", "RTCM3/Type1005", "RTCM3/Type1005/ECEFZ",
                                            "CMR",   "CMR/CMRDesc",    "CMR/CMRDesc/ShortID" };
    QTest::newRow("nothing matches") << QString() << "none" << QString() << QStringList();
}

void tst_Models::dictionaryTree()
{
    QFETCH(QString, format);
    QFETCH(QString, message);
    QFETCH(QString, field);
    QFETCH(QStringList, expected);

    DictionaryFixture dictionary;
    DictionaryTreeModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QStringList whole = paths(model);
    QVERIFY(whole.contains(QStringLiteral("VEXA/MeasEpoch/Channel/Doppler")));
    QCOMPARE(model.rowCount(), 4);

    PathExpression expression;
    expression.setConsiderSubMessages(true);
    model.setPathExpression(&expression);
    QCOMPARE(paths(model), whole);
    expression.setFormatPartPrefix(format);
    expression.setMessagePartPrefix(message);
    expression.setFieldPartPrefix(field);
    QCOMPARE(paths(model), expected);

    model.setPathExpression(nullptr);
    QCOMPARE(paths(model), whole);
}

void tst_Models::dictionaryColumns()
{
    DictionaryFixture dictionary;
    TestFieldInfo *x
        = dictionary.field(QStringLiteral("VEXA"), QStringLiteral("PosCart"), QStringLiteral("X"));
    x->setShortDescriptiveText(QStringLiteral("Cartesian X"));
    x->setDescriptiveText(QStringLiteral("The X coordinate of the position."));
    x->setUnit(QStringLiteral("meter"));
    x->setScaleFactor(0.0001);
    DictionaryTreeModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);

    const QModelIndex field = model.findFieldInfo(x);
    QCOMPARE(cells(model, field), (QStringList { "Cartesian X", "u8", "m", "0.0001" }));
    QCOMPARE(field.data(Qt::ToolTipRole).toString(), "The X coordinate of the position.");
    QCOMPARE(model.getFieldInfo(field), x);
    QCOMPARE(model.getMessageInfo(field), dictionary.posCart());
    QCOMPARE(model.getFormatInfo(field.parent().parent()), dictionary.vexa());
    QCOMPARE(model.findMessageInfo(dictionary.posCart()), field.parent());
    // A sub-message type is found at the field that embeds it.
    QCOMPARE(model.findMessageInfo(dictionary.measEpochChannel()).data().toString(), "Channel");
    QCOMPARE(cells(model, model.findMessageInfo(dictionary.measEpochChannel())).at(1),
             "MeasEpochChannel");
}

void tst_Models::statisticsTable()
{
    DictionaryFixture dictionary;
    MessageSource source(QStringLiteral("source"), nullptr);
    TimeSource time;
    MessageStatisticsCoordinator coordinator(&source, &time);
    coordinator.enableGapDetection(dictionary.posCart());
    StatisticsTableModel model;
    model.setUpdateInterval(0);
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setCoordinator(&coordinator);
    QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);

    TestMessage posCart(dictionary.posCart());
    auto send = [&](unsigned long long millis) {
        time.setMillis(millis);
        coordinator.closeEpoch();
        Q_EMIT source.newMessage(&posCart);
    };
    send(1000);
    send(2000);
    model.update();
    QCOMPARE(inserts.count(), 1);
    QCOMPARE(model.rowCount(), 1);
    QCOMPARE(cells(model, model.index(0, 0)),
             (QStringList { "PosCart", "", "2", "1/s", "1 Hz/1 s", "1000 ms", "no", "0", "0" }));

    // Two more, one epoch missing between them; an unknown message appears.
    send(3000);
    send(5000);
    Q_EMIT source.newUnknownMessage(dictionary.vexa(), QStringLiteral("4999"));
    model.update();
    QCOMPARE(inserts.count(), 2);
    QCOMPARE(inserts.last().at(1).toInt(), 1);
    QCOMPARE(changes.count(), 1);
    QCOMPARE(changes.last().at(0).toModelIndex(),
             model.index(0, StatisticsTableModel::CountColumn));
    QCOMPARE(changes.last().at(1).toModelIndex(),
             model.index(0, StatisticsTableModel::MissingEpochsColumn));
    QCOMPARE(cells(model, model.index(0, 0)),
             (QStringList { "PosCart", "", "4", "0.8/s", "1 Hz/1 s", "2000 ms", "no", "1", "1" }));
    QCOMPARE(cells(model, model.index(1, 0)),
             (QStringList { "4999", "(unknown)", "1", "-", "-", "-", "no", "0", "0" }));
    QCOMPARE(model.index(0, StatisticsTableModel::GapsColumn).data(Qt::ForegroundRole).isValid(),
             true);
    QCOMPARE(
        model.index(1, StatisticsTableModel::MessageColumn).data(StatisticsTableModel::SortRole),
        QVariant(4999));
    QCOMPARE(model.getMessageStatistics(1)->getMessageName(), "4999");
    QCOMPARE(model.findRow(dictionary.posCart()), 0);

    // Nothing new: no signal at all.
    model.update();
    QCOMPARE(changes.count(), 1);
    QCOMPARE(inserts.count(), 2);

    coordinator.clear();
    model.update();
    QCOMPARE(resets.count(), 1);
    QCOMPARE(model.rowCount(), 0);
    QCOMPARE(model.getMessageStatistics(0), nullptr);
}

void tst_Models::eventLog()
{
    DictionaryFixture dictionary;
    MessageSource source(QStringLiteral("source"), nullptr);
    TimeSource time;
    time.setMillis(1000);
    auto *log = new EventLog(&source, &time);
    source.reportConnectionOpenedEvent();
    EventLogModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setEventLog(log);
    QCOMPARE(model.rowCount(), 1);
    QSignalSpy inserts(&model, &QAbstractItemModel::rowsInserted);

    // A burst becomes one insert, when the timer fires.
    source.reportCRCErrorEvent(dictionary.vexa());
    source.reportEvent(
        MessageApiEvent(MessageApiEvent::DecoderError, QStringLiteral("bad"), nullptr));
    QCOMPARE(model.rowCount(), 1);
    QTRY_COMPARE(model.rowCount(), 3);
    QCOMPARE(inserts.count(), 1);
    QCOMPARE(cells(model, model.index(0, 0)),
             (QStringList { "Connection Opened", "source connection opened" }));
    QCOMPARE(model.index(0, 0).data().toString(), "1980-01-06T00:00:01Z");
    QCOMPARE(cells(model, model.index(2, 0)), (QStringList { "Decoder Error", "bad" }));
    QCOMPARE(model.index(0, 2).data(EventLogModel::IsErrorRole).toBool(), false);
    QCOMPARE(model.index(1, 2).data(EventLogModel::IsErrorRole).toBool(), true);
    QVERIFY(model.index(2, 2).data(Qt::ForegroundRole).isValid());

    log->clear();
    QCOMPARE(model.rowCount(), 0);
    source.reportConnectionClosedEvent();
    model.flush();
    QCOMPARE(model.rowCount(), 1);
    // The log dies with its source; the model keeps what it showed.
    delete log;
    QCOMPARE(model.getEntry(0).event.getTypeString(), "Connection Closed");
}

void tst_Models::messageFields()
{
    DictionaryFixture dictionary;
    auto field = [&](char const *message, char const *name) {
        return dictionary.field(QStringLiteral("VEXA"), QLatin1String(message),
                                QLatin1String(name));
    };
    field("MeasEpochChannel", "CN0")->setUnit(QStringLiteral("decibelhertz"));
    field("MeasEpochChannel", "CN0")->setScaleFactor(0.25);
    field("MeasEpochChannel", "CN0")->setPrecision(1);
    field("MeasEpochChannel", "Doppler")->setConfidential(true);
    auto makeEpoch = [&](int channels) {
        auto *epoch = new ParentMessage(dictionary.measEpoch());
        epoch->setValues(field("MeasEpoch", "N"), { FieldValue::u(channels, 8) });
        for (int channel = 0; channel < channels; ++channel) {
            auto *sub = new TestMessage(dictionary.measEpochChannel());
            sub->setValues(field("MeasEpochChannel", "SVID"), { FieldValue::u(10 + channel, 8) });
            sub->setValues(field("MeasEpochChannel", "CN0"), { FieldValue::u(180, 8) });
            sub->setValues(field("MeasEpochChannel", "Doppler"), { FieldValue::u(7, 8) });
            epoch->addSubMessage(sub);
        }
        epoch->addReference();
        return epoch;
    };
    ParentMessage *first = makeEpoch(2);
    MessageFieldsModel model;
    QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::QtTest);
    model.setMessage(first);
    QCOMPARE(paths(model),
             (QStringList { "N", "MeasEpochChannel [1]", "MeasEpochChannel [1]/SVID",
                            "MeasEpochChannel [1]/Doppler", "MeasEpochChannel [1]/CN0",
                            "MeasEpochChannel [2]", "MeasEpochChannel [2]/SVID",
                            "MeasEpochChannel [2]/Doppler", "MeasEpochChannel [2]/CN0" }));
    const QModelIndex second = model.index(2, 0);
    QCOMPARE(cells(model, model.index(0, 0, second)), (QStringList { "", "11", "11", "0x0b" }));
    QCOMPARE(cells(model, model.index(2, 0, second)),
             (QStringList { "", "45.0 dB-Hz", "180", "0xb4" }));
    QCOMPARE(model.index(1, 2, second).data().toString(), "(confidential)");

    // The model keeps the message alive; one of the same shape changes the cells in place.
    first->removeReference();
    ParentMessage *same = makeEpoch(2);
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    model.setMessage(same);
    QCOMPARE(resets.count(), 0);
    QCOMPARE(changes.count(), 3);
    ParentMessage *other = makeEpoch(1);
    model.setMessage(other);
    QCOMPARE(resets.count(), 1);
    QCOMPARE(model.rowCount(), 2);
    same->removeReference();
    other->removeReference();
    model.setMessage(nullptr);
    QCOMPARE(model.rowCount(), 0);
}

QTEST_MAIN(tst_Models)
#include "tst_models.moc"
