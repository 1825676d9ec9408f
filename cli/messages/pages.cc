#include "cli/messages/pages.h"

#include <unistd.h>

#include <string_view>

namespace mtranslate {

namespace {

constexpr std::string_view PAGES = MTRANSLATE_PAGES_URI;
constexpr const char *PAGE = "/messages.md";

}  // namespace

std::string pages_uri() { return std::string(PAGES); }

/* As sites that show Markdown name the anchor of "### CODE: name (severity)". */
std::string uri_of_explanation(const MessageRow &row) {
    std::string anchor =
        std::string(row.code) + '-' + row.name + '-' + severity_name(severity_of(row));
    for (char &c : anchor)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return pages_uri() + PAGE + '#' + anchor;
}

bool has_explanations() {
    constexpr std::string_view SCHEME = "file://";
    if (!PAGES.starts_with(SCHEME)) return true;
    return access((std::string(PAGES.substr(SCHEME.size())) + PAGE).c_str(), R_OK) == 0;
}

}  // namespace mtranslate
