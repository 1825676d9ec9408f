/* What a run notes of its files for the report, the graph and the assessment that were asked for.
 */
#pragma once

#include <string>

#include "cli/report/facts/file_result.h"
#include "cli/report/report.h"
#include "cli/request/options.h"

namespace mtranslate {

/* The reports of other runs that become one. */
struct ReportMerge {
    std::vector<std::string> paths; /* of JSON files */
    std::string output;             /* empty: Markdown on standard output */
    std::string graph;
    bool shows_sources = true;
};

class ReportOutput {
public:
    /* The options live as long as this. */
    explicit ReportOutput(const Options &options) : options_(options) {}
    /* Rules that are in force for some of the files. */
    void add(const Rules &rules);
    /* output: the file with the translation; empty for none. */
    void add(const std::string &path, const std::string &output, const FileResult &result);
    /* Writes what was asked for, when all files have been added, or, as the run was interrupted,
     * some. Throws FileError. */
    void finish(bool is_interrupted);

private:
    const Options &options_;
    Report report_;
};

/* Whether the report that is asked for does. */
bool report_shows_translations(const Options &options);

/* Throws FileError where a report cannot be read or written. */
void merge_and_write(const ReportMerge &merge);

}  // namespace mtranslate
