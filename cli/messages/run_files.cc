#include "cli/messages/run_files.h"

namespace mtranslate {

RunFiles::RunFiles(const mTranslateProgramResult &result, const Source &source) : source_(source) {
    for (std::size_t i = 0; i < result.file_count; ++i)
        files_.try_emplace(result.files[i]->name, result.files[i]);
}

const mTranslateProgramFile *RunFiles::find(const char *name) const {
    const auto found = files_.find(name);
    return found == files_.end() ? nullptr : found->second;
}

std::string RunFiles::path(const char *name) const {
    const mTranslateProgramFile *file = find(name);
    return file ? file->path : name;
}

std::string RunFiles::shown_name(const char *name) const {
    return is_own(name) ? source_.shown_name : path(name);
}

std::string_view RunFiles::text(const char *name) const {
    if (!name) return source_.argument;
    const mTranslateProgramFile *file = find(name);
    return file && file->text ? std::string_view(file->text, file->text_length) : "";
}

std::size_t RunFiles::without_mark(const char *name, std::size_t line, std::size_t column) const {
    const bool is_after = line == 1 && column > 1 && text(name).starts_with("\xEF\xBB\xBF");
    return is_after ? column - 1 : column;
}

std::size_t RunFiles::column(const mTranslateProgramRange &place) const {
    return without_mark(place.file, place.line, place.column_characters);
}

std::size_t RunFiles::end_column(const mTranslateProgramRange &place) const {
    return without_mark(place.file, place.end_line, place.end_column_characters);
}

}  // namespace mtranslate
