/* The files of a module that sees none: what the reader of rules has for rules in files. */
#include <cassert>
#include <utility>

#include "cli/files/files.h"
#include "cli/files/output.h"

namespace mtranslate {

namespace {

[[noreturn]] void refuse(const std::string &path) {
    throw FileError("cannot read '" + path + "': there are no files here");
}

}  // namespace

Descriptor::Descriptor(Descriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}

Descriptor::~Descriptor() { assert(number_ < 0); }

Descriptor open_to_read(const std::string &path) { refuse(path); }

Descriptor open_regular_file(const std::string &path) { refuse(path); }

std::string read_named_file(const std::string &path) { refuse(path); }

Descriptor spool(int, const std::string &name) { refuse(name); }

std::string text_of(const Descriptor &, const std::string &name) { refuse(name); }

std::string path_of(const Descriptor &) { return ""; }

std::optional<std::string> read_regular_file(const std::string &) { return std::nullopt; }

bool is_within(const std::filesystem::path &, const std::filesystem::path &, int *) {
    return false;
}

std::string refusal_of_suffix(const std::string &) { return "there are no outputs here"; }

}  // namespace mtranslate
