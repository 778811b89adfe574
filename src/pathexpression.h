// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPI_PATHEXPRESSION_H
#define MESSAGEAPI_PATHEXPRESSION_H

#include "messageapiframework_export.h"

#include <QFlags>
#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QVector>

class FieldInfo;
class FormatInfo;
class MessageInfo;
class MessageInfoSet;

/**
 * A "format:message:field" pattern that selects entries of the process-wide dictionary.
 *
 * Each part is matched against names as a case-insensitive wildcard pattern over the whole
 * name ("*" any run, "?" one character, "[0-9]" a set), with "|" separating alternatives; an
 * unset part is "*". There is no escape for ":" or "|".
 *
 * Every change goes through setString(QString, Parts), which emits the part signals, then
 * expressionChanged() and partsChanged() for what really changed. Evaluation always walks the
 * live dictionary; it is not cached, so evaluate on matchesMayHaveChanged() or
 * completeEditing(), not per received message. An optional filtering set narrows the messages
 * that can match; it is watched, not owned: clear it before deleting the set.
 */
class MESSAGEAPIFRAMEWORK_EXPORT PathExpression : public QObject
{
    Q_OBJECT

public:
    /// The parts of an expression, as flags: operations take any combination.
    enum Part { FormatPart = 1, MessagePart = 2, FieldPart = 4 };
    /// A combination of parts.
    Q_DECLARE_FLAGS(Parts, Part)
    Q_FLAG(Parts)

    /// The three parts together.
    static Parts const AllParts;

    /// All parts "*". Every change of the expression also emits matchesMayHaveChanged().
    explicit PathExpression(QObject *parent = nullptr);
    /**
     * The parts read from expression, without any signal. Unlike the other constructor, a
     * change of the expression does not by itself emit matchesMayHaveChanged().
     */
    explicit PathExpression(QString const &expression, QObject *parent = nullptr);
    ~PathExpression() override;

    /// ":" between parts.
    static QString const &getSeparator();
    /// "*": any run of characters, and the value of an unset part.
    static QString const &getWildCard();
    /// "|" between the alternatives of one part.
    static QString const &getOrOperator();

    /// One part of the expression, "*" when unset.
    ///@{
    QString getFormatPart() const { return mFormatPart; }
    QString getMessagePart() const { return mMessagePart; }
    QString getFieldPart() const { return mFieldPart; }
    ///@}
    /**
     * The requested parts joined by ":". Format and field without message give "format::field",
     * which split() with the same flags does not read back as the same field.
     */
    QString getString(QFlags<PathExpression::Part> parts) const;
    /// Whether sub-message types take part in matching (see setConsiderSubMessages()).
    bool getConsiderSubMessages() const { return mConsiderSubMessages; }
    /// The set that narrows the matching messages, or null (see setFilteringMessageInfoSet()).
    MessageInfoSet *getFilteringMessageInfoSet() const { return mFilteringMessageInfoSet; }

    /**
     * Reads expression as holding only the requested parts, in the order format, message,
     * field, and stores each requested part into its variable: a missing or empty piece
     * becomes "*", pieces after the third are ignored, variables of parts not requested are
     * left untouched.
     */
    void split(QString const &expression, QString &format, QString &message, QString &field,
               QFlags<PathExpression::Part> parts) const;
    /// Whether the whole name matches one of the alternatives of pattern; a ":" in the pattern
    /// acts as "*". An empty pattern matches only the empty name.
    bool matchesName(QString const &name, QString const &pattern) const;
    /// text followed by the wildcard, also when it already ends with one ("Pos*" gives
    /// "Pos**", which matches the same names).
    QString maybeAppendWildCard(QString const &text) const;
    /// Whether each requested part is exactly "*"; true for no parts.
    bool isWildCard(QFlags<PathExpression::Part> parts) const;

    /// Whether the sub-messages of a format take part in matching. Emits nothing.
    void setConsiderSubMessages(bool considerSubMessages);
    /**
     * Only messages in set can match (null: no restriction). The set's changed() then emits
     * matchesMayHaveChanged(); a different set emits it once right away.
     */
    void setFilteringMessageInfoSet(MessageInfoSet *set);

