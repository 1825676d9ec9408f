#include "cli/report/facts/details.h"

#include <cereal/types/optional.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>

#include "cli/report/packed.h"
#include "cli/support/bytes.h"

namespace mtranslate {

template <class Archive>
void serialize(Archive &archive, MappedLines &of) {
    archive(of.kind, of.file, of.line, of.column, of.end_line, of.end_column, of.first, of.last);
}

template <class Archive>
void serialize(Archive &archive, FileDetails &of) {
    archive(of.map, of.translation);
}

std::string packed(const FileDetails &details) {
    if (details.map.empty() && !details.translation) return "";
    PackedText text(PackedText::Effort::Little);
    text.add(to_bytes(details));
    return text.take();
}

FileDetails unpacked_details(const std::string &packed) {
    if (packed.empty()) return {};
    return from_bytes<FileDetails>(unpacked(packed));
}

}  // namespace mtranslate
