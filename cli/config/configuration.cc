/* Whole files of rules and options. */
#define TOML_IMPLEMENTATION
#include "cli/config/configuration.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <utility>

#include "cli/config/configuration_options.h"
#include "cli/config/configuration_rules.h"
#include "cli/config/configuration_text.h"
#include "cli/config/key_depth.h"
#include "cli/config/toml.h"
#include "cli/files/files.h"
#include "cli/messages/excerpt.h"

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

/* What is known of a file's origin. */
enum class Origin { Command, Tree };

/* The text of a regular file; of one that the user names, also what a pipe gives. */
std::string read_all(const std::string &path, Origin origin, FilesRead &files) {
    const Descriptor file =
        origin == Origin::Command ? open_to_read(path) : open_regular_file(path);
    struct stat status;
    if (fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode))
        files.push_back({path, status.st_dev, status.st_ino});
    const std::string name = "'" + path + "'";
    return text_of(spool(file.get(), name), name);
}

/* Of a text that is no TOML. */
std::string description_of(const toml::parse_error &error) {
    constexpr std::string_view BEGINNING = "Error while parsing ";
    std::string text(error.description());
    if (text.starts_with(BEGINNING)) text.replace(0, BEGINNING.size(), "no TOML in the ");
    return text;
}

toml::source_index line_of(std::string_view text, std::size_t at) {
    const std::string_view before = text.substr(0, at);
    return static_cast<toml::source_index>(std::count(before.begin(), before.end(), '\n') + 1);
}

/* A file under reading. */
class Reader {
public:
    Reader(const std::string &path, Origin origin, bool has_options)
        : file_(path, read_all(path, origin, files_)),
          folder_(fs::path(path).parent_path()),
          has_options_(has_options) {}
    /* Of a text without options. */
    Reader(const std::string &name, const std::string &text)
        : file_(name, text), has_options_(false) {}

    Configuration read() {
        const std::string_view text = file_.text();
        const std::size_t deep = find_deep_key(text);
        try {
            const toml::table tables = toml::parse(text.substr(0, deep));
            if (deep != text.npos) report_depth(line_of(text, deep));
            for (const auto &[key, value] : tables) read_table(key, value);
            for (const auto &[place, path] : options_.rule_files) read_rule_file(*place, path);
        } catch (const toml::parse_error &error) {
            report(error, deep == text.npos ? 0 : line_of(text, deep));
        }
        file_.throw_mistakes();
        shared_.add(own_);
        return {std::move(shared_), std::move(options_.settings), std::move(files_)};
    }

private:
    void report_depth(toml::source_index line) {
        file_.report({line, 1}, "more than 256 dots between the parts of keys");
    }

    /* deep: the line in which the text has been cut; 0 for none. */
    void report(const toml::parse_error &error, toml::source_index deep) {
        const toml::source_position place = error.source().begin;
        if (place.line == deep)
            report_depth(deep);
        else
            file_.report(place, description_of(error));
    }

    void read_table(const toml::key &key, const toml::node &value) {
        const bool is_for_options = key == "options" && has_options_;
        const bool is_for_rules = key == "names" || key == "functions" || key == "forms";
        if (!is_for_rules && !is_for_options) return refuse_table(key);
        const toml::table *entries = value.as_table();
        if (!entries)
            return file_.report(value, "expected a table: [" + std::string(key.str()) + "]");
        for (const auto &[name, entry] : *entries) {
            if (is_for_options)
                read_option(file_, name, entry, folder_, options_);
            else if (key == "names")
                read_name(file_, name, entry, own_);
            else if (key == "forms")
                read_form(file_, name, entry, own_);
            else
                read_function(file_, name, entry, own_);
        }
    }

    void refuse_table(const toml::key &key) {
        if (key == "options")
            file_.report(key, "options are set in a file mtranslate.toml only");
        else if (has_options_)
            file_.report_unknown(key, {"names", "functions", "forms", "options"});
        else
            file_.report_unknown(key, {"names", "functions", "forms"});
    }

    void read_rule_file(const toml::node &place, const std::string &path) {
        try {
            const Configuration shared = Reader(path, Origin::Tree, false).read();
            shared_.add(shared.rules);
            files_.insert(files_.end(), shared.files.begin(), shared.files.end());
        } catch (const FileError &error) {
            file_.report(place, error.what());
        }
    }

    FilesRead files_;
    ConfigurationText file_;
    fs::path folder_;
    bool has_options_;
    OptionTable options_;
    Rules shared_; /* of other files */
    Rules own_;
};

}  // namespace

Configuration read_rules(const std::string &path) {
    return Reader(path, Origin::Command, false).read();
}

Rules read_rules_text(const std::string &name, const std::string &text) {
    return Reader(name, text).read().rules;
}

Configuration read_configuration(const std::string &path) {
    return Reader(path, Origin::Tree, true).read();
}

void check_reachable(const Rules &rules) {
    std::set<std::string> given;
    for (const Rule *rule : rules.of_names()) given.insert(rule->text);
    std::string mistakes;
    for (const Rule *rule : rules.of_functions()) {
        const Rule *renamed = rules.find_name(rule->name);
        if (renamed && !given.contains(rule->name))
            mistakes += text_of(rule->place) + ": error: calls of '" + rule->name +
                        "' are calls of '" + renamed->text + "' by " + text_of(renamed->place) +
                        '\n';
    }
    if (!mistakes.empty()) throw ConfigurationError(mistakes);
}

}  // namespace mtranslate
