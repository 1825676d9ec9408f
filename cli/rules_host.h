/* Rules as a host's answers. */
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/rules.h"

namespace mtranslate {

class StandInHost;

/* How often each number of arguments occurs. */
using CountsByArguments = std::map<std::size_t, std::size_t>;

class RuleAnswers {
public:
    /* The rules live as long as this. */
    explicit RuleAnswers(const Rules &rules) : rules_(rules) {}

    /* Has the host answer by the rules, as long as this lives. */
    void answer_in(StandInHost &host);

    /* How often each rule has answered, by its title. */
    std::map<std::string, std::size_t> used() const;
    /* The calls that no rule has answered, by the functions' names. */
    const std::map<std::string, CountsByArguments> &unanswered() const { return unanswered_; }

private:
    std::optional<std::string> name(std::string_view name);
    std::optional<std::string> call(std::string_view name,
                                    const std::vector<std::string> &arguments);

    const Rules &rules_;
    std::map<const Rule *, std::size_t> used_;
    std::map<std::string, CountsByArguments> unanswered_;
};

}  // namespace mtranslate
