/* Words for the kinds of results. */
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mtranslate {

/* The kind, MTRANSLATE_RESULT_..., that a word of a configuration stands for. */
std::optional<int> result_kind_of(std::string_view word);
/* All the words, for people. */
std::string all_result_kinds();

}  // namespace mtranslate
