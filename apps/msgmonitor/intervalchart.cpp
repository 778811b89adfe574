// SPDX-License-Identifier: LGPL-2.1-or-later
#include "intervalchart.h"

#include <formatinfo.h>
#include <timesource.h>

#include <QPainter>

#include <algorithm>

namespace {

const QColor barColor(0x19, 0x76, 0xd2);
const QColor gapColor(0xc6, 0x28, 0x28);
const QColor axisColor(0x75, 0x75, 0x75);
constexpr int margin = 10;
/// Intervals of zero or less are time standing still or stepping back, and longer ones the
/// stream's time moving to another week: neither is a message interval.
constexpr long long maxIntervalMs = 7LL * 24 * 3600 * 1000;

QString timeOfDay(unsigned long long millis)
{
    TimeSource time;
    time.setMillis(millis);
    return time.getTime().toString(QStringLiteral("HH:mm:ss"));
}

} // namespace

IntervalChart::IntervalChart(QWidget *parent)
    : QWidget(parent)
{
    setMinimumSize(240, 200);
}

QSize IntervalChart::sizeHint() const
{
    return { 480, 320 };
}

void IntervalChart::setStatistics(MessageStatistics const *statistics,
                                  unsigned long long firstMillis, unsigned long long lastMillis)
{
    mHasStatistics = statistics != nullptr;
    mBars.clear();
    mGaps.clear();
    mNumberOfGaps = 0;
    mFirstMillis = firstMillis;
    mLastMillis = lastMillis;
    if (statistics) {
        mName = statistics->getFormatInfo()->getName() + QLatin1Char(' ')
            + statistics->getMessageName();
        const QHash<long long, unsigned int> histogram = statistics->getIntervalCountHash();
        for (auto it = histogram.cbegin(); it != histogram.cend(); ++it)
            if (it.key() > 0 && it.key() < maxIntervalMs && it.value() > 0)
                mBars.append({ it.key(), it.value() });
        // The most frequent first (the shorter of equally frequent ones), then by duration.
        std::sort(mBars.begin(), mBars.end(), [](auto const &a, auto const &b) {
            return a.second != b.second ? a.second > b.second : a.first < b.first;
        });
        mBars.resize(qMin(mBars.size(), maxBars));
        std::sort(mBars.begin(), mBars.end());
        mGaps = statistics->getGaps();
        mNumberOfGaps = statistics->getNumberOfGaps();
    }
    update();
}

void IntervalChart::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().base());
    if (!mHasStatistics) {
        painter.setPen(axisColor);
        painter.drawText(rect(), Qt::AlignCenter, tr("Select a message type"));
        return;
    }
    const QRect inner = rect().adjusted(margin, margin / 2, -margin, -margin / 2);
    const int split = inner.top() + inner.height() * 3 / 5;
    paintHistogram(painter, QRect(inner.topLeft(), QPoint(inner.right(), split)));
    paintGaps(painter, QRect(QPoint(inner.left(), split + margin), inner.bottomRight()));
}

void IntervalChart::paintTitle(QPainter &painter, QRect const &area, QString const &title) const
{
    QFont bold = font();
    bold.setBold(true);
    painter.setFont(bold);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(area.left(), area.top() + QFontMetrics(bold).ascent(), title);
    painter.setFont(font());
}

void IntervalChart::paintHistogram(QPainter &painter, QRect const &area) const
{
    const int line = painter.fontMetrics().height();
    paintTitle(painter, area, tr("Intervals of %1").arg(mName));
    if (mBars.isEmpty()) {
        painter.setPen(axisColor);
        painter.drawText(area, Qt::AlignCenter, tr("No intervals yet"));
        return;
    }
    // Room for the title and the counts above the bars, and the intervals below them.
    const QRect plot = area.adjusted(0, 2 * line + 4, 0, -line - 4);
    unsigned int maxCount = 1;
    for (auto const &bar : mBars)
        maxCount = qMax(maxCount, bar.second);
    const int slot = plot.width() / mBars.size();
    const int barWidth = qMax(4, qMin(slot * 2 / 3, 80));
    painter.setPen(axisColor);
    painter.drawLine(plot.bottomLeft(), plot.bottomRight());
    for (int index = 0; index < mBars.size(); ++index) {
        const int center = plot.left() + slot * index + slot / 2;
        const int height = qMax(1, int(qint64(plot.height()) * mBars[index].second / maxCount));
        const QRect bar(center - barWidth / 2, plot.bottom() - height, barWidth, height);
        painter.fillRect(bar, barColor);
        painter.setPen(palette().color(QPalette::Text));
        painter.drawText(QRect(center - slot / 2, bar.top() - line - 2, slot, line),
                         Qt::AlignCenter, QString::number(mBars[index].second));
        painter.setPen(axisColor);
        painter.drawText(QRect(center - slot / 2, plot.bottom() + 4, slot, line), Qt::AlignCenter,
                         tr("%1 ms").arg(mBars[index].first));
    }
}

void IntervalChart::paintGaps(QPainter &painter, QRect const &area) const
{
    const int line = painter.fontMetrics().height();
    paintTitle(painter, area, tr("Gaps over time: %1").arg(mNumberOfGaps));
    const QRect plot = area.adjusted(0, line + 6, 0, -line - 4);
    painter.setPen(axisColor);
    painter.drawLine(plot.bottomLeft(), plot.bottomRight());
    if (mLastMillis <= mFirstMillis)
        return;
    painter.drawText(QRect(plot.left(), plot.bottom() + 4, plot.width(), line), Qt::AlignLeft,
                     timeOfDay(mFirstMillis));
    painter.drawText(QRect(plot.left(), plot.bottom() + 4, plot.width(), line), Qt::AlignRight,
                     timeOfDay(mLastMillis));
    if (mGaps.isEmpty()) {
        painter.drawText(plot, Qt::AlignCenter, tr("No gaps"));
        return;
    }
    unsigned int maxMissing = 1;
    for (MessageStatistics::Gap const &gap : mGaps)
        maxMissing = qMax(maxMissing, gap.missingEpochs);
    const double span = double(mLastMillis - mFirstMillis);
    auto xOf = [&](unsigned long long millis) {
        const double clamped = qBound(double(mFirstMillis), double(millis), double(mLastMillis));
        return plot.left() + (clamped - mFirstMillis) / span * plot.width();
    };
    for (MessageStatistics::Gap const &gap : mGaps) {
        const double left = xOf(gap.startMillis);
        const double right = xOf(gap.startMillis + gap.missingEpochs * gap.intervalMillis);
        const double height = qMax(6.0, double(plot.height()) * gap.missingEpochs / maxMissing);
        painter.fillRect(QRectF(left, plot.bottom() - height, qMax(3.0, right - left), height),
                         gapColor);
    }
}
