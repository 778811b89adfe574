// SPDX-License-Identifier: LGPL-2.1-or-later
#include "intervalchart.h"
#include "monitorwindow.h"
#include "rtcm3testdata.h"

#include <rtcm3/rtcm3dictionary.h>

#include <messageinfo.h>

#include <QDir>
#include <QGroupBox>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QSignalSpy>
#include <QTableView>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeView>

using Rtcm3TestData::captureDir;

namespace {

/// The texts of a view's rows in one column, below parent.
QStringList column(QAbstractItemModel const *model, int column, QModelIndex const &parent = {})
{
    QStringList texts;
    for (int row = 0; row < model->rowCount(parent); ++row)
        texts.append(model->index(row, column, parent).data().toString());
    return texts;
}

/// The first row of the view whose cell in the column shows text, or -1.
int findRow(QAbstractItemModel const *model, int column, QString const &text)
{
    return ::column(model, column).indexOf(text);
}

} // namespace

class tst_MsgMonitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadStream();
    void pathExpressionEditor_data();
    void pathExpressionEditor();
    void badInput_data();
    void badInput();
    void program();

private:
    template <typename T> T *child(QString const &name)
    {
        T *widget = mWindow->findChild<T *>(name);
        Q_ASSERT(widget);
        return widget;
    }
    void screenshot(QString const &name)
    {
        QVERIFY(mWindow->grab().save(QDir::current().filePath(name + QStringLiteral(".png"))));
    }

    Rtcm3Dictionary mDictionary;
    MonitorWindow *mWindow = nullptr;

private Q_SLOTS:
    void init()
    {
        mWindow = new MonitorWindow(&mDictionary);
        mWindow->show();
        QVERIFY(QTest::qWaitForWindowExposed(mWindow));
    }
    void cleanup() { delete mWindow; }
};

void tst_MsgMonitor::loadStream()
{
    if (captureDir().isEmpty())
        QSKIP("the real captures (../shared/data/rtcm) are absent");
    const QString capture = captureDir() + QStringLiteral("/dropped-packets.rtcm3");
    QSignalSpy finished(mWindow, &MonitorWindow::scanFinished);
    QTest::keyClicks(child<QLineEdit>(QStringLiteral("inputEdit")), capture);
    QTest::keyClick(child<QLineEdit>(QStringLiteral("inputEdit")), Qt::Key_Return);
    QVERIFY(finished.wait(60000));

    QCOMPARE(child<QLabel>(QStringLiteral("statusLabel"))->text(),
             capture
                 + QStringLiteral(" (stopped): 1300249 bytes, 7934 frames, 171 bytes outside "
                                  "frames, 0 CRC errors"));
    // Every message type, sorted by number, with the counts of the capture.
    auto *statistics = child<QTableView>(QStringLiteral("statisticsView"))->model();
    QCOMPARE(column(statistics, 1).join(QLatin1Char(' ')),
             "1006 1008 1013 1019 1020 1033 1042 1044 1045 1046 1074 1084 1094 1114 1124 1230");
    QCOMPARE(column(statistics, 3).join(QLatin1Char(' ')),
             "131 131 132 363 242 131 42 4 34 34 1311 1312 1312 1312 1312 131");
    auto *eventLog = child<QTableView>(QStringLiteral("eventLogView"))->model();
    QVERIFY(eventLog->rowCount() > 0);
    QVERIFY(eventLog->index(0, 2).data().toString().startsWith("framer: "));

    // The busiest type is shown until the user picks another one.
    QCOMPARE(mWindow->getSelectedMessageInfo()->getName(), "1084");
    auto *view = child<QTableView>(QStringLiteral("statisticsView"));
    const QModelIndex row1006 = statistics->index(findRow(statistics, 1, "1006"), 1);
    view->scrollTo(row1006);
    QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, view->visualRect(row1006).center());
    QCOMPARE(child<QGroupBox>(QStringLiteral("fieldsBox"))->title(),
             "Last message: RTCM3 1006 Stationary RTK reference station ARP with antenna height");
    auto *fields = child<QTreeView>(QStringLiteral("fieldsView"))->model();
    const int x = findRow(fields, 0, "DF025");
    QVERIFY(x >= 0);
    QVERIFY(fields->index(x, 2).data().toString().endsWith(" m"));
    QVERIFY(fields->index(x, 4).data().toString().startsWith("0x"));
    const auto bars = child<IntervalChart>(QStringLiteral("intervalChart"))->getBars();
    QVERIFY(!bars.isEmpty());
    QCOMPARE(bars.first().first, 10000);
    screenshot(QStringLiteral("tst_msgmonitor-stream"));
}

