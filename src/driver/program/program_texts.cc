// The files that a tool gives.
#include "driver/program/program_texts.h"

#include <string.h>

#include <filesystem>
#include <set>

#include "driver/program/program_request.h"

// As most paths are: without "//", and without names that begin with a dot, as . and .. do.
static bool is_shortest(const char *path) {
    for (const char *slash = path; (slash = strchr(slash, '/')); slash++)
        if (slash[1] == '/' || slash[1] == '.') return false;
    return *path != '.';
}

std::string shortest_path(const char *path) {
    if (is_shortest(path)) return path;
    return std::filesystem::path(path).lexically_normal().string();
}

namespace {

GivenText ask(const mTranslateProgramRequest *request, const std::string &path) {
    if (!request->read) return {NOT_GIVEN, {}};
    const char *text = nullptr;
    size_t length = 0;
    int32_t answer = request->read(request->context, path.c_str(), &text, &length);
    if (answer == MTRANSLATE_FILE_ABSENT) return {NOT_GIVEN, {}};
    if (answer != MTRANSLATE_FILE_TEXT || (!text && length > 0)) return {IS_BROKEN, {}};
    return {IS_GIVEN, std::string(text ? text : "", length)};
}

// What the paths of a folder begin with.
std::string inside_of(const char *folder) {
    std::string inside = shortest_path(folder);
    if (inside == ".") return "";
    if (!inside.ends_with('/')) inside += '/';
    return inside;
}

}  // namespace

const char *enter_sources(const mTranslateProgramRequest *request, GivenTexts *texts) {
    for (size_t i = 0; i < request->source_count; i++) {
        mTranslateProgramSource source;
        if (const char *fault = read_program_source(request, i, &source)) return fault;
        std::string text(source.text ? source.text : "", source.length);
        GivenText given = {IS_GIVEN, std::move(text)};
        if (!texts->try_emplace(shortest_path(source.name), std::move(given)).second)
            return "invalid request: two sources have the same name";
    }
    return nullptr;
}

const GivenText *find_given(const mTranslateProgramRequest *request, GivenTexts *texts,
                            const char *path) {
    std::string wanted = shortest_path(path);
    auto found = texts->find(wanted);
    if (found == texts->end()) found = texts->emplace(wanted, ask(request, wanted)).first;
    return &found->second;
}

static std::vector<std::string> names_in(const GivenTexts *texts, const char *folder) {
    std::string inside = inside_of(folder);
    std::set<std::string, std::less<>> names;
    for (auto at = texts->lower_bound(inside); at != texts->end(); ++at) {
        if (!at->first.starts_with(inside)) break;
        if (at->second.answer != IS_GIVEN) continue;
        std::string_view rest = std::string_view(at->first).substr(inside.size());
        names.emplace(rest.substr(0, rest.find('/')));
    }
    return {names.begin(), names.end()};
}

const char *next_given(const GivenTexts *texts, GivenFolders *folders, const char *folder,
                       size_t *cursor) {
    auto found = folders->find(folder);
    if (found == folders->end()) found = folders->emplace(folder, names_in(texts, folder)).first;
    const std::vector<std::string> &names = found->second;
    return *cursor < names.size() ? names[(*cursor)++].c_str() : nullptr;
}
