// SPDX-License-Identifier: LGPL-2.1-or-later
#include "pathexpression.h"

#include "auxiliary/qtcompat.h"
#include "auxiliary/tracing.h"
#include "fieldinfo.h"
#include "formatinfo.h"
#include "messageapievent.h"
#include "messageinfo.h"
#include "messageinfoset.h"

#include <QSet>

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

// Appends item unless the vector already holds it; recent items are the likeliest repeats.
template <typename T> void appendTo(QVector<T> *vector, T item, bool unique)
{
    if (!vector)
        return;
    if (unique && vector->lastIndexOf(item) >= 0)
        return;
    vector->append(item);
}

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
    QStringList const alternatives = pattern.split(getOrOperator());
    for (QString alternative : alternatives) {
        // A separator cannot occur in a name; read it as the start of a wildcard instead.
        alternative.replace(getSeparator(), getWildCard());
        QRegExp const matcher(alternative, Qt::CaseInsensitive, QRegExp::Wildcard);
        if (matcher.exactMatch(name))
            return true;
    }
    return false;
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

    QVector<FormatInfo const *> const allFormats = FormatInfo::getFormatInfos();
    for (FormatInfo const *format : allFormats) {
        if (!matchesName(format->getName(), mFormatPart))
            continue;
        QVector<MessageInfo const *> const formatMessages = mConsiderSubMessages
            ? format->getMessageInfosIncludingSubMessages()
            : format->getMessageInfos();
        for (MessageInfo const *message : formatMessages) {
            if (mFilteringMessageInfoSet && !filter.contains(message))
                continue;
            if (!matchesName(message->getName(), mMessagePart))
                continue;
            QVector<FieldInfo const *> const messageFields = message->getFieldInfos();
            for (FieldInfo const *field : messageFields) {
                if (!matchesName(field->getName(), mFieldPart))
                    continue;
                appendTo(formats, format, unique);
                appendTo(messages, message, unique);
                appendTo(fields, field, unique);
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
