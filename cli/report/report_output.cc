#include "cli/report/report_output.h"

#include <iostream>

#include "cli/report/forms/assess.h"
#include "cli/report/forms/call_graph.h"
#include "cli/rules/rules.h"

namespace mtranslate {

namespace {

void write(const Report &report, const std::string &path, const std::string &graph) {
    if (!path.empty()) write_report(report, path);
    if (!graph.empty()) Output(graph).write(graph_text(report));
}

}  // namespace

void ReportOutput::add(const Rules &rules) { report_.rules.merge(rules.titles()); }

void ReportOutput::add(const std::string &path, const std::string &output,
                       const FileResult &result) {
    if (!options_.wants_statistics()) return;
    ReportFile file;
    file.path = path;
    file.output = output;
    file.state =
        result.code == ExitCode::Trouble ? FileState::Failed : state_of(result.diagnostics);
    file.facts = result.facts;
    file.diagnostics = result.diagnostics;
    for (Diagnostic &diagnostic : file.diagnostics)
        std::string().swap(diagnostic.excerpt);  // no form shows it, and it is most of the text
    file.rules_used = result.rules_used;
    file.details = result.details;
    report_.files.push_back(std::move(file));
}

void ReportOutput::finish(bool is_interrupted) {
    if (!options_.wants_statistics()) return;
    report_.is_interrupted = is_interrupted;
    report_.shows_sources = options_.report_sources;
    sort_report(report_);
    write(report_, options_.report, options_.graph);
    if (!options_.map.empty())
        Output(options_.map).write([&](const Sink &to) { write_map(report_, to); });
    if (options_.mode == Mode::Assess) Output(std::nullopt).write(assessment(report_));
}

bool report_shows_translations(const Options &options) {
    return options.report_sources && shows_translations(options.report);
}

void merge_and_write(const ReportMerge &merge) {
    std::vector<Report> reports;
    for (const std::string &path : merge.paths) reports.push_back(read_report(path));
    Report report = merge_reports(std::move(reports));
    report.shows_sources = merge.shows_sources;
    write(report, merge.output, merge.graph);
    if (merge.output.empty() && merge.graph.empty())
        Output(std::nullopt).write([&](const Sink &to) { write_markdown(report, to); });
}

}  // namespace mtranslate
