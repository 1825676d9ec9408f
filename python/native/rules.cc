/* Rules behind functions of C: no exception leaves them. */
#include "python/native/rules.h"

#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "cli/config/configuration.h"
#include "cli/files/files.h"
#include "cli/rules/rules_host.h"

struct mTranslateRules {
    std::int32_t status = MTRANSLATE_RULES_GOOD;
    std::string mistakes;
    mtranslate::Rules rules;
    mtranslate::RuleAnswers answers{rules, false};
    std::optional<std::string> text;
};

namespace {

void read(mTranslateRules &rules, const char *const *paths, std::size_t count) {
    try {
        for (std::size_t i = 0; i < count; ++i)
            rules.rules.add(mtranslate::read_rules(paths[i]).rules);
        mtranslate::check_reachable(rules.rules);
    } catch (const mtranslate::ConfigurationError &error) {
        rules.status = MTRANSLATE_RULES_MISTAKEN;
        rules.mistakes = error.what();
    } catch (const mtranslate::FileError &error) {
        rules.status = MTRANSLATE_RULES_UNREADABLE;
        rules.mistakes = error.what();
    }
}

}  // namespace

mTranslateRules *mTranslateRulesRead(const char *const *paths, std::size_t count) {
    try {
        auto rules = std::make_unique<mTranslateRules>();
        read(*rules, paths, count);
        return rules.release();
    } catch (const std::exception &) {
        return nullptr;
    }
}

std::int32_t mTranslateRulesStatus(const mTranslateRules *rules) { return rules->status; }

const char *mTranslateRulesMistakes(const mTranslateRules *rules) {
    return rules->mistakes.c_str();
}

std::int32_t mTranslateRulesDisplay(const mTranslateRules *rules) {
    return rules->rules.find_form("display") ? 1 : 0;
}

const char *mTranslateRulesAnswer(mTranslateRules *rules,
                                  const mTranslateProgramQuestion *question) {
    if (rules->status != MTRANSLATE_RULES_GOOD) return nullptr;
    try {
        rules->text = rules->answers.answer(*question);
        return rules->text ? rules->text->c_str() : nullptr;
    } catch (const std::exception &) {
        rules->status = MTRANSLATE_RULES_NO_MEMORY;
        return nullptr;
    }
}

std::int32_t mTranslateRulesResultKind(const mTranslateRules *rules, const char *name) {
    try {
        return rules->answers.kind(name);
    } catch (const std::exception &) {
        return MTRANSLATE_RESULT_UNKNOWN;
    }
}

void mTranslateRulesRelease(mTranslateRules *rules) { delete rules; }
