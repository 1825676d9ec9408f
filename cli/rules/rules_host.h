/* Rules as a host's answers. */
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/rules/rules.h"
#include "cli/rules/unanswered.h"
#include "cli/support/library.h"

namespace mtranslate {

struct Construct;
class StandInHost;

class RuleAnswers {
public:
    /* The rules live as long as this. */
    explicit RuleAnswers(const Rules &rules) : rules_(rules) {}
    RuleAnswers(const RuleAnswers &) = delete;
    RuleAnswers &operator=(const RuleAnswers &) = delete;

    /* Has the host answer by the rules, as long as this lives. */
    void answer_in(StandInHost &host);
    /* What the result of the function is by the rules. */
    ResultKind kind(const char *name) const;

    /* How often each rule has answered, by its title. */
    std::map<std::string, std::size_t> used() const;
    /* The calls that no rule has answered, by the functions' names. */
    const std::map<std::string, UnansweredCalls> &unanswered() const { return unanswered_; }

private:
    std::optional<std::string> name(std::string_view name);
    std::optional<std::string> handle(std::string_view name);
    std::optional<std::string> call(std::string_view name,
                                    const std::vector<std::string> &arguments);
    std::optional<std::string> form(const Construct &construct,
                                    const std::vector<std::string> &arguments);

    const Rules &rules_;
    std::map<const Rule *, std::size_t> used_;
    std::map<std::string, UnansweredCalls> unanswered_;
};

}  // namespace mtranslate
