/* The words, in the order of the kinds. */
#include "cli/rules/result_kinds.h"

namespace mtranslate {

namespace {

constexpr std::string_view WORDS[RESULT_KINDS] = {"",     "number", "truth",  "text",
                                                  "cell", "record", "several"};

}  // namespace

std::optional<ResultKind> result_kind_of(std::string_view word) {
    for (int kind = RESULT_UNKNOWN + 1; kind < RESULT_KINDS; ++kind)
        if (WORDS[kind] == word) return static_cast<ResultKind>(kind);
    return std::nullopt;
}

std::string all_result_kinds() {
    std::string list;
    for (int kind = RESULT_UNKNOWN + 1; kind < RESULT_KINDS; ++kind)
        list += (list.empty()               ? ""
                 : kind + 1 == RESULT_KINDS ? " or "
                                            : ", ") +
                std::string(WORDS[kind]);
    return list;
}

}  // namespace mtranslate
