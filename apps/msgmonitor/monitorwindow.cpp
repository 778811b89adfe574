// SPDX-License-Identifier: LGPL-2.1-or-later
#include "monitorwindow.h"

#include "intervalchart.h"
#include "monitorsession.h"
#include "streamscanner.h"

#include <dictionarytreemodel.h>
#include <eventlogmodel.h>
#include <messagefieldsmodel.h>
#include <statisticstablemodel.h>

#include <rtcm3/rtcm3dictionary.h>

#include <fieldinfo.h>
#include <formatinfo.h>
#include <messageinfo.h>
#include <messagestatistics.h>

#include <QAction>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QTableView>
#include <QToolBar>
#include <QTreeView>
#include <QVBoxLayout>

namespace {

constexpr int refreshIntervalMs = 250;
/// Up to this many message types shown, the dictionary opens them all.
constexpr int maxExpandedMessages = 6;

QGroupBox *box(QString const &title, QWidget *content)
{
    auto *group = new QGroupBox(title);
    auto *layout = new QVBoxLayout(group);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(content);
    return group;
}

QTableView *tableView(QString const &name)
{
    auto *view = new QTableView;
    view->setObjectName(name);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setAlternatingRowColors(true);
    view->verticalHeader()->hide();
    view->verticalHeader()->setDefaultSectionSize(view->fontMetrics().height() + 6);
    view->horizontalHeader()->setHighlightSections(false);
    view->setWordWrap(false);
    return view;
}

QTreeView *treeView(QString const &name)
{
    auto *view = new QTreeView;
    view->setObjectName(name);
    view->setAlternatingRowColors(true);
    view->setUniformRowHeights(true);
    return view;
}

} // namespace

MonitorWindow::MonitorWindow(Rtcm3Dictionary const *dictionary, QWidget *parent)
    : QMainWindow(parent)
    , mDictionary(dictionary)
    , mStatisticsModel(new StatisticsTableModel(this))
    , mStatisticsProxy(new QSortFilterProxyModel(this))
    , mDictionaryModel(new DictionaryTreeModel(this))
    , mFieldsModel(new MessageFieldsModel(this))
    , mEventLogModel(new EventLogModel(this))
{
    setWindowTitle(tr("msgmonitor"));
    // The window's timer brings the models up to date, all at once.
    mStatisticsModel->setUpdateInterval(0);
    mEventLogModel->setFlushDelay(refreshIntervalMs);
    mStatisticsProxy->setSourceModel(mStatisticsModel);
    mStatisticsProxy->setSortRole(StatisticsTableModel::SortRole);
    mExpression.setConsiderSubMessages(true);
    mDictionaryModel->setPathExpression(&mExpression);

    QToolBar *toolBar = addToolBar(tr("Input"));
    toolBar->setObjectName(QStringLiteral("inputToolBar"));
    toolBar->setMovable(false);
    toolBar->addWidget(new QLabel(tr("Input:") + QLatin1Char(' ')));
    mInputEdit = new QLineEdit;
    mInputEdit->setObjectName(QStringLiteral("inputEdit"));
    mInputEdit->setPlaceholderText(
        tr("file, -, tcp://host:port, ntrip://[user:password@]host[:port]/mountpoint or "
           "serial:///dev/ttyUSB0?baud=115200"));
    connect(mInputEdit, &QLineEdit::returnPressed, this, &MonitorWindow::start);
    toolBar->addWidget(mInputEdit);
    mStartAction = toolBar->addAction(style()->standardIcon(QStyle::SP_MediaPlay), tr("Start"),
                                      this, &MonitorWindow::start);
    mStopAction = toolBar->addAction(style()->standardIcon(QStyle::SP_MediaStop), tr("Stop"), this,
                                     &MonitorWindow::stop);
    toolBar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);

    mStatisticsView = tableView(QStringLiteral("statisticsView"));
    mStatisticsView->setModel(mStatisticsProxy);
    mStatisticsView->setSortingEnabled(true);
    mStatisticsView->sortByColumn(StatisticsTableModel::MessageColumn, Qt::AscendingOrder);
    QHeaderView *header = mStatisticsView->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    connect(mStatisticsView->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &MonitorWindow::handleStatisticsSelection);

    mFieldsView = treeView(QStringLiteral("fieldsView"));
    mFieldsView->setModel(mFieldsModel);
    mFieldsView->header()->resizeSection(MessageFieldsModel::NameColumn, 150);
    mFieldsView->header()->resizeSection(MessageFieldsModel::TitleColumn, 210);
    mFieldsView->header()->resizeSection(MessageFieldsModel::InterpretedColumn, 170);
    mFieldsView->header()->resizeSection(MessageFieldsModel::RawColumn, 150);

    mChart = new IntervalChart;
    mChart->setObjectName(QStringLiteral("intervalChart"));

    mEventLogView = tableView(QStringLiteral("eventLogView"));
    mEventLogView->setModel(mEventLogModel);
    mEventLogView->horizontalHeader()->resizeSection(EventLogModel::TimeColumn, 170);
    mEventLogView->horizontalHeader()->resizeSection(EventLogModel::TypeColumn, 130);
    mEventLogView->horizontalHeader()->setStretchLastSection(true);
    connect(mEventLogModel, &QAbstractItemModel::rowsInserted, mEventLogView,
            &QTableView::scrollToBottom);

    auto *top = new QSplitter(Qt::Horizontal);
    top->addWidget(box(tr("Messages"), mStatisticsView));
    top->addWidget(createDictionaryPanel());
    top->setSizes({ 1010, 490 });
    auto *middle = new QSplitter(Qt::Horizontal);
    mFieldsBox = box(tr("Last message"), mFieldsView);
    mFieldsBox->setObjectName(QStringLiteral("fieldsBox"));
    mChartBox = box(tr("Intervals and gaps"), mChart);
    middle->addWidget(mFieldsBox);
    middle->addWidget(mChartBox);
    middle->setSizes({ 900, 600 });
    auto *main = new QSplitter(Qt::Vertical);
    main->addWidget(top);
    main->addWidget(middle);
    main->addWidget(box(tr("Event log"), mEventLogView));
    main->setSizes({ 400, 400, 150 });
    setCentralWidget(main);

    mStatusLabel = new QLabel(tr("Enter an input and press Start."));
    mStatusLabel->setObjectName(QStringLiteral("statusLabel"));
    statusBar()->addWidget(mStatusLabel, 1);

    mRefreshTimer.setInterval(refreshIntervalMs);
    connect(&mRefreshTimer, &QTimer::timeout, this, &MonitorWindow::refresh);
    resize(1500, 980);
    expandDictionary();
    showSelection();
    updateActions();
}

