/* Words for the kinds of results. */
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/support/library.h"

namespace mtranslate {

/* The kind that a word of a configuration stands for. */
std::optional<ResultKind> result_kind_of(std::string_view word);
/* All the words, for people. */
std::string all_result_kinds();

}  // namespace mtranslate
