/* Asking for changes: that works on every file system, and a look at some thousand files takes
 * milliseconds. */
#include "cli/commands/watch.h"

#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <iostream>
#include <map>
#include <thread>
#include <tuple>

#include "cli/files/inputs.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

constexpr auto PAUSE = std::chrono::milliseconds(300);

/* What of a file shows that it has changed; all 0 where there is none. */
using FileState = std::tuple<ino_t, off_t, time_t, long>;

FileState state_of(const std::string &path) {
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return {};
    return {status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

struct Snapshot {
    std::map<std::string, FileState> sources;
    std::map<std::string, FileState> settings; /* rules and configurations */

    bool operator==(const Snapshot &) const = default;
};

Snapshot snapshot_of(const Options &options) {
    Snapshot snapshot;
    const std::vector<std::string> &paths =
        options.root.empty() ? options.paths : std::vector{options.root};
    for (const InputFile &input : find_inputs(search_in(paths, options)).files) {
        snapshot.sources[input.path] = state_of(input.path);
        const std::string configuration = fs::path(input.path).parent_path() / "mtranslate.toml";
        snapshot.settings.try_emplace(configuration, state_of(configuration));
    }
    for (const std::string &path : options.rule_files) snapshot.settings[path] = state_of(path);
    return snapshot;
}

/* The next one that differs, when nothing changes any more. A folder that is gone for a moment, as
 * while another version is checked out, is waited for. */
Snapshot next_snapshot(const Options &options, const Snapshot &before) {
    for (Snapshot last = before;;) {
        std::this_thread::sleep_for(PAUSE);
        try {
            Snapshot now = snapshot_of(options);
            if (now == last && now != before) return now;
            last = std::move(now);
        } catch (const FileError &) {
        }
    }
}

std::vector<std::string> changed_sources(const Snapshot &before, const Snapshot &now) {
    std::vector<std::string> changed;
    for (const auto &[path, state] : now.sources)
        if (before.sources.at(path) != state) changed.push_back(path);
    return changed;
}

bool has_same_names(const Snapshot &before, const Snapshot &now) {
    return std::ranges::equal(before.sources, now.sources,
                              [](const auto &a, const auto &b) { return a.first == b.first; });
}

/* Whether the other translations stay as they are: they depend on the names of all sources, and
 * with
 * --closure on everything. */
bool changes_alone(const Options &options, const Snapshot &before, const Snapshot &now) {
    const bool is_tree = options.paths.size() == 1 && fs::is_directory(options.paths[0]);
    return is_tree && options.root.empty() && !options.is_closure &&
           before.settings == now.settings && has_same_names(before, now);
}

}  // namespace

void watch(const Options &options, const std::function<void(const Options &)> &run,
           const std::function<void(Options &)> &read) {
    Snapshot before = snapshot_of(options);
    run(options);
    for (;;) {
        std::cerr << "mtranslate: waiting for changes\n";
        Snapshot now = next_snapshot(options, before);
        Options next = options;
        read(next);
        if (changes_alone(options, before, now)) {
            next.root = options.paths[0];
            next.paths = changed_sources(before, now);
        }
        before = std::move(now);
        run(next);
    }
}

}  // namespace mtranslate
