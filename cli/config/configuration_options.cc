/* From TOML to options. */
#include "cli/config/configuration_options.h"

#include <algorithm>
#include <optional>

#include "cli/files/files.h"
#include "cli/files/output.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

/* One entry under reading. */
struct Entry {
    ConfigurationText &file;
    const toml::node &value;
    const fs::path &folder;
};

template <typename Type>
std::optional<Type> value_of(const Entry &entry, const char *expected) {
    auto value = entry.value.value_exact<Type>();
    if (!value) entry.file.report(entry.value, std::string("expected ") + expected);
    return value;
}

/* Names of files end at a NUL. */
std::optional<std::string> text_of(const Entry &entry) {
    auto text = value_of<std::string>(entry, "a string");
    if (text && text->find('\0') != text->npos)
        entry.file.report(entry.value, "expected a string without NUL characters");
    return text;
}

std::optional<bool> flag_of(const Entry &entry) { return value_of<bool>(entry, "true or false"); }

std::string from_folder(const Entry &entry, const std::string &path) {
    return (entry.folder / path).lexically_normal();
}

/* A tree's own configuration reaches no further than the tree. */
bool check_within(const Entry &entry, const std::string &path, const std::string &option) {
    if (is_within(entry.folder.empty() ? "." : entry.folder, path)) return true;
    entry.file.report(entry.value, "'" + path + "' is outside of the configuration's folder; " +
                                       option + " may name any");
    return false;
}

void set_output_folder(const Entry &entry, OptionTable &table) {
    const auto path = text_of(entry);
    if (!path) return;
    table.settings.output_dir = from_folder(entry, *path);
    table.settings.output_limit = entry.folder.empty() ? "." : entry.folder.string();
    check_within(entry, *table.settings.output_dir, "-O");
}

std::optional<std::string> suffix_of(const Entry &entry) {
    auto suffix = text_of(entry);
    const std::string refusal = refusal_of_suffix(suffix.value_or(""));
    if (!refusal.empty()) entry.file.report(entry.value, refusal);
    return suffix;
}

std::optional<std::string> language_of(const Entry &entry) {
    auto name = text_of(entry);
    if (name && *name != "matlab" && *name != "octave" && *name != "classic")
        entry.file.report(entry.value, "expected matlab, octave or classic");
    return name;
}

std::optional<std::size_t> number_of(const Entry &entry) {
    const auto number = value_of<std::int64_t>(entry, "a number");
    if (number && *number < 0) entry.file.report(entry.value, "expected a number of 0 or more");
    return number ? std::optional(static_cast<std::size_t>(*number)) : std::nullopt;
}

std::vector<std::string> texts_of(const Entry &entry) {
    std::vector<std::string> texts;
    const toml::array *array = entry.value.as_array();
    if (!array) entry.file.report(entry.value, "expected a list of strings, in brackets");
    if (!array) return texts;
    for (const toml::node &element : *array)
        texts.push_back(text_of({entry.file, element, entry.folder}).value_or(""));
    return texts;
}

std::vector<std::string> paths_of(const Entry &entry) {
    std::vector<std::string> paths = texts_of(entry);
    for (std::string &path : paths) path = from_folder(entry, path);
    return paths;
}

std::optional<MessagePolicy> policy_of(const Entry &entry) {
    MessagePolicy policy;
    try {
        for (const std::string &pattern : texts_of(entry)) policy.add(pattern);
    } catch (const PolicyError &error) {
        entry.file.report(entry.value, error.what());
    }
    return policy;
}

void name_rule_files(const Entry &entry, OptionTable &table) {
    for (const std::string &path : paths_of(entry))
        if (check_within(entry, path, "--rules")) table.rule_files.emplace_back(&entry.value, path);
}

struct Row {
    const char *name;
    void (*read)(const Entry &entry, OptionTable &table);
};

constexpr Row ROWS[] = {
    {"language", [](const Entry &e, OptionTable &to) { to.settings.language = language_of(e); }},
    {"include", [](const Entry &e, OptionTable &to) { to.settings.include = paths_of(e); }},
    {"rules", name_rule_files},
    {"strict", [](const Entry &e, OptionTable &to) { to.settings.strict = flag_of(e); }},
    {"messages", [](const Entry &e, OptionTable &to) { to.settings.messages = policy_of(e); }},
    {"output-dir", set_output_folder},
    {"suffix", [](const Entry &e, OptionTable &to) { to.settings.suffix = suffix_of(e); }},
    {"exclude", [](const Entry &e, OptionTable &to) { to.settings.exclude = texts_of(e); }},
    {"closure", [](const Entry &e, OptionTable &to) { to.settings.closure = flag_of(e); }},
    {"jobs", [](const Entry &e, OptionTable &to) { to.settings.jobs = number_of(e); }},
};

std::vector<std::string> known_names() {
    std::vector<std::string> names;
    for (const Row &row : ROWS) names.emplace_back(row.name);
    return names;
}

}  // namespace

void read_option(ConfigurationText &file, const toml::key &key, const toml::node &value,
                 const fs::path &folder, OptionTable &table) {
    const auto *row = std::find_if(std::begin(ROWS), std::end(ROWS),
                                   [&](const Row &known) { return key == known.name; });
    if (row == std::end(ROWS)) return file.report_unknown(key, known_names());
    row->read({file, value, folder}, table);
}

}  // namespace mtranslate
