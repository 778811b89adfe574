// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "dictionaryfixture.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "messageinfoset.h"
#include "pathexpression.h"
#include "testfieldinfo.h"
#include "tracerrecorder.h"

#include <QSignalSpy>
#include <QTest>

using Parts = PathExpression::Parts;

namespace {

constexpr int F = PathExpression::FormatPart;
constexpr int M = PathExpression::MessagePart;
constexpr int L = PathExpression::FieldPart;
constexpr int All = F | M | L;

/// Logs every change signal of the expression into one list, in emission order.
void recordSignals(PathExpression *e, QStringList *log)
{
    auto entry = [log](char const *name) {
        return [log, name](QString const &text) { log->append(QLatin1String(name) + text); };
    };
    QObject::connect(e, &PathExpression::formatPartChanged, e, entry("format "));
    QObject::connect(e, &PathExpression::messagePartChanged, e, entry("message "));
    QObject::connect(e, &PathExpression::fieldPartChanged, e, entry("field "));
    QObject::connect(e, &PathExpression::expressionChanged, e, entry("expression "));
    QObject::connect(e, &PathExpression::partsChanged, e, [log](Parts parts) {
        log->append(QStringLiteral("parts ") + QString::number(int(parts)));
    });
    QObject::connect(e, &PathExpression::matchesMayHaveChanged, e,
                     [log] { log->append(QStringLiteral("matches")); });
}

} // namespace

class tst_PathExpression : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { mDictionary = new DictionaryFixture; }
    void cleanupTestCase() { delete mDictionary; }

    void split_data();
    void split();
    void matchesName_data();
    void matchesName();
    void getStringAndWildCards_data();
    void getStringAndWildCards();
    void constructors();
    void setters_data();
    void setters();
    void filteringSetConnections();

    void matchingLists_data();
    void matchingLists();
    void tuplesParallelOrUnique();
    void messagesOnlyThroughMatchingFields();
    void completeEditing_data();
    void completeEditing();
    void setupToMatchUnique();
    void setupToMatchUniqueFieldInNoMessage();
    void uniqueLookups_data();
    void uniqueLookups();

private:
    DictionaryFixture *mDictionary = nullptr;
};

void tst_PathExpression::split_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<int>("parts");
    QTest::addColumn<QString>("expected"); // format:message:field, starting from "f0:m0:l0"

    QTest::newRow("format only given") << "VEXA" << All << "VEXA:*:*";
    QTest::newRow("empty text") << "" << All << "*:*:*";
    QTest::newRow("empty middle piece") << "A::C" << All << "A:*:C";
    QTest::newRow("pieces after the third ignored") << "A:B:C:D" << All << "A:B:C";
    QTest::newRow("field alone") << "Lat" << L << "f0:m0:Lat";
    QTest::newRow("message and field") << "Pos:Lat" << (M | L) << "f0:Pos:Lat";
    QTest::newRow("format and field") << "A:C" << (F | L) << "A:m0:C";
    QTest::newRow("format and field, two separators") << "A::C" << (F | L) << "A:m0:*";
    QTest::newRow("message alone keeps first piece") << "Pos:Lat" << M << "f0:Pos:l0";
}

void tst_PathExpression::split()
{
    QFETCH(QString, expression);
    QFETCH(int, parts);
    QFETCH(QString, expected);

    QString format = QStringLiteral("f0"), message = QStringLiteral("m0"),
            field = QStringLiteral("l0");
    PathExpression().split(expression, format, message, field, Parts(parts));
    QCOMPARE(QStringList({ format, message, field }).join(QLatin1Char(':')), expected);
}

