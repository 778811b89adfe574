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

namespace {

using Parts = PathExpression::Parts;
constexpr int F = PathExpression::FormatPart;
constexpr int M = PathExpression::MessagePart;
constexpr int L = PathExpression::FieldPart;
constexpr int All = F | M | L;

enum Operation {
    SetString,
    SetStringWithParts,
    SetFormatPart,
    SetMessagePart,
    SetFieldPart,
    SetStringPrefix,
    SetStringPrefixWithParts,
    SetFormatPartPrefix,
    SetMessagePartPrefix,
    SetFieldPartPrefix,
    SetWildCard,
    SetWildCardWithParts
};

void apply(PathExpression &expression, Operation operation, QString const &text, Parts parts)
{
    switch (operation) {
    case SetString:
        return expression.setString(text);
    case SetStringWithParts:
        return expression.setString(text, parts);
    case SetFormatPart:
        return expression.setFormatPart(text);
    case SetMessagePart:
        return expression.setMessagePart(text);
    case SetFieldPart:
        return expression.setFieldPart(text);
    case SetStringPrefix:
        return expression.setStringPrefix(text);
    case SetStringPrefixWithParts:
        return expression.setStringPrefix(text, parts);
    case SetFormatPartPrefix:
        return expression.setFormatPartPrefix(text);
    case SetMessagePartPrefix:
        return expression.setMessagePartPrefix(text);
    case SetFieldPartPrefix:
        return expression.setFieldPartPrefix(text);
    case SetWildCard:
        return expression.setWildCard();
    case SetWildCardWithParts:
        return expression.setWildCard(parts);
    }
}

/// Logs every change signal of the expression, in emission order, into one list.
QStringList *recordSignals(PathExpression *expression, QStringList *log)
{
    QObject::connect(expression, &PathExpression::formatPartChanged, expression,
                     [log](QString const &p) { log->append(QStringLiteral("format ") + p); });
    QObject::connect(expression, &PathExpression::messagePartChanged, expression,
                     [log](QString const &p) { log->append(QStringLiteral("message ") + p); });
    QObject::connect(expression, &PathExpression::fieldPartChanged, expression,
                     [log](QString const &p) { log->append(QStringLiteral("field ") + p); });
    QObject::connect(expression, &PathExpression::expressionChanged, expression,
                     [log](QString const &e) { log->append(QStringLiteral("expression ") + e); });
    QObject::connect(expression, &PathExpression::partsChanged, expression, [log](Parts parts) {
        log->append(QStringLiteral("parts ") + QString::number(int(parts)));
    });
    QObject::connect(expression, &PathExpression::matchesMayHaveChanged, expression,
                     [log] { log->append(QStringLiteral("matches")); });
    return log;
}

QString partsOf(PathExpression const &expression)
{
    return expression.getFormatPart() + QLatin1Char('|') + expression.getMessagePart()
        + QLatin1Char('|') + expression.getFieldPart();
}

} // namespace

class tst_PathExpression : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void tokens();
    void split_data();
    void split();
    void matchesName_data();
    void matchesName();
    void getString_data();
    void getString();
    void maybeAppendWildCard_data();
    void maybeAppendWildCard();
    void isWildCard_data();
    void isWildCard();

    void metaSignatures_data();
    void metaSignatures();
    void constructors();
    void textConstructorDoesNotAnnounceMatches();
    void setters_data();
    void setters();
    void partsChangedCarriesFlags();
    void filteringSetConnections();
    void tracing();

    void matchingLists_data();
    void matchingLists();
    void tuplesParallelOrUnique();
    void messagesOnlyThroughMatchingFields();
    void filteringSetNarrowsMatches_data();
    void filteringSetNarrowsMatches();
    void completeEditing_data();
    void completeEditing();
    void setupToMatchUnique();
    void setupToMatchUniqueFieldInNoMessage();
    void uniqueLookups_data();
    void uniqueLookups();

private:
    DictionaryFixture *mDictionary = nullptr;
};

void tst_PathExpression::initTestCase()
{
    mDictionary = new DictionaryFixture;
}

void tst_PathExpression::cleanupTestCase()
{
    delete mDictionary;
}

