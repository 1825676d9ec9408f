/* The form of depfiles. */
#include "cli/files/depfile.h"

#include <set>

#include "cli/files/output.h"

namespace mtranslate {

namespace {

std::string escaped(const std::string &name) {
    if (name.find('\n') != name.npos)
        throw FileError("a depfile cannot name '" + name + "', which has a line end");
    std::string text;
    for (const char c : name) {
        if (c == ' ' || c == '\t' || c == '#' || c == ':') {
            const std::size_t end = text.find_last_not_of('\\') + 1;  // of npos: 0
            text.append(text.size() - end, '\\');
            text += '\\';
        }
        text += c == '$' ? "$$" : std::string(1, c);
    }
    return text;
}

}  // namespace

void write_depfile(const std::string &path, const std::vector<MadeFrom> &outputs) {
    std::string text;
    std::set<std::string> all;
    for (const MadeFrom &made : outputs) {
        text += escaped(made.output) + ':';
        for (const std::string &file : made.files) text += " \\\n  " + escaped(file);
        text += '\n';
        all.insert(made.files.begin(), made.files.end());
    }
    for (const std::string &file : all) text += '\n' + escaped(file) + ":\n";
    Output(path).write(text, Durability::Whole);
}

}  // namespace mtranslate
