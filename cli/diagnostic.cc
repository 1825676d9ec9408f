#include "cli/diagnostic.h"

namespace mtranslate {

Diagnostic trouble_with(const std::string &file, const std::string &why) {
    Diagnostic diagnostic;
    diagnostic.file = file;
    diagnostic.text = why;
    return diagnostic;
}

SeverityCounts count_severities(const Diagnostics &diagnostics) {
    SeverityCounts counts{};
    for (const Diagnostic &diagnostic : diagnostics) ++counts[diagnostic.severity];
    return counts;
}

bool is_listed(const Diagnostic &diagnostic) {
    return diagnostic.severity != SEVERITY_ERROR &&
           diagnostic.code == MessageTable[UNKNOWN_FUNCTION].code;
}

std::string quoted_name(const std::string &text) {
    const std::size_t begin = text.find('\'');
    const std::size_t end = text.find('\'', begin + 1);
    return end == std::string::npos ? "" : text.substr(begin + 1, end - begin - 1);
}

}  // namespace mtranslate
