/* Sums over the files of a report. */
#include "cli/report/report_summary.h"

#include <array>
#include <cstdio>
#include <set>
#include <tuple>

namespace mtranslate {

namespace {

constexpr std::array UNASSIGNED_CODES{"MT402", "MT403"};

void add(ReportTotals &totals, const ReportFile &file) {
    const FileFacts &facts = file.facts;
    ++totals.files;
    ++totals.states[static_cast<std::size_t>(file.state)];
    totals.functions += facts.functions.size();
    totals.lines += facts.lines;
    totals.bytes += facts.bytes;
    totals.statements += facts.statements;
    totals.without_message += facts.without_message;
    for (const WaitingFact &waiting : facts.waiting) totals.waiting += waiting.statements;
    totals.comments += facts.comments;
    totals.comments_kept += facts.comments_kept;
    for (const CallFact &call : facts.calls)
        totals.calls[static_cast<std::size_t>(call.end)] += call.count;
    for (const Diagnostic &diagnostic : file.diagnostics) ++totals.messages[diagnostic.severity];
}

class UnresolvedList {
public:
    void add(const ReportFile &file) {
        for (const CallFact &call : file.facts.calls)
            if (is_left_to_host(call.end)) add(file.path, call);
        for (const WaitingFact &waiting : file.facts.waiting)
            if (waiting.names.size() == 1)
                functions_[waiting.names.front()].alone += waiting.statements;
    }

    std::vector<UnresolvedFunction> sorted() const {
        std::vector<UnresolvedFunction> list;
        for (const auto &[name, function] : functions_) {
            list.push_back(function);
            list.back().name = name;
        }
        sort_by_count(list);
        return list;
    }

private:
    /* Files come by path, and calls of a file by place. */
    void add(const std::string &path, const CallFact &call) {
        UnresolvedFunction &function = functions_[call.name];
        if (function.count == 0) function.first = {path, call.line, call.column};
        function.count += call.count;
        function.is_class_only |= call.end == CallEnd::ClassOnly;
        if (function.files.empty() || function.files.back() != path) function.files.push_back(path);
    }

    std::map<std::string, UnresolvedFunction> functions_;
};

class MessageList {
public:
    void add(const ReportFile &file) {
        std::set<std::string> seen;
        for (const Diagnostic &diagnostic : file.diagnostics) {
            MessageKind &kind = kinds_[{diagnostic.severity, diagnostic.code}];
            ++kind.count;
            if (seen.insert(diagnostic.code).second) ++kind.files;
        }
    }

    std::vector<MessageKind> sorted() const {
        std::vector<MessageKind> list;
        for (const auto &[key, kind] : kinds_)
            list.push_back({key.second, key.first, kind.count, kind.files});
        std::stable_sort(list.begin(), list.end(), [](const MessageKind &a, const MessageKind &b) {
            return std::tuple(a.severity, b.count) < std::tuple(b.severity, a.count);
        });
        return list;
    }

private:
    std::map<std::pair<MessageSeverity, std::string>, MessageKind> kinds_;
};

bool is_unassigned(const Diagnostic &diagnostic) {
    return std::find(UNASSIGNED_CODES.begin(), UNASSIGNED_CODES.end(), diagnostic.code) !=
           UNASSIGNED_CODES.end();
}

void add_unassigned(std::vector<UnassignedName> &names, const ReportFile &file) {
    for (const Diagnostic &diagnostic : file.diagnostics)
        if (is_unassigned(diagnostic))
            names.push_back({diagnostic.operands.at(0),
                             diagnostic.code,
                             {diagnostic.file, diagnostic.line, diagnostic.column}});
}

std::vector<RuleUse> used_rules(const Report &report) {
    std::map<std::string, std::size_t> counts;
    for (const std::string &title : report.rules) counts[title] = 0;
    for (const ReportFile &file : report.files)
        for (const auto &[title, count] : file.rules_used) counts[title] += count;
    std::vector<RuleUse> list;
    list.reserve(counts.size());
    for (const auto &[title, count] : counts) list.push_back({title, count});
    sort_by_count(list);
    return list;
}

}  // namespace

ReportSummary summarise(const Report &report) {
    ReportSummary summary;
    UnresolvedList unresolved;
    MessageList messages;
    for (const ReportFile &file : report.files) {
        add(summary.totals, file);
        unresolved.add(file);
        messages.add(file);
        add_unassigned(summary.unassigned, file);
    }
    summary.unresolved = unresolved.sorted();
    summary.messages = messages.sorted();
    summary.rules = used_rules(report);
    return summary;
}

std::string share(std::size_t part, std::size_t all) {
    if (all == 0) return "-";
    std::size_t tenths = (part * 1000 + all / 2) / all;
    if (part < all) tenths = std::min<std::size_t>(tenths, 999);
    return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10) + " %";
}

}  // namespace mtranslate
