/* Results as CBOR. */
#include "cli/file_result.h"

#include <cstdint>
#include <nlohmann/json.hpp>

namespace mtranslate {

using Json = nlohmann::json;

std::string to_text(const FileResult &result) {
    const Json json = {static_cast<int>(result.code),
                       result.messages,
                       result.counts,
                       result.difference,
                       result.files_read,
                       result.is_written};
    const std::vector<std::uint8_t> bytes = Json::to_cbor(json);  // paths may be any bytes
    return {bytes.begin(), bytes.end()};
}

FileResult result_from_text(const std::string &text) {
    const Json json = Json::from_cbor(text);
    FileResult result;
    result.code = static_cast<ExitCode>(json[0].get<int>());
    result.messages = json[1];
    result.counts = json[2];
    result.difference = json[3];
    result.files_read = json[4].get<std::vector<std::string>>();
    result.is_written = json[5];
    return result;
}

}  // namespace mtranslate
