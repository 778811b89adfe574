// SPDX-License-Identifier: LGPL-2.1-or-later
#include "assertcapture.h"
#include "dictionaryfixture.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "literalreference.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "messageinfoset.h"
#include "pathexpression.h"
#include "testfieldinfo.h"
#include "tracerrecorder.h"

#include <QSignalSpy>
#include <QTest>
#include <QTimer>

#include <memory>

using Parts = PathExpression::Parts;
using Messages = QVector<MessageInfo const *>;
using Fields = QVector<FieldInfo const *>;
using InfoSet = QSet<MessageInfo const *>;

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
        log->append(QStringLiteral("parts %1").arg(int(parts)));
    });
    QObject::connect(e, &PathExpression::matchesMayHaveChanged, e,
                     [log] { log->append(QStringLiteral("matches")); });
}

struct Tuples
{
    QVector<FormatInfo const *> formats;
    QVector<MessageInfo const *> messages;
    QVector<FieldInfo const *> fields;
};

// The registry walk as it literally reads, with literalMatchesName() and repeats searched
// from the end.
Tuples literalWalk(PathExpression const &expression, bool unique)
{
    Tuples tuples;
    auto append = [unique](auto &vector, auto item) {
        if (!unique || vector.lastIndexOf(item) < 0)
            vector.append(item);
    };
    for (FormatInfo const *format : FormatInfo::getFormatInfos()) {
        if (!literalMatchesName(format->getName(), expression.getFormatPart()))
            continue;
        QVector<MessageInfo const *> const messages = expression.getConsiderSubMessages()
            ? format->getMessageInfosIncludingSubMessages()
            : format->getMessageInfos();
        for (MessageInfo const *message : messages) {
            if (!literalMatchesName(message->getName(), expression.getMessagePart()))
                continue;
            for (FieldInfo const *field : message->getFieldInfos()) {
                if (!literalMatchesName(field->getName(), expression.getFieldPart()))
                    continue;
                append(tuples.formats, format);
                append(tuples.messages, message);
                append(tuples.fields, field);
            }
        }
    }
    return tuples;
}

/// Compares the evaluation with the literal walk, both with and without repeats.
void compareWithLiteralWalk(PathExpression const &expression)
{
    for (bool unique : { false, true }) {
        Tuples const literal = literalWalk(expression, unique);
        // Leftovers in the vectors must go; a vector not asked for is left alone.
        Tuples evaluated { { nullptr }, { nullptr }, { nullptr } };
        expression.getMatchingTuples(&evaluated.formats, &evaluated.messages,
                                     unique ? nullptr : &evaluated.fields, unique);
        QCOMPARE(evaluated.formats, literal.formats);
        QCOMPARE(evaluated.messages, literal.messages);
        QCOMPARE(evaluated.fields, unique ? Fields { nullptr } : literal.fields);
        if (unique) {
            QCOMPARE(expression.getMatchingMessageInfos(), literal.messages);
            QCOMPARE(expression.getMatchingFieldInfos(), literal.fields);
        }
    }
}

} // namespace

