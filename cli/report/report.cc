/* Reports of several runs as one. */
#include "cli/report/report.h"

#include <algorithm>

#include "cli/files/file_index.h"

namespace mtranslate {

namespace {

/* Functions that calls of a file found elsewhere only by the files of other reports. */
class Resolution {
public:
    explicit Resolution(const std::vector<ReportFile> &files) : index_(inputs(files)) {}

    void apply(ReportFile &file) const {
        for (CallFact &call : file.facts.calls) resolve(file, call);
        for (WaitingFact &waiting : file.facts.waiting) resolve(file, waiting);
        std::erase_if(file.facts.waiting,
                      [](const WaitingFact &waiting) { return waiting.names.empty(); });
        std::erase_if(file.diagnostics, [&](const Diagnostic &diagnostic) {
            return is_listed(diagnostic) && find(file, diagnostic.operands.at(0));
        });
        for (Diagnostic &diagnostic : file.diagnostics)
            if (is_listed(diagnostic)) resolve(diagnostic);
    }

private:
    static InputFiles inputs(const std::vector<ReportFile> &files) {
        InputFiles inputs;
        for (const ReportFile &file : files) inputs.add({file.path, file.path});
        return inputs;
    }

    std::optional<std::string> find(const ReportFile &file, const std::string &name) const {
        return index_.find(file.path, name);
    }

    void resolve(const ReportFile &file, CallFact &call) const {
        if (!is_left_to_host(call.end)) return;
        if (const auto found = find(file, call.name)) {
            call.end = CallEnd::Found;
            call.target = *found;
        } else if (index_.find_method(nullptr, call.name)) {
            call.end = CallEnd::ClassOnly;
        }
    }

    void resolve(Diagnostic &unknown) const {
        if (index_.find_method(nullptr, unknown.operands.at(0))) tell_class_only(unknown);
    }

    void resolve(ReportFile &file, WaitingFact &waiting) const {
        std::erase_if(waiting.names, [&](const std::string &name) { return find(file, name); });
        if (waiting.names.empty()) file.facts.without_message += waiting.statements;
    }

    FileIndex index_;
};

/* Names may have become the same ones. */
void join_waiting(FileFacts &facts) {
    std::map<std::vector<std::string>, std::size_t> counts;
    for (WaitingFact &waiting : facts.waiting) counts[waiting.names] += waiting.statements;
    facts.waiting.clear();
    for (const auto &[names, statements] : counts) facts.waiting.push_back({names, statements});
}

}  // namespace

FileState state_of(const Diagnostics &diagnostics) {
    const SeverityCounts counts = count_severities(diagnostics);
    if (counts[SEVERITY_ERROR] > 0) return FileState::Errors;
    return counts[SEVERITY_GAP] > 0 ? FileState::Gaps : FileState::Translated;
}

void sort_report(Report &report) {
    std::stable_sort(report.files.begin(), report.files.end(),
                     [](const ReportFile &a, const ReportFile &b) { return a.path < b.path; });
    const auto is_same = [](const ReportFile &a, const ReportFile &b) { return a.path == b.path; };
    report.files.erase(std::unique(report.files.begin(), report.files.end(), is_same),
                       report.files.end());
}

Report merge_reports(std::vector<Report> reports) {
    std::map<std::string, ReportFile> files;
    Report merged;
    for (Report &report : reports) {
        for (ReportFile &file : report.files) files[file.path] = std::move(file);
        merged.rules.merge(report.rules);
        merged.is_interrupted |= report.is_interrupted;
    }
    for (auto &[path, file] : files) merged.files.push_back(std::move(file));
    const Resolution resolution(merged.files);
    for (ReportFile &file : merged.files) {
        resolution.apply(file);
        join_waiting(file.facts);
    }
    return merged;
}

}  // namespace mtranslate
