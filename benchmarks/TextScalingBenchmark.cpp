// How what goes through texts and files of others grows with their length.

#include "core/Json.h"
#include "core/Quoting.h"

#include <benchmark/benchmark.h>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;

constexpr int kShort = 100'000;
constexpr int kLong = 1'000'000;
constexpr int kRepetitions = 3;

QString quotesOf(benchmark::State& state, const QString& unit) {
    return unit.repeated(static_cast<qsizetype>(state.range(0)));
}

void quoteForAppleScript(benchmark::State& state) {
    const QString text = quotesOf(state, uR"("\ )"_s);
    for (auto _ : state) {
        benchmark::DoNotOptimize(appleScriptText(text));
    }
}

void quoteForShell(benchmark::State& state) {
    const QString text = quotesOf(state, u"' "_s);
    for (auto _ : state) {
        benchmark::DoNotOptimize(shellQuoted(text));
    }
}

/// A file that is damaged behind so many line ends.
void refuseLineEnds(benchmark::State& state) {
    const QByteArray text = '{' + QByteArray(static_cast<qsizetype>(state.range(0)) * 50, '\n');
    for (auto _ : state) {
        try {
            parseJson(text);
            state.SkipWithError("it was read");
        } catch (const DecodingError& error) {
            benchmark::DoNotOptimize(error.message());
        }
    }
}

void readLineEnds(benchmark::State& state) {
    const QByteArray text = '[' + QByteArray(static_cast<qsizetype>(state.range(0)) * 50, '\n') + ']';
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseJson(text));
    }
}

BENCHMARK(quoteForAppleScript)->Arg(kShort)->Arg(kLong)->Repetitions(kRepetitions)->Unit(benchmark::kMillisecond);
BENCHMARK(quoteForShell)->Arg(kShort)->Arg(kLong)->Repetitions(kRepetitions)->Unit(benchmark::kMillisecond);
BENCHMARK(refuseLineEnds)->Arg(kShort)->Arg(kLong)->Repetitions(kRepetitions)->Unit(benchmark::kMillisecond);
BENCHMARK(readLineEnds)->Arg(kShort)->Arg(kLong)->Repetitions(kRepetitions)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace quorvane