class tst_PathExpression : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { mDictionary = new DictionaryFixture; }
    void cleanupTestCase() { delete mDictionary; }

    void syntax_data()
    {
        QTest::addColumn<QString>("expression");
        QTest::addColumn<int>("parts");
        QTest::addColumn<QString>("split"); // format:message:field, starting from "f0:m0:l0"
        QTest::addColumn<QString>("text"); // getString(parts) of an object built from expression
        QTest::addColumn<bool>("isWildCard");
        auto row = [](char const *name, char const *expression, int parts, char const *split,
                      char const *text, bool isWildCard) {
            QTest::newRow(name) << expression << parts << split << text << isWildCard;
        };

        row("format only given", "VEXA", All, "VEXA:*:*", "VEXA:*:*", false);
        row("pieces after the third ignored", "A:B:C:D", All, "A:B:C", "A:B:C", false);
        row("doubled wildcard", "*:**:*", All, "*:**:*", "*:**:*", false);
        row("field alone", "Lat", L, "f0:m0:Lat", "*", true);
        row("message and field, wildcards", "VEXA:*:*", M | L, "f0:VEXA:*", "*:*", true);
        row("format and message", "VEXA:Pos*:Lat", F | M, "VEXA:Pos*:l0", "VEXA:Pos*", false);
        row("format and field", "A:C", F | L, "A:m0:C", "A::*", false);
        // getString() writes "format::field", which split() does not read back as that field.
        row("format and field, two separators", "A::C", F | L, "A:m0:*", "A::C", false);
        row("message alone keeps first piece", "Pos:Lat", M, "f0:Pos:l0", "Lat", false);
        row("no parts", "A:B:C", 0, "f0:m0:l0", "", true);
    }

    void syntax()
    {
        QFETCH(QString, expression);
        QFETCH(int, parts);
        QFETCH(QString, split);
        QFETCH(QString, text);
        QFETCH(bool, isWildCard);

        QString format = QStringLiteral("f0"), message = QStringLiteral("m0"),
                field = QStringLiteral("l0");
        PathExpression const pathExpression(expression);
        pathExpression.split(expression, format, message, field, Parts(parts));
        QCOMPARE(QStringList({ format, message, field }).join(QLatin1Char(':')), split);
        QCOMPARE(pathExpression.getString(Parts(parts)), text);
        QCOMPARE(pathExpression.isWildCard(Parts(parts)), isWildCard);
        // Also a text that already ends with the wildcard gets one more.
        QCOMPARE(pathExpression.maybeAppendWildCard(text), text + QLatin1Char('*'));
    }

    void matchesNameAsWildcardRegExp_data()
    {
        // Every pattern is tried on every name.
        QTest::addColumn<QStringList>("patterns");
        QTest::addColumn<QStringList>("names");
        auto utf8
            = [](char const *text) { return QString::fromUtf8(text).split(QLatin1Char(' ')); };

        QTest::newRow("wildcards, separators and alternatives over letters")
            << QStringList { "L?t", "??",  "L:t", "::",  "",       "|",    "|Lat",
                             "lAt", "la*", "*AT", "*a*", "*a**t*", "Lon|", "A:B" }
            << QStringList { "Lat",  "lat",    "LAT",  "",    "L",     "Lt",
                             "Laat", "PosLat", "Lat3", "Lon", "AxyzB", "AB" };
        QTest::newRow("sets, also empty, unterminated or with brackets in them")
            << QStringList { "Pos[0-9]", "Pos[^0-9]", "[z-a]x", "[-a][b-]", "[a^]",    "[A-C]at",
                             "[^a]",     "[[a]",      "[]a]",   "Pos[]",    "Pos[0-9", "Pos]" }
            << QStringList { "Pos3", "PosX", "Pos", "Pos10", "pos0",  "bx",   "Zx",     "0x",
                             "x",    "-b",   "a-",  "A-",    "ab",    "--",   "bb",     "a",
                             "^",    "b",    "A",   "B",     "bat",   "Cat",  "dat",    "[at",
                             "[",    "]",    "]a]", "",      "Pos[]", "Pos]", "Pos[0-9" };
        QTest::newRow("regular expression characters and backslashes") << QStringList {
            ".|a+b|(x)|$x|^x|x{1}|a.b", "*.*|*(*|*\\*", "a\\*b", "a\\b", "a\\", "[\\d]"
        } << QStringList { ".",      "x",    "a+b", "aab",  "(x)",  "$x", "^x",  "x{1}",  "xx",
                           "a.b",    "axb",  "ab",  "f(x)", "a\\b", "$",  "a*b", "a\\*b", "a\\xb",
                           "a\\\\b", "a\\B", "a\\", "a",    "\\",   "d",  "1",   "D" };
        QTest::newRow("non-ASCII letters and case")
            << utf8("[\xc3\xa9-\xc3\xab]t k|i stra\xc3\x9f* ?|??")
            << utf8("\xc3\x89t \xc3\xa8t et \xe2\x84\xaa \xc4\xb0 K I STRA\xc3\x9f"
                    "E STRASSE Stra\xe1\xba\x9e"
                    "e \xf0\x9f\x98\x80 a");
    }

    void matchesNameAsWildcardRegExp()
    {
        QFETCH(QStringList, patterns);
        QFETCH(QStringList, names);

        PathExpression const expression;
        for (QString const &pattern : patterns) {
            for (QString const &name : names) {
                bool const expected = literalMatchesName(name, pattern);
                QVERIFY2(
                    expression.matchesName(name, pattern) == expected,
                    qPrintable(QStringLiteral("pattern \"%1\", name \"%2\"").arg(pattern, name)));
            }
        }
    }

    void setters_data()
    {
        QTest::addColumn<QByteArray>("slot"); // invoked on "VEXA:Pos:Lat"
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("parts"); // -1: the overload without flags
        QTest::addColumn<QStringList>("log");
        QTest::addColumn<bool>("fromText"); // built by the constructor that reads a text
        // matchesMayHaveChanged() comes from within expressionChanged(), ahead of the receivers
        // connected after construction; an object built from a text does not emit it.
        auto row
            = [](char const *name, char const *slot, char const *text, int parts,
                 char const *changes, char const *expression, int changed, bool fromText = false) {
                  QStringList log
                      = QString::fromLatin1(changes).split(QLatin1Char(','), Qt::SkipEmptyParts);
                  if (changed && !fromText)
                      log << "matches";
                  if (changed)
                      log << QStringLiteral("expression ") + QLatin1String(expression)
                          << QStringLiteral("parts %1").arg(changed);
                  QTest::newRow(name) << QByteArray(slot) << text << parts << log << fromText;
              };

        row("whole text", "setString", "A:B:C", -1, "format A,message B,field C", "A:B:C", All);
        row("only changed parts", "setString", "vexa:Pos:Lat", -1, "format vexa", "vexa:Pos:Lat",
            F);
        row("same text", "setString", "VEXA:Pos:Lat", -1, "", "", 0);
        row("first piece only", "setMessagePart", "V:L", -1, "message V", "VEXA:V:Lat", M);
        row("format and field flags", "setString", "A:C", F | L, "format A,field C", "A:Pos:C",
            F | L);
        row("field prefix", "setFieldPartPrefix", "la", -1, "field la*", "VEXA:Pos:la*", L);
        row("prefix on a wildcard", "setMessagePartPrefix", "P*", -1, "message P**", "VEXA:P**:Lat",
            M);
        row("last part prefix", "setStringPrefix", "VEXA:P", -1, "message P*,field *", "VEXA:P*:*",
            M | L);
        row("prefix, flags", "setStringPrefix", "V:L", M | L, "message V,field L*", "VEXA:V:L*",
            M | L);
        row("all wildcards", "setWildCard", "", -1, "format *,message *,field *", "*:*:*", All);
        row("message wildcard", "setWildCard", "", M, "message *", "VEXA:*:Lat", M);
        row("built from text", "setFieldPart", "Lon", -1, "field Lon", "VEXA:Pos:Lon", L, true);
    }

    void setters()
    {
        QFETCH(QByteArray, slot);
        QFETCH(QString, text);
        QFETCH(int, parts);
        QFETCH(QStringList, log);
        QFETCH(bool, fromText);

        std::unique_ptr<PathExpression> const owner(
            fromText ? new PathExpression(QStringLiteral("VEXA:Pos:Lat")) : new PathExpression);
        PathExpression &expression = *owner;
        expression.setString(QStringLiteral("VEXA:Pos:Lat"));
        QStringList recorded;
        recordSignals(&expression, &recorded);
        QSignalSpy partsSpy(&expression, SIGNAL(partsChanged(QFlags<PathExpression::Part>)));

        // Invoked by name, as an application that only knows a QObject would.
        Parts const flags(parts);
        char const *name = slot.constData();
        bool const invoked = slot == "setWildCard"
            ? (parts < 0 ? QMetaObject::invokeMethod(&expression, name)
                         : QMetaObject::invokeMethod(&expression, name,
                                                     Q_ARG(QFlags<PathExpression::Part>, flags)))
            : (parts < 0 ? QMetaObject::invokeMethod(&expression, name, Q_ARG(QString, text))
                         : QMetaObject::invokeMethod(&expression, name, Q_ARG(QString, text),
                                                     Q_ARG(QFlags<PathExpression::Part>, flags)));
        QVERIFY(invoked);
        QCOMPARE(recorded, log);
        if (!log.isEmpty())
            QCOMPARE(partsSpy.takeFirst().at(0).value<Parts>(), Parts(log.last().mid(6).toInt()));
    }

    void filteringSet()
    {
        MessageInfo const infos[3] { MessageInfo(QStringLiteral("A")),
                                     MessageInfo(QStringLiteral("B")),
                                     MessageInfo(QStringLiteral("C")) };
        auto set = [&infos](QString const &names) {
            InfoSet result;
            for (QChar name : names)
                result.insert(&infos[name.toLatin1() - 'A']);
            return result;
        };
        PathExpression expression;
        MessageInfoSet infoSet, other;
        QSignalSpy changes(&infoSet, &MessageInfoSet::changed);
        QSignalSpy matches(&expression, &PathExpression::matchesMayHaveChanged);
        expression.setFilteringMessageInfoSet(&infoSet);
        expression.setFilteringMessageInfoSet(&infoSet); // the same set again
        QStringList contents, emissions;
        // "+B" add, "-B" remove, "=BC" set the contents, "clear"; a step that changes nothing must
        // not emit.
        for (QString const &step :
             QStringLiteral("+A +B +B -C -B =BA =AB =A =C clear clear").split(' ')) {
            if (step == QLatin1String("clear"))
                infoSet.clear();
            else if (step.startsWith(QLatin1Char('+')))
                infoSet.addMessageInfo(*set(step.mid(1)).cbegin());
            else if (step.startsWith(QLatin1Char('-')))
                infoSet.removeMessageInfo(*set(step.mid(1)).cbegin());
            else
                infoSet.setContents(set(step.mid(1)));
            QStringList names;
            for (MessageInfo const *info : infoSet.getMessageInfos())
                names.append(info->getName());
            names.sort();
            contents.append(names.join(QString()));
            emissions.append(QString::number(changes.count()));
        }
        QCOMPARE(contents.join(QLatin1Char(' ')), QStringLiteral("A AB AB AB A AB AB A C  "));
        QCOMPARE(emissions.join(QLatin1Char(' ')), QStringLiteral("1 2 2 2 3 4 4 5 6 7 7"));
        // The expression passes on every change of its set, and only of its current one.
        QCOMPARE(matches.count(), 1 + 7);
        expression.setFilteringMessageInfoSet(&other);
        infoSet.addMessageInfo(&infos[0]);
        other.addMessageInfo(&infos[0]);
        expression.setFilteringMessageInfoSet(nullptr);
        other.clear();
        // Dropping the set must not cut the expression's own link to matchesMayHaveChanged().
        expression.setMessagePart(QStringLiteral("X"));
        QCOMPARE(matches.count(), 8 + 4);

        // A set that is present but empty lets nothing match; its contents restrict the matches.
        PathExpression filtered(QStringLiteral("VEXA"));
        filtered.setFilteringMessageInfoSet(&other);
        QVERIFY(filtered.getMatchingFieldInfos().isEmpty());
        other.setContents(
            { mDictionary->velGeod(), mDictionary->cmr()->getMessageInfos().first() });
        QCOMPARE(filtered.getMatchingMessageInfos(), Messages({ mDictionary->velGeod() }));
    }

    void matchingLists_data()
    {
        QTest::addColumn<QString>("expression");
        QTest::addColumn<bool>("considerSubMessages");
        QTest::addColumn<int>("parts");
        QTest::addColumn<QString>("expected"); // also compared with the literal walk
        auto row = [](char const *name, char const *expression, bool subMessages, int parts,
                      char const *expected) {
            QTest::newRow(name) << expression << subMessages << parts << expected;
        };

        row("fresh object lists each format once", "*:*:*", false, F, "VEXA RTCM3 RTCM2 CMR");
        // Repeats are told apart by object: each position message has its own "Mode" field.
        row("fields once per object", "VEXA:Pos*:*", false, L,
            "BlockNumber TOW WNc Mode Error X Y Z NrSV Datum Mode Latitude Longitude Height");
        row("one row per matching field", "VEXA:*Geod:Mode|Height", false, All,
            "VEXA:PosGeod:Mode VEXA:PosGeod:Height VEXA:VelGeod:Mode");
        row("format and message repeat per field", "VEXA:*Geod:Mode|Height", false, F | M,
            "VEXA:PosGeod VEXA:PosGeod VEXA:VelGeod");
        row("format and field joined by two separators", "VEXA:PosGeod:L*", false, F | L,
            "VEXA::Latitude VEXA::Longitude");
        row("messages only through a matching field", "*:*:Latitude", false, M, "PosGeod");
        row("sub-messages left out", "VEXA:*:SVID", false, All, "");
        row("sub-messages included", "VEXA:*:SVID", true, All, "VEXA:MeasEpochChannel:SVID");
        row("alternatives and sets", "rtcm?|CMR:type1|CMR[OR]*", false, M, "Type1 CMRObs CMRRef");
        row("no field", "*:*:NoSuchField", false, All, "");
        // Only compared with the literal walk.
        row("everything with sub-messages", "*:*:*", true, -1, "");
        row("alternatives on every part", "VEXA|CMR:Pos*|CMR*|Meas*:*a*|T?pe", false, -1, "");
        row("sub-message and header fields", "VEXA:*:SVID|CN0|BlockNumber", true, -1, "");
        row("shared header fields", "*:*:StationID|MessageNumber|TOW", false, -1, "");
        row("sets and separators", "R*:Type[0-9]*:*I:", false, -1, "");
        row("patterns left to the regular expression", "V\\*|*:Pos]|*:[]X]|*", true, -1, "");
    }

    void matchingLists()
    {
        QFETCH(QString, expression);
        QFETCH(bool, considerSubMessages);
        QFETCH(int, parts);
        QFETCH(QString, expected);

        PathExpression pathExpression;
        pathExpression.setString(expression);
        pathExpression.setConsiderSubMessages(considerSubMessages);
        QStringList const list = expected.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (parts >= 0)
            QCOMPARE(pathExpression.getMatchingExpressionsStringList(Parts(parts)), list);
        if (parts == F)
            QCOMPARE(pathExpression.getMatchingFormatsStringList(), list);
        if (parts == M)
            QCOMPARE(pathExpression.getMatchingMessagesStringList(), list);
        if (parts == L)
            QCOMPARE(pathExpression.getMatchingFieldsStringList(), list);
        compareWithLiteralWalk(pathExpression);
    }

    void selectionSetupAndUniqueLookups()
    {
        // completeEditing() announces only what matches uniquely, the message first.
        PathExpression expression;
        QStringList log;
        connect(&expression, &PathExpression::messageInfoSelected, this,
                [&log](MessageInfo const *m) { log << QStringLiteral("message ") + m->getName(); });
        connect(&expression, &PathExpression::fieldInfoSelected, this,
                [&log](FieldInfo const *f) { log << QStringLiteral("field ") + f->getName(); });
        for (char const *text : { "VEXA:PosGeod:Height", "VEXA:PosGeod:*", "VEXA:*:BlockNumber" }) {
            expression.setString(QLatin1String(text));
            expression.completeEditing();
        }
        QCOMPARE(log,
                 QStringList({ "message PosGeod", "field Height", "message PosGeod",
                               "field BlockNumber" }));

        // The whole expression, and "+sub" when sub-messages take part.
        auto state = [&expression] {
            return expression.getString(PathExpression::AllParts)
                + (expression.getConsiderSubMessages() ? QStringLiteral(" +sub") : QString());
        };
        expression.setupToMatchUnique(mDictionary->rtcm2());
        QCOMPARE(state(), QStringLiteral("RTCM2:*:*"));
        expression.setupToMatchUnique(mDictionary->measEpochChannel());
        QCOMPARE(state(), QStringLiteral("VEXA:MeasEpochChannel:* +sub"));
        // A field shared by every block lists all its messages, in the field's order.
        expression.setConsiderSubMessages(false);
        expression.setupToMatchUnique(mDictionary->blockNumber());
        QCOMPARE(state(),
                 QStringLiteral("VEXA:PosCart|PosGeod|VelCart|VelGeod|ReceiverStatus|MeasEpoch|"
                                "DiffCorrIn|ReceiverSetup:BlockNumber +sub"));
        expression.setupToMatchUnique(mDictionary->field("VEXA", "MeasEpochChannel", "SVID"));
        QCOMPARE(state(), QStringLiteral("VEXA:MeasEpochChannel:SVID +sub"));

        TestFieldInfo orphan(QStringLiteral("Orphan"), FieldType::u(8));
        expression.setConsiderSubMessages(false);
        AssertCapture capture;
        expression.setupToMatchUnique(&orphan);
        QCOMPARE(capture.texts(),
                 QStringList { "PathExpression::setupToMatchUnique: FieldInfo should "
                               "at least occur in 1 message info" });
        QCOMPARE(capture.functions(), QStringList { "setupToMatchUnique" });
        QCOMPARE(state(), QStringLiteral("*:*:*"));

        QCOMPARE(PathExpression::getUniqueFieldInfo(QStringLiteral("*:PosGeod:Height"))->getName(),
                 QStringLiteral("Height"));
        QCOMPARE(PathExpression::getUniqueMessageInfo(QStringLiteral("VEXA:DiffCorrIn")),
                 mDictionary->diffCorrIn());

        TracerRecorder recorder;
        auto thrown = [](auto lookUp, char const *expression) {
            try {
                lookUp(QLatin1String(expression));
            } catch (MessageApiEvent const &event) {
                QString const kind
                    = event.isError() && !event.getFormat() ? QString() : "odd event ";
                return kind + event.getTypeString() + QStringLiteral(": ") + event.getMessage();
            }
            return QString();
        };
        QCOMPARE(
            thrown(&PathExpression::getUniqueFieldInfo, "VEXA:PosGeod:L*"),
            QStringLiteral("Client Error: Unable to resolve the following path expression to a "
                           "single Field Info: VEXA:PosGeod:L*"));
        QCOMPARE(
            thrown(&PathExpression::getUniqueMessageInfo, "VEXA:MeasEpochChannel"),
            QStringLiteral("Client Error: Unable to resolve the following path expression to a "
                           "single Message Info: VEXA:MeasEpochChannel"));
        // The temporary expressions are gone also after a throw.
        QCOMPARE(recorder.eventsOf(QStringLiteral("PathExpression")),
                 QStringList({ "+PathExpression", "-PathExpression", "+PathExpression",
                               "-PathExpression" }));
    }

    void evaluationFollowsDictionaryChanges()
    {
        // The evaluation keeps names of messages and fields beside their lists; every change of
        // the lists must reach them.
        auto format = std::make_unique<FormatInfo>(QStringLiteral("EXTRA"));
        MessageInfo message(QStringLiteral("PosExtra")), sub(QStringLiteral("PosSub"));
        format->addMessageInfo(&message);
        auto lat = std::make_unique<TestFieldInfo>(QStringLiteral("Lat"), FieldType::u(8));
        auto lon = std::make_unique<TestFieldInfo>(QStringLiteral("Lon"), FieldType::u(8));
        TestFieldInfo height(QStringLiteral("Height"), FieldType::u(8));
        TestFieldInfo latSub(QStringLiteral("LatSub"), FieldType::u(8));
        message.addFieldInfo(lat.get(), 0);
        message.addFieldInfo(lon.get(), 1);
        message.addFieldInfo(&height, 2);
        sub.addFieldInfo(&latSub, 0);

        PathExpression expression(QStringLiteral("EXTRA:Pos*:L*|H*"));
        QCOMPARE(expression.getMatchingFieldInfos().size(), 3);
        message.removeFieldInfo(lon.get());
        compareWithLiteralWalk(expression);
        lat.reset(); // leaves every message it is in
        message.addFieldInfo(lon.get(), 3);
        compareWithLiteralWalk(expression);
        format->addSubMessageInfo(&sub);
        compareWithLiteralWalk(expression);
        expression.setConsiderSubMessages(true);
        compareWithLiteralWalk(expression);
        // A message listed twice is walked twice.
        format->addMessageInfo(&message);
        expression.setConsiderSubMessages(false);
        compareWithLiteralWalk(expression);
        message.removeFieldInfo(lon.get());
        message.removeFieldInfo(&height);
        QVERIFY(expression.getMatchingFieldInfos().isEmpty());
        format.reset();
        QVERIFY(expression.getMatchingFieldInfos().isEmpty());
    }

    void infoSetFlipsBetweenGeodeticAndCartesian()
    {
        DictionaryFixture &dictionary = *mDictionary;
        InfoSet const geodetic { dictionary.posGeod(), dictionary.velGeod() };
        InfoSet const cartesian { dictionary.posCart(), dictionary.velCart() };
        TracerRecorder recorder;
        {
            MessageInfoSet infoSet;
            infoSet.setContents({ dictionary.diffCorrIn() });
            QSignalSpy spy(&infoSet, &MessageInfoSet::changed);
            infoSet.startFlipping();
            auto *timer = infoSet.findChild<QTimer *>();
            QVERIFY(timer->isActive() && !timer->isSingleShot());
            QCOMPARE(timer->interval(), 2000);
            QCOMPARE(infoSet.getMessageInfos(), InfoSet { dictionary.diffCorrIn() });

            // The period is checked above; a short one keeps the suite fast.
            timer->setInterval(1);
            for (int flip = 1; flip <= 4; ++flip) {
                QVERIFY(spy.wait());
                QCOMPARE(spy.count(), flip);
                QCOMPARE(infoSet.getMessageInfos(), flip % 2 ? geodetic : cartesian);
            }
        }
        QCOMPARE(recorder.eventsOf(QStringLiteral("MessageInfoSet")),
                 QStringList({ "+MessageInfoSet", "-MessageInfoSet" }));
        // The exported flag is kept for old applications only; the flip state is the set's own.
        QVERIFY(!mCurrentlyCart);
    }

private:
    DictionaryFixture *mDictionary = nullptr;
};

QTEST_GUILESS_MAIN(tst_PathExpression)
#include "tst_pathexpression.moc"
