/* Names and files. */
#include "cli/files/file_index.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace mtranslate {

namespace {

namespace fs = std::filesystem;

/* "a.b." for a file in the folders +a/+b. */
std::string package_of(const fs::path &folder) {
    const std::string name = folder.filename();
    if (name.starts_with('@')) return package_of(folder.parent_path());
    if (!name.starts_with('+')) return "";
    return package_of(folder.parent_path()) + name.substr(1) + '.';
}

/* "a.b" for a file in the folders +a/@b, "" for one outside of class folders. */
std::string class_of(const fs::path &folder) {
    const std::string name = folder.filename();
    if (!name.starts_with('@') || name.size() == 1) return "";
    return package_of(folder.parent_path()) + name.substr(1);
}

std::string name_in_package(const std::string &name) { return name.substr(name.rfind('.') + 1); }

}  // namespace

FileIndex::FileIndex(const std::vector<InputFile> &inputs) {
    std::error_code error;  // there is none in a browser
    const fs::path current = fs::current_path(error);
    for (const InputFile &input : inputs) {
        if (!input.trouble.empty() && fs::path(input.path).extension() != ".m") continue;
        const fs::path whole = (current / input.path).lexically_normal();
        if (const std::string name = class_of(whole.parent_path()); !name.empty()) {
            methods_[whole.stem()].try_emplace(name, IndexedFile{input.path, ""});
            continue;
        }
        const fs::path path = fs::path(input.path).lexically_normal();
        const fs::path folder = path.parent_path();
        const bool is_private = folder.filename() == "private";
        const std::string name = path.stem();
        files_[package_of(folder) + name].push_back(
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

const IndexedFile *FileIndex::find_method(const char *class_name, const std::string &method) const {
    const auto found = methods_.find(method);
    if (found == methods_.end()) return nullptr;
    const auto &classes = found->second;
    if (class_name) {
        const auto at = classes.find(class_name);
        return at == classes.end() ? nullptr : &at->second;
    }
    for (const auto &[name, file] : classes)
        if (name_in_package(name) != method) return &file;
    return nullptr;
}

}  // namespace mtranslate
