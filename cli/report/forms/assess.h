/* What to expect of a tree before anything of it is translated. */
#pragma once

#include <string>
#include <vector>

#include "cli/report/report_summary.h"

namespace mtranslate {

/* A function to write a rule for. */
struct Candidate {
    const UnresolvedFunction *function; /* of the summary */
    std::size_t completed; /* statements that translate then, with the rules of those before it */
};

/* The functions whose rule would help most, one after the other. */
std::vector<Candidate> candidates(const Report &report, const ReportSummary &summary);

/* A page for people: how much would translate today, what stands in the way, most frequent first,
 * and the functions whose rule would help most. */
std::string assessment(const Report &report);

}  // namespace mtranslate