void tst_PathExpression::tokens()
{
    QCOMPARE(PathExpression::getSeparator(), QStringLiteral(":"));
    QCOMPARE(PathExpression::getWildCard(), QStringLiteral("*"));
    QCOMPARE(PathExpression::getOrOperator(), QStringLiteral("|"));
    QCOMPARE(int(PathExpression::AllParts), 7);
}

void tst_PathExpression::split_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<int>("parts");
    QTest::addColumn<QString>("expected"); // format|message|field, starting from "f0|m0|l0"

    QTest::newRow("three parts") << "VEXA:Pos*:Lat" << All << "VEXA|Pos*|Lat";
    QTest::newRow("format only given") << "VEXA" << All << "VEXA|*|*";
    QTest::newRow("empty text") << "" << All << "*|*|*";
    QTest::newRow("empty middle piece") << "A::C" << All << "A|*|C";
    QTest::newRow("pieces after the third ignored") << "A:B:C:D" << All << "A|B|C";
    QTest::newRow("field alone") << "Lat" << L << "f0|m0|Lat";
    QTest::newRow("message and field") << "Pos:Lat" << (M | L) << "f0|Pos|Lat";
    QTest::newRow("format and field") << "A:C" << (F | L) << "A|m0|C";
    QTest::newRow("format and field, two separators") << "A::C" << (F | L) << "A|m0|*";
    QTest::newRow("message alone keeps first piece") << "Pos:Lat" << M << "f0|Pos|l0";
    QTest::newRow("format alone keeps first piece") << "A:B" << F << "A|m0|l0";
    QTest::newRow("field alone, empty") << "" << L << "f0|m0|*";
    QTest::newRow("no parts") << "A:B:C" << 0 << "f0|m0|l0";
}

void tst_PathExpression::split()
{
    QFETCH(QString, expression);
    QFETCH(int, parts);
    QFETCH(QString, expected);

    PathExpression const pathExpression;
    QString format = QStringLiteral("f0");
    QString message = QStringLiteral("m0");
    QString field = QStringLiteral("l0");
    pathExpression.split(expression, format, message, field, Parts(parts));
    QCOMPARE(format + QLatin1Char('|') + message + QLatin1Char('|') + field, expected);
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
    QTest::newRow("inner run") << "PosCartesian"
                               << "*CART*" << true;
    QTest::newRow("exact, other case") << "lat"
                                       << "LAT" << true;
    QTest::newRow("second alternative") << "Lat"
                                        << "Lon|Lat" << true;
    QTest::newRow("empty alternative, name") << "Lat"
                                             << "Lon|" << false;
    QTest::newRow("empty alternative, empty name") << ""
                                                   << "Lon|" << true;
    QTest::newRow("empty pattern, empty name") << ""
                                               << "" << true;
    QTest::newRow("empty pattern, name") << "Lat"
                                         << "" << false;
    QTest::newRow("wildcard, empty name") << ""
                                          << "*" << true;
    QTest::newRow("separator acts as wildcard") << "AB"
                                                << "A:" << true;
    QTest::newRow("separator in the middle") << "AxyzB"
                                             << "A:B" << true;
    QTest::newRow("one character") << "Lat"
                                   << "L?t" << true;
    QTest::newRow("one character, not two") << "Lat"
                                            << "L?" << false;
    QTest::newRow("bracket set") << "Pos3"
                                 << "Pos[0-9]" << true;
    QTest::newRow("bracket set, outside") << "PosX"
                                          << "Pos[0-9]" << false;
    QTest::newRow("no regular expression: plus") << "aab"
                                                 << "a+b" << false;
    QTest::newRow("no regular expression: literal plus") << "a+b"
                                                         << "a+b" << true;
    QTest::newRow("no regular expression: dot") << "axb"
                                                << "a.b" << false;
}

void tst_PathExpression::matchesName()
{
    QFETCH(QString, name);
    QFETCH(QString, pattern);
    QFETCH(bool, matches);

    QCOMPARE(PathExpression().matchesName(name, pattern), matches);
}

