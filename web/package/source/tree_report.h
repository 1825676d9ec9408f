/* Reports of trees, as the tool's option --report makes them. */
#pragma once

#include <mtranslate_program.h>

#include <nlohmann/json.hpp>
#include <string>

#include "cli/files/file_index.h"
#include "cli/rules/rules.h"
#include "cli/rules/rules_host.h"

namespace mtranslate::web {

/* What a run has to tell for one: outline, pieces and the texts of its files. */
inline constexpr std::uint32_t FLAGS_OF_REPORT =
    MTRANSLATE_TEXTS | MTRANSLATE_OUTLINE | MTRANSLATE_PIECES;

/* What a report holds of a file, as JSON. output: where the translation will be; index: null for
 * none. */
std::string file_report(const mTranslateProgramResult &result, const std::string &file,
                        const std::string &output, const RuleAnswers &rules,
                        const FileIndex *index);

/* The sums over such files, with what a page needs besides, as JSON. files: an array of what
 * file_report gives. */
std::string report_head(const nlohmann::ordered_json &files, const Rules &rules,
                        bool is_interrupted);

}  // namespace mtranslate::web
