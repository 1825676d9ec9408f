/* Rules as a host's answers. */
#pragma once

#include <mtranslate_program.h>

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "cli/rules/rules.h"
#include "cli/rules/unanswered.h"

namespace mtranslate {

struct Construct;

class RuleAnswers {
public:
    /* The rules live as long as this. */
    RuleAnswers(const Rules &rules, bool counts_unanswered)
        : rules_(rules), counts_unanswered_(counts_unanswered) {}
    RuleAnswers(const RuleAnswers &) = delete;
    RuleAnswers &operator=(const RuleAnswers &) = delete;

    /* Whether it is worth asking. */
    bool may_answer() const { return counts_unanswered_ || !rules_.is_empty(); }
    /* The host's text by the rules; none where they have none. */
    std::optional<std::string> answer(const mTranslateProgramQuestion &question);
    /* What the result of the function is by the rules: MTRANSLATE_RESULT_... */
    int kind(const char *name) const;

    /* How often each rule has answered, by its title. */
    std::map<std::string, std::size_t> used() const;
    /* The calls that no rule has answered, by the functions' names, if they are counted. */
    const std::map<std::string, UnansweredCalls> &unanswered() const { return unanswered_; }

private:
    std::optional<std::string> name(std::string_view name);
    std::optional<std::string> handle(std::string_view name);
    std::optional<std::string> call(std::string_view name,
                                    const std::vector<std::string> &arguments, int results);
    std::optional<std::string> form(const Construct &construct,
                                    const std::vector<std::string> &arguments, int results);

    const Rules &rules_;
    const bool counts_unanswered_;
    std::map<const Rule *, std::size_t> used_;
    std::map<std::string, UnansweredCalls> unanswered_;
};

}  // namespace mtranslate