void tst_PathExpression::getString_data()
{
    QTest::addColumn<int>("parts");
    QTest::addColumn<QString>("expected");

    QTest::newRow("all") << All << "VEXA:Pos*:Lat";
    QTest::newRow("format and message") << (F | M) << "VEXA:Pos*";
    QTest::newRow("format and field") << (F | L) << "VEXA::Lat";
    QTest::newRow("message and field") << (M | L) << "Pos*:Lat";
    QTest::newRow("format") << F << "VEXA";
    QTest::newRow("message") << M << "Pos*";
    QTest::newRow("field") << L << "Lat";
    QTest::newRow("none") << 0 << "";
}

void tst_PathExpression::getString()
{
    QFETCH(int, parts);
    QFETCH(QString, expected);

    PathExpression const expression(QStringLiteral("VEXA:Pos*:Lat"));
    QCOMPARE(expression.getString(Parts(parts)), expected);
}

void tst_PathExpression::maybeAppendWildCard_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");

    QTest::newRow("name") << "Pos"
                          << "Pos*";
    QTest::newRow("already ending in a wildcard") << "Pos*"
                                                  << "Pos**";
    QTest::newRow("empty") << ""
                           << "*";
    QTest::newRow("multi-part") << "VEXA:Po"
                                << "VEXA:Po*";
}

void tst_PathExpression::maybeAppendWildCard()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);

    QCOMPARE(PathExpression().maybeAppendWildCard(text), expected);
}

void tst_PathExpression::isWildCard_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<int>("parts");
    QTest::addColumn<bool>("expected");

    QTest::newRow("all wildcards") << "*:*:*" << All << true;
    QTest::newRow("doubled wildcard") << "*:**:*" << All << false;
    QTest::newRow("doubled wildcard not asked") << "*:**:*" << (F | L) << true;
    QTest::newRow("prefix pattern") << "*:Pos*:*" << M << false;
    QTest::newRow("format set, field asked") << "VEXA:*:*" << L << true;
    QTest::newRow("format set, format asked") << "VEXA:*:*" << F << false;
    QTest::newRow("no parts asked") << "A:B:C" << 0 << true;
}

void tst_PathExpression::isWildCard()
{
    QFETCH(QString, expression);
    QFETCH(int, parts);
    QFETCH(bool, expected);

    QCOMPARE(PathExpression(expression).isWildCard(Parts(parts)), expected);
}

void tst_PathExpression::metaSignatures_data()
{
    QTest::addColumn<QByteArray>("signature");
    QTest::addColumn<bool>("isSignal");

    // Applications connect by these texts to objects they know only as QObject.
    QTest::newRow("expressionChanged") << QByteArray("expressionChanged(QString)") << true;
    QTest::newRow("formatPartChanged") << QByteArray("formatPartChanged(QString)") << true;
    QTest::newRow("messagePartChanged") << QByteArray("messagePartChanged(QString)") << true;
    QTest::newRow("fieldPartChanged") << QByteArray("fieldPartChanged(QString)") << true;
    QTest::newRow("partsChanged") << QByteArray("partsChanged(QFlags<PathExpression::Part>)")
                                  << true;
    QTest::newRow("messageInfoSelected")
        << QByteArray("messageInfoSelected(const MessageInfo*)") << true;
    QTest::newRow("fieldInfoSelected") << QByteArray("fieldInfoSelected(const FieldInfo*)") << true;
    QTest::newRow("matchesMayHaveChanged") << QByteArray("matchesMayHaveChanged()") << true;
    QTest::newRow("setString") << QByteArray("setString(QString)") << false;
    QTest::newRow("setString with parts")
        << QByteArray("setString(QString,QFlags<PathExpression::Part>)") << false;
    QTest::newRow("setFormatPart") << QByteArray("setFormatPart(QString)") << false;
    QTest::newRow("setMessagePart") << QByteArray("setMessagePart(QString)") << false;
    QTest::newRow("setFieldPart") << QByteArray("setFieldPart(QString)") << false;
    QTest::newRow("setStringPrefix") << QByteArray("setStringPrefix(QString)") << false;
    QTest::newRow("setStringPrefix with parts")
        << QByteArray("setStringPrefix(QString,QFlags<PathExpression::Part>)") << false;
    QTest::newRow("setFormatPartPrefix") << QByteArray("setFormatPartPrefix(QString)") << false;
    QTest::newRow("setMessagePartPrefix") << QByteArray("setMessagePartPrefix(QString)") << false;
    QTest::newRow("setFieldPartPrefix") << QByteArray("setFieldPartPrefix(QString)") << false;
    QTest::newRow("setWildCard with parts")
        << QByteArray("setWildCard(QFlags<PathExpression::Part>)") << false;
    QTest::newRow("setWildCard") << QByteArray("setWildCard()") << false;
    QTest::newRow("completeEditing") << QByteArray("completeEditing()") << false;
}

