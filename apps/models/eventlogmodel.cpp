// SPDX-License-Identifier: LGPL-2.1-or-later
#include "eventlogmodel.h"

#include <QBrush>
#include <QColor>

namespace {

constexpr int defaultFlushDelayMs = 100;

} // namespace

EventLogModel::EventLogModel(QObject *parent)
    : QAbstractTableModel(parent)
{
    mFlushTimer.setSingleShot(true);
    mFlushTimer.setInterval(defaultFlushDelayMs);
    connect(&mFlushTimer, &QTimer::timeout, this, &EventLogModel::flush);
}

EventLogModel::~EventLogModel() = default;

void EventLogModel::setEventLog(EventLog *log)
{
    if (mLog)
        disconnect(mLog, nullptr, this, nullptr);
    mLog = log;
    if (log) {
        connect(log, &EventLog::newEntry, this, &EventLogModel::addEntry);
        connect(log, &EventLog::cleared, this, [this]() { resetTo({}); });
    }
    resetTo(log ? log->getEntries() : QList<EventLog::Entry>());
}

void EventLogModel::resetTo(QList<EventLog::Entry> const &entries)
{
    mFlushTimer.stop();
    beginResetModel();
    mPending.clear();
    mEntries = entries;
    endResetModel();
}

void EventLogModel::addEntry(EventLog::Entry const &entry)
{
    mPending.append(entry);
    if (!mFlushTimer.isActive())
        mFlushTimer.start();
}

void EventLogModel::flush()
{
    mFlushTimer.stop();
    if (mPending.isEmpty())
        return;
    beginInsertRows({}, mEntries.size(), mEntries.size() + mPending.size() - 1);
    mEntries += mPending;
    mPending.clear();
    endInsertRows();
}

int EventLogModel::rowCount(QModelIndex const &parent) const
{
    return parent.isValid() ? 0 : mEntries.size();
}

int EventLogModel::columnCount(QModelIndex const &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant EventLogModel::data(QModelIndex const &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    EventLog::Entry const &entry = mEntries[index.row()];
    switch (role) {
    case Qt::DisplayRole:
        switch (index.column()) {
        case TimeColumn:
            return entry.time.isValid() ? entry.time.toString(Qt::ISODate) : QStringLiteral("-");
        case TypeColumn:
            return entry.event.getTypeString();
        default:
            return entry.event.getMessage();
        }
    case Qt::ToolTipRole:
        return index.column() == TextColumn ? entry.event.getMessage() : QVariant();
    case Qt::ForegroundRole:
        return entry.event.isError() ? QBrush(QColor(0xc6, 0x28, 0x28)) : QVariant();
    case IsErrorRole:
        return entry.event.isError();
    default:
        return {};
    }
}

QVariant EventLogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case TimeColumn:
        return tr("Time");
    case TypeColumn:
        return tr("Type");
    case TextColumn:
        return tr("Text");
    default:
        return {};
    }
}