void tst_PathExpression::matchesName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<bool>("matches");

    QTest::newRow("prefix, other case") << "PosCartesian"
                                        << "pos*" << true;
    QTest::newRow("anchored at the end") << "PosCartesian"
                                         << "Pos" << false;
    QTest::newRow("anchored at the start") << "PosCartesian"
                                           << "Cart*" << false;
    QTest::newRow("second alternative") << "Lat"
                                        << "Lon|Lat" << true;
    QTest::newRow("empty alternative, name") << "Lat"
                                             << "Lon|" << false;
    QTest::newRow("empty alternative, empty name") << ""
                                                   << "Lon|" << true;
    QTest::newRow("separator acts as wildcard") << "AxyzB"
                                                << "A:B" << true;
    QTest::newRow("one character") << "Lat"
                                   << "L?t" << true;
    QTest::newRow("one character, not two") << "Lat"
                                            << "L?" << false;
    QTest::newRow("bracket set") << "Pos3"
                                 << "Pos[0-9]" << true;
    QTest::newRow("bracket set, outside") << "PosX"
                                          << "Pos[0-9]" << false;
    QTest::newRow("no regular expression") << "aab"
                                           << "a+b" << false;
}

void tst_PathExpression::matchesName()
{
    QFETCH(QString, name);
    QFETCH(QString, pattern);
    QFETCH(bool, matches);

    QCOMPARE(PathExpression().matchesName(name, pattern), matches);
}

void tst_PathExpression::getStringAndWildCards_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<int>("parts");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isWildCard");

    QTest::newRow("format and message") << "VEXA:Pos*:Lat" << (F | M) << "VEXA:Pos*" << false;
    QTest::newRow("format and field") << "VEXA:*:*" << (F | L) << "VEXA::*" << false;
    QTest::newRow("message and field") << "VEXA:*:*" << (M | L) << "*:*" << true;
    QTest::newRow("doubled wildcard") << "*:**:*" << All << "*:**:*" << false;
    QTest::newRow("no parts") << "A:B:C" << 0 << "" << true;
}

void tst_PathExpression::getStringAndWildCards()
{
    QFETCH(QString, expression);
    QFETCH(int, parts);
    QFETCH(QString, text);
    QFETCH(bool, isWildCard);

    PathExpression const pathExpression(expression);
    QCOMPARE(pathExpression.getString(Parts(parts)), text);
    QCOMPARE(pathExpression.isWildCard(Parts(parts)), isWildCard);
    QCOMPARE(pathExpression.maybeAppendWildCard(text), text + QLatin1Char('*'));
}

void tst_PathExpression::constructors()
{
    TracerRecorder recorder;
    {
        PathExpression const fresh;
        QCOMPARE(fresh.getString(PathExpression::AllParts), QStringLiteral("*:*:*"));
        QCOMPARE(int(PathExpression::AllParts), 7);
        QVERIFY(!fresh.getConsiderSubMessages() && !fresh.getFilteringMessageInfoSet());

        // Built from text, the object announces text changes but not, through them, matches.
        PathExpression fromText(QStringLiteral("VEXA::Lat|Lon"));
        QCOMPARE(fromText.getString(PathExpression::AllParts), QStringLiteral("VEXA:*:Lat|Lon"));
        QVERIFY(!fromText.getConsiderSubMessages() && !fromText.getFilteringMessageInfoSet());
        QStringList log;
        recordSignals(&fromText, &log);
        fromText.setFieldPart(QStringLiteral("Lat"));
        QCOMPARE(log, QStringList({ "field Lat", "expression VEXA:*:Lat", "parts 4" }));
    }
    QCOMPARE(recorder.eventsOf(QStringLiteral("PathExpression")),
             QStringList(
                 { "+PathExpression", "+PathExpression", "-PathExpression", "-PathExpression" }));
}

