/* Reports as Markdown. */
#include <sstream>

#include "cli/report/forms/report_words.h"
#include "cli/report/report.h"
#include "cli/report/report_summary.h"

namespace mtranslate {

namespace {

/* The text in a cell of a table, as it stands. */
std::string cell(const std::string &text) {
    std::string cell;
    for (const char c : printable(text)) {
        if (std::string_view("\\`*_{}[]<>#|~&").find(c) != std::string_view::npos) cell += '\\';
        cell += c;
    }
    return cell;
}

/* A table, row by row. Columns whose title begins with a blank hold numbers. */
class Table {
public:
    Table(std::ostream &to, std::initializer_list<std::string> titles) : to_(to) {
        row(titles);
        for (const std::string &title : titles) to_ << (title.starts_with(' ') ? "|--:" : "|---");
        to_ << "|\n";
    }
    void row(std::initializer_list<std::string> cells) {
        for (const std::string &text : cells)
            to_ << (text.starts_with(' ') ? "|" : "| ") << text << ' ';
        to_ << "|\n";
    }

private:
    std::ostream &to_;
};

std::string place(const ReportPlace &place) {
    return cell(place.file) + ':' + std::to_string(place.line) + ':' + std::to_string(place.column);
}

void write_totals(std::ostream &to, const ReportTotals &totals) {
    Table table(to, {"Total", " Number", " Share"});
    const auto row = [&](const char *what, std::size_t count, std::size_t all) {
        table.row({what, grouped(count), all > 0 ? share(count, all) : ""});
    };
    row("Files", totals.files, 0);
    for (const FileState state : FILE_STATES)
        row((std::string("Files ") + words_of(state)).c_str(),
            totals.states[static_cast<std::size_t>(state)], totals.files);
    row("Functions", totals.functions, 0);
    row("Lines", totals.lines, 0);
    row("Bytes", totals.bytes, 0);
    row("Statements", totals.statements, 0);
    row("Statements translated without a message", totals.without_message, totals.statements);
    row("Statements that only wait for unresolved functions", totals.waiting, totals.statements);
    std::size_t calls = 0;
    for (const std::size_t count : totals.calls) calls += count;
    row("Calls", calls, 0);
    for (const CallEnd end : CALL_ENDS)
        row((std::string("Calls ") + words_of(end)).c_str(),
            totals.calls[static_cast<std::size_t>(end)], calls);
    row("Comments", totals.comments, 0);
    row("Comments kept", totals.comments_kept, totals.comments);
}

void write_unresolved(std::ostream &to, const std::vector<UnresolvedFunction> &functions) {
    to << "\n## Unresolved functions\n\n";
    if (functions.empty()) {
        to << "None: every function that is called is found, or the host answers it.\n";
        return;
    }
    to << "They are found nowhere, or only in classes, and the host has no form of them; calls are "
          "left as they are.\n\n";
    Table table(
        to, {"Function", " Calls", " Files", " Statements that wait for it alone", "First place"});
    for (const UnresolvedFunction &function : functions)
        table.row({cell(function.name) + (function.is_class_only ? " (in classes)" : ""),
                   grouped(function.count), grouped(function.files.size()), grouped(function.alone),
                   place(function.first)});
}

void write_messages(std::ostream &to, const std::vector<MessageKind> &kinds) {
    if (kinds.empty()) return;
    to << "\n## Messages\n\n";
    Table table(to, {"Message", "Severity", " Number", " Files"});
    for (const MessageKind &kind : kinds)
        table.row({cell(name_of_message(kind.code)), severity_name(kind.severity),
                   grouped(kind.count), grouped(kind.files)});
}

void write_unassigned(std::ostream &to, const std::vector<UnassignedName> &names) {
    if (names.empty()) return;
    to << "\n## Names that nothing assigns\n\n";
    Table table(to, {"Name", "Place"});
    for (const UnassignedName &name : names) table.row({cell(name.name), place(name.place)});
}

void write_rules(std::ostream &to, const std::vector<RuleUse> &rules) {
    if (rules.empty()) return;
    to << "\n## Rules\n\n";
    Table table(to, {"Rule", " Used"});
    for (const RuleUse &rule : rules)
        table.row({cell(rule.title), rule.count > 0 ? grouped(rule.count) : "never"});
}

void write_files(std::ostream &to, const std::vector<ReportFile> &files) {
    to << "\n## Files\n\n";
    Table table(to, {"File", "State", " Functions", " Lines", " Bytes", " Statements",
                     " Without a message", " Errors", " Gaps", " Warnings", " Notes"});
    for (const ReportFile &file : files) {
        const FileFacts &facts = file.facts;
        const SeverityCounts counts = count_severities(file.diagnostics);
        table.row({cell(file.path), words_of(file.state), grouped(facts.functions.size()),
                   grouped(facts.lines), grouped(facts.bytes), grouped(facts.statements),
                   share(facts.without_message, facts.statements), grouped(counts[SEVERITY_ERROR]),
                   grouped(counts[SEVERITY_GAP]), grouped(counts[SEVERITY_WARNING]),
                   grouped(counts[SEVERITY_NOTE])});
    }
}

}  // namespace

void write_markdown(const Report &report, const Sink &to) {
    const ReportSummary summary = summarise(report);
    std::ostringstream text;
    text << "# Translation report\n\n";
    if (report.is_interrupted) text << "The run was interrupted: files are missing here.\n\n";
    write_totals(text, summary.totals);
    write_unresolved(text, summary.unresolved);
    write_messages(text, summary.messages);
    write_unassigned(text, summary.unassigned);
    write_rules(text, summary.rules);
    write_files(text, report.files);
    to(text.str());
}

}  // namespace mtranslate