void tst_PathExpression::metaSignatures()
{
    QFETCH(QByteArray, signature);
    QFETCH(bool, isSignal);

    QMetaObject const &meta = PathExpression::staticMetaObject;
    int const index = meta.indexOfMethod(QMetaObject::normalizedSignature(signature.constData()));
    QVERIFY2(index >= 0, signature.constData());
    QMetaMethod const method = meta.method(index);
    QCOMPARE(method.methodType(), isSignal ? QMetaMethod::Signal : QMetaMethod::Slot);
    QCOMPARE(method.access(), QMetaMethod::Public);
}

void tst_PathExpression::constructors()
{
    PathExpression const fresh;
    QCOMPARE(partsOf(fresh), QStringLiteral("*|*|*"));
    QVERIFY(!fresh.getConsiderSubMessages());
    QVERIFY(!fresh.getFilteringMessageInfoSet());

    PathExpression const fromText(QStringLiteral("VEXA::Lat|Lon"));
    QCOMPARE(partsOf(fromText), QStringLiteral("VEXA|*|Lat|Lon"));
    QVERIFY(!fromText.getConsiderSubMessages());
    QVERIFY(!fromText.getFilteringMessageInfoSet());
}

void tst_PathExpression::textConstructorDoesNotAnnounceMatches()
{
    PathExpression fromText(QStringLiteral("VEXA"));
    QStringList log;
    recordSignals(&fromText, &log);
    fromText.setFieldPart(QStringLiteral("Lat"));
    QCOMPARE(log,
             QStringList({ QStringLiteral("field Lat"), QStringLiteral("expression VEXA:*:Lat"),
                           QStringLiteral("parts 4") }));
}

void tst_PathExpression::setters_data()
{
    QTest::addColumn<QString>("initial");
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("parts");
    QTest::addColumn<QString>("expected");
    QTest::addColumn<QStringList>("log");

    // matchesMayHaveChanged() is emitted from within expressionChanged(), ahead of receivers
    // connected after construction.
    auto log = [](QStringList parts, QString const &expression, int flags) {
        parts << QStringLiteral("matches") << QStringLiteral("expression ") + expression
              << QStringLiteral("parts ") + QString::number(flags);
        return parts;
    };

    QTest::newRow("whole text") << "*:*:*" << int(SetString) << "VEXA:Pos:Lat" << 0
                                << "VEXA:Pos:Lat"
                                << log({ "format VEXA", "message Pos", "field Lat" },
                                       "VEXA:Pos:Lat", All);
    QTest::newRow("only changed parts")
        << "VEXA:Pos:Lat" << int(SetString) << "VEXA:Vel:Lat" << 0 << "VEXA:Vel:Lat"
        << log({ "message Vel" }, "VEXA:Vel:Lat", M);
    QTest::newRow("same text") << "VEXA:Pos:Lat" << int(SetString) << "VEXA:Pos:Lat" << 0
                               << "VEXA:Pos:Lat" << QStringList();
    QTest::newRow("case is a change")
        << "VEXA:Pos:Lat" << int(SetFormatPart) << "vexa" << 0 << "vexa:Pos:Lat"
        << log({ "format vexa" }, "vexa:Pos:Lat", F);
    QTest::newRow("emptied field becomes wildcard")
        << "VEXA:Pos:Lat" << int(SetFieldPart) << "" << 0 << "VEXA:Pos:*"
        << log({ "field *" }, "VEXA:Pos:*", L);
    QTest::newRow("part setter keeps first piece")
        << "VEXA:Vel:Lat" << int(SetMessagePart) << "Pos:Lon" << 0 << "VEXA:Pos:Lat"
        << log({ "message Pos" }, "VEXA:Pos:Lat", M);
    QTest::newRow("format and field flags")
        << "*:*:*" << int(SetStringWithParts) << "A:C" << (F | L) << "A:*:C"
        << log({ "format A", "field C" }, "A:*:C", F | L);
    QTest::newRow("field prefix") << "VEXA:Pos:Lat" << int(SetFieldPartPrefix) << "la" << 0
                                  << "VEXA:Pos:la*" << log({ "field la*" }, "VEXA:Pos:la*", L);
    QTest::newRow("message prefix doubles wildcard")
        << "VEXA:Pos*:Lat" << int(SetMessagePartPrefix) << "Pos*" << 0 << "VEXA:Pos**:Lat"
        << log({ "message Pos**" }, "VEXA:Pos**:Lat", M);
    QTest::newRow("format prefix") << "*:*:*" << int(SetFormatPartPrefix) << "VE" << 0 << "VE*:*:*"
                                   << log({ "format VE*" }, "VE*:*:*", F);
    QTest::newRow("prefix on last of two parts")
        << "*:*:Lat" << int(SetStringPrefix) << "VEXA:Po" << 0 << "VEXA:Po*:*"
        << log({ "format VEXA", "message Po*", "field *" }, "VEXA:Po*:*", All);
    QTest::newRow("prefix with flags")
        << "*:*:*" << int(SetStringPrefixWithParts) << "Pos:La" << (M | L) << "*:Pos:La*"
        << log({ "message Pos", "field La*" }, "*:Pos:La*", M | L);
    QTest::newRow("all wildcards") << "VEXA:Pos:Lat" << int(SetWildCard) << "" << 0 << "*:*:*"
                                   << log({ "format *", "message *", "field *" }, "*:*:*", All);
    QTest::newRow("message wildcard") << "VEXA:Pos:Lat" << int(SetWildCardWithParts) << "" << M
                                      << "VEXA:*:Lat" << log({ "message *" }, "VEXA:*:Lat", M);
    QTest::newRow("wildcards already")
        << "*:*:*" << int(SetWildCard) << "" << 0 << "*:*:*" << QStringList();
}

