/* What the tool is asked for. */
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "cli/files/files.h"
#include "cli/files/inputs.h"
#include "cli/messages/message_policy.h"
#include "cli/messages/message_writer.h"
#include "cli/request/limits.h"

namespace mtranslate {

class ConfigurationSearch;
class Rules;

enum class Mode {
    Translate,
    Check,        /* everything but writing translations */
    Compare,      /* what would change in the outputs */
    Assess,       /* how much would translate, and what stands in the way */
    Rules,        /* the rules in force */
    RuleTemplate, /* the functions that have none */
    UnusedRules   /* those that answer nothing */
};

enum class ColourUse {
    Auto, /* on a terminal */
    Always,
    Never
};

struct Options {
    Mode mode = Mode::Translate;
    /* The command, or the file of a run; never both. The file "-" is standard input. */
    std::optional<std::string> command;
    std::optional<std::string> file;
    /* The files and folders of a batch; empty for a single run. */
    std::vector<std::string> paths;
    /* The folder of the tree that the files of a batch are part of; empty: they are all of it. */
    std::string root;
    /* Patterns of what is left out of folders. */
    std::vector<std::string> excludes;
    /* Whether files .gitignore leave nothing out of folders. */
    bool without_ignore_files = false;
    /* The folder for the translations of a batch, which have this ending; empty without one. */
    std::string output_folder;
    std::string suffix = ".txt";
    /* The folder that outputs stay in, whatever links there are; empty: wherever they lead. */
    std::string output_limit;
    /* Worker processes of a batch; 0: as many as there are processors. */
    std::size_t jobs = 0;
    Limits limits;
    /* Whether each translation of a batch holds those of the functions that it calls. */
    bool is_closure = false;
    /* Whether a batch is run again when its sources change. */
    bool watches = false;
    /* Whether translations hold the functions that the translator brings along, where they call
     * them, or those stand in a file of their own. */
    bool is_library_apart = false;
    /* Where called functions are looked for, first tried first; empty: the file's own directory. */
    std::vector<std::string> directories;
    /* Where to tell what the outputs are made from; empty: nowhere. */
    std::string depfile;
    /* The file for the translation of a single run; none, or "-": standard output. */
    std::optional<std::string> output;
    bool without_translator = false;
    /* The language of the sources: matlab, octave or classic. */
    std::string language = "matlab";
    /* Whether a source with an error or a gap gets no translation at all. */
    bool is_strict = false;
    /* Which messages are given, in which form, and after how many errors no more; 0: all. */
    MessagePolicy message_policy;
    MessageFormat message_format = MessageFormat::Text;
    std::size_t most_errors = 0;
    /* The file with messages of a batch that are known already; empty for none. */
    std::string baseline;
    ColourUse colours = ColourUse::Auto;
    /* Whether the tree of the source is written instead of its translation. */
    bool dumps_tree = false;
    bool dumps_values = false;
    [[nodiscard]] bool dumps_any() const { return dumps_tree || dumps_values; }
    /* Files with rules; of two rules for the same, that of the later file holds. */
    std::vector<std::string> rule_files;
    /* Whether no configuration is looked for in the folders of the sources. */
    bool without_configuration = false;
    /* Whether the sources may mean harm: nothing of their tree is followed out of it, and nothing
     * in it is an option. */
    bool is_untrusted = false;
    /* The folders in which files may then be read: those given, by themselves or by a file in them.
     */
    std::vector<std::string> given_folders;
    /* The names of the options that are given, without dashes: a configuration sets others. */
    std::set<std::string> given;
    /* The configurations of all sources; of the one that is translated, the rules, and the files
     * that it is read from. Null before they are known. */
    std::shared_ptr<ConfigurationSearch> configurations;
    const class Rules *rules = nullptr;
    FilesRead configuration_files;
    /* The files for the report and the call graph; empty for none. */
    std::string report;
    bool report_sources = true; /* a page shows sources and translations */
    std::string graph;
    /* The file for what lines come from; empty for none. */
    std::string map;

    /* What is asked for beside translations and messages; empty ones are not. */
    std::vector<std::string> other_outputs() const { return {report, graph, map, depfile}; }
    bool wants_map() const {
        return !map.empty() || report.ends_with(".json") ||
               (report.ends_with(".html") && report_sources);
    }
    bool wants_statistics() const {
        return !report.empty() || !graph.empty() || !map.empty() || mode == Mode::Assess;
    }
};

/* The search for sources in the paths. */
inline InputSearch search_in(const std::vector<std::string> &paths, const Options &options) {
    return {paths, options.excludes, !options.without_ignore_files, options.is_untrusted};
}

}  // namespace mtranslate
