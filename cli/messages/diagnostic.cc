#include "cli/messages/diagnostic.h"

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
    return diagnostic.severity != SEVERITY_ERROR && diagnostic.code == UNKNOWN_FUNCTION;
}

bool is_class_only(const Diagnostic &unknown) {
    return unknown.operands.at(1) == MTRANSLATE_FOUND_IN_CLASSES;
}

void tell_class_only(Diagnostic &unknown) {
    std::string &where = unknown.operands.at(1);
    if (unknown.text.ends_with(where)) unknown.text.resize(unknown.text.size() - where.size());
    where = MTRANSLATE_FOUND_IN_CLASSES;
    unknown.text += where;
}

}  // namespace mtranslate