void tst_PathExpression::setters()
{
    QFETCH(QString, initial);
    QFETCH(int, operation);
    QFETCH(QString, text);
    QFETCH(int, parts);
    QFETCH(QString, expected);
    QFETCH(QStringList, log);

    PathExpression expression;
    expression.setString(initial);
    QStringList recorded;
    recordSignals(&expression, &recorded);

    apply(expression, Operation(operation), text, Parts(parts));
    QCOMPARE(expression.getString(PathExpression::AllParts), expected);
    QCOMPARE(recorded, log);
}

void tst_PathExpression::partsChangedCarriesFlags()
{
    PathExpression expression;
    QSignalSpy partsSpy(&expression, &PathExpression::partsChanged);
    QSignalSpy expressionSpy(&expression, &PathExpression::expressionChanged);
    QVERIFY(partsSpy.isValid());

    expression.setString(QStringLiteral("A:B:C"),
                         PathExpression::FormatPart | PathExpression::FieldPart);
    QCOMPARE(partsSpy.count(), 1);
    QCOMPARE(partsSpy.at(0).at(0).value<Parts>(),
             PathExpression::FormatPart | PathExpression::FieldPart);
    // "A:B:C" with format and field flags reads the field from the third piece after the
    // missing message piece was put in place.
    QCOMPARE(expressionSpy.at(0).at(0).toString(), QStringLiteral("A:*:B"));
}

void tst_PathExpression::filteringSetConnections()
{
    MessageInfo a(QStringLiteral("A"));
    MessageInfo b(QStringLiteral("B"));
    MessageInfoSet first;
    MessageInfoSet second;
    PathExpression expression;
    QSignalSpy spy(&expression, &PathExpression::matchesMayHaveChanged);

    expression.setFilteringMessageInfoSet(&first);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(expression.getFilteringMessageInfoSet(), &first);
    expression.setFilteringMessageInfoSet(&first);
    QCOMPARE(spy.count(), 1);
    first.addMessageInfo(&a);
    QCOMPARE(spy.count(), 2);

    expression.setFilteringMessageInfoSet(&second);
    QCOMPARE(spy.count(), 3);
    first.addMessageInfo(&b);
    QCOMPARE(spy.count(), 3);
    second.addMessageInfo(&b);
    QCOMPARE(spy.count(), 4);

    expression.setFilteringMessageInfoSet(nullptr);
    QCOMPARE(spy.count(), 5);
    QVERIFY(!expression.getFilteringMessageInfoSet());
    second.clear();
    QCOMPARE(spy.count(), 5);
    expression.setFilteringMessageInfoSet(nullptr);
    QCOMPARE(spy.count(), 5);

    // Switching sets must not cut the expression's own change announcements.
    expression.setMessagePart(QStringLiteral("X"));
    QCOMPARE(spy.count(), 6);
}

