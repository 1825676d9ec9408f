/* The account of a run over many files: what was translated, and what is left to do. */
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "cli/files/output.h"
#include "cli/messages/diagnostic.h"
#include "cli/report/facts/statistics.h"

namespace mtranslate {

enum class FileState {
    Translated, /* without errors or gaps */
    Gaps,
    Errors,
    Failed /* not read, not written, or its worker was lost */
};

struct ReportFile {
    std::string path;
    std::string output; /* file with the translation; empty for none */
    FileState state = FileState::Translated;
    FileFacts facts;
    Diagnostics diagnostics;
    std::map<std::string, std::size_t> rules_used; /* how often, by title (rules.h) */
    std::string details;                           /* packed (details.h) */
};

struct Report {
    std::vector<ReportFile> files; /* by path */
    std::set<std::string> rules;   /* titles of those in force */
    bool shows_sources = true;     /* as a page */
    bool is_interrupted = false;   /* files are missing that the run was asked for */
};

/* The state of a file of which that is told, and which has not failed. */
FileState state_of(const Diagnostics &diagnostics);

/* Puts files in order, so that the reports of the same files are the same. A file that
 * was named several times counts once. */
void sort_report(Report &report);

/* One report of them all. Of a file that several have, the last counts. Calls of functions that
 * another of them holds are found. */
Report merge_reports(std::vector<Report> reports);

/* Reads a report's JSON. Throws FileError, naming the path, where there is none. */
Report read_report(const std::string &path);

/* The report in the form that the path's ending names: .json, .md or .html. Throws FileError where
 * it cannot be written; a file is there whole or not at all. */
void write_report(const Report &report, const std::string &path);
/* Whether there is a form for the path's ending. */
bool is_report_path(const std::string &path);
/* Whether that form shows translations. */
bool shows_translations(const std::string &path);

/* Its forms, given to the sink piece by piece: what is written of a large tree is never in memory
 * as a whole. The page throws FileError where a source cannot be read again, before it gives any.
 */
void write_json(const Report &report, const Sink &to);
void write_markdown(const Report &report, const Sink &to);
void write_page(const Report &report, const Sink &to);

/* The maps of its files as JSON: docs/map.schema.json. */
void write_map(const Report &report, const Sink &to);

}  // namespace mtranslate
