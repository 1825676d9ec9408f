/* Where the lines of translations come from, as JSON. */
#include <nlohmann/json.hpp>

#include "cli/report/facts/details.h"
#include "cli/report/forms/statistics_json.h"
#include "cli/report/report.h"

namespace mtranslate {

namespace {

using Json = nlohmann::ordered_json;

std::string line_of(const Json &json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);  // paths are any bytes
}

std::string text_of(const ReportFile &file) {
    std::string text = "{\"path\": " + line_of(file.path);
    if (!file.output.empty()) text += ", \"output\": " + line_of(file.output);
    text += ", \"map\": [";
    const LineMap map = unpacked_details(file.details).map;
    for (const MappedLines &lines : map)
        text += (&lines == map.data() ? "\n" : ",\n") + line_of(lines);
    return text + "]}";
}

}  // namespace

/* A line for each entry: maps are long. */
void write_map(const Report &report, const Sink &to) {
    to("{\"format\": \"mtranslate map\", \"version\": 1, \"files\": [");
    for (const ReportFile &file : report.files) {
        to(&file == report.files.data() ? "\n" : ",\n");
        to(text_of(file));
    }
    to("]}\n");
}

}  // namespace mtranslate
