// SPDX-License-Identifier: LGPL-2.1-or-later
#include "dictionarytreemodel.h"

#include <fieldinfo.h>
#include <formatinfo.h>
#include <messageinfo.h>
#include <pathexpression.h>

#include <QPair>
#include <QSet>

/// What the expression matches: (message type, field) pairs, or everything without expression.
class DictionaryTreeModel::Matches
{
public:
    explicit Matches(PathExpression const *expression)
        : mAll(expression == nullptr)
    {
        if (mAll)
            return;
        QVector<MessageInfo const *> messages;
        QVector<FieldInfo const *> fields;
        expression->getMatchingTuples(nullptr, &messages, &fields, false);
        for (int row = 0; row < fields.size(); ++row)
            mPairs.insert(qMakePair(messages[row], fields[row]));
    }

    bool contains(MessageInfo const *message, FieldInfo const *field) const
    {
        return mAll || mPairs.contains(qMakePair(message, field));
    }

private:
    bool mAll;
    QSet<QPair<MessageInfo const *, FieldInfo const *>> mPairs;
};

DictionaryTreeModel::DictionaryTreeModel(QObject *parent)
    : QAbstractItemModel(parent)
{
    rebuild();
}

DictionaryTreeModel::~DictionaryTreeModel() = default;

void DictionaryTreeModel::setPathExpression(PathExpression *expression)
{
    if (mExpression == expression)
        return;
    if (mExpression)
        disconnect(mExpression, nullptr, this, nullptr);
    mExpression = expression;
    if (expression) {
        connect(expression, &PathExpression::matchesMayHaveChanged, this,
                &DictionaryTreeModel::rebuild);
        // A deleted expression leaves the whole dictionary shown.
        connect(expression, &QObject::destroyed, this, &DictionaryTreeModel::rebuild);
    }
    rebuild();
}

void DictionaryTreeModel::rebuild()
{
    beginResetModel();
    mNodes.clear();
    mNodes.push_back(Node());
    const Matches matches(mExpression.data());
    for (FormatInfo const *format : FormatInfo::getFormatInfos())
        addFormat(format, matches);
    endResetModel();
}

int DictionaryTreeModel::appendNode(Node node)
{
    const int index = int(mNodes.size());
    node.row = mNodes[size_t(node.parent)].children.size();
    mNodes[size_t(node.parent)].children.append(index);
    mNodes.push_back(std::move(node));
    return index;
}

void DictionaryTreeModel::dropNodesFrom(int node)
{
    mNodes[size_t(mNodes[size_t(node)].parent)].children.removeLast();
    mNodes.resize(size_t(node));
}

bool DictionaryTreeModel::addFormat(FormatInfo const *format, Matches const &matches)
{
    Node node;
    node.format = format;
    node.parent = 0;
    const int index = appendNode(node);
    bool shown = false;
    for (MessageInfo const *message : format->getMessageInfos())
        shown |= addMessage(index, message, matches);
    if (!shown)
        dropNodesFrom(index);
    return shown;
}

bool DictionaryTreeModel::addMessage(int parent, MessageInfo const *message, Matches const &matches)
{
    Node node;
    node.format = message->getFormatInfo();
    node.message = message;
    node.parent = parent;
    const int index = appendNode(node);
    bool shown = false;
    QVector<MessageInfo const *> path { message };
    for (FieldInfo const *field : message->getFieldInfos())
        shown |= addField(index, message, field, matches, path);
    if (!shown)
        dropNodesFrom(index);
    return shown;
}

bool DictionaryTreeModel::addField(int parent, MessageInfo const *message, FieldInfo const *field,
                                   Matches const &matches, QVector<MessageInfo const *> &path)
{
    Node node;
    node.format = message->getFormatInfo();
    node.message = message;
    node.field = field;
    node.parent = parent;
    const int index = appendNode(node);
    bool shown = matches.contains(message, field);
    // A sub-message type that contains itself, directly or not, is shown once.
    MessageInfo const *subMessage = field->getType().getSubMessageInfo();
    if (subMessage && !path.contains(subMessage)) {
        path.append(subMessage);
        for (FieldInfo const *subField : subMessage->getFieldInfos())
            shown |= addField(index, subMessage, subField, matches, path);
        path.removeLast();
    }
    if (!shown)
        dropNodesFrom(index);
    return shown;
}