void tst_PathExpression::setters_data()
{
    QTest::addColumn<QString>("initial");
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("parts"); // -1: the overload without flags
    QTest::addColumn<QStringList>("log");

    // matchesMayHaveChanged() comes from within expressionChanged(), ahead of the receivers
    // connected after construction.
    auto log = [](QStringList changes, QString const &expression, int flags) {
        return changes << QStringLiteral("matches") << QStringLiteral("expression ") + expression
                       << QStringLiteral("parts ") + QString::number(flags);
    };

    QTest::newRow("whole text") << "*:*:*" << QByteArray("setString") << "VEXA:Pos:Lat" << -1
                                << log({ "format VEXA", "message Pos", "field Lat" },
                                       "VEXA:Pos:Lat", All);
    QTest::newRow("only changed parts")
        << "VEXA:Pos:Lat" << QByteArray("setString") << "vexa:Pos:Lat" << -1
        << log({ "format vexa" }, "vexa:Pos:Lat", F);
    QTest::newRow("same text") << "VEXA:Pos:Lat" << QByteArray("setString") << "VEXA:Pos:Lat" << -1
                               << QStringList();
    QTest::newRow("emptied field") << "VEXA:Pos:Lat" << QByteArray("setFieldPart") << "" << -1
                                   << log({ "field *" }, "VEXA:Pos:*", L);
    QTest::newRow("part setter keeps first piece")
        << "VEXA:Vel:Lat" << QByteArray("setMessagePart") << "Pos:Lon" << -1
        << log({ "message Pos" }, "VEXA:Pos:Lat", M);
    QTest::newRow("format and field flags")
        << "*:*:*" << QByteArray("setString") << "A:C" << (F | L)
        << log({ "format A", "field C" }, "A:*:C", F | L);
    QTest::newRow("field prefix") << "VEXA:Pos:Lat" << QByteArray("setFieldPartPrefix") << "la"
                                  << -1 << log({ "field la*" }, "VEXA:Pos:la*", L);
    QTest::newRow("prefix doubles wildcard")
        << "VEXA:Pos*:Lat" << QByteArray("setMessagePartPrefix") << "Pos*" << -1
        << log({ "message Pos**" }, "VEXA:Pos**:Lat", M);
    QTest::newRow("prefix on the last part")
        << "*:*:Lat" << QByteArray("setStringPrefix") << "VEXA:Po" << -1
        << log({ "format VEXA", "message Po*", "field *" }, "VEXA:Po*:*", All);
    QTest::newRow("prefix with flags")
        << "*:*:*" << QByteArray("setStringPrefix") << "Pos:La" << (M | L)
        << log({ "message Pos", "field La*" }, "*:Pos:La*", M | L);
    QTest::newRow("all wildcards") << "VEXA:Pos:Lat" << QByteArray("setWildCard") << "" << -1
                                   << log({ "format *", "message *", "field *" }, "*:*:*", All);
    QTest::newRow("message wildcard") << "VEXA:Pos:Lat" << QByteArray("setWildCard") << "" << M
                                      << log({ "message *" }, "VEXA:*:Lat", M);
}

void tst_PathExpression::setters()
{
    QFETCH(QString, initial);
    QFETCH(QByteArray, slot);
    QFETCH(QString, text);
    QFETCH(int, parts);
    QFETCH(QStringList, log);

    PathExpression expression;
    expression.setString(initial);
    QStringList recorded;
    recordSignals(&expression, &recorded);
    QSignalSpy partsSpy(&expression, SIGNAL(partsChanged(QFlags<PathExpression::Part>)));

    // Invoked by name, as an application that only knows a QObject would.
    bool const wildCard = slot == "setWildCard";
    Parts const flags(parts);
    bool invoked;
    if (wildCard && parts < 0)
        invoked = QMetaObject::invokeMethod(&expression, slot.constData());
    else if (wildCard)
        invoked = QMetaObject::invokeMethod(&expression, slot.constData(),
                                            Q_ARG(QFlags<PathExpression::Part>, flags));
    else if (parts < 0)
        invoked = QMetaObject::invokeMethod(&expression, slot.constData(), Q_ARG(QString, text));
    else
        invoked = QMetaObject::invokeMethod(&expression, slot.constData(), Q_ARG(QString, text),
                                            Q_ARG(QFlags<PathExpression::Part>, flags));
    QVERIFY(invoked);
    QCOMPARE(recorded, log);
    if (!log.isEmpty())
        QCOMPARE(partsSpy.takeFirst().at(0).value<Parts>(), Parts(log.last().mid(6).toInt()));
}

