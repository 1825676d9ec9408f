/* A rules file to be filled in. */
#pragma once

#include <string>

#include "cli/commands/rules_survey.h"

namespace mtranslate {

/* A rules file with an empty form for each of the functions, most used first. A function that is
 * called for several results, with words among its arguments, or without a call as well, has one
 * for each kind of call. */
std::string rule_template_of(const SurveyedFunctions &functions);

}  // namespace mtranslate
