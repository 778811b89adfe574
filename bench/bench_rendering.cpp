// SPDX-License-Identifier: LGPL-2.1-or-later
// Value rendering: the interpreted text of a scaled value with its unit and of a symbolic value,
// against the locale's number formatting that the scaled text needs anyway; and a hexadecimal
// value against Qt's plain number conversion.
#include "benchfieldinfo.h"
#include "benchgoals.h"

#include "fieldvalue.h"

#include <benchmark/benchmark.h>

#include <QLocale>
#include <QString>

namespace {

constexpr double scaledHeight = 12345.678; // 12345678 mm as a scaled u32 in meters

/// Times the interpreted text (with unit) of the value, once it is known to be the expected one.
void renderInterpreted(benchmark::State &state, FieldInfo const &field, FieldValue const &value,
                       QString const &expected)
{
    if (field.getInterpretedString(value, true) != expected) {
        state.SkipWithError("unexpected text");
        return;
    }
    for (auto _ : state) {
        QString const text = field.getInterpretedString(value, true);
        benchmark::DoNotOptimize(text.constData());
    }
}

void BM_RenderScaledWithUnit(benchmark::State &state)
{
    BenchFieldInfo field(QStringLiteral("Height"), FieldType::u(32));
    field.setScaleFactor(0.001);
    field.setUnit(QStringLiteral("meter"));
    renderInterpreted(state, field, FieldValue::u(12345678, 32),
                      QLocale().toString(scaledHeight, 'f', 6) + QStringLiteral(" m"));
}
BENCHMARK(BM_RenderScaledWithUnit);

void BM_RenderSymbolic(benchmark::State &state)
{
    BenchFieldInfo field(QStringLiteral("Mode"), FieldType::u(8));
    field.setUnit(QStringLiteral("meter"));
    static char const *const modes[] = { "No fix",    "Stand-alone", "DGNSS", "Fixed location",
                                         "RTK fixed", "RTK float",   "SBAS",  "Moving base" };
    for (unsigned int i = 0; i < 8; ++i)
        field.addSymbolicValue(FieldValue::u(i, 8), QString::fromLatin1(modes[i]));
    renderInterpreted(state, field, FieldValue::u(4, 8), QStringLiteral("RTK fixed"));
}
BENCHMARK(BM_RenderSymbolic);

// The part of the scaled rendering that no implementation can avoid.
void BM_RenderLocaleFloor(benchmark::State &state)
{
    QLocale const locale;
    double value = scaledHeight;
    for (auto _ : state) {
        benchmark::DoNotOptimize(value);
        QString const text = locale.toString(value, 'f', 6);
        benchmark::DoNotOptimize(text.constData());
    }
}
BENCHMARK(BM_RenderLocaleFloor);

void BM_RenderHexadecimal(benchmark::State &state)
{
    FieldValue const value = FieldValue::u(0xdeadbeef, 32);
    if (value.toString(false, -1, FieldValue::Hexadecimal, false) != QStringLiteral("deadbeef")) {
        state.SkipWithError("unexpected text");
        return;
    }
    for (auto _ : state) {
        QString const text = value.toString(false, -1, FieldValue::Hexadecimal, false);
        benchmark::DoNotOptimize(text.constData());
    }
}
BENCHMARK(BM_RenderHexadecimal);

void BM_RenderHexadecimalFloor(benchmark::State &state)
{
    qulonglong value = 0xdeadbeef;
    for (auto _ : state) {
        benchmark::DoNotOptimize(value);
        QString const text = QString::number(value, 16);
        benchmark::DoNotOptimize(text.constData());
    }
}
BENCHMARK(BM_RenderHexadecimalFloor);

} // namespace

MSGAPI_BENCH_GOAL(renderScaled,
                  { "rendering: scaled value with unit vs locale number", "BM_RenderScaledWithUnit",
                    "BM_RenderLocaleFloor", BenchGoal::AtMostTimesReference, 1.5 })
MSGAPI_BENCH_GOAL(renderSymbolic,
                  { "rendering: symbolic value vs locale number", "BM_RenderSymbolic",
                    "BM_RenderLocaleFloor", BenchGoal::AtMostTimesReference, 1.5 })
MSGAPI_BENCH_GOAL(renderHexadecimal,
                  { "rendering: hexadecimal value vs QString::number", "BM_RenderHexadecimal",
                    "BM_RenderHexadecimalFloor", BenchGoal::AtMostTimesReference, 1.5 })
