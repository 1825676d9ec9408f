/* What to expect of a tree before anything of it is translated. */
#pragma once

#include <string>

#include "cli/report/report.h"

namespace mtranslate {

/* A page for people: how much would translate today, what stands in the way, most frequent first,
 * and the functions whose rule would help most. */
std::string assessment(const Report &report);

}  // namespace mtranslate
