/* What is known of a file as JSON, for reports and between processes. */
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "cli/report/facts/line_map.h"
#include "cli/report/facts/statistics.h"

namespace mtranslate {

const char *name_of_kind(std::int32_t kind);
void to_json(nlohmann::ordered_json &json, const MappedLines &lines);
void to_json(nlohmann::ordered_json &json, const FileFacts &facts);
/* They throw nlohmann::json::exception, or FileError, where the value is no such record. */
void from_json(const nlohmann::ordered_json &json, MappedLines &lines);
void from_json(const nlohmann::ordered_json &json, FileFacts &facts);

}  // namespace mtranslate
