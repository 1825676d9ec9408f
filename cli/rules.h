/* Rules: what the tool's host answers for names and calls. */
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/rules_template.h"

namespace mtranslate {

/* The keyword under which the host is asked for try: lines of statements, not a value. */
constexpr std::string_view TRY_KEYWORD = "try";

/* Where a rule stands. */
struct RulePlace {
    std::string file; /* as messages show it */
    std::size_t line = 0;
    std::size_t column = 0; /* in characters */
};

/* "FILE:LINE:COLUMN", printable. */
std::string text_of(const RulePlace &place);

/* A name's translation, or a form of a function's calls. */
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

/* What calls of a function become. */
struct FunctionRule {
    /* For calls with this number of arguments. */
    std::map<std::size_t, FunctionForm> by_count;
    /* For any other number that it has places for: a default that there are arguments enough for,
     * any other exactly as many as its places take. */
    std::optional<FunctionForm> otherwise;
    bool is_default = false;

    /* The form for a number of arguments, or null. */
    const FunctionForm *form_for(std::size_t count) const;
};

class Rules {
public:
    /* Both replace what there is for the name; an empty text, or a function without forms, takes it
     * back. */
    void set_name(const std::string &name, const Rule &rule) {
        names_.insert_or_assign(name, rule);
    }
    void set_function(const std::string &name, const FunctionRule &rule) {
        functions_.insert_or_assign(name, rule);
    }
    /* The same for all that later holds. */
    void add(const Rules &later);

    /* Null where there is none. */
    const Rule *find_name(std::string_view name) const;
    const FunctionRule *find_function(std::string_view name) const;

    /* The rules in force, in the order of the names. */
    std::vector<const Rule *> of_names() const;
    std::vector<const Rule *> of_functions() const;
    bool is_empty() const { return names_.empty() && functions_.empty(); }

private:
    std::map<std::string, Rule, std::less<>> names_;
    std::map<std::string, FunctionRule, std::less<>> functions_;
};

}  // namespace mtranslate
