// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MSGMONITOR_MONITORWINDOW_H
#define MSGMONITOR_MONITORWINDOW_H

#include <pathexpression.h>

#include <QDate>
#include <QMainWindow>
#include <QTimer>

#include <memory>

class DictionaryTreeModel;
class EventLogModel;
class IntervalChart;
class MessageFieldsModel;
class MessageInfo;
class MessageStatistics;
class MonitorSession;
class QAction;
class QGroupBox;
class QLabel;
class QLineEdit;
class QModelIndex;
class QSortFilterProxyModel;
class QTableView;
class QTreeView;
class Rtcm3Dictionary;
class StatisticsTableModel;

/**
 * The monitor's window: the input with start and stop; the statistics of every message type;
 * the dictionary with a path-expression editor that narrows it as one types (Enter selects the
 * one message type or field it matches); the latest message of the selected type with its
 * fields; the histogram of the type's intervals and its gaps over time; and the event log.
 *
 * Messages arrive far more often than anyone can read, so the views are brought up to date on
 * a timer, four times a second, and at once when the input ends.
 */
class MonitorWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// The dictionary is not owned and must outlive the window.
    explicit MonitorWindow(Rtcm3Dictionary const *dictionary, QWidget *parent = nullptr);
    ~MonitorWindow() override;

    void setInput(QString const &input);
    QString getInput() const;
    /// The date whose GPS week the stream's times fall in until the stream tells its week.
    /// The date whose GPS week the stream's times fall in until the stream tells its week; when
    /// none is set, the week a file's first messages tell, else today.
    void setFallbackDate(QDate date) { mFallbackDate = date; }
    void setReconnectSeconds(int seconds) { mReconnectSeconds = seconds; }
    /// The current run, or null before the first start.
    MonitorSession const *getSession() const { return mSession.get(); }
    /// The message type whose last message and intervals are shown, or null.
    MessageInfo const *getSelectedMessageInfo() const { return mSelectedInfo; }

public Q_SLOTS:
    /// Starts a new run on the input; what the previous one showed is dropped.
    void start();
    void stop();
    /// Brings every view up to date now.
    void refresh();
    /// Shows the latest message and the intervals of the type, and selects its row.
    void selectMessageInfo(MessageInfo const *info);

Q_SIGNALS:
    /// The input (a file or standard input) has ended and the views show all of it.
    void scanFinished();
    /// The input could not be read; why is "what failed: why".
    void scanFailed(QString const &why);

private:
    Q_DISABLE_COPY(MonitorWindow)

    QWidget *createDictionaryPanel();
    void showError(QString const &text);
    void updateActions();
    void updateStatus();
    void showSelection();
    void handleStatisticsSelection(QModelIndex const &current);
    void handleDictionarySelection(QModelIndex const &current);
    void selectInDictionary(QModelIndex const &index);
    void expandDictionary();
    MessageStatistics const *findStatistics() const;

    Rtcm3Dictionary const *mDictionary;
    std::unique_ptr<MonitorSession> mSession;
    QDate mFallbackDate; // invalid: not set
    int mReconnectSeconds = 10;

    PathExpression mExpression;
    StatisticsTableModel *mStatisticsModel;
    QSortFilterProxyModel *mStatisticsProxy;
    DictionaryTreeModel *mDictionaryModel;
    MessageFieldsModel *mFieldsModel;
    EventLogModel *mEventLogModel;

    QLineEdit *mInputEdit;
    QAction *mStartAction;
    QAction *mStopAction;
    QTableView *mStatisticsView;
    QLineEdit *mFormatEdit;
    QLineEdit *mMessageEdit;
    QLineEdit *mFieldEdit;
    QTreeView *mDictionaryView;
    QGroupBox *mFieldsBox;
    QTreeView *mFieldsView;
    QGroupBox *mChartBox;
    IntervalChart *mChart;
    QTableView *mEventLogView;
    QLabel *mStatusLabel;
    QTimer mRefreshTimer;

    /// The shown type: a known one, or an unknown one by format and name.
    MessageInfo const *mSelectedInfo = nullptr;
    QString mSelectedName;
    bool mSelecting = false;
};

#endif // MSGMONITOR_MONITORWINDOW_H