MonitorWindow::~MonitorWindow()
{
    // The models let go of the session's objects before they go.
    mFieldsModel->setMessage(nullptr);
    mStatisticsModel->setCoordinator(nullptr);
    mEventLogModel->setEventLog(nullptr);
}

QWidget *MonitorWindow::createDictionaryPanel()
{
    auto edit = [](QString const &name, QString const &placeholder) {
        auto *line = new QLineEdit;
        line->setObjectName(name);
        line->setPlaceholderText(placeholder);
        line->setClearButtonEnabled(true);
        return line;
    };
    mFormatEdit = edit(QStringLiteral("formatEdit"), tr("Format"));
    mMessageEdit = edit(QStringLiteral("messageEdit"), tr("Message"));
    mFieldEdit = edit(QStringLiteral("fieldEdit"), tr("Field"));
    // The typed text is the beginning of a name: the tree narrows with every key.
    connect(mFormatEdit, &QLineEdit::textChanged, &mExpression,
            &PathExpression::setFormatPartPrefix);
    connect(mMessageEdit, &QLineEdit::textChanged, &mExpression,
            &PathExpression::setMessagePartPrefix);
    connect(mFieldEdit, &QLineEdit::textChanged, &mExpression, &PathExpression::setFieldPartPrefix);
    for (QLineEdit *line : { mFormatEdit, mMessageEdit, mFieldEdit })
        connect(line, &QLineEdit::returnPressed, &mExpression, &PathExpression::completeEditing);
    connect(&mExpression, &PathExpression::matchesMayHaveChanged, this,
            &MonitorWindow::expandDictionary);
    connect(&mExpression, &PathExpression::messageInfoSelected, this,
            [this](MessageInfo const *info) {
                selectInDictionary(mDictionaryModel->findMessageInfo(info));
            });
    connect(&mExpression, &PathExpression::fieldInfoSelected, this, [this](FieldInfo const *field) {
        selectInDictionary(mDictionaryModel->findFieldInfo(field));
    });

    mDictionaryView = treeView(QStringLiteral("dictionaryView"));
    mDictionaryView->setModel(mDictionaryModel);
    mDictionaryView->header()->resizeSection(DictionaryTreeModel::NameColumn, 150);
    mDictionaryView->header()->resizeSection(DictionaryTreeModel::TitleColumn, 250);
    mDictionaryView->header()->resizeSection(DictionaryTreeModel::TypeColumn, 60);
    mDictionaryView->header()->resizeSection(DictionaryTreeModel::UnitColumn, 50);
    connect(mDictionaryView->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &MonitorWindow::handleDictionarySelection);
    // The selection model is replaced with the model's rows on every reset; it stays the same
    // object, so the connection holds.

    auto *panel = new QWidget;
    auto *layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    auto *edits = new QHBoxLayout;
    edits->addWidget(mFormatEdit, 1);
    edits->addWidget(mMessageEdit, 1);
    edits->addWidget(mFieldEdit, 2);
    layout->addLayout(edits);
    layout->addWidget(mDictionaryView);
    return box(tr("Dictionary"), panel);
}

