// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPIMODELS_STATISTICSTABLEMODEL_H
#define MESSAGEAPIMODELS_STATISTICSTABLEMODEL_H

#include "messageapimodels_export.h"

#include <QAbstractTableModel>
#include <QPointer>
#include <QTimer>
#include <QVariant>
#include <QVector>

#include <array>

class MessageInfo;
class MessageStatistics;
class MessageStatisticsCoordinator;

/**
 * The statistics of a MessageStatisticsCoordinator as a table, one row per message type in the
 * order the coordinator made them: format, message, title, count, rate, regular interval, last
 * interval, whether the type is regular now, gaps and missing epochs.
 *
 * Messages arrive far more often than a view can follow, so the model reads the coordinator
 * on a timer (every 250 ms by default) or when update() is called: new types become row
 * inserts, changed values one dataChanged() per row for the cells that changed. The view is
 * never reset, except when the coordinator was cleared. What data() returns is what the last
 * update read.
 *
 * The rate is the number of intervals in the histogram over their sum, so it is the type's own
 * rate over the time it was seen; the regular interval is the most frequent one (the shortest of
 * equally frequent ones). SortRole gives numbers for the numeric columns, for a sort proxy.
 */
class MESSAGEAPIMODELS_EXPORT StatisticsTableModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column {
        FormatColumn,
        MessageColumn,
        TitleColumn,
        CountColumn,
        RateColumn,
        RegularIntervalColumn,
        LastIntervalColumn,
        RegularNowColumn,
        GapsColumn,
        MissingEpochsColumn,
        ColumnCount
    };
    enum Role { SortRole = Qt::UserRole };

    explicit StatisticsTableModel(QObject *parent = nullptr);
    ~StatisticsTableModel() override;

    /// Shows the coordinator's statistics (null: none). Not owned.
    void setCoordinator(MessageStatisticsCoordinator const *coordinator);
    /// How often the coordinator is read, in ms; 0 stops the timer (update() alone then).
    void setUpdateInterval(int milliseconds);

    /// The statistics of the row, or null.
    MessageStatistics const *getMessageStatistics(int row) const;
    /// The row of the known message type, or -1.
    int findRow(MessageInfo const *info) const;

    int rowCount(QModelIndex const &parent = {}) const override;
    int columnCount(QModelIndex const &parent = {}) const override;
    QVariant data(QModelIndex const &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

public Q_SLOTS:
    /// Reads the coordinator now.
    void update();

private:
    Q_DISABLE_COPY(StatisticsTableModel)

    struct Row
    {
        MessageStatistics const *statistics = nullptr;
        MessageInfo const *info = nullptr;
        std::array<QVariant, ColumnCount> display;
        std::array<QVariant, ColumnCount> sort;
        bool regularNow = false;
    };

    static Row readRow(MessageStatistics const *statistics);

    QPointer<MessageStatisticsCoordinator const> mCoordinator;
    QVector<Row> mRows;
    QTimer mTimer;
};

#endif // MESSAGEAPIMODELS_STATISTICSTABLEMODEL_H
