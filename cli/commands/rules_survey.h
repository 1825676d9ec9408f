/* What a tree leaves to the host. */
#pragma once

#include <cstddef>
#include <map>
#include <set>
#include <string>

#include "cli/request/options.h"
#include "cli/rules/rules_host.h"

namespace mtranslate {

/* A function that is found nowhere, or only in classes. */
struct SurveyedFunction {
    UnansweredCalls calls;    /* none: a handle only */
    std::size_t files = 0;    /* that use it */
    std::string place;        /* of its first use: "FILE:LINE" */
    bool is_in_class = false; /* classes have it */

    std::size_t count() const;
};

/* By their names, with the packages that they belong to. */
using SurveyedFunctions = std::map<std::string, SurveyedFunction>;

struct Survey {
    SurveyedFunctions functions;
    std::set<std::string> rules_used; /* titles of those that have answered */
    std::string troubles;             /* lines for the user: files that could not be worked on */
    int signal = 0;                   /* that has ended it early */
};

/* Translates the files of the options' paths, and keeps none of the translations. Throws FileError
 * where nothing can be begun. */
Survey survey_functions(const Options &options);

}  // namespace mtranslate
