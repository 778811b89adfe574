// SPDX-License-Identifier: LGPL-2.1-or-later
#include "messagefieldsmodel.h"

#include <fieldinfo.h>
#include <message.h>
#include <messageapi.h>
#include <messageinfo.h>

#include <QStringList>

namespace {

/// Values of one repeated field shown at most; the rest is counted.
constexpr unsigned int maxShownValues = 64;

} // namespace

MessageFieldsModel::MessageFieldsModel(QObject *parent)
    : QAbstractItemModel(parent)
    , mNodes(1)
{ }

MessageFieldsModel::~MessageFieldsModel()
{
    if (mMessage)
        mMessage->removeReference();
}

void MessageFieldsModel::addMessage(std::vector<Node> &nodes, int parent, Message const *message)
{
    auto append = [&nodes, parent](Message const *owner, FieldInfo const *field) {
        Node node;
        node.message = owner;
        node.field = field;
        node.parent = parent;
        node.row = nodes[size_t(parent)].children.size();
        nodes[size_t(parent)].children.append(int(nodes.size()));
        nodes.push_back(node);
        return int(nodes.size()) - 1;
    };
    for (FieldInfo const *field : message->getInfo()->getFieldInfos()) {
        if (field->getType().getBasisType() != FieldType::SubMessage
            && field->getNumberOfValues(message) > 0)
            append(message, field);
    }
    int number = 0;
    for (Message const *subMessage : message->getSubMessages()) {
        const int node = append(subMessage, nullptr);
        nodes[size_t(node)].number = ++number;
        addMessage(nodes, node, subMessage);
    }
}

std::vector<MessageFieldsModel::Node> MessageFieldsModel::buildNodes(Message const *message)
{
    std::vector<Node> nodes(1);
    if (message) {
        nodes[0].message = message;
        addMessage(nodes, 0, message);
    }
    return nodes;
}

bool MessageFieldsModel::sameShape(std::vector<Node> const &a, std::vector<Node> const &b)
{
    if (a.size() != b.size())
        return false;
    for (size_t node = 0; node < a.size(); ++node) {
        if (a[node].field != b[node].field || a[node].parent != b[node].parent
            || (a[node].message && b[node].message
                && a[node].message->getInfo() != b[node].message->getInfo()))
            return false;
    }
    return true;
}

void MessageFieldsModel::setMessage(Message const *message)
{
    if (message == mMessage)
        return;
    if (message)
        message->addReference();
    std::vector<Node> nodes = buildNodes(message);
    const bool keepRows = mMessage && message && sameShape(nodes, mNodes);
    if (!keepRows)
        beginResetModel();
    if (mMessage)
        mMessage->removeReference();
    mMessage = message;
    mNodes = std::move(nodes);
    if (!keepRows) {
        endResetModel();
        return;
    }
    for (size_t node = 0; node < mNodes.size(); ++node) {
        const int children = mNodes[node].children.size();
        if (children == 0)
            continue;
        const QModelIndex parent
            = node == 0 ? QModelIndex() : createIndex(mNodes[node].row, 0, quintptr(node));
        Q_EMIT dataChanged(index(0, InterpretedColumn, parent),
                           index(children - 1, HexadecimalColumn, parent));
    }
}

FieldInfo const *MessageFieldsModel::getFieldInfo(QModelIndex const &index) const
{
    return index.isValid() ? mNodes[size_t(index.internalId())].field : nullptr;
}

QModelIndex MessageFieldsModel::index(int row, int column, QModelIndex const &parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    const size_t node = parent.isValid() ? size_t(parent.internalId()) : 0;
    return createIndex(row, column, quintptr(mNodes[node].children[row]));
}

QModelIndex MessageFieldsModel::parent(QModelIndex const &child) const
{
    if (!child.isValid())
        return {};
    const int parent = mNodes[size_t(child.internalId())].parent;
    if (parent <= 0)
        return {};
    return createIndex(mNodes[size_t(parent)].row, 0, quintptr(parent));
}

int MessageFieldsModel::rowCount(QModelIndex const &parent) const
{
    if (parent.column() > 0)
        return 0;
    return mNodes[parent.isValid() ? size_t(parent.internalId()) : 0].children.size();
}

int MessageFieldsModel::columnCount(QModelIndex const &) const
{
    return ColumnCount;
}

QString MessageFieldsModel::valueText(Node const &node, int column) const
{
    FieldInfo const *field = node.field;
    if (field->isConfidential() && !MessageApi::confidentialInformationDisplayEnabled())
        return tr("(confidential)");
    if (column == InterpretedColumn && field->isStringField())
        return field->getValueString(node.message);
    const unsigned int count = field->getNumberOfValues(node.message);
    QStringList values;
    for (unsigned int index = 0; index < qMin(count, maxShownValues); ++index) {
        const FieldValue value = field->getValue(node.message, index);
        if (column == InterpretedColumn)
            values.append(field->getInterpretedString(value, true));
        else if (column == RawColumn)
            values.append(field->getRawString(value));
        else
            values.append(QLatin1String("0x") + value.toString(false, -1, FieldValue::Hexadecimal));
    }
    if (count > maxShownValues)
        values.append(tr("... (%n values)", nullptr, int(count)));
    return values.join(QLatin1Char(' '));
}

QVariant MessageFieldsModel::data(QModelIndex const &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    Node const &node = mNodes[size_t(index.internalId())];
    if (!node.field) {
        MessageInfo const *info = node.message->getInfo();
        if (role == Qt::DisplayRole && index.column() == NameColumn)
            return QStringLiteral("%1 [%2]").arg(info->getName()).arg(node.number);
        if (role == Qt::DisplayRole && index.column() == TitleColumn)
            return info->getShortDescriptiveText();
        if (role == Qt::ToolTipRole)
            return info->getDescriptiveText();
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case NameColumn:
            return node.field->getName();
        case TitleColumn:
            return node.field->getShortDescriptiveText();
        default:
            return valueText(node, index.column());
        }
    case Qt::ToolTipRole:
        return node.field->getDescriptiveText().isEmpty() ? node.field->getShortDescriptiveText()
                                                          : node.field->getDescriptiveText();
    default:
        return {};
    }
}

QVariant MessageFieldsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case NameColumn:
        return tr("Field");
    case TitleColumn:
        return tr("Title");
    case InterpretedColumn:
        return tr("Value");
    case RawColumn:
        return tr("Raw");
    case HexadecimalColumn:
        return tr("Hexadecimal");
    default:
        return {};
    }
}
