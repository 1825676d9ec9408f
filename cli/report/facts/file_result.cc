/* Results as bytes, for the same program in another process. */
#include "cli/report/facts/file_result.h"

#include <cereal/types/map.hpp>
#include <cereal/types/string.hpp>
#include <cereal/types/vector.hpp>

#include "cli/support/bytes.h"

namespace mtranslate {

template <class Archive>
void serialize(Archive &archive, Diagnostic &of) {
    archive(of.code, of.severity, of.text, of.operands, of.file, of.line, of.column, of.end_column,
            of.offset, of.length, of.calling_file, of.calling_line, of.excerpt);
}

template <class Archive>
void serialize(Archive &archive, FunctionFact &of) {
    archive(of.name, of.line);
}

template <class Archive>
void serialize(Archive &archive, CallFact &of) {
    archive(of.in, of.name, of.end, of.target, of.count, of.line, of.column);
}

template <class Archive>
void serialize(Archive &archive, WaitingFact &of) {
    archive(of.names, of.statements);
}

template <class Archive>
void serialize(Archive &archive, FileFacts &of) {
    archive(of.lines, of.bytes, of.statements, of.without_message, of.waiting, of.comments,
            of.comments_kept, of.functions, of.calls);
}

template <class Archive>
void serialize(Archive &archive, FileResult &of) {
    archive(of.code, of.diagnostics, of.ignored, of.difference, of.files_read, of.has_output,
            of.is_written, of.calls_library, of.rules_used, of.facts, of.details);
}

std::string to_text(const FileResult &result) { return to_bytes(result); }

FileResult result_from_text(const std::string &text) { return from_bytes<FileResult>(text); }

}  // namespace mtranslate
