#include "web/package/source/tree_report.h"

#include "cli/messages/messages.h"
#include "cli/report/forms/report_json.h"

namespace mtranslate::web {

namespace {

/* What has ended the run; the library tells it last, with its place if it has one. */
Diagnostic failure_of(const mTranslateProgramResult &result, const RunFiles &files,
                      const std::string &file) {
    Diagnostic diagnostic = trouble_with(file, result.failure);
    if (result.message_count == 0) return diagnostic;
    const mTranslateProgramMessage &last = *result.messages[result.message_count - 1];
    if (last.kind || !last.place) return diagnostic;
    diagnostic.file = files.shown_name(last.place->file);
    diagnostic.line = last.place->line;
    diagnostic.column = files.column(*last.place);
    diagnostic.end_column = diagnostic.column;
    return diagnostic;
}

void add_failure(const mTranslateProgramResult &result, const RunFiles &files, ReportFile &file) {
    file.diagnostics.push_back(failure_of(result, files, file.path));
    file.output.clear();
    const bool is_bad_source = result.status == MTRANSLATE_PROGRAM_STOPPED;
    file.state = is_bad_source ? FileState::Errors : FileState::Failed;
}

}  // namespace

std::string file_report(const mTranslateProgramResult &result, const std::string &file,
                        const std::string &output, const RuleAnswers &rules,
                        const FileIndex *index) {
    const Source source{"file", file, file, {}, {}, Descriptor()};
    const RunFiles files(result, source);
    ReportFile report;
    report.path = file;
    report.output = output;
    report.diagnostics = messages_of(result, files, MessagePolicy()).diagnostics;
    report.state = state_of(report.diagnostics);
    report.facts = facts_of(result, files, index);
    report.rules_used = rules.used();
    if (result.status != MTRANSLATE_PROGRAM_DONE) add_failure(result, files, report);
    const LineMap map = line_map_of(result, files);
    return text_of(file_json(report, &map));
}

std::string report_head(const nlohmann::ordered_json &files, const Rules &rules,
                        bool is_interrupted) {
    Report report;
    for (const auto &file : files) report.files.push_back(report_file_of(file));
    sort_report(report);
    report.rules = rules.titles();
    report.is_interrupted = is_interrupted;
    return text_of(page_head_json(report));
}

}  // namespace mtranslate::web
