// How what goes through texts and files of others grows with their length.

#include "core/Json.h"
#include "core/Quoting.h"
#include "documentation/MarkdownToHTML.h"

#include <benchmark/benchmark.h>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;

constexpr int kShort = 100'000;
constexpr int kLong = 1'000'000;
constexpr int kTextRepetitions = 3;

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

/// What has no end, over and over: on one line, and on a line each.
void convertManual(benchmark::State& state, const QString& unit) {
    const QString text = unit.repeated(static_cast<qsizetype>(state.range(0)) / unit.size());
    for (auto _ : state) {
        benchmark::DoNotOptimize(markdownToHTML(text));
    }
}

constexpr int kPage = 200 * 1024;
constexpr int kBook = 2 * 1024 * 1024;

#define BENCHMARK_MANUAL(name, unit)                                                                                   \
    BENCHMARK_CAPTURE(convertManual, name, unit)                                                                       \
        ->Arg(kPage)                                                                                                   \
        ->Arg(kBook)                                                                                                   \
        ->Repetitions(kTextRepetitions)                                                                                \
        ->Unit(benchmark::kMillisecond)
BENCHMARK_MANUAL(plain, u"Before a show, verify.\n"_s);
BENCHMARK_MANUAL(oneLine, u"Before a show, verify. "_s);
BENCHMARK_MANUAL(stars, u"***a "_s);
BENCHMARK_MANUAL(starsOfLines, u"***a\n"_s);
BENCHMARK_MANUAL(openStars, u"*a\n**b\n"_s);
BENCHMARK_MANUAL(onlyStars, u"*"_s);
BENCHMARK_MANUAL(backticks, u"`a`` "_s);
BENCHMARK_MANUAL(fences, u"```a\n"_s);
BENCHMARK_MANUAL(bars, u"a|b|c\n"_s);
BENCHMARK_MANUAL(items, u"- a\n"_s);

BENCHMARK(quoteForAppleScript)->Arg(kShort)->Arg(kLong)->Repetitions(kTextRepetitions)->Unit(benchmark::kMillisecond);
BENCHMARK(quoteForShell)->Arg(kShort)->Arg(kLong)->Repetitions(kTextRepetitions)->Unit(benchmark::kMillisecond);
BENCHMARK(refuseLineEnds)->Arg(kShort)->Arg(kLong)->Repetitions(kTextRepetitions)->Unit(benchmark::kMillisecond);
BENCHMARK(readLineEnds)->Arg(kShort)->Arg(kLong)->Repetitions(kTextRepetitions)->Unit(benchmark::kMillisecond);

} // namespace

} // namespace quorvane