void tst_PathExpression::tracing()
{
    TracerRecorder recorder;
    {
        PathExpression fresh;
        PathExpression fromText(QStringLiteral("VEXA"));
        QCOMPARE(
            recorder.eventsOf(QStringLiteral("PathExpression")),
            QStringList({ QStringLiteral("+PathExpression"), QStringLiteral("+PathExpression") }));
    }
    QCOMPARE(recorder.eventsOf(QStringLiteral("PathExpression")),
             QStringList({ QStringLiteral("+PathExpression"), QStringLiteral("+PathExpression"),
                           QStringLiteral("-PathExpression"), QStringLiteral("-PathExpression") }));
}

void tst_PathExpression::matchingLists_data()
{
    QTest::addColumn<QString>("expression");
    QTest::addColumn<bool>("considerSubMessages");
    QTest::addColumn<int>("parts");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("fresh object lists each format once")
        << "*:*:*" << false << F << QStringList { "VEXA", "RTCM3", "RTCM2", "CMR" };
    QTest::newRow("message prefix")
        << "VEXA:Pos*" << false << M << QStringList { "PosCart", "PosGeod" };
    QTest::newRow("alternatives, other case")
        << "vexa:velgeod|posgeod" << false << M << QStringList { "PosGeod", "VelGeod" };
    // Repeats are told apart by object: each position message has its own "Mode" field.
    QTest::newRow("fields once per object")
        << "VEXA:Pos*:*" << false
        << L << QStringList { "BlockNumber", "TOW",      "WNc",       "Mode",  "Error",
                              "X",           "Y",        "Z",         "NrSV",  "Datum",
                              "Mode",        "Latitude", "Longitude", "Height" };
    QTest::newRow("shared header field once")
        << "*:*:BlockNumber" << false << L << QStringList { "BlockNumber" };
    QTest::newRow("one row per matching field")
        << "VEXA:*:Mode" << false << All
        << QStringList { "VEXA:PosCart:Mode", "VEXA:PosGeod:Mode", "VEXA:VelCart:Mode",
                         "VEXA:VelGeod:Mode", "VEXA:DiffCorrIn:Mode" };
    QTest::newRow("format and message repeat per field")
        << "VEXA:*Geod:Mode|Height" << false << (F | M)
        << QStringList { "VEXA:PosGeod", "VEXA:PosGeod", "VEXA:VelGeod" };
    QTest::newRow("format and field joined by two separators")
        << "VEXA:PosGeod:L*" << false << (F | L)
        << QStringList { "VEXA::Latitude", "VEXA::Longitude" };
    QTest::newRow("message and field of a shared field")
        << "VEXA:Pos*:BlockNumber" << false << (M | L)
        << QStringList { "PosCart:BlockNumber", "PosGeod:BlockNumber" };
    QTest::newRow("non-main messages take part")
        << "VEXA:ReceiverSetup:*" << false << L
        << QStringList { "BlockNumber", "TOW", "WNc", "MarkerName", "RxVersion" };
    QTest::newRow("sub-messages left out") << "VEXA:*:SVID" << false << All << QStringList();
    QTest::newRow("sub-messages included")
        << "VEXA:*:SVID" << true << All << QStringList { "VEXA:MeasEpochChannel:SVID" };
    QTest::newRow("format alternatives and ranges") << "RTCM?|CMR:Type1|CMR[OR]*:*" << false << M
                                                    << QStringList { "Type1", "CMRObs", "CMRRef" };
    QTest::newRow("no match") << "NOPE" << false << All << QStringList();
    QTest::newRow("no parts requested") << "*:*:*" << false << 0 << QStringList();
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
    QVector<FieldInfo const *> fields { mDictionary->blockNumber() };

    expression.getMatchingTuples(&formats, &messages, &fields, false);
    QCOMPARE(formats, QVector<FormatInfo const *>({ vexa, vexa }));
    QCOMPARE(messages, QVector<MessageInfo const *>({ posGeod, posGeod }));
    QCOMPARE(fields, QVector<FieldInfo const *>({ latitude, longitude }));

    expression.getMatchingTuples(&formats, &messages, &fields, true);
    QCOMPARE(formats, QVector<FormatInfo const *>({ vexa }));
    QCOMPARE(messages, QVector<MessageInfo const *>({ posGeod }));
    QCOMPARE(fields, QVector<FieldInfo const *>({ latitude, longitude }));

    expression.getMatchingTuples(nullptr, &messages, nullptr, false);
    QCOMPARE(messages, QVector<MessageInfo const *>({ posGeod, posGeod }));
    QCOMPARE(expression.getMatchingFieldInfos(),
             QVector<FieldInfo const *>({ latitude, longitude }));
    QCOMPARE(expression.getMatchingMessageInfos(), QVector<MessageInfo const *>({ posGeod }));
}

