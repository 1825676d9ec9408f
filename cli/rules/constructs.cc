/* The table of constructs. */
#include "cli/rules/constructs.h"

#include <algorithm>

namespace mtranslate {

std::span<const Construct> all_constructs() {
    static const Construct constructs[] = {
        {"assignin", "assignin", {"scope", "name", "value"}},
        {"display", "display", {"name", "value"}},
        {"eval", "eval", {"text"}},
        {"evalc", "evalc", {"text"}},
        {"evalin", "evalin", {"scope", "text"}},
        {"exist", "exist_variable", {"name"}},
        {"rethrow", "rethrow", {"error"}},
        {"try", "try", {"body", "handler", "name"}, 2},
    };
    return constructs;
}

const Construct *find_construct(std::string_view name) {
    for (const Construct &construct : all_constructs())
        if (construct.name == name) return &construct;
    return nullptr;
}

const Construct *find_asked_construct(std::string_view asked) {
    for (const Construct &construct : all_constructs())
        if (construct.asked == asked) return &construct;
    return nullptr;
}

}  // namespace mtranslate
