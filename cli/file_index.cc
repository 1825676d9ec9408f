/* Names and files. */
#include "cli/file_index.h"

#include <filesystem>
#include <fstream>

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

/* Reads past comments, block comments and empty lines, to the first line with a word. */
std::string first_line(std::istream &source) {
    int blocks = 0;
    for (std::string line; std::getline(source, line);) {
        const std::size_t begin = line.find_first_not_of(" \t\f\r\xEF\xBB\xBF");
        if (begin == line.npos) continue;
        std::string text = line.substr(begin, line.find_last_not_of(" \t\r") + 1 - begin);
        if (text == "%{" || text == "#{") ++blocks;
        if (blocks > 0 && (text == "%}" || text == "#}")) {
            --blocks;
            continue;
        }
        if (blocks == 0 && text[0] != '%' && text[0] != '#') return text;
    }
    return "";
}

bool begins_with_word(const std::string &line, const std::string &word) {
    return line.starts_with(word) &&
           (line.size() == word.size() || line.find_first_of(" \t([.", word.size()) == word.size());
}

/* "a.b." for a file in the folders +a/+b. */
std::string package_of(const fs::path &folder) {
    const std::string name = folder.filename();
    if (!name.starts_with('+')) return "";
    return package_of(folder.parent_path()) + name.substr(1) + '.';
}

}  // namespace

bool IndexedFile::is_script() const {
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        return static_cast<bool>(error);  // a pipe gives its text only once
    std::ifstream source(path, std::ios::binary);
    const std::string line = first_line(source);
    if (!source.is_open() || source.bad()) return true;
    return !line.empty() && !begins_with_word(line, "function") &&
           !begins_with_word(line, "classdef");
}

FileIndex::FileIndex(const std::vector<InputFile> &inputs) {
    for (const InputFile &input : inputs) {
        const fs::path path = fs::path(input.path).lexically_normal();
        const fs::path folder = path.parent_path();
        const bool is_private = folder.filename() == "private";
        files_[package_of(folder) + path.stem().string()].push_back(
            {input.path, is_private ? folder.parent_path().string() : ""});
    }
}

const IndexedFile *FileIndex::find(const std::string &caller, const std::string &name) const {
    const auto found = files_.find(name);
    if (found == files_.end()) return nullptr;
    fs::path folder = fs::path(caller).lexically_normal().parent_path();
    if (folder.filename() == "private") folder = folder.parent_path();
    const IndexedFile *open = nullptr;
    for (const IndexedFile &file : found->second) {
        if (file.folder.empty() && !open) open = &file;
        if (!file.folder.empty() && file.folder == folder) return &file;
    }
    return open;
}

}  // namespace mtranslate