void tst_MsgMonitor::pathExpressionEditor_data()
{
    QTest::addColumn<QString>("message");
    QTest::addColumn<QString>("field");
    QTest::addColumn<bool>("enter");
    QTest::addColumn<QStringList>("messages"); // sorted
    QTest::addColumn<QString>("current");

    QTest::newRow("message prefix")
        << "100" << QString() << false
        << QStringList { "1001", "1002", "1003", "1004", "1005", "1006", "1007", "1008", "1009" }
        << QString();
    QTest::newRow("field prefix across MSM types")
        << "107"
        << "df40" << false << QStringList { "1071", "1072", "1073", "1074", "1075", "1076", "1077" }
        << QString();
    QTest::newRow("Enter selects the one field")
        << "1006"
        << "DF028" << true << QStringList { "1006" } << "DF028";
    QTest::newRow("Enter with several matches selects the message type")
        << "1033"
        << "DF" << true << QStringList { "1033" } << "1033";
    QTest::newRow("nothing matches") << "9" << QString() << false << QStringList() << QString();
}

void tst_MsgMonitor::pathExpressionEditor()
{
    QFETCH(QString, message);
    QFETCH(QString, field);
    QFETCH(bool, enter);
    QFETCH(QStringList, messages);
    QFETCH(QString, current);

    auto *tree = child<QTreeView>(QStringLiteral("dictionaryView"));
    QTest::keyClicks(child<QLineEdit>(QStringLiteral("messageEdit")), message);
    QTest::keyClicks(child<QLineEdit>(QStringLiteral("fieldEdit")), field);
    if (enter)
        QTest::keyClick(child<QLineEdit>(QStringLiteral("fieldEdit")), Qt::Key_Return);
    const QModelIndex format = tree->model()->index(0, 0);
    QStringList shown = column(tree->model(), 0, format);
    shown.sort();
    QCOMPARE(shown, messages);
    for (int row = 0; row < messages.size(); ++row) {
        const QModelIndex index = tree->model()->index(row, 0, format);
        // Fields shown for their own sake; sub-message fields show what matches inside them.
        for (int child = 0; child < tree->model()->rowCount(index); ++child) {
            const QModelIndex fieldIndex = tree->model()->index(child, 0, index);
            if (tree->model()->rowCount(fieldIndex) == 0)
                QVERIFY2(fieldIndex.data().toString().startsWith(field, Qt::CaseInsensitive),
                         qPrintable(fieldIndex.data().toString()));
        }
    }
    QCOMPARE(tree->currentIndex().data().toString(), current);
    if (enter)
        QCOMPARE(mWindow->getSelectedMessageInfo()->getName(), message);
    screenshot(QStringLiteral("tst_msgmonitor-dictionary-") + QString::number(messages.size()));
}

void tst_MsgMonitor::badInput_data()
{
    QTest::addColumn<QString>("input");
    QTest::addColumn<QString>("error");

    QTest::newRow("missing file") << "/nonexistent/capture.rtcm3"
                                  << "cannot open /nonexistent/capture.rtcm3: No such file or "
                                     "directory";
    QTest::newRow("URL without port")
        << "tcp://localhost"
        << "bad input URL tcp://localhost: a host and a port are needed (tcp://host:port)";
}

void tst_MsgMonitor::badInput()
{
    QFETCH(QString, input);
    QFETCH(QString, error);

    QSignalSpy failed(mWindow, &MonitorWindow::scanFailed);
    mWindow->setInput(input);
    mWindow->start();
    QTRY_COMPARE(failed.count(), 1);
    QCOMPARE(failed.first().first().toString(), error);
    QCOMPARE(child<QLabel>(QStringLiteral("statusLabel"))->text(), error);
}

void tst_MsgMonitor::program()
{
    // Qt's note on a missing runtime folder is not the program's output.
    QTemporaryDir runtime;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtime.path());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(MSGMONITOR_PROGRAM),
                  { QStringLiteral("--reconnect"), QStringLiteral("soon") });
    QVERIFY(process.waitForFinished());
    QCOMPARE(process.exitCode(), 2);
    QCOMPARE(process.readAllStandardError(),
             "msgmonitor: bad --reconnect soon: not a whole number of seconds\n"
             "Try 'msgmonitor --help' for more information.\n");

    if (captureDir().isEmpty())
        QSKIP("the real captures (../shared/data/rtcm) are absent");
    const QString picture = QDir::current().filePath(QStringLiteral("tst_msgmonitor-program.png"));
    QFile::remove(picture);
    process.start(QStringLiteral(MSGMONITOR_PROGRAM),
                  { QStringLiteral("--screenshot"), picture,
                    captureDir() + QStringLiteral("/gmsd7-truncated.rtcm3") });
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitCode(), 0);
    QVERIFY(!QImage(picture).isNull());
}

QTEST_MAIN(tst_MsgMonitor)
#include "tst_msgmonitor.moc"
