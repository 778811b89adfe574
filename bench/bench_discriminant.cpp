// SPDX-License-Identifier: LGPL-2.1-or-later
// Discriminant lookup: one header value against a format of 1,000 message types, with single
// values and with ranges, against the plain scan of every message type and range.
#include "benchfieldinfo.h"
#include "benchgoals.h"
#include "literalreference.h"

#include "fieldvalue.h"
#include "formatinfo.h"
#include "messageinfo.h"

#include <benchmark/benchmark.h>

#include <QString>
#include <QVector>

#include <memory>
#include <vector>

namespace {

constexpr int messageCount = 1000;

/// A format whose message types are told apart by one header field: message type i accepts
/// 4000 + i (single values), or 10 i to 10 i + 14, overlapping its neighbour (ranges).
class DiscriminatedFormat
{
public:
    explicit DiscriminatedFormat(bool ranges)
        : mFormat(QStringLiteral("Discriminated"))
        , mBlockNumber(QStringLiteral("BlockNumber"), FieldType::u(16))
    {
        for (int i = 0; i < messageCount; ++i) {
            mMessages.emplace_back(new MessageInfo(QStringLiteral("Message%1").arg(i)));
            MessageInfo *message = mMessages.back().get();
            if (ranges)
                message->addDiscriminantValueRange(&mBlockNumber, FieldValue::u(10 * i, 16),
                                                   FieldValue::u(10 * i + 14, 16));
            else
                message->addDiscriminantValue(&mBlockNumber, FieldValue::u(4000 + i, 16));
            message->setFormatInfo(&mFormat);
            mFormat.addMessageInfo(message);
        }
    }

    ~DiscriminatedFormat() { mMessages.clear(); }

    FormatInfo const &format() const { return mFormat; }

private:
    FormatInfo mFormat;
    BenchFieldInfo mBlockNumber;
    std::vector<std::unique_ptr<MessageInfo>> mMessages;
};

bool sameAsScan(FormatInfo const &format)
{
    for (int v = 0; v < 12000; v += 3) {
        FieldValue const value = FieldValue::u(unsigned(v), 16);
        if (format.getMessageInfosForDiscriminant(value)
            != scanForDiscriminant(format, QVector<FieldValue> { value }))
            return false;
    }
    return true;
}

void lookup(benchmark::State &state, bool ranges, unsigned int value)
{
    DiscriminatedFormat const dictionary(ranges);
    if (!sameAsScan(dictionary.format())) {
        state.SkipWithError("the lookup differs from the scan");
        return;
    }
    FieldValue const header = FieldValue::u(value, 16);
    for (auto _ : state) {
        QVector<MessageInfo const *> const found
            = dictionary.format().getMessageInfosForDiscriminant(header);
        benchmark::DoNotOptimize(found.constData());
    }
}

void scan(benchmark::State &state, bool ranges, unsigned int value)
{
    DiscriminatedFormat const dictionary(ranges);
    FieldValue const header = FieldValue::u(value, 16);
    for (auto _ : state) {
        QVector<MessageInfo const *> const found
            = scanForDiscriminant(dictionary.format(), QVector<FieldValue> { header });
        benchmark::DoNotOptimize(found.constData());
    }
}

// Single values: the value of message type 700. Ranges: 7012 lies in the ranges of message
// types 700 and 701.
void BM_DiscriminantValue(benchmark::State &state)
{
    lookup(state, false, 4700);
}
BENCHMARK(BM_DiscriminantValue);

void BM_DiscriminantValueScan(benchmark::State &state)
{
    scan(state, false, 4700);
}
BENCHMARK(BM_DiscriminantValueScan);

void BM_DiscriminantRange(benchmark::State &state)
{
    lookup(state, true, 7012);
}
BENCHMARK(BM_DiscriminantRange);

void BM_DiscriminantRangeScan(benchmark::State &state)
{
    scan(state, true, 7012);
}
BENCHMARK(BM_DiscriminantRangeScan);

} // namespace

MSGAPI_BENCH_GOAL(discriminantValue,
                  { "discriminant: 1,000 single values vs scan", "BM_DiscriminantValue",
                    "BM_DiscriminantValueScan", BenchGoal::AtLeastTimesFaster, 20.0 })
MSGAPI_BENCH_GOAL(discriminantRange,
                  { "discriminant: 1,000 overlapping ranges vs scan", "BM_DiscriminantRange",
                    "BM_DiscriminantRangeScan", BenchGoal::AtLeastTimesFaster, 20.0 })
