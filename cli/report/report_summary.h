/* What a report says about all its files together. */
#pragma once

#include <algorithm>

#include "cli/report/report.h"

namespace mtranslate {

struct ReportTotals {
    std::size_t files = 0;
    std::size_t states[4] = {}; /* files by FileState */
    std::size_t functions = 0;
    std::size_t lines = 0;
    std::size_t bytes = 0;
    std::size_t statements = 0;
    std::size_t without_message = 0; /* statements */
    std::size_t waiting = 0;         /* statements in which only functions are unresolved */
    std::size_t comments = 0;
    std::size_t comments_kept = 0;
    std::size_t calls[5] = {}; /* by CallEnd */
    SeverityCounts messages{};
};

struct ReportPlace {
    std::string file;
    std::size_t line = 0;
    std::size_t column = 0;
};

/* A function that is found nowhere, or only in classes, and that the host does not answer. */
struct UnresolvedFunction {
    std::string name;
    std::size_t count = 0;          /* of its calls */
    std::vector<std::string> files; /* that call it, by path */
    ReportPlace first;
    std::size_t alone = 0;      /* statements that wait for it alone */
    bool is_class_only = false; /* classes have it */
};

struct MessageKind {
    std::string code; /* empty for what is not the library's message about a matlab source */
    MessageSeverity severity;
    std::size_t count = 0;
    std::size_t files = 0;
};

/* A name that nothing assigns. */
struct UnassignedName {
    std::string name;
    std::string code;
    ReportPlace place;
};

struct RuleUse {
    std::string title;
    std::size_t count = 0;
};

struct ReportSummary {
    ReportTotals totals;
    std::vector<UnresolvedFunction> unresolved; /* most used first, then by name */
    std::vector<MessageKind> messages;          /* errors first, most frequent first */
    std::vector<UnassignedName> unassigned;     /* by place */
    std::vector<RuleUse> rules;                 /* most used first, then by title */
};

/* The largest counts first; those with the same one stay as they are. */
template <class Counted>
void sort_by_count(std::vector<Counted> &list) {
    std::stable_sort(list.begin(), list.end(),
                     [](const Counted &a, const Counted &b) { return a.count > b.count; });
}

ReportSummary summarise(const Report &report);

/* part of all in percent with one decimal, as "98.4 %". 100 % only of all; of none, "-". */
std::string share(std::size_t part, std::size_t all);

}  // namespace mtranslate