void tst_PathExpression::filteringSetConnections()
{
    MessageInfo a(QStringLiteral("A"));
    MessageInfoSet first, second;
    PathExpression expression;
    QSignalSpy spy(&expression, &PathExpression::matchesMayHaveChanged);

    expression.setFilteringMessageInfoSet(&first);
    expression.setFilteringMessageInfoSet(&first);
    QCOMPARE(spy.count(), 1);
    first.addMessageInfo(&a);
    QCOMPARE(spy.count(), 2);

    expression.setFilteringMessageInfoSet(&second);
    first.removeMessageInfo(&a);
    QCOMPARE(spy.count(), 3);
    second.addMessageInfo(&a);
    QCOMPARE(spy.count(), 4);

    expression.setFilteringMessageInfoSet(nullptr);
    second.clear();
    QCOMPARE(spy.count(), 5);
    QVERIFY(!expression.getFilteringMessageInfoSet());
    // Dropping the set must not cut the expression's own link to matchesMayHaveChanged().
    expression.setMessagePart(QStringLiteral("X"));
    QCOMPARE(spy.count(), 6);
}

void tst_PathExpression::matchingLists_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<bool>("considerSubMessages");
    QTest::addColumn<int>("parts");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("fresh object lists each format once")
        << "*:*:*" << false << F << QStringList { "VEXA", "RTCM3", "RTCM2", "CMR" };
    QTest::newRow("alternatives, other case")
        << "vexa:velgeod|posgeod" << false << M << QStringList { "PosGeod", "VelGeod" };
    // Repeats are told apart by object: each position message has its own "Mode" field.
    QTest::newRow("fields once per object")
        << "VEXA:Pos*:*" << false
        << L << QStringList { "BlockNumber", "TOW",      "WNc",       "Mode",  "Error",
                              "X",           "Y",        "Z",         "NrSV",  "Datum",
                              "Mode",        "Latitude", "Longitude", "Height" };
    QTest::newRow("one row per matching field")
        << "VEXA:*Geod:Mode|Height" << false << All
        << QStringList { "VEXA:PosGeod:Mode", "VEXA:PosGeod:Height", "VEXA:VelGeod:Mode" };
    QTest::newRow("format and message repeat per field")
        << "VEXA:*Geod:Mode|Height" << false << (F | M)
        << QStringList { "VEXA:PosGeod", "VEXA:PosGeod", "VEXA:VelGeod" };
    QTest::newRow("format and field joined by two separators")
        << "VEXA:PosGeod:L*" << false << (F | L)
        << QStringList { "VEXA::Latitude", "VEXA::Longitude" };
    QTest::newRow("shared field, one row per message")
        << "VEXA:Pos*:BlockNumber" << false << (M | L)
        << QStringList { "PosCart:BlockNumber", "PosGeod:BlockNumber" };
    QTest::newRow("sub-messages left out") << "VEXA:*:SVID" << false << All << QStringList();
    QTest::newRow("sub-messages included")
        << "VEXA:*:SVID" << true << All << QStringList { "VEXA:MeasEpochChannel:SVID" };
    QTest::newRow("format alternatives and sets")
        << "RTCM?|CMR:Type1|CMR[OR]*" << false << M << QStringList { "Type1", "CMRObs", "CMRRef" };
}

void tst_PathExpression::matchingLists()
{
    QFETCH(QString, expression);
    QFETCH(bool, considerSubMessages);
    QFETCH(int, parts);
    QFETCH(QStringList, expected);

    PathExpression pathExpression;
    pathExpression.setString(expression);
    pathExpression.setConsiderSubMessages(considerSubMessages);
    QCOMPARE(pathExpression.getMatchingExpressionsStringList(Parts(parts)), expected);
    if (parts == F)
        QCOMPARE(pathExpression.getMatchingFormatsStringList(), expected);
    if (parts == M)
        QCOMPARE(pathExpression.getMatchingMessagesStringList(), expected);
    if (parts == L)
        QCOMPARE(pathExpression.getMatchingFieldsStringList(), expected);
}

