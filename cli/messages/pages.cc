#include "cli/messages/pages.h"

#include <unistd.h>

#include <cctype>
#include <filesystem>

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

constexpr const char *PAGE = "/messages.md";

struct Pages {
    std::string uri;
    bool are_there;
};

bool has_page(const std::string &folder) { return access((folder + PAGE).c_str(), R_OK) == 0; }

/* A package is unpacked elsewhere than the build was told, and a tree may move: what was installed
 * with the program is found from where that is. */
Pages find_pages() {
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    const fs::path beside = program.parent_path() / MTRANSLATE_PAGES_BESIDE;
    const std::string folder = beside.lexically_normal();
    if (*MTRANSLATE_PAGES_BESIDE && !error && has_page(folder))
        return {"file://" + uri_of(folder), true};
    constexpr std::string_view NAMED = MTRANSLATE_PAGES_URI;
    constexpr std::string_view SCHEME = "file://";
    const bool is_file = NAMED.starts_with(SCHEME);
    return {std::string(NAMED), !is_file || has_page(std::string(NAMED.substr(SCHEME.size())))};
}

const Pages &pages() {
    static const Pages found = find_pages();
    return found;
}

}  // namespace

std::string uri_of(std::string_view path) {
    constexpr std::string_view PLAIN = "-._~/";
    constexpr const char *DIGITS = "0123456789ABCDEF";
    std::string uri;
    for (const char byte : path) {
        const auto code = static_cast<unsigned char>(byte);
        const bool is_plain = (code < 0x80 && std::isalnum(code)) || PLAIN.find(byte) != PLAIN.npos;
        uri += is_plain ? std::string(1, byte)
                        : std::string{'%', DIGITS[code >> 4], DIGITS[code & 15]};
    }
    return uri;
}

std::string pages_uri() { return pages().uri; }

/* As sites that show Markdown name the anchor of "### CODE: name (severity)". */
std::string uri_of_explanation(const MessageRow &row) {
    std::string anchor =
        std::string(row.code) + '-' + row.name + '-' + severity_name(severity_of(row));
    for (char &c : anchor)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return pages_uri() + PAGE + '#' + anchor;
}

bool has_explanations() { return pages().are_there; }

}  // namespace mtranslate
