// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPIMODELS_MESSAGEFIELDSMODEL_H
#define MESSAGEAPIMODELS_MESSAGEFIELDSMODEL_H

#include "messageapimodels_export.h"

#include <QAbstractItemModel>
#include <QVector>

#include <vector>

class FieldInfo;
class Message;

/**
 * The fields of one message as a tree: a row per field that has values, with its interpreted
 * value (units included), its raw value and its value in hexadecimal, and after the fields a
 * row per sub-message ("1077 satellite [3]") whose children are its own fields and
 * sub-messages. A repeated field shows its values separated by spaces, a text field its text.
 * A confidential field shows its values only when MessageApi allows it.
 *
 * The model holds a reference to the message while it shows it. Setting a message of the same
 * shape (type, fields and sub-messages) as the shown one changes the cells in place, so that a
 * view keeps what the user expanded; any other message resets the model.
 */
class MESSAGEAPIMODELS_EXPORT MessageFieldsModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    enum Column {
        NameColumn,
        TitleColumn,
        InterpretedColumn,
        RawColumn,
        HexadecimalColumn,
        ColumnCount
    };

    explicit MessageFieldsModel(QObject *parent = nullptr);
    ~MessageFieldsModel() override;

    /// Shows the message (null: nothing).
    void setMessage(Message const *message);
    Message const *getMessage() const { return mMessage; }

    /// The field of a field row; null for a sub-message row.
    FieldInfo const *getFieldInfo(QModelIndex const &index) const;

    QModelIndex index(int row, int column, QModelIndex const &parent = {}) const override;
    QModelIndex parent(QModelIndex const &child) const override;
    int rowCount(QModelIndex const &parent = {}) const override;
    int columnCount(QModelIndex const &parent = {}) const override;
    QVariant data(QModelIndex const &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

private:
    Q_DISABLE_COPY(MessageFieldsModel)

    struct Node
    {
        Message const *message = nullptr;
        /// Null for a sub-message row, which stands for its message.
        FieldInfo const *field = nullptr;
        int parent = -1;
        int row = 0;
        /// A sub-message row's place among its parent's sub-messages, from 1.
        int number = 0;
        QVector<int> children;
    };

    static std::vector<Node> buildNodes(Message const *message);
    static void addMessage(std::vector<Node> &nodes, int parent, Message const *message);
    static bool sameShape(std::vector<Node> const &a, std::vector<Node> const &b);
    QString valueText(Node const &node, int column) const;

    Message const *mMessage = nullptr;
    /// Node 0 is the invisible root, standing for the message itself.
    std::vector<Node> mNodes;
};

#endif // MESSAGEAPIMODELS_MESSAGEFIELDSMODEL_H
