/* The words, in the order of the kinds. */
#include "cli/rules/result_kinds.h"

#include <mtranslate_program.h>

namespace mtranslate {

namespace {

constexpr int RESULT_KINDS = MTRANSLATE_RESULT_SEVERAL + 1;
constexpr std::string_view WORDS[RESULT_KINDS] = {"",     "number", "truth",  "text",
                                                  "cell", "record", "several"};

}  // namespace

std::optional<int> result_kind_of(std::string_view word) {
    for (int kind = MTRANSLATE_RESULT_UNKNOWN + 1; kind < RESULT_KINDS; ++kind)
        if (WORDS[kind] == word) return kind;
    return std::nullopt;
}

std::string all_result_kinds() {
    std::string list;
    for (int kind = MTRANSLATE_RESULT_UNKNOWN + 1; kind < RESULT_KINDS; ++kind)
        list += (list.empty()               ? ""
                 : kind + 1 == RESULT_KINDS ? " or "
                                            : ", ") +
                std::string(WORDS[kind]);
    return list;
}

}  // namespace mtranslate
