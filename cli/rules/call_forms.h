/* What calls of a function become. */
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/rules/pattern.h"
#include "cli/rules/rules_template.h"

namespace mtranslate {

/* Where a rule stands. */
struct RulePlace {
    std::string file; /* as messages show it */
    std::size_t line = 0;
    std::size_t column = 0; /* in characters */
};

/* "FILE:LINE:COLUMN", printable. */
std::string text_of(const RulePlace &place);

/* A name's translation, a form of a function's calls, or what is said of its results. */
struct Rule {
    std::string name; /* of the name or the function */
    std::string key;  /* such as "names.x", "functions.size" or "functions.size.2" */
    std::string text; /* as it is written in the file */
    RulePlace place;
};

/* One line of text that tells the rule from all others: place, key and text. */
std::string title_of(const Rule &rule);

/* A form of a function's calls. */
struct FunctionForm {
    Rule rule;
    Template form;
};

/* The same for calls with literals among the arguments; the form's places are those of the pattern.
 */
struct PatternForm {
    ArgumentPattern pattern;
    FunctionForm form;
};

/* A form that has been found, and the arguments for its places. */
struct FoundForm {
    const FunctionForm *form;
    std::vector<std::string> arguments;
};

/* Forms by the arguments. */
struct CallForms {
    std::vector<PatternForm> patterns; /* first tried first */
    /* For calls with this number of arguments. */
    std::map<std::size_t, FunctionForm> by_count;
    /* For any other number that it has places for: a default that there are arguments enough for,
     * any other exactly as many as its places take. */
    std::optional<FunctionForm> otherwise;
    bool is_default = false;

    std::optional<FoundForm> find(const std::vector<std::string> &arguments) const;
    std::vector<const FunctionForm *> all() const;
};

/* The numbers of results that a call may be asked for, besides 0, of a statement, and so on; as in
 * mtranslate.h. */
constexpr int ANY_RESULTS = -1;

/* All that is said of a function. */
struct FunctionRule {
    CallForms plain; /* for one result, or none */
    std::map<int, CallForms>
        by_results; /* for so many; of 0, a statement; ANY_RESULTS: for others */
    std::optional<FunctionForm> handle; /* for @f */
    std::optional<Rule> kind;           /* of its first result */

    /* The form of a call that is asked for a number of results (RequestedResults). */
    std::optional<FoundForm> find(const std::vector<std::string> &arguments, int results) const;
    /* What a handle of the function is: what is said, or what follows from its only form. */
    std::optional<std::string> handle_text() const;
    /* All rules, those without forms too. */
    std::vector<const Rule *> all() const;
};

}  // namespace mtranslate
