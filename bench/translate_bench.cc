// What a translation costs: short commands, long files, and the shapes that a bad design would make
// quadratic (their rates must not fall as they grow).
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <vector>

#include "silent_host.h"
#include "sources.h"

namespace {

namespace fs = std::filesystem;
using bench::SilentHost;

// The front end: null for the default.
using Language = const char *;

void translate_command(benchmark::State &state, Language language, const std::string &source) {
    SilentHost host(language);
    for (auto _ : state) benchmark::DoNotOptimize(host.translate("command", source));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * source.size()));
}

void short_command(benchmark::State &state, Language language) {
    translate_command(state, language, "x=1");
}

// Translates every .m file of the directory, each in a run of its own.
void translate_files(benchmark::State &state, Language language, const fs::path &directory) {
    std::vector<fs::path> files;
    size_t size = 0;
    for (const auto &entry : fs::directory_iterator(directory)) {
        if (entry.path().extension() != ".m") continue;
        files.push_back(entry.path());
        size += entry.file_size();
    }
    SilentHost host(language);
    for (auto _ : state) {
        for (const fs::path &file : files) benchmark::DoNotOptimize(host.translate("file", file));
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * size));
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * files.size()));
}

// The same for sources, in files that go again.
void translate_as_files(benchmark::State &state, Language language,
                        const std::vector<std::string> &sources) {
    const fs::path directory =
        fs::temp_directory_path() / ("mtranslate_bench_" + std::to_string(getpid()));
    fs::create_directory(directory);
    for (size_t i = 0; i < sources.size(); i++)
        std::ofstream(directory / ("source_" + std::to_string(i) + ".m")) << sources[i];
    translate_files(state, language, directory);
    fs::remove_all(directory);
}

void translate_file(benchmark::State &state, Language language, const std::string &source) {
    translate_as_files(state, language, {source});
}

// As most files are: functions and scripts of 1 to 4 KB.
void small_files(benchmark::State &state, Language language) {
    std::vector<std::string> sources;
    for (int i = 0; i < 64; i++) {
        const size_t size = 1000 + 3000 * static_cast<size_t>(i) / 64;
        sources.push_back(i % 3 == 0 ? bench::realistic_script(size, 4 * i)
                                     : bench::realistic_source(size - 500, 4 * i));
    }
    translate_as_files(state, language, sources);
}

// Each front end has its own.
void examples(benchmark::State &state, Language language) {
    const fs::path root = fs::path(__FILE__).parent_path().parent_path();
    translate_files(state, language, root / (language ? "examples" : "tests/classic"));
}

void realistic_file(benchmark::State &state, Language language) {
    translate_file(state, language, bench::realistic_source(static_cast<size_t>(state.range(0))));
}

void wide_matrix(benchmark::State &state, Language language) {
    translate_command(state, language, bench::wide_matrix(static_cast<int>(state.range(0)), 100));
}

void nested_blocks(benchmark::State &state, Language language) {
    translate_command(state, language, bench::nested_blocks(static_cast<int>(state.range(0))));
}

void long_comment(benchmark::State &state, Language language) {
    translate_file(state, language, bench::long_comment(static_cast<size_t>(state.range(0))));
}

void long_command(benchmark::State &state, Language language) {
    translate_command(state, language, bench::long_command(static_cast<int>(state.range(0))));
}

void long_sum(benchmark::State &state, Language language) {
    translate_command(state, language, bench::long_sum(static_cast<int>(state.range(0))));
}

// Each for both front ends, which translate the same sources.
#define BOTH_FRONT_ENDS(function, ...)                         \
    BENCHMARK_CAPTURE(function, classic, nullptr) __VA_ARGS__; \
    BENCHMARK_CAPTURE(function, matlab, "matlab") __VA_ARGS__

BOTH_FRONT_ENDS(short_command);
BOTH_FRONT_ENDS(examples);
BOTH_FRONT_ENDS(small_files);
BOTH_FRONT_ENDS(realistic_file, ->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Arg(10'000'000));
BOTH_FRONT_ENDS(wide_matrix, ->RangeMultiplier(10)->Range(10, 10'000));
BOTH_FRONT_ENDS(nested_blocks, ->Arg(10)->Arg(100)->Arg(1000));
BOTH_FRONT_ENDS(long_comment, ->RangeMultiplier(10)->Range(10'000, 10'000'000));
BOTH_FRONT_ENDS(long_sum, ->RangeMultiplier(10)->Range(100, 100'000));
BENCHMARK_CAPTURE(long_command, classic, nullptr)->RangeMultiplier(10)->Range(100, 10'000);

}  // namespace