DictionaryTreeModel::Node const *DictionaryTreeModel::nodeOf(QModelIndex const &index) const
{
    return &mNodes[index.isValid() ? size_t(index.internalId()) : 0];
}

FormatInfo const *DictionaryTreeModel::getFormatInfo(QModelIndex const &index) const
{
    Node const *node = nodeOf(index);
    return index.isValid() && !node->message ? node->format : nullptr;
}

MessageInfo const *DictionaryTreeModel::getMessageInfo(QModelIndex const &index) const
{
    return index.isValid() ? nodeOf(index)->message : nullptr;
}

FieldInfo const *DictionaryTreeModel::getFieldInfo(QModelIndex const &index) const
{
    return index.isValid() ? nodeOf(index)->field : nullptr;
}

QModelIndex DictionaryTreeModel::findMessageInfo(MessageInfo const *info) const
{
    for (size_t node = 1; node < mNodes.size(); ++node) {
        Node const &candidate = mNodes[node];
        if ((!candidate.field && candidate.message == info)
            || (candidate.field && candidate.field->getType().getSubMessageInfo() == info))
            return createIndex(candidate.row, 0, quintptr(node));
    }
    return {};
}

QModelIndex DictionaryTreeModel::findFieldInfo(FieldInfo const *field) const
{
    for (size_t node = 1; node < mNodes.size(); ++node)
        if (mNodes[node].field == field)
            return createIndex(mNodes[node].row, 0, quintptr(node));
    return {};
}

QModelIndex DictionaryTreeModel::index(int row, int column, QModelIndex const &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, quintptr(nodeOf(parent)->children[row]));
}

QModelIndex DictionaryTreeModel::parent(QModelIndex const &child) const
{
    if (!child.isValid())
        return {};
    const int parent = nodeOf(child)->parent;
    if (parent <= 0)
        return {};
    return createIndex(mNodes[size_t(parent)].row, 0, quintptr(parent));
}

int DictionaryTreeModel::rowCount(QModelIndex const &parent) const
{
    if (parent.column() > 0)
        return 0;
    return nodeOf(parent)->children.size();
}

int DictionaryTreeModel::columnCount(QModelIndex const &) const
{
    return ColumnCount;
}

QVariant DictionaryTreeModel::data(QModelIndex const &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    Node const &node = *nodeOf(index);
    if (role == Qt::TextAlignmentRole && index.column() == ScaleFactorColumn)
        return QVariant(Qt::AlignRight | Qt::AlignVCenter);
    if (role == Qt::ToolTipRole) {
        if (node.field)
            return node.field->getDescriptiveText().isEmpty()
                ? node.field->getShortDescriptiveText()
                : node.field->getDescriptiveText();
        if (node.message)
            return node.message->getDescriptiveText();
        return node.format->getDescriptiveText();
    }
    if (role != Qt::DisplayRole)
        return {};

    if (!node.message) {
        switch (index.column()) {
        case NameColumn:
            return node.format->getName();
        case TitleColumn:
            return node.format->getDescriptiveText();
        default:
            return {};
        }
    }
    if (!node.field) {
        switch (index.column()) {
        case NameColumn:
            return node.message->getName();
        case TitleColumn:
            return node.message->getShortDescriptiveText();
        default:
            return {};
        }
    }
    FieldInfo const *field = node.field;
    switch (index.column()) {
    case NameColumn:
        return field->getName();
    case TitleColumn:
        return field->getShortDescriptiveText();
    case TypeColumn:
        return field->getType().toShortString();
    case UnitColumn:
        return field->hasUnit() ? field->getUnitString(true) : QString();
    case ScaleFactorColumn:
        return field->hasScaleFactor() ? QString::number(field->getScaleFactor(), 'g', 12)
                                       : QString();
    default:
        return {};
    }
}

QVariant DictionaryTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return tr("Name");
    case TitleColumn:
        return tr("Title");
    case TypeColumn:
        return tr("Type");
    case UnitColumn:
        return tr("Unit");
    case ScaleFactorColumn:
        return tr("Scale factor");
    default:
        return {};
    }
}
