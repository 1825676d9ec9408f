/* What of a file only a report's part about it shows. In a large tree that is most of what there
 * is, so it is packed from the start, and kept so until the part is written. */
#pragma once

#include <optional>
#include <string>

#include "cli/report/facts/line_map.h"

namespace mtranslate {

struct FileDetails {
    LineMap map;                            /* where it is asked for */
    std::optional<std::string> translation; /* where it is in no file */
};

/* As bytes for the same program, in another process too; empty for none. Both throw std::bad_alloc.
 */
std::string packed(const FileDetails &details);
FileDetails unpacked_details(const std::string &packed);

}  // namespace mtranslate