void tst_PathExpression::messagesOnlyThroughMatchingFields()
{
    FormatInfo extra(QStringLiteral("EXTRA"));
    MessageInfo empty(QStringLiteral("Empty"));
    empty.setFormatInfo(&extra);
    extra.addMessageInfo(&empty);
    MessageInfo filled(QStringLiteral("Filled"));
    filled.setFormatInfo(&extra);
    extra.addMessageInfo(&filled);
    TestFieldInfo value(QStringLiteral("Value"), FieldType::u(8));
    filled.addFieldInfo(&value, 0);

    PathExpression expression(QStringLiteral("EXTRA"));
    QCOMPARE(expression.getMatchingMessagesStringList(), QStringList { QStringLiteral("Filled") });
    expression.setFieldPart(QStringLiteral("Other"));
    QVERIFY(expression.getMatchingMessageInfos().isEmpty());
    QVERIFY(expression.getMatchingFormatsStringList().isEmpty());
}

void tst_PathExpression::filteringSetNarrowsMatches_data()
{
    QTest::addColumn<QStringList>("members"); // VEXA message names; "-" for no set at all
    QTest::addColumn<bool>("considerSubMessages");
    QTest::addColumn<QStringList>("expected");

    QTest::newRow("no set") << QStringList { "-" } << false
                            << QStringList { "PosCart", "PosGeod", "VelCart", "VelGeod" };
    QTest::newRow("empty set") << QStringList() << false << QStringList();
    QTest::newRow("one member") << QStringList { "VelGeod" } << false << QStringList { "VelGeod" };
    QTest::newRow("member outside the pattern")
        << QStringList { "PosCart", "DiffCorrIn" } << false << QStringList { "PosCart" };
    QTest::newRow("sub-message member, sub-messages left out")
        << QStringList { "MeasEpochChannel", "VelCart" } << false << QStringList { "VelCart" };
    QTest::newRow("sub-message member, sub-messages included")
        << QStringList { "MeasEpochChannel", "VelCart" } << true
        << QStringList { "VelCart", "MeasEpochChannel" };
}

void tst_PathExpression::filteringSetNarrowsMatches()
{
    QFETCH(QStringList, members);
    QFETCH(bool, considerSubMessages);
    QFETCH(QStringList, expected);

    MessageInfoSet set;
    for (QString const &name : qAsConst(members)) {
        if (name != QLatin1String("-"))
            set.addMessageInfo(mDictionary->message(QStringLiteral("VEXA"), name));
    }
    PathExpression expression(QStringLiteral("VEXA:Pos*|Vel*|MeasEpochChannel"));
    expression.setConsiderSubMessages(considerSubMessages);
    if (members != QStringList { QStringLiteral("-") })
        expression.setFilteringMessageInfoSet(&set);
    QCOMPARE(expression.getMatchingMessagesStringList(), expected);
    expression.setFilteringMessageInfoSet(nullptr);
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
    QTest::newRow("nothing") << "NOPE" << QStringList();
}

