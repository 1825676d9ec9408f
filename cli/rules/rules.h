/* Rules: what the tool's host answers for names and calls. */
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/rules/call_forms.h"

namespace mtranslate {

class Rules {
public:
    /* All replace what there is for the name; an empty text, or a function without forms, takes it
     * back. */
    void set_name(const std::string &name, const Rule &rule) {
        names_.insert_or_assign(name, rule);
    }
    void set_function(const std::string &name, const FunctionRule &rule) {
        functions_.insert_or_assign(name, rule);
    }
    /* Of a construct that a function's name or a keyword stands for (rules/constructs.h). */
    void set_form(const std::string &construct, const FunctionRule &rule) {
        forms_.insert_or_assign(construct, rule);
    }
    /* The same for all that later holds. */
    void add(const Rules &later);

    /* Null where there is none. */
    const Rule *find_name(std::string_view name) const;
    const FunctionRule *find_function(std::string_view name) const;
    const FunctionRule *find_form(std::string_view construct) const;

    /* The rules in force, in the order of the names. */
    std::vector<const Rule *> of_names() const;
    std::vector<const Rule *> of_functions() const;
    std::vector<const Rule *> of_forms() const;
    /* The titles (call_forms.h) of those of names and of functions. */
    std::set<std::string> titles() const;
    bool is_empty() const { return names_.empty() && functions_.empty() && forms_.empty(); }

private:
    using FunctionRules = std::map<std::string, FunctionRule, std::less<>>;

    static std::vector<const Rule *> all_of(const FunctionRules &functions);

    std::map<std::string, Rule, std::less<>> names_;
    FunctionRules functions_;
    FunctionRules forms_;
};

}  // namespace mtranslate
