// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MESSAGEAPIMODELS_EVENTLOGMODEL_H
#define MESSAGEAPIMODELS_EVENTLOGMODEL_H

#include "messageapimodels_export.h"

#include <eventlog.h>

#include <QAbstractTableModel>
#include <QList>
#include <QPointer>
#include <QTimer>

/**
 * An EventLog as a table: time, type and text of each entry, oldest first; errors are drawn in
 * red and IsErrorRole tells them.
 *
 * A broken stream brings events in bursts, so new entries are collected and inserted together
 * when the timer fires (100 ms after the first of them by default) or flush() is called. The
 * model keeps its own copy of the entries: a deleted log leaves them shown.
 */
class MESSAGEAPIMODELS_EXPORT EventLogModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { TimeColumn, TypeColumn, TextColumn, ColumnCount };
    enum Role { IsErrorRole = Qt::UserRole };

    explicit EventLogModel(QObject *parent = nullptr);
    ~EventLogModel() override;

    /// Shows the log's entries and follows it (null: empty). Not owned.
    void setEventLog(EventLog *log);
    /// How long new entries wait to be inserted together, in ms.
    void setFlushDelay(int milliseconds) { mFlushTimer.setInterval(milliseconds); }

    EventLog::Entry getEntry(int row) const { return mEntries.value(row); }

    int rowCount(QModelIndex const &parent = {}) const override;
    int columnCount(QModelIndex const &parent = {}) const override;
    QVariant data(QModelIndex const &index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;

public Q_SLOTS:
    /// Inserts the entries that are waiting now.
    void flush();

private:
    Q_DISABLE_COPY(EventLogModel)

    void addEntry(EventLog::Entry const &entry);
    void resetTo(QList<EventLog::Entry> const &entries);

    QPointer<EventLog> mLog;
    QList<EventLog::Entry> mEntries;
    QList<EventLog::Entry> mPending;
    QTimer mFlushTimer;
};

#endif // MESSAGEAPIMODELS_EVENTLOGMODEL_H
