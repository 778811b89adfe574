// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pathexpression.h"

#include "auxiliary/dictionaryaccess.h"
#include "auxiliary/tracing.h"
#include "auxiliary/wildcardmatcher.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "messageinfoset.h"

#include <QSet>

#include <vector>

MSGAPI_SOURCE_FILE("PATHEXPRESSION", "src/pathexpression")

PathExpression::Parts const PathExpression::AllParts = PathExpression::Parts(
    PathExpression::FormatPart | PathExpression::MessagePart | PathExpression::FieldPart);

namespace {

// Queued connections and QSignalSpy need the flags type by both of its spellings.
void registerPartsMetaType()
{
    static bool const registered = [] {
        qRegisterMetaType<PathExpression::Parts>("QFlags<PathExpression::Part>");
        qRegisterMetaType<PathExpression::Parts>("PathExpression::Parts");
        return true;
    }();
    Q_UNUSED(registered);
}

/**
 * One part of an expression, read once: its alternatives (cut at "|", with ":" read as "*"),
 * each a wildcard matcher. Matching a name then builds no regular expression and no string.
 */
class NamePattern
{
public:
    explicit NamePattern(QString const &pattern)
    {
        QStringList const alternatives = pattern.split(PathExpression::getOrOperator());
        for (QString alternative : alternatives) {
            // A separator cannot occur in a name; read it as the start of a wildcard instead.
            alternative.replace(PathExpression::getSeparator(), PathExpression::getWildCard());
            mAlternatives.emplace_back(alternative);
            if (mAlternatives.back().matchesEverything())
                mMatchesEverything = true;
        }
    }

    bool matches(QStringView name) const
    {
        if (mMatchesEverything)
            return true;
        for (WildcardMatcher const &alternative : mAlternatives) {
            if (alternative.matches(name))
                return true;
        }
        return false;
    }

private:
    std::vector<WildcardMatcher> mAlternatives;
    bool mMatchesEverything = false;
};

/// Collects the items of one result vector, each once when unique (the order of first
/// appearance is kept).
template <typename T> class ResultCollector
{
public:
    ResultCollector(QVector<T> *vector, bool unique)
        : mVector(vector)
        , mUnique(unique)
    { }

    void append(T item)
    {
        if (!mVector)
            return;
        if (mUnique) {
            // The same format or message comes for each of its matching fields in a row.
            if (!mVector->isEmpty() && mVector->constLast() == item)
                return;
            if (mSeen.contains(item))
                return;
            mSeen.insert(item);
        }
        mVector->append(item);
    }

private:
    QVector<T> *mVector;
    bool mUnique;
    QSet<T> mSeen;
};

} // namespace

PathExpression::PathExpression(QObject *parent)
    : QObject(parent)
    , mFormatPart(getWildCard())
    , mMessagePart(getWildCard())
    , mFieldPart(getWildCard())
    , mConsiderSubMessages(false)
    , mFilteringMessageInfoSet(nullptr)
{
    MessageApiTracing::allocated(QStringLiteral("PathExpression"));
    registerPartsMetaType();
    connect(this, &PathExpression::expressionChanged, this, &PathExpression::matchesMayHaveChanged);
}

PathExpression::PathExpression(QString const &expression, QObject *parent)
    : QObject(parent)
    , mConsiderSubMessages(false)
    , mFilteringMessageInfoSet(nullptr)
{
    MessageApiTracing::allocated(QStringLiteral("PathExpression"));
    registerPartsMetaType();
    // Deliberately not linked to matchesMayHaveChanged(): callers of this constructor
    // evaluate on their own and must not be told about text changes as match changes.
    split(expression, mFormatPart, mMessagePart, mFieldPart, AllParts);
}

PathExpression::~PathExpression()
{
    MessageApiTracing::deallocated(QStringLiteral("PathExpression"));
}

QString const &PathExpression::getSeparator()
{
    static QString const separator = QStringLiteral(":");
    return separator;
}

QString const &PathExpression::getWildCard()
{
    static QString const wildCard = QStringLiteral("*");
    return wildCard;
}

