#include "cli/messages/baseline.h"

#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/files/files.h"

namespace mtranslate {

namespace {

using Json = nlohmann::json;

/* The text, with bytes that are no UTF-8 replaced as where messages are written. */
std::string key_of(const std::string &file, const std::string &code, const std::string &text) {
    return Json{file, code, text}.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string key_of_line(const std::string &line) {
    const Json message = Json::parse(line);
    return key_of(message.value("file", ""), message.value("code", ""),
                  message.at("message").get<std::string>());
}

}  // namespace

Baseline::Baseline(const std::string &path) {
    std::istringstream lines(read_named_file(path));
    std::size_t number = 0;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        try {
            ++known_[key_of_line(line)];
        } catch (const Json::exception &) {
            throw FileError(path + ':' + std::to_string(number) +
                            ": this is no message of --format json");
        }
    }
}

std::size_t Baseline::leave_out(Diagnostics &diagnostics) {
    if (known_.empty()) return 0;
    return std::erase_if(diagnostics, [this](const Diagnostic &diagnostic) {
        const auto known = known_.find(key_of(diagnostic.file, diagnostic.code, diagnostic.text));
        if (known == known_.end() || known->second == 0) return false;
        --known->second;
        return true;
    });
}

}  // namespace mtranslate