void MonitorWindow::setInput(QString const &input)
{
    mInputEdit->setText(input);
}

QString MonitorWindow::getInput() const
{
    return mInputEdit->text().trimmed();
}

void MonitorWindow::start()
{
    stop();
    mFieldsModel->setMessage(nullptr);
    mStatisticsModel->setCoordinator(nullptr);
    mEventLogModel->setEventLog(nullptr);
    mSelectedInfo = nullptr;
    mSelectedName.clear();
    const QDate date = mFallbackDate.isValid()
        ? mFallbackDate
        : StreamScanner::getStreamDate(mDictionary, getInput(), QDate::currentDate());
    mSession = std::make_unique<MonitorSession>(mDictionary, getInput(), date, mReconnectSeconds);
    if (!mSession->getUsageError().isEmpty()) {
        showError(mSession->getUsageError());
        Q_EMIT scanFailed(mSession->getUsageError());
        updateActions();
        return;
    }
    mStatisticsModel->setCoordinator(&mSession->getScanner().getCoordinator());
    mEventLogModel->setEventLog(mSession->getScanner().getEventLog());
    connect(mSession.get(), &MonitorSession::runningChanged, this, &MonitorWindow::updateActions);
    connect(mSession.get(), &MonitorSession::finished, this, [this]() {
        mRefreshTimer.stop();
        refresh();
        Q_EMIT scanFinished();
    });
    connect(mSession.get(), &MonitorSession::failed, this, [this](QString const &why) {
        mRefreshTimer.stop();
        refresh();
        showError(why);
        Q_EMIT scanFailed(why);
    });
    mRefreshTimer.start();
    showSelection();
    mSession->start();
    updateStatus();
}

void MonitorWindow::stop()
{
    if (!mSession || !mSession->isRunning())
        return;
    mSession->stop();
    mRefreshTimer.stop();
    refresh();
}

void MonitorWindow::showError(QString const &text)
{
    mStatusLabel->setText(text);
    mStatusLabel->setStyleSheet(QStringLiteral("color: #c62828"));
}

void MonitorWindow::updateActions()
{
    const bool running = mSession && mSession->isRunning();
    mStartAction->setEnabled(!running);
    mStopAction->setEnabled(running);
    mInputEdit->setEnabled(!running);
}

void MonitorWindow::refresh()
{
    mStatisticsModel->update();
    mEventLogModel->flush();
    // Until the user chooses, the most frequent type is shown.
    if (!mSelectedInfo && mSelectedName.isEmpty() && mStatisticsModel->rowCount() > 0) {
        int busiest = 0;
        for (int row = 1; row < mStatisticsModel->rowCount(); ++row)
            if (mStatisticsModel->getMessageStatistics(row)->getCount()
                > mStatisticsModel->getMessageStatistics(busiest)->getCount())
                busiest = row;
        mStatisticsView->selectRow(
            mStatisticsProxy->mapFromSource(mStatisticsModel->index(busiest, 0)).row());
        mStatisticsView->scrollTo(mStatisticsView->currentIndex());
    }
    showSelection();
    updateStatus();
}

