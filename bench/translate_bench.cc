// What a translation costs: short commands, long files, and the shapes that a bad design would make
// quadratic (their rates must not fall as they grow).
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "silent_host.h"
#include "sources.h"

namespace {

using bench::SilentHost;

void translate_command(benchmark::State &state, const std::string &source) {
    SilentHost host;
    for (auto _ : state) benchmark::DoNotOptimize(host.translate("command", source));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * source.size()));
}

void short_command(benchmark::State &state) { translate_command(state, "x=1"); }

void translate_file(benchmark::State &state, const std::string &source) {
    const auto path = std::filesystem::temp_directory_path() /
                      ("mtranslate_bench_" + std::to_string(getpid()) + ".m");
    std::ofstream(path) << source;
    SilentHost host;
    for (auto _ : state) benchmark::DoNotOptimize(host.translate("file", path));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * source.size()));
    std::filesystem::remove(path);
}

void realistic_file(benchmark::State &state) {
    translate_file(state, bench::realistic_source(static_cast<size_t>(state.range(0))));
}

void wide_matrix(benchmark::State &state) {
    translate_command(state, bench::wide_matrix(static_cast<int>(state.range(0)), 100));
}

void nested_blocks(benchmark::State &state) {
    translate_command(state, bench::nested_blocks(static_cast<int>(state.range(0))));
}

void long_comment(benchmark::State &state) {
    translate_file(state, bench::long_comment(static_cast<size_t>(state.range(0))));
}

void long_command(benchmark::State &state) {
    translate_command(state, bench::long_command(static_cast<int>(state.range(0))));
}

void long_sum(benchmark::State &state) {
    translate_command(state, bench::long_sum(static_cast<int>(state.range(0))));
}

BENCHMARK(short_command);
BENCHMARK(realistic_file)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000);
BENCHMARK(wide_matrix)->RangeMultiplier(10)->Range(10, 10'000);
BENCHMARK(nested_blocks)->Arg(10)->Arg(100)->Arg(1000);
BENCHMARK(long_comment)->RangeMultiplier(10)->Range(10'000, 10'000'000);
BENCHMARK(long_sum)->RangeMultiplier(10)->Range(100, 100'000);
BENCHMARK(long_command)->RangeMultiplier(10)->Range(100, 10'000);

}  // namespace
