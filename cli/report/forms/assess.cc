/* The page of an assessment. */
#include "cli/report/forms/assess.h"

#include <algorithm>
#include <iomanip>
#include <set>
#include <sstream>

#include "cli/report/forms/report_words.h"

namespace mtranslate {

namespace {

constexpr std::size_t MOST_FUNCTIONS = 10;
constexpr std::size_t MOST_MESSAGES = 15;

/* Chooses, one after the other, the function that completes most statements. */
class Choice {
public:
    Choice(const Report &report, const std::vector<UnresolvedFunction> &functions) {
        for (const UnresolvedFunction &function : functions) left_[function.name] = &function;
        for (const ReportFile &file : report.files)
            for (const WaitingFact &waiting : file.facts.waiting)
                waiting_[{waiting.names.begin(), waiting.names.end()}] += waiting.statements;
    }

    std::vector<Candidate> candidates() {
        std::vector<Candidate> chosen;
        while (chosen.size() < MOST_FUNCTIONS && !left_.empty()) chosen.push_back(choose());
        return chosen;
    }

private:
    using Names = std::set<std::string>;

    Candidate choose() {
        std::map<std::string, std::size_t> gains;
        for (const auto &[names, statements] : waiting_)
            if (names.size() == 1) gains[*names.begin()] += statements;
        const auto merit = [&](const auto &entry) {
            const auto gain = gains.find(entry.first);
            return std::pair(gain == gains.end() ? 0 : gain->second, entry.second->count);
        };
        const auto best =
            std::max_element(left_.begin(), left_.end(),
                             [&](const auto &a, const auto &b) { return merit(a) < merit(b); });
        const Candidate chosen{best->second, merit(*best).first};
        left_.erase(best);
        answer(chosen.function->name);
        return chosen;
    }

    void answer(const std::string &name) {
        std::map<Names, std::size_t> waiting;
        for (const auto &[names, statements] : waiting_) {
            Names rest = names;
            rest.erase(name);
            if (!rest.empty()) waiting[rest] += statements;
        }
        waiting_ = std::move(waiting);
    }

    std::map<std::string, const UnresolvedFunction *> left_;
    std::map<Names, std::size_t> waiting_;
};

void write_size(std::ostream &to, const ReportTotals &totals) {
    to << counted(totals.files, "file", "files") << ", "
       << counted(totals.functions, "function", "functions") << ", "
       << counted(totals.lines, "line", "lines") << ", " << grouped(totals.bytes) << " bytes\n";
}

void write_share(std::ostream &to, const char *what, std::size_t part, std::size_t all) {
    to << "  " << std::left << std::setw(40) << what << std::right << std::setw(10) << grouped(part)
       << " of " << std::setw(10) << std::left << grouped(all) << std::right << std::setw(8)
       << share(part, all) << '\n';
}

void write_today(std::ostream &to, const ReportTotals &totals) {
    to << "\nWhat would translate today\n";
    write_share(to, "files without errors or gaps", totals.states[0], totals.files);
    write_share(to, "statements without a message", totals.without_message, totals.statements);
    write_share(to, "statements that only wait for functions", totals.waiting, totals.statements);
    std::size_t calls = 0;
    for (const std::size_t count : totals.calls) calls += count;
    const std::size_t unresolved = totals.calls[static_cast<std::size_t>(CallEnd::Unresolved)];
    const std::size_t class_only = totals.calls[static_cast<std::size_t>(CallEnd::ClassOnly)];
    write_share(to, "calls found, answered or built in", calls - unresolved - class_only, calls);
    if (class_only > 0) write_share(to, "calls found in classes only", class_only, calls);
    write_share(to, "comments kept", totals.comments_kept, totals.comments);
}

void write_obstacles(std::ostream &to, const std::vector<MessageKind> &kinds) {
    std::vector<MessageKind> shown;
    for (const MessageKind &kind : kinds)
        if (kind.severity != SEVERITY_NOTE && kind.code != "MT401") shown.push_back(kind);
    if (shown.empty()) return;
    sort_by_count(shown);
    to << "\nWhat stands in the way (mtranslate explain CODE tells more)\n"
          "       times     files\n";
    for (std::size_t i = 0; i < std::min(shown.size(), MOST_MESSAGES); ++i)
        to << "  " << std::setw(10) << grouped(shown[i].count) << std::setw(10)
           << grouped(shown[i].files) << "  " << std::left << std::setw(8)
           << severity_name(shown[i].severity) << std::right << ' '
           << name_of_message(shown[i].code) << '\n';
    if (shown.size() > MOST_MESSAGES)
        to << "  and " << counted(shown.size() - MOST_MESSAGES, "message", "messages")
           << " less frequent\n";
}

void write_candidates(std::ostream &to, const std::vector<Candidate> &candidates,
                      const ReportTotals &totals) {
    std::size_t completed = 0;
    to << "\nFunctions whose rule would help most\n"
          "  statements     calls     files\n";
    for (const Candidate &candidate : candidates) {
        completed += candidate.completed;
        to << "  " << std::setw(10) << '+' + grouped(candidate.completed) << std::setw(10)
           << grouped(candidate.function->count) << std::setw(10)
           << grouped(candidate.function->files.size()) << "  "
           << printable(candidate.function->name)
           << (candidate.function->is_class_only ? " (in classes)" : "") << '\n';
    }
    to << "With all of them " << share(totals.without_message + completed, totals.statements)
       << " of the statements translate without a message.\n";
}

}  // namespace

std::vector<Candidate> candidates(const Report &report, const ReportSummary &summary) {
    return Choice(report, summary.unresolved).candidates();
}

std::string assessment(const Report &report) {
    const ReportSummary summary = summarise(report);
    std::ostringstream text;
    write_size(text, summary.totals);
    write_today(text, summary.totals);
    write_obstacles(text, summary.messages);
    const std::vector<Candidate> chosen = candidates(report, summary);
    if (chosen.empty()) return text.str();
    write_candidates(text, chosen, summary.totals);
    const std::size_t rest = summary.unresolved.size() - chosen.size();
    if (rest > 0)
        text << counted(rest, "more function is", "more functions are") << " left to the host.\n";
    return text.str();
}

}  // namespace mtranslate