    /**
     * Fills the given vectors (null ones are skipped) with the matching format, message and
     * field of each matching field, in registry order. With unique false the vectors are
     * parallel, one row per matching field; with unique true each vector lists an item once
     * and they are no longer parallel. Formats and messages appear only through a matching
     * field.
     */
    void getMatchingTuples(QVector<FormatInfo const *> *formats,
                           QVector<MessageInfo const *> *messages,
                           QVector<FieldInfo const *> *fields, bool unique) const;
    /// The matching fields, or the message types of the matching fields, each once
    /// (getMatchingTuples() with unique true).
    ///@{
    QVector<FieldInfo const *> getMatchingFieldInfos() const;
    QVector<MessageInfo const *> getMatchingMessageInfos() const;
    ///@}
    /**
     * One text per match, built from the names of the requested parts like getString(). A
     * single part lists each name once; several parts give one entry per matching field, with
     * repeats. Not sorted.
     */
    QStringList getMatchingExpressionsStringList(QFlags<PathExpression::Part> parts) const;
    /// getMatchingExpressionsStringList() of one part: the matching names, each once.
    ///@{
    QStringList getMatchingFormatsStringList() const;
    QStringList getMatchingMessagesStringList() const;
    QStringList getMatchingFieldsStringList() const;
    ///@}

    /// Sets the expression to match exactly the format, with every message and field.
    void setupToMatchUnique(FormatInfo const *format);
    /// Also switches sub-messages on, so that a sub-message can be matched.
    void setupToMatchUnique(MessageInfo const *message);
    /**
     * Matches the field in every message that contains it, sub-messages included. A field that
     * occurs in no message is reported through the assertion hook and leaves all parts "*".
     */
    void setupToMatchUnique(FieldInfo const *field);

    /// The one field the expression matches. Throws a ClientError MessageApiEvent otherwise.
    static FieldInfo const *getUniqueFieldInfo(QString const &expression);
    /// The one message the expression matches. Throws a ClientError MessageApiEvent otherwise.
    static MessageInfo const *getUniqueMessageInfo(QString const &expression);

public Q_SLOTS:
    /// Sets all three parts from expression.
    void setString(QString const &expression);
    /// Sets the requested parts from expression (see split()); the one path of every setter.
    void setString(QString const &expression, QFlags<PathExpression::Part> parts);
    /// Sets one part; "*" when part is empty.
    ///@{
    void setFormatPart(QString const &part);
    void setMessagePart(QString const &part);
    void setFieldPart(QString const &part);
    ///@}
    /// For an editor while the user types: the text is the beginning of a name, so only the
    /// last part of a multi-part text gets the wildcard.
    void setStringPrefix(QString const &expression);
    /// setStringPrefix() of the requested parts, or of one part: the text with the wildcard
    /// appended, so that every name that begins with it matches.
    ///@{
    void setStringPrefix(QString const &expression, QFlags<PathExpression::Part> parts);
    void setFormatPartPrefix(QString const &part);
    void setMessagePartPrefix(QString const &part);
    void setFieldPartPrefix(QString const &part);
    ///@}
    /// Sets the requested parts (by default all) to "*".
    ///@{
    void setWildCard(QFlags<PathExpression::Part> parts);
    void setWildCard();
    ///@}
    /// Emits messageInfoSelected() and then fieldInfoSelected() for what matches uniquely.
    void completeEditing();

Q_SIGNALS:
    /// A part changed: its new text, after the whole expression was stored.
    ///@{
    void formatPartChanged(QString const &format);
    void messagePartChanged(QString const &message);
    void fieldPartChanged(QString const &fieldPart);
    ///@}
    /// After the part signals of one change: the whole expression (getString(AllParts)), then
    /// the parts that changed.
    ///@{
    void expressionChanged(QString const &expression);
    void partsChanged(QFlags<PathExpression::Part> parts);
    ///@}
    /// From completeEditing(): the one message type or field that the expression matches.
    ///@{
    void messageInfoSelected(MessageInfo const *messageInfo);
    void fieldInfoSelected(FieldInfo const *fieldInfo);
    ///@}
    /// The matches may differ from before: the expression or the filtering set changed.
    /// Views evaluate again.
    void matchesMayHaveChanged();

private:
    Q_DISABLE_COPY(PathExpression)

    QString mFormatPart;
    QString mMessagePart;
    QString mFieldPart;
    bool mConsiderSubMessages;
    MessageInfoSet *mFilteringMessageInfoSet;
};

Q_DECLARE_OPERATORS_FOR_FLAGS(PathExpression::Parts)
Q_DECLARE_METATYPE(PathExpression::Parts)

#endif // MESSAGEAPI_PATHEXPRESSION_H