QString const &PathExpression::getOrOperator()
{
    static QString const orOperator = QStringLiteral("|");
    return orOperator;
}

QString PathExpression::getString(QFlags<PathExpression::Part> parts) const
{
    QString text;
    if (parts & FormatPart) {
        text += mFormatPart;
        if (parts & (MessagePart | FieldPart))
            text += getSeparator();
    }
    if (parts & MessagePart)
        text += mMessagePart;
    if (parts & FieldPart) {
        if (parts & (FormatPart | MessagePart))
            text += getSeparator();
        text += mFieldPart;
    }
    return text;
}

void PathExpression::split(QString const &expression, QString &format, QString &message,
                           QString &field, QFlags<PathExpression::Part> parts) const
{
    QStringList pieces = expression.split(getSeparator());
    // The text holds only the requested parts; shift its pieces to their positions.
    if (!(parts & FormatPart))
        pieces.insert(0, QString());
    if (!(parts & MessagePart))
        pieces.insert(1, QString());

    auto pieceAt = [&pieces](int index) {
        QString const piece = pieces.value(index);
        return piece.isEmpty() ? getWildCard() : piece;
    };
    if (parts & FormatPart)
        format = pieceAt(0);
    if (parts & MessagePart)
        message = pieceAt(1);
    if (parts & FieldPart)
        field = pieceAt(2);
}

bool PathExpression::matchesName(QString const &name, QString const &pattern) const
{
    return NamePattern(pattern).matches(name);
}

QString PathExpression::maybeAppendWildCard(QString const &text) const
{
    // A trailing wildcard is doubled rather than detected: the extra one changes no match,
    // and editors rely on the reported text growing with every prefix.
    return text + getWildCard();
}

bool PathExpression::isWildCard(QFlags<PathExpression::Part> parts) const
{
    return (!(parts & FormatPart) || mFormatPart == getWildCard())
        && (!(parts & MessagePart) || mMessagePart == getWildCard())
        && (!(parts & FieldPart) || mFieldPart == getWildCard());
}

void PathExpression::setConsiderSubMessages(bool considerSubMessages)
{
    mConsiderSubMessages = considerSubMessages;
}

void PathExpression::setFilteringMessageInfoSet(MessageInfoSet *set)
{
    if (set == mFilteringMessageInfoSet)
        return;
    if (mFilteringMessageInfoSet)
        disconnect(mFilteringMessageInfoSet, nullptr, this, nullptr);
    mFilteringMessageInfoSet = set;
    if (mFilteringMessageInfoSet)
        connect(mFilteringMessageInfoSet, &MessageInfoSet::changed, this,
                &PathExpression::matchesMayHaveChanged);
    Q_EMIT matchesMayHaveChanged();
}

void PathExpression::getMatchingTuples(QVector<FormatInfo const *> *formats,
                                       QVector<MessageInfo const *> *messages,
                                       QVector<FieldInfo const *> *fields, bool unique) const
{
    if (formats)
        formats->clear();
    if (messages)
        messages->clear();
    if (fields)
        fields->clear();

    QSet<MessageInfo const *> const filter = mFilteringMessageInfoSet
        ? mFilteringMessageInfoSet->getMessageInfos()
        : QSet<MessageInfo const *>();

    // Each part is read once per evaluation, not once per name.
    NamePattern const formatPattern(mFormatPart);
    NamePattern const messagePattern(mMessagePart);
    NamePattern const fieldPattern(mFieldPart);
    ResultCollector<FormatInfo const *> formatResults(formats, unique);
    ResultCollector<MessageInfo const *> messageResults(messages, unique);
    ResultCollector<FieldInfo const *> fieldResults(fields, unique);

    // Names are read from each descriptor's sequence of its children's names: one pass over
    // contiguous memory instead of a visit to every message and field.
    QVector<FormatInfo const *> const allFormats = FormatInfo::getFormatInfos();
    for (FormatInfo const *format : allFormats) {
        if (!formatPattern.matches(DictionaryAccess::name(format)))
            continue;
        QVector<MessageInfo const *> const &formatMessages
            = DictionaryAccess::messages(format, mConsiderSubMessages);
        NameSequence const messageNames
            = DictionaryAccess::messageNames(format, mConsiderSubMessages);
        for (int m = 0; m < messageNames.size(); ++m) {
            MessageInfo const *message = formatMessages.at(m);
            if (mFilteringMessageInfoSet && !filter.contains(message))
                continue;
            if (!messagePattern.matches(messageNames.at(m)))
                continue;
            QVector<FieldInfo const *> const &messageFields = DictionaryAccess::fields(message);
            NameSequence const fieldNames = DictionaryAccess::fieldNames(message);
            for (int f = 0; f < fieldNames.size(); ++f) {
                if (!fieldPattern.matches(fieldNames.at(f)))
                    continue;
                formatResults.append(format);
                messageResults.append(message);
                fieldResults.append(messageFields.at(f));
            }
        }
    }
}

