// What reading MATLAB into a tree costs, without anything after it: megabytes a second and bytes
// of tree a byte of source.
#include <benchmark/benchmark.h>

#include "diagnose/messages.h"
#include "driver/run.h"
#include "sources.h"
#include "syntax/parse/parser.h"
#include "syntax/tree/arena.h"

namespace {

void parse(benchmark::State &state, const std::string &source) {
    size_t bytes = 0;
    for (auto _ : state) {
        begin_run();
        begin_messages();
        begin_syntax();
        const auto length = static_cast<uint32_t>(source.size());
        benchmark::DoNotOptimize(
            parse_source(new_source(nullptr, source.c_str(), length), LANGUAGE_MATLAB));
        if (FirstMessage) state.SkipWithError(FirstMessage->text);
        bytes = ArenaTaken;
        release_run();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * source.size()));
    state.counters["tree_per_byte"] =
        static_cast<double>(bytes) / static_cast<double>(source.size());
}

void parse_realistic(benchmark::State &state) {
    parse(state, bench::realistic_source(static_cast<size_t>(state.range(0))));
}

void parse_wide_matrix(benchmark::State &state) {
    parse(state, bench::wide_matrix(static_cast<int>(state.range(0)), 100));
}

void parse_nested_blocks(benchmark::State &state) {
    parse(state, bench::nested_blocks(static_cast<int>(state.range(0))));
}

void parse_nested_brackets(benchmark::State &state) {
    const auto depth = static_cast<size_t>(state.range(0));
    parse(state, "x = " + std::string(depth, '(') + "1" + std::string(depth, ')') + ";\n");
}

void parse_long_comment(benchmark::State &state) {
    parse(state, bench::long_comment(static_cast<size_t>(state.range(0))));
}

void parse_long_sum(benchmark::State &state) {
    parse(state, bench::long_sum(static_cast<int>(state.range(0))));
}

void parse_long_command(benchmark::State &state) {
    parse(state, bench::long_command(static_cast<int>(state.range(0))));
}

BENCHMARK(parse_realistic)->Arg(1000)->Arg(10'000)->Arg(1'000'000)->Arg(10'000'000);
BENCHMARK(parse_wide_matrix)->RangeMultiplier(10)->Range(10, 10'000);
BENCHMARK(parse_nested_blocks)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(parse_nested_brackets)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(parse_long_comment)->RangeMultiplier(10)->Range(10'000, 10'000'000);
BENCHMARK(parse_long_sum)->RangeMultiplier(10)->Range(100, 100'000);
BENCHMARK(parse_long_command)->RangeMultiplier(10)->Range(100, 10'000);

}  // namespace