void tst_PathExpression::tuplesParallelOrUnique()
{
    FormatInfo const *vexa = mDictionary->vexa();
    MessageInfo const *posGeod = mDictionary->posGeod();
    FieldInfo const *latitude = mDictionary->field("VEXA", "PosGeod", "Latitude");
    FieldInfo const *longitude = mDictionary->field("VEXA", "PosGeod", "Longitude");
    PathExpression const expression(QStringLiteral("VEXA:PosGeod:L*"));

    // Leftovers in the vectors must go.
    QVector<FormatInfo const *> formats { mDictionary->cmr() };
    QVector<MessageInfo const *> messages { mDictionary->posCart() };
    QVector<FieldInfo const *> fields { latitude };

    expression.getMatchingTuples(&formats, &messages, &fields, false);
    QCOMPARE(formats, QVector<FormatInfo const *>({ vexa, vexa }));
    QCOMPARE(messages, QVector<MessageInfo const *>({ posGeod, posGeod }));
    QCOMPARE(fields, QVector<FieldInfo const *>({ latitude, longitude }));

    expression.getMatchingTuples(&formats, &messages, nullptr, true);
    QCOMPARE(formats, QVector<FormatInfo const *>({ vexa }));
    QCOMPARE(messages, QVector<MessageInfo const *>({ posGeod }));
    QCOMPARE(expression.getMatchingMessageInfos(), messages);
    QCOMPARE(expression.getMatchingFieldInfos(),
             QVector<FieldInfo const *>({ latitude, longitude }));

    // A filtering set that is present but empty lets nothing match.
    MessageInfoSet set;
    PathExpression filtered(QStringLiteral("VEXA"));
    filtered.setFilteringMessageInfoSet(&set);
    QVERIFY(filtered.getMatchingFieldInfos().isEmpty());
    set.setContents({ mDictionary->velGeod(), mDictionary->cmr()->getMessageInfos().first() });
    QCOMPARE(filtered.getMatchingMessageInfos(),
             QVector<MessageInfo const *>({ mDictionary->velGeod() }));
    filtered.setFilteringMessageInfoSet(nullptr);
}

void tst_PathExpression::messagesOnlyThroughMatchingFields()
{
    FormatInfo extra(QStringLiteral("EXTRA"));
    MessageInfo empty(QStringLiteral("Empty")), filled(QStringLiteral("Filled"));
    extra.addMessageInfo(&empty);
    extra.addMessageInfo(&filled);
    TestFieldInfo value(QStringLiteral("Value"), FieldType::u(8));
    filled.addFieldInfo(&value, 0);

    PathExpression expression(QStringLiteral("EXTRA"));
    QCOMPARE(expression.getMatchingMessagesStringList(), QStringList { "Filled" });
    expression.setFieldPart(QStringLiteral("Other"));
    QVERIFY(expression.getMatchingFormatsStringList().isEmpty());
}

void tst_PathExpression::completeEditing_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QStringList>("selected");

    QTest::newRow("one message, one field")
        << "VEXA:PosGeod:Height" << QStringList { "message PosGeod", "field Height" };
    QTest::newRow("one message, several fields")
        << "VEXA:PosGeod:*" << QStringList { "message PosGeod" };
    QTest::newRow("one field, several messages")
        << "VEXA:*:BlockNumber" << QStringList { "field BlockNumber" };
}

void tst_PathExpression::completeEditing()
{
    QFETCH(QString, expression);
    QFETCH(QStringList, selected);

    PathExpression pathExpression(expression);
    QStringList log;
    connect(&pathExpression, &PathExpression::messageInfoSelected, this,
            [&log](MessageInfo const *m) { log << QStringLiteral("message ") + m->getName(); });
    connect(&pathExpression, &PathExpression::fieldInfoSelected, this,
            [&log](FieldInfo const *f) { log << QStringLiteral("field ") + f->getName(); });
    pathExpression.completeEditing();
    QCOMPARE(log, selected);
}

