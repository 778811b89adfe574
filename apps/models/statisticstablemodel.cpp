// SPDX-License-Identifier: LGPL-2.1-or-later
#include "statisticstablemodel.h"

#include <formatinfo.h>
#include <messageinfo.h>
#include <messagestatistics.h>
#include <messagestatisticscoordinator.h>

#include <QBrush>
#include <QColor>

namespace {

constexpr int defaultUpdateIntervalMs = 250;
/// Longer intervals are the stream's time moving to another week, not a message rate.
constexpr long long maxIntervalMs = 7LL * 24 * 3600 * 1000;

QString const &noValue()
{
    static const QString text = QStringLiteral("-");
    return text;
}

} // namespace

StatisticsTableModel::StatisticsTableModel(QObject *parent)
    : QAbstractTableModel(parent)
{
    mTimer.setInterval(defaultUpdateIntervalMs);
    connect(&mTimer, &QTimer::timeout, this, &StatisticsTableModel::update);
}

StatisticsTableModel::~StatisticsTableModel() = default;

void StatisticsTableModel::setCoordinator(MessageStatisticsCoordinator const *coordinator)
{
    beginResetModel();
    mCoordinator = coordinator;
    mRows.clear();
    endResetModel();
    update();
    if (coordinator && mTimer.interval() > 0)
        mTimer.start();
    else
        mTimer.stop();
}

void StatisticsTableModel::setUpdateInterval(int milliseconds)
{
    mTimer.setInterval(milliseconds);
    if (milliseconds <= 0)
        mTimer.stop();
    else if (mCoordinator)
        mTimer.start();
}

StatisticsTableModel::Row StatisticsTableModel::readRow(MessageStatistics const *statistics)
{
    Row row;
    row.statistics = statistics;
    row.info = statistics->getMessageInfo();
    auto set = [&row](Column column, QVariant display, QVariant sort) {
        row.display[column] = std::move(display);
        row.sort[column] = std::move(sort);
    };
    const QString name = statistics->getMessageName();
    bool numeric = false;
    const int number = name.toInt(&numeric);
    set(FormatColumn, statistics->getFormatInfo()->getName(),
        statistics->getFormatInfo()->getName());
    set(MessageColumn, name, numeric ? QVariant(number) : QVariant(name));
    const QString title
        = row.info ? row.info->getShortDescriptiveText() : StatisticsTableModel::tr("(unknown)");
    set(TitleColumn, title, title);
    set(CountColumn, statistics->getCount(), statistics->getCount());

    // The histogram holds an interval for each message (the first one's is taken from those
    // that follow it), so the messages over the sum of their intervals is the type's rate.
    // Intervals of zero or less (time standing still or going back) and week steps tell no rate.
    const QHash<long long, unsigned int> histogram = statistics->getIntervalCountHash();
    long long intervalCount = 0;
    long long totalMillis = 0;
    long long regular = 0;
    unsigned int regularCount = 0;
    for (auto it = histogram.cbegin(); it != histogram.cend(); ++it) {
        if (it.key() <= 0 || it.key() >= maxIntervalMs || it.value() == 0)
            continue;
        intervalCount += it.value();
        totalMillis += it.key() * it.value();
        if (it.value() > regularCount || (it.value() == regularCount && it.key() < regular)) {
            regular = it.key();
            regularCount = it.value();
        }
    }
    const double rate = totalMillis > 0 ? intervalCount * 1000.0 / totalMillis : 0.0;
    set(RateColumn, rate > 0 ? StatisticsTableModel::tr("%1/s").arg(rate, 0, 'g', 3) : noValue(),
        rate);
    set(RegularIntervalColumn,
        regular > 0 ? statistics->getIntervalString((unsigned long long)regular) : noValue(),
        regular);
    const long long last = statistics->hasValidLastInterval() ? statistics->getLastInterval() : -1;
    set(LastIntervalColumn, last >= 0 ? StatisticsTableModel::tr("%1 ms").arg(last) : noValue(),
        last);
    row.regularNow = statistics->isCurrentlyRegular();
    set(RegularNowColumn,
        row.regularNow ? StatisticsTableModel::tr("yes") : StatisticsTableModel::tr("no"),
        row.regularNow);
    set(GapsColumn, statistics->getNumberOfGaps(), statistics->getNumberOfGaps());
    set(MissingEpochsColumn, statistics->getNumberOfMissingEpochs(),
        statistics->getNumberOfMissingEpochs());
    return row;
}

