/* Results of the library as JSON, in the words of the package's types (src/types.ts). */
#pragma once

#include <mtranslate_program.h>

#include "cli/rules/rules_host.h"
#include "web/package/source/json_text.h"

namespace mtranslate::web {

/* All of the result but its text. */
/* report: JSON of the file for a report; empty for null. */
void write_result(JsonText &json, const mTranslateProgramResult &result, const RuleAnswers &rules,
                  const std::string &report);
/* A list of all kinds of messages. */
void write_message_kinds(JsonText &json);

}  // namespace mtranslate::web