void tst_PathExpression::setupToMatchUnique()
{
    PathExpression expression(QStringLiteral("VEXA:Pos:Lat"));
    expression.setupToMatchUnique(mDictionary->rtcm2());
    QCOMPARE(expression.getString(PathExpression::AllParts), QStringLiteral("RTCM2:*:*"));
    QVERIFY(!expression.getConsiderSubMessages());

    MessageInfo const *channel = mDictionary->measEpochChannel();
    expression.setupToMatchUnique(channel);
    QCOMPARE(expression.getMatchingMessageInfos(), QVector<MessageInfo const *> { channel });
    QVERIFY(expression.getConsiderSubMessages());

    // A field shared by every block lists all its messages, in the field's order.
    expression.setConsiderSubMessages(false);
    expression.setupToMatchUnique(mDictionary->blockNumber());
    QCOMPARE(expression.getString(PathExpression::AllParts),
             QStringLiteral("VEXA:PosCart|PosGeod|VelCart|VelGeod|ReceiverStatus|MeasEpoch|"
                            "DiffCorrIn|ReceiverSetup:BlockNumber"));
    QVERIFY(expression.getConsiderSubMessages());

    FieldInfo const *svid = mDictionary->field("VEXA", "MeasEpochChannel", "SVID");
    expression.setupToMatchUnique(svid);
    QCOMPARE(expression.getMatchingFieldInfos(), QVector<FieldInfo const *> { svid });
}

void tst_PathExpression::setupToMatchUniqueFieldInNoMessage()
{
    TestFieldInfo orphan(QStringLiteral("Orphan"), FieldType::u(8));
    PathExpression expression(QStringLiteral("VEXA:Pos:Lat"));
    AssertCapture capture;

    expression.setupToMatchUnique(&orphan);
    QCOMPARE(capture.texts(),
             QStringList { "PathExpression::setupToMatchUnique: FieldInfo should "
                           "at least occur in 1 message info" });
    QCOMPARE(capture.functions(), QStringList { "setupToMatchUnique" });
    QCOMPARE(expression.getString(PathExpression::AllParts), QStringLiteral("*:*:*"));
    QVERIFY(!expression.getConsiderSubMessages());
}

void tst_PathExpression::uniqueLookups_data()
{
    QTest::addColumn<bool>("field"); // false: message look-up
    QTest::addColumn<QString>("expression");
    QTest::addColumn<QString>("found"); // name of the result; empty when it must throw

    QTest::newRow("field, one") << true << "VEXA:PosGeod:Height"
                                << "Height";
    QTest::newRow("field, two") << true << "VEXA:PosGeod:L*"
                                << "";
    QTest::newRow("field, one object in many messages") << true << "*:*:WNc"
                                                        << "WNc";
    QTest::newRow("message, one") << false << "VEXA:DiffCorrIn"
                                  << "DiffCorrIn";
    QTest::newRow("message, sub-message not considered") << false << "VEXA:MeasEpochChannel"
                                                         << "";
    QTest::newRow("message, none") << false << "NOPE"
                                   << "";
}

void tst_PathExpression::uniqueLookups()
{
    QFETCH(bool, field);
    QFETCH(QString, expression);
    QFETCH(QString, found);

    TracerRecorder recorder;
    try {
        QCOMPARE(field ? PathExpression::getUniqueFieldInfo(expression)->getName()
                       : PathExpression::getUniqueMessageInfo(expression)->getName(),
                 found);
    } catch (MessageApiEvent const &event) {
        QVERIFY2(found.isEmpty(), "unexpected throw");
        QVERIFY(event.isError() && !event.getFormat());
        QCOMPARE(event.getTypeString(), QStringLiteral("Client Error"));
        QCOMPARE(event.getMessage(),
                 QStringLiteral("Unable to resolve the following path expression to a single %1 "
                                "Info: %2")
                     .arg(field ? QStringLiteral("Field") : QStringLiteral("Message"), expression));
    }
    // The temporary expression is gone also after a throw.
    QCOMPARE(recorder.eventsOf(QStringLiteral("PathExpression")),
             QStringList({ "+PathExpression", "-PathExpression" }));
}

QTEST_GUILESS_MAIN(tst_PathExpression)

#include "tst_pathexpression.moc"