void tst_PathExpression::completeEditing()
{
    QFETCH(QString, expression);
    QFETCH(QStringList, selected);

    PathExpression pathExpression;
    pathExpression.setString(expression);
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
    QCOMPARE(expression.getString(PathExpression::AllParts),
             QStringLiteral("VEXA:MeasEpochChannel:*"));
    QVERIFY(expression.getConsiderSubMessages());
    QCOMPARE(expression.getMatchingMessageInfos(), QVector<MessageInfo const *> { channel });

    TestFieldInfo const *mode = mDictionary->field("VEXA", "DiffCorrIn", "Mode");
    expression.setConsiderSubMessages(false);
    expression.setupToMatchUnique(mode);
    QCOMPARE(expression.getString(PathExpression::AllParts),
             QStringLiteral("VEXA:DiffCorrIn:Mode"));
    QVERIFY(expression.getConsiderSubMessages());

    // A field shared by every block lists all its messages, in the field's order.
    expression.setupToMatchUnique(mDictionary->blockNumber());
    QCOMPARE(expression.getString(PathExpression::AllParts),
             QStringLiteral("VEXA:PosCart|PosGeod|VelCart|VelGeod|ReceiverStatus|MeasEpoch|"
                            "DiffCorrIn|ReceiverSetup:BlockNumber"));
    QCOMPARE(expression.getMatchingFieldInfos(),
             QVector<FieldInfo const *> { mDictionary->blockNumber() });

    TestFieldInfo const *svid = mDictionary->field("VEXA", "MeasEpochChannel", "SVID");
    expression.setupToMatchUnique(svid);
    QCOMPARE(expression.getMatchingFieldInfos(), QVector<FieldInfo const *> { svid });
}

void tst_PathExpression::setupToMatchUniqueFieldInNoMessage()
{
    TestFieldInfo orphan(QStringLiteral("Orphan"), FieldType::u(8));
    PathExpression expression(QStringLiteral("VEXA:Pos:Lat"));
    AssertCapture capture;

    expression.setupToMatchUnique(&orphan);

    QCOMPARE(capture.count(), 1);
    AssertCapture::Report const report = capture.reports().constFirst();
    QCOMPARE(report.text,
             QByteArray("PathExpression::setupToMatchUnique: FieldInfo should at "
                        "least occur in 1 message info"));
    QCOMPARE(report.function, QByteArray("setupToMatchUnique"));
    QCOMPARE(report.file, QByteArray("src/pathexpression"));
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
    QTest::newRow("field, none") << true << "NOPE:x:y"
                                 << "";
    QTest::newRow("message, one") << false << "VEXA:DiffCorrIn"
                                  << "DiffCorrIn";
    QTest::newRow("message, two") << false << "VEXA:Pos*"
                                  << "";
    QTest::newRow("message, sub-message not considered") << false << "VEXA:MeasEpochChannel"
                                                         << "";
    QTest::newRow("message, none") << false << ""
                                   << "";
}

void tst_PathExpression::uniqueLookups()
{
    QFETCH(bool, field);
    QFETCH(QString, expression);
    QFETCH(QString, found);

    TracerRecorder recorder;
    QString name;
    try {
        name = field ? PathExpression::getUniqueFieldInfo(expression)->getName()
                     : PathExpression::getUniqueMessageInfo(expression)->getName();
        QCOMPARE(name, found);
    } catch (MessageApiEvent const &event) {
        QVERIFY2(found.isEmpty(), "unexpected throw");
        QCOMPARE(event.getType(), MessageApiEvent::ClientError);
        QVERIFY(event.isError());
        QCOMPARE(event.getTypeString(), QStringLiteral("Client Error"));
        QVERIFY(!event.getFormat());
        QString const text = field ? QStringLiteral("Unable to resolve the following path "
                                                    "expression to a single Field Info: %1")
                                   : QStringLiteral("Unable to resolve the following path "
                                                    "expression to a single Message Info: %1");
        QCOMPARE(event.getMessage(), text.arg(expression));
    }
    QCOMPARE(recorder.eventsOf(QStringLiteral("PathExpression")),
             QStringList({ QStringLiteral("+PathExpression"), QStringLiteral("-PathExpression") }));
}

QTEST_GUILESS_MAIN(tst_PathExpression)

#include "tst_pathexpression.moc"
