/* Values with commas between them. */
#include "web/package/source/json_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <nlohmann/json.hpp>
#include <utility>

namespace mtranslate::web {

namespace {

bool is_plain(char c) { return c >= ' ' && c < 0x7F && c != '"' && c != '\\'; }

std::string quoted(std::string_view value) {
    return nlohmann::json(value).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace

JsonText &JsonText::close(char bracket) {
    if (text_.back() == ',') text_.pop_back();
    text_ += bracket;
    text_ += ',';
    return *this;
}

JsonText &JsonText::key(std::string_view name) {
    text_ += '"';
    text_ += name;
    text_ += "\":";
    return *this;
}

JsonText &JsonText::word(std::string_view text) {
    text_ += text;
    text_ += ',';
    return *this;
}

JsonText &JsonText::string(std::string_view value) {
    if (!std::all_of(value.begin(), value.end(), is_plain)) return word(quoted(value));
    text_ += '"';
    text_ += value;
    text_ += "\",";
    return *this;
}

JsonText &JsonText::number(std::int64_t value) {
    std::array<char, 24> digits;
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    return word({digits.data(), static_cast<std::size_t>(end - digits.data())});
}

std::string JsonText::release() {
    text_.pop_back();
    return std::exchange(text_, {});
}

}  // namespace mtranslate::web
