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
    RuleAnswers(const Rules &rules, bool counts_unanswered)
        : rules_(rules), counts_unanswered_(counts_unanswered) {}
    RuleAnswers(const RuleAnswers &) = delete;
    RuleAnswers &operator=(const RuleAnswers &) = delete;

    /* Has the host answer by the rules, as long as this lives. */
    void answer_in(StandInHost &host);
    /* What the result of the function is by the rules. */
    ResultKind kind(const char *name) const;

    /* How often each rule has answered, by its title. */
    std::map<std::string, std::size_t> used() const;
    /* The calls that no rule has answered, by the functions' names, if they are counted. */
    const std::map<std::string, UnansweredCalls> &unanswered() const { return unanswered_; }

private:
    std::optional<std::string> name(std::string_view name);
    std::optional<std::string> handle(std::string_view name);
    std::optional<std::string> call(std::string_view name,
                                    const std::vector<std::string> &arguments);
    std::optional<std::string> form(const Construct &construct,
                                    const std::vector<std::string> &arguments);

    const Rules &rules_;
    const bool counts_unanswered_;
    std::map<const Rule *, std::size_t> used_;
    std::map<std::string, UnansweredCalls> unanswered_;
};

}  // namespace mtranslate
