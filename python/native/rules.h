/* The tool's rules as the answers of a request (mtranslate_program.h), for callers that are not in
 * C++. */
#ifndef MTRANSLATE_RULES_H
#define MTRANSLATE_RULES_H

#include <mtranslate_program.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct mTranslateRules mTranslateRules;

/* How the reading of rules has ended. */
enum {
    MTRANSLATE_RULES_GOOD = 0,
    MTRANSLATE_RULES_MISTAKEN = 1,   /* there are mistakes in them */
    MTRANSLATE_RULES_UNREADABLE = 2, /* a file cannot be read */
    MTRANSLATE_RULES_NO_MEMORY = 3   /* the system gives no more, while they were read or asked */
};

/* Reads the rules of files (docs/rules.md); a later file replaces what earlier ones say of a name.
 * Null where there is no memory; else the caller's until it is released. */
MTRANSLATE_API mTranslateRules *mTranslateRulesRead(const char *const *paths, size_t count);
/* MTRANSLATE_RULES_...; all but good rules answer nothing. */
MTRANSLATE_API int32_t mTranslateRulesStatus(const mTranslateRules *rules);
/* What is wrong with them, in whole lines with places; empty where nothing is. */
MTRANSLATE_API const char *mTranslateRulesMistakes(const mTranslateRules *rules);
/* Whether they have a form to display values: 1 or 0. */
MTRANSLATE_API int32_t mTranslateRulesDisplay(const mTranslateRules *rules);
/* The host's text by the rules, valid until they are asked the next time; null for none. For one
 * run at a time. */
MTRANSLATE_API const char *mTranslateRulesAnswer(mTranslateRules *rules,
                                                 const mTranslateProgramQuestion *question);
/* What the result of a function is by the rules: MTRANSLATE_RESULT_... */
MTRANSLATE_API int32_t mTranslateRulesResultKind(const mTranslateRules *rules, const char *name);
/* Nothing happens for null. */
MTRANSLATE_API void mTranslateRulesRelease(mTranslateRules *rules);

#ifdef __cplusplus
}
#endif

#endif