void MonitorWindow::updateStatus()
{
    if (!mSession || !mSession->getUsageError().isEmpty())
        return;
    StreamScanner const &scanner = mSession->getScanner();
    QString state;
    if (mSession->isRunning())
        state = tr("reading");
    else if (mStatusLabel->styleSheet().isEmpty())
        state = tr("stopped");
    else
        return; // the error stays shown
    mStatusLabel->setText(tr("%1 (%2): %3 bytes, %4 frames, %5 bytes outside frames, %6 CRC errors")
                              .arg(scanner.getInput(), state)
                              .arg(scanner.getByteCount())
                              .arg(scanner.getFramer().getFrameCount())
                              .arg(scanner.getFramer().getForeignByteCount())
                              .arg(scanner.getFramer().getCrcErrorCount()));
}

MessageStatistics const *MonitorWindow::findStatistics() const
{
    if (!mSession)
        return nullptr;
    for (MessageStatistics const *statistics :
         mSession->getScanner().getCoordinator().getAllMessageStatistics()) {
        if (mSelectedInfo ? statistics->getMessageInfo() == mSelectedInfo
                          : !statistics->getMessageInfo()
                    && statistics->getFormatInfo()->getName() + QLatin1Char(' ')
                            + statistics->getMessageName()
                        == mSelectedName)
            return statistics;
    }
    return nullptr;
}

void MonitorWindow::showSelection()
{
    MessageStatistics const *statistics = findStatistics();
    Message const *message
        = mSession && mSelectedInfo ? mSession->getLastMessage(mSelectedInfo) : nullptr;
    mFieldsModel->setMessage(message);
    if (mSelectedInfo)
        mFieldsBox->setTitle(tr("Last message: %1 %2 %3")
                                 .arg(mSelectedInfo->getFormatInfo()->getName(),
                                      mSelectedInfo->getName(),
                                      mSelectedInfo->getShortDescriptiveText()));
    else
        mFieldsBox->setTitle(tr("Last message"));
    const StreamScanner *scanner = mSession ? &mSession->getScanner() : nullptr;
    mChart->setStatistics(statistics, scanner ? scanner->getFirstMillis() : 0,
                          scanner ? scanner->getLastMillis() : 0);
}

void MonitorWindow::selectMessageInfo(MessageInfo const *info)
{
    mSelectedInfo = info;
    mSelectedName.clear();
    const int row = mStatisticsModel->findRow(info);
    if (row >= 0 && !mSelecting) {
        mSelecting = true;
        mStatisticsView->selectRow(
            mStatisticsProxy->mapFromSource(mStatisticsModel->index(row, 0)).row());
        mSelecting = false;
    }
    showSelection();
}

void MonitorWindow::handleStatisticsSelection(QModelIndex const &current)
{
    MessageStatistics const *statistics
        = mStatisticsModel->getMessageStatistics(mStatisticsProxy->mapToSource(current).row());
    if (!statistics || mSelecting)
        return;
    if (statistics->getMessageInfo()) {
        selectMessageInfo(statistics->getMessageInfo());
        return;
    }
    mSelectedInfo = nullptr;
    mSelectedName
        = statistics->getFormatInfo()->getName() + QLatin1Char(' ') + statistics->getMessageName();
    showSelection();
}

void MonitorWindow::handleDictionarySelection(QModelIndex const &current)
{
    // A field or a sub-message type stands for the top-level message type that holds it.
    QModelIndex index = current;
    while (index.isValid() && !mDictionaryModel->getFormatInfo(index.parent()))
        index = index.parent();
    if (index.isValid())
        selectMessageInfo(mDictionaryModel->getMessageInfo(index));
}

void MonitorWindow::selectInDictionary(QModelIndex const &index)
{
    if (!index.isValid())
        return;
    mDictionaryView->setCurrentIndex(index);
    mDictionaryView->scrollTo(index);
}

void MonitorWindow::expandDictionary()
{
    int messages = 0;
    for (int format = 0; format < mDictionaryModel->rowCount(); ++format) {
        const QModelIndex index = mDictionaryModel->index(format, 0);
        mDictionaryView->expand(index);
        messages += mDictionaryModel->rowCount(index);
    }
    if (messages <= maxExpandedMessages)
        mDictionaryView->expandAll();
}