void StatisticsTableModel::update()
{
    const QList<MessageStatistics *> all
        = mCoordinator ? mCoordinator->getAllMessageStatistics() : QList<MessageStatistics *>();
    // The coordinator only appends, unless it was cleared: then the rows start again.
    bool cleared = all.size() < mRows.size();
    for (int row = 0; row < mRows.size() && !cleared; ++row)
        cleared = mRows[row].statistics != all[row];
    if (cleared) {
        beginResetModel();
        mRows.clear();
        endResetModel();
    }
    for (int row = 0; row < mRows.size(); ++row) {
        Row fresh = readRow(all[row]);
        int first = ColumnCount;
        int last = -1;
        for (int column = 0; column < ColumnCount; ++column) {
            if (fresh.display[column] != mRows[row].display[column]) {
                first = qMin(first, column);
                last = column;
            }
        }
        mRows[row] = std::move(fresh);
        if (last >= 0)
            Q_EMIT dataChanged(index(row, first), index(row, last));
    }
    if (all.size() > mRows.size()) {
        beginInsertRows({}, mRows.size(), all.size() - 1);
        for (int row = mRows.size(); row < all.size(); ++row)
            mRows.append(readRow(all[row]));
        endInsertRows();
    }
}

MessageStatistics const *StatisticsTableModel::getMessageStatistics(int row) const
{
    // Read from the coordinator, not from the rows: those may name statistics that were
    // deleted since the last update.
    if (!mCoordinator || row < 0 || row >= mRows.size())
        return nullptr;
    const QList<MessageStatistics *> all = mCoordinator->getAllMessageStatistics();
    return row < all.size() && all[row] == mRows[row].statistics ? all[row] : nullptr;
}

int StatisticsTableModel::findRow(MessageInfo const *info) const
{
    for (int row = 0; row < mRows.size(); ++row)
        if (info && mRows[row].info == info)
            return row;
    return -1;
}

int StatisticsTableModel::rowCount(QModelIndex const &parent) const
{
    return parent.isValid() ? 0 : mRows.size();
}

int StatisticsTableModel::columnCount(QModelIndex const &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant StatisticsTableModel::data(QModelIndex const &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    Row const &row = mRows[index.row()];
    const int column = index.column();
    switch (role) {
    case Qt::DisplayRole:
        return row.display[column];
    case SortRole:
        return row.sort[column];
    case Qt::TextAlignmentRole:
        return column >= CountColumn && column != RegularNowColumn
            ? QVariant(Qt::AlignRight | Qt::AlignVCenter)
            : QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    case Qt::ForegroundRole:
        if (column == RegularNowColumn)
            return QBrush(row.regularNow ? QColor(0x2e, 0x7d, 0x32) : QColor(0x9e, 0x9e, 0x9e));
        if ((column == GapsColumn || column == MissingEpochsColumn)
            && row.display[column].toInt() > 0)
            return QBrush(QColor(0xc6, 0x28, 0x28));
        return {};
    default:
        return {};
    }
}

QVariant StatisticsTableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    switch (section) {
    case FormatColumn:
        return tr("Format");
    case MessageColumn:
        return tr("Message");
    case TitleColumn:
        return tr("Title");
    case CountColumn:
        return tr("Count");
    case RateColumn:
        return tr("Rate");
    case RegularIntervalColumn:
        return tr("Regular interval");
    case LastIntervalColumn:
        return tr("Last interval");
    case RegularNowColumn:
        return tr("Regular now");
    case GapsColumn:
        return tr("Gaps");
    case MissingEpochsColumn:
        return tr("Missing epochs");
    default:
        return {};
    }
}
