// SPDX-License-Identifier: LGPL-2.1-or-later
#ifndef MSGMONITOR_INTERVALCHART_H
#define MSGMONITOR_INTERVALCHART_H

#include <messagestatistics.h>

#include <QPair>
#include <QVector>
#include <QWidget>

/**
 * Two charts of one message type, painted: above, the histogram of its intervals (the most
 * frequent ones, in order of duration, each bar labelled with its count); below, its gaps over
 * the stream's time, each a red bar as long as the time it lasted and as high as the epochs it
 * missed.
 */
class IntervalChart : public QWidget
{
    Q_OBJECT

public:
    /// Bars shown at most: the most frequent intervals.
    static constexpr int maxBars = 12;

    explicit IntervalChart(QWidget *parent = nullptr);

    /// Shows the statistics (null: a hint to select a type), over the stream time from first
    /// to last (ms since the GPS epoch). Nothing of the statistics is kept.
    void setStatistics(MessageStatistics const *statistics, unsigned long long firstMillis,
                       unsigned long long lastMillis);

    /// The shown bars: interval in ms and count, in order of duration.
    QVector<QPair<long long, unsigned int>> getBars() const { return mBars; }
    /// The shown gaps.
    QVector<MessageStatistics::Gap> getGaps() const { return mGaps; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// A section's title in bold at the top left of its area.
    void paintTitle(QPainter &painter, QRect const &area, QString const &title) const;
    void paintHistogram(QPainter &painter, QRect const &area) const;
    void paintGaps(QPainter &painter, QRect const &area) const;

    bool mHasStatistics = false;
    QString mName;
    QVector<QPair<long long, unsigned int>> mBars;
    QVector<MessageStatistics::Gap> mGaps;
    int mNumberOfGaps = 0;
    unsigned long long mFirstMillis = 0;
    unsigned long long mLastMillis = 0;
};

#endif // MSGMONITOR_INTERVALCHART_H
