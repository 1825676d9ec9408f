/* The parts of a report's JSON, one at a time: those of a large tree are never there all at once.
 */
#pragma once

#include <nlohmann/json.hpp>

#include "cli/report/facts/line_map.h"
#include "cli/report/report_summary.h"

namespace mtranslate {

/* The report but for its files. */
nlohmann::ordered_json head_json(const Report &report, const ReportSummary &summary);
/* Likewise, with what a page needs besides. */
nlohmann::ordered_json page_head_json(const Report &report);
/* Throws FileError, or an error of the JSON library, where that is the head of no report. */
void check_format(const nlohmann::ordered_json &head);
/* One of its files, with a map or, where that is null, without. */
nlohmann::ordered_json file_json(const ReportFile &file, const LineMap *map);
/* One of the files that file_json has told. Throws FileError, or an error of the JSON library. */
ReportFile report_file_of(const nlohmann::ordered_json &json);
/* As text, indented by indent or in one line (-1); paths may be any bytes. */
std::string text_of(const nlohmann::ordered_json &json, int indent = -1);

}  // namespace mtranslate
