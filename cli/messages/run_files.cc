#include "cli/messages/run_files.h"

namespace mtranslate {

static bool has_byte_order_mark(std::string_view text) { return text.starts_with("\xEF\xBB\xBF"); }

RunFiles::RunFiles(const mTranslateProgramResult &result, const Source &source)
    : own_name_(source.shown_name),
      command_{"", source.argument, true, has_byte_order_mark(source.argument)} {
    for (std::size_t i = 0; i < result.file_count; ++i) {
        const mTranslateProgramFile &file = *result.files[i];
        const std::string_view text(file.text ? file.text : "", file.text_length);
        files_.try_emplace(file.name, File{file.path, text, file.path == source.argument,
                                           has_byte_order_mark(text)});
    }
}

/* A file that has not been opened has a name alone. */
const RunFiles::File &RunFiles::find(const char *name) const {
    if (!name) return command_;
    if (name != last_name_) {
        const auto [file, is_new] = files_.try_emplace(name);
        if (is_new) file->second = {name, "", false, false};
        last_ = &file->second;
        last_name_ = name;
    }
    return *last_;
}

const std::string &RunFiles::shown_name(const char *name) const {
    const File &file = find(name);
    return file.is_own ? own_name_ : file.path;
}

std::size_t RunFiles::without_mark(const char *name, std::size_t line, std::size_t column) const {
    return line == 1 && column > 1 && find(name).has_mark ? column - 1 : column;
}

std::size_t RunFiles::column(const mTranslateProgramRange &place) const {
    return without_mark(place.file, place.line, place.column_characters);
}

std::size_t RunFiles::end_column(const mTranslateProgramRange &place) const {
    return without_mark(place.file, place.end_line, place.end_column_characters);
}

}  // namespace mtranslate
