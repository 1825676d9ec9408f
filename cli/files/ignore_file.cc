/* Patterns as git has them. */
#include "cli/files/ignore_file.h"

#include <fnmatch.h>

#include <algorithm>
#include <span>

#include "cli/files/files.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

using Parts = std::span<const std::string>;

/* Part after part of the pattern, with all the ends that a match so far may have in the path: the
 * time is the product of both lengths, whatever "**" there are. */
bool matches(Parts pattern, Parts path) {
    std::vector<bool> ends(path.size() + 1);
    ends[0] = true;
    for (const std::string &part : pattern) {
        std::vector<bool> next(path.size() + 1);
        // At the end of the pattern they stand for at least one.
        const bool needs_one = &part == &pattern.back();
        for (std::size_t i = 0; i <= path.size(); ++i) {
            if (part == "**")
                next[i] = (ends[i] && !needs_one) || (i > 0 && (next[i - 1] || ends[i - 1]));
            else
                next[i] =
                    i > 0 && ends[i - 1] && fnmatch(part.c_str(), path[i - 1].c_str(), 0) == 0;
        }
        ends = std::move(next);
    }
    return ends.back();
}

/* Blanks at the end are none of the pattern's, unless a backslash stands before them. */
std::string_view without_blanks(std::string_view line) {
    while (line.ends_with(' ') && !line.ends_with("\\ ")) line.remove_suffix(1);
    return line;
}

std::vector<std::string> split(std::string_view pattern) {
    std::vector<std::string> parts;
    while (!pattern.empty()) {
        const std::size_t end = std::min(pattern.find('/'), pattern.size());
        if (end > 0) parts.emplace_back(pattern.substr(0, end));
        pattern.remove_prefix(std::min(end + 1, pattern.size()));
    }
    return parts;
}

}  // namespace

IgnoreFile::IgnoreFile(std::string_view text) {
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        std::string_view line = text.substr(0, end);
        if (line.ends_with('\r')) line.remove_suffix(1);
        add(without_blanks(line));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

void IgnoreFile::add(std::string_view line) {
    if (line.empty() || line.starts_with('#')) return;
    Pattern pattern{};
    pattern.takes_in = line.starts_with('!');
    if (pattern.takes_in) line.remove_prefix(1);
    pattern.is_for_folders = line.ends_with('/');
    if (pattern.is_for_folders) line.remove_suffix(1);
    pattern.parts = split(line);
    if (pattern.parts.empty()) return;
    // A name alone stands for one anywhere below.
    if (line.find('/') == line.npos && line != "**")
        pattern.parts.insert(pattern.parts.begin(), "**");
    patterns_.push_back(std::move(pattern));
}

std::optional<bool> IgnoreFile::leaves_out(const fs::path &path, bool is_folder) const {
    const std::vector<std::string> parts(path.begin(), path.end());
    const auto found =
        std::find_if(patterns_.rbegin(), patterns_.rend(), [&](const Pattern &pattern) {
            return (is_folder || !pattern.is_for_folders) && matches(pattern.parts, parts);
        });
    if (found == patterns_.rend()) return std::nullopt;
    return !found->takes_in;
}

void IgnoreFiles::enter_root(const fs::path &folder) {
    std::vector<fs::path> around{folder};
    std::error_code error;
    while (!fs::exists(around.back() / ".git", error)) {
        if (around.back() == around.back().parent_path()) return;
        around.push_back(around.back().parent_path());
    }
    for (auto at = around.rbegin(); at + 1 != around.rend(); ++at) enter(*at);
}

void IgnoreFiles::enter(const fs::path &folder) {
    files_.push_back({folder, IgnoreFile("")});
    if (const auto text = read_file_if_there(folder / ".gitignore"))
        files_.back().file = IgnoreFile(*text);
}

bool IgnoreFiles::leave_out(const fs::path &path, bool is_folder) const {
    for (auto at = files_.rbegin(); at != files_.rend(); ++at) {
        const auto decision = at->file.leaves_out(path.lexically_relative(at->folder), is_folder);
        if (decision) return *decision;
    }
    return false;
}

}  // namespace mtranslate