QVector<FieldInfo const *> PathExpression::getMatchingFieldInfos() const
{
    QVector<FieldInfo const *> fields;
    getMatchingTuples(nullptr, nullptr, &fields, true);
    return fields;
}

QVector<MessageInfo const *> PathExpression::getMatchingMessageInfos() const
{
    QVector<MessageInfo const *> messages;
    getMatchingTuples(nullptr, &messages, nullptr, true);
    return messages;
}

QStringList
PathExpression::getMatchingExpressionsStringList(QFlags<PathExpression::Part> parts) const
{
    bool const wantFormats = parts & FormatPart;
    bool const wantMessages = parts & MessagePart;
    bool const wantFields = parts & FieldPart;
    bool const singlePart = int(wantFormats) + int(wantMessages) + int(wantFields) == 1;

    QVector<FormatInfo const *> formats;
    QVector<MessageInfo const *> messages;
    QVector<FieldInfo const *> fields;
    getMatchingTuples(wantFormats ? &formats : nullptr, wantMessages ? &messages : nullptr,
                      wantFields ? &fields : nullptr, singlePart);

    int const rows = int(wantFormats        ? formats.size()
                             : wantMessages ? messages.size()
                                            : fields.size());
    QStringList texts;
    for (int row = 0; row < rows; ++row) {
        QString text;
        if (wantFormats) {
            text += formats.at(row)->getName();
            if (wantMessages || wantFields)
                text += getSeparator();
        }
        if (wantMessages)
            text += messages.at(row)->getName();
        if (wantFields) {
            if (wantFormats || wantMessages)
                text += getSeparator();
            text += fields.at(row)->getName();
        }
        texts.append(text);
    }
    return texts;
}

QStringList PathExpression::getMatchingFormatsStringList() const
{
    return getMatchingExpressionsStringList(FormatPart);
}

QStringList PathExpression::getMatchingMessagesStringList() const
{
    return getMatchingExpressionsStringList(MessagePart);
}

QStringList PathExpression::getMatchingFieldsStringList() const
{
    return getMatchingExpressionsStringList(FieldPart);
}

void PathExpression::setupToMatchUnique(FormatInfo const *format)
{
    setWildCard(AllParts);
    setFormatPart(format->getName());
}

void PathExpression::setupToMatchUnique(MessageInfo const *message)
{
    setWildCard(AllParts);
    FormatInfo const *format = message->getFormatInfo();
    setFormatPart(format ? format->getName() : QString());
    setMessagePart(message->getName());
    setConsiderSubMessages(true);
}

void PathExpression::setupToMatchUnique(FieldInfo const *field)
{
    setWildCard(AllParts);
    QVector<MessageInfo const *> const messages = field->getMessageInfos();
    if (messages.isEmpty()) {
        MSGAPI_ASSERT_REPORT("setupToMatchUnique",
                             "PathExpression::setupToMatchUnique: FieldInfo should at least "
                             "occur in 1 message info");
        // Without a message there is nothing to narrow to; all parts stay "*".
        return;
    }
    FormatInfo const *format = messages.first()->getFormatInfo();
    setFormatPart(format ? format->getName() : QString());
    QStringList messageNames;
    for (MessageInfo const *message : messages)
        messageNames.append(message->getName());
    setMessagePart(messageNames.join(getOrOperator()));
    setFieldPart(field->getName());
    setConsiderSubMessages(true);
}

