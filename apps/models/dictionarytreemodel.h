// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPIMODELS_DICTIONARYTREEMODEL_H
#define MESSAGEAPIMODELS_DICTIONARYTREEMODEL_H

#include "messageapimodels_export.h"

#include <pathexpression.h>

#include <QAbstractItemModel>
#include <QPointer>
#include <QVector>

#include <vector>

class FieldInfo;
class FormatInfo;
class MessageInfo;

/**
 * The process-wide dictionary as a tree: formats, their message types, the fields of each type,
 * and under a sub-message field the fields of its sub-message type. Columns: name, title, type
 * (short code), unit, scale factor; the description is the tool tip.
 *
 * With a path expression, only what it matches is shown: a field when the expression matches
 * it in the message type that holds it, and every format, message type and sub-message field
 * above a shown field. The model follows the expression's matchesMayHaveChanged() by resetting
 * itself; the expression is not owned.
 */
class MESSAGEAPIMODELS_EXPORT DictionaryTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column { NameColumn, TitleColumn, TypeColumn, UnitColumn, ScaleFactorColumn, ColumnCount };

    explicit DictionaryTreeModel(QObject *parent = nullptr);
    ~DictionaryTreeModel() override;

    /// Narrows the tree to the expression's matches; null shows the whole dictionary.
    void setPathExpression(PathExpression *expression);
    PathExpression *getPathExpression() const { return mExpression; }

    /// The format of a format row; null for other rows.
    FormatInfo const *getFormatInfo(QModelIndex const &index) const;
    /// The message type of a message row, or the one that holds the field of a field row.
    MessageInfo const *getMessageInfo(QModelIndex const &index) const;
    /// The field of a field row; null for other rows.
    FieldInfo const *getFieldInfo(QModelIndex const &index) const;
    /// The shown row of a message type (a sub-message type: the first field of that type).
    QModelIndex findMessageInfo(MessageInfo const *info) const;
    /// The first shown row of the field.
    QModelIndex findFieldInfo(FieldInfo const *field) const;

    QModelIndex index(int row, int column, QModelIndex const &parent = {}) const override;
    QModelIndex parent(QModelIndex const &child) const override;
    int rowCount(QModelIndex const &parent = {}) const override;
    int columnCount(QModelIndex const &parent = {}) const override;
    QVariant data(QModelIndex const &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

public Q_SLOTS:
    /// Reads the dictionary and the expression's matches again.
    void rebuild();

private:
    Q_DISABLE_COPY(DictionaryTreeModel)

    struct Node
    {
        FormatInfo const *format = nullptr;
        /// A message row's type, or the type that holds a field row's field.
        MessageInfo const *message = nullptr;
        FieldInfo const *field = nullptr;
        int parent = -1;
        int row = 0;
        QVector<int> children;
    };
    class Matches;

    /// Appends the node and, recursively, its children; removes it again and returns false
    /// when nothing in it is shown.
    bool addFormat(FormatInfo const *format, Matches const &matches);
    bool addMessage(int parent, MessageInfo const *message, Matches const &matches);
    bool addField(int parent, MessageInfo const *message, FieldInfo const *field,
                  Matches const &matches, QVector<MessageInfo const *> &path);
    int appendNode(Node node);
    void dropNodesFrom(int node);
    Node const *nodeOf(QModelIndex const &index) const;

    QPointer<PathExpression> mExpression;
    /// Node 0 is the invisible root.
    std::vector<Node> mNodes;
};

#endif // MESSAGEAPIMODELS_DICTIONARYTREEMODEL_H