FieldInfo const *PathExpression::getUniqueFieldInfo(QString const &expression)
{
    PathExpression const pathExpression(expression);
    QVector<FieldInfo const *> const fields = pathExpression.getMatchingFieldInfos();
    if (fields.size() != 1)
        throw MessageApiEvent(
            MessageApiEvent::ClientError,
            tr("Unable to resolve the following path expression to a single Field Info: %1")
                .arg(expression),
            nullptr);
    return fields.first();
}

MessageInfo const *PathExpression::getUniqueMessageInfo(QString const &expression)
{
    PathExpression const pathExpression(expression);
    QVector<MessageInfo const *> const messages = pathExpression.getMatchingMessageInfos();
    if (messages.size() != 1)
        throw MessageApiEvent(
            MessageApiEvent::ClientError,
            tr("Unable to resolve the following path expression to a single Message Info: %1")
                .arg(expression),
            nullptr);
    return messages.first();
}

void PathExpression::setString(QString const &expression)
{
    setString(expression, AllParts);
}

void PathExpression::setString(QString const &expression, QFlags<PathExpression::Part> parts)
{
    QString format = mFormatPart;
    QString message = mMessagePart;
    QString field = mFieldPart;
    split(expression, format, message, field, parts);

    Parts changed;
    if ((parts & FormatPart) && format != mFormatPart)
        changed |= FormatPart;
    if ((parts & MessagePart) && message != mMessagePart)
        changed |= MessagePart;
    if ((parts & FieldPart) && field != mFieldPart)
        changed |= FieldPart;
    if (!changed)
        return;

    // Store everything before the first signal, so that every receiver sees the whole new
    // expression.
    if (changed & FormatPart)
        mFormatPart = format;
    if (changed & MessagePart)
        mMessagePart = message;
    if (changed & FieldPart)
        mFieldPart = field;

    if (changed & FormatPart)
        Q_EMIT formatPartChanged(mFormatPart);
    if (changed & MessagePart)
        Q_EMIT messagePartChanged(mMessagePart);
    if (changed & FieldPart)
        Q_EMIT fieldPartChanged(mFieldPart);
    Q_EMIT expressionChanged(getString(AllParts));
    Q_EMIT partsChanged(changed);
}

void PathExpression::setFormatPart(QString const &part)
{
    setString(part, FormatPart);
}

void PathExpression::setMessagePart(QString const &part)
{
    setString(part, MessagePart);
}

void PathExpression::setFieldPart(QString const &part)
{
    setString(part, FieldPart);
}

void PathExpression::setStringPrefix(QString const &expression)
{
    setString(maybeAppendWildCard(expression), AllParts);
}

void PathExpression::setStringPrefix(QString const &expression, QFlags<PathExpression::Part> parts)
{
    setString(maybeAppendWildCard(expression), parts);
}

void PathExpression::setFormatPartPrefix(QString const &part)
{
    setStringPrefix(part, FormatPart);
}

void PathExpression::setMessagePartPrefix(QString const &part)
{
    setStringPrefix(part, MessagePart);
}

void PathExpression::setFieldPartPrefix(QString const &part)
{
    setStringPrefix(part, FieldPart);
}

void PathExpression::setWildCard(QFlags<PathExpression::Part> parts)
{
    setString(getWildCard() + getSeparator() + getWildCard() + getSeparator() + getWildCard(),
              parts);
}

void PathExpression::setWildCard()
{
    setWildCard(AllParts);
}

void PathExpression::completeEditing()
{
    QVector<MessageInfo const *> messages;
    QVector<FieldInfo const *> fields;
    getMatchingTuples(nullptr, &messages, &fields, true);
    if (messages.size() == 1)
        Q_EMIT messageInfoSelected(messages.first());
    if (fields.size() == 1)
        Q_EMIT fieldInfoSelected(fields.first());
}
