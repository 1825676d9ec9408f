// Requests of tools.
#include "driver/program/program_request.h"

#include <string.h>

#include <algorithm>

#include "driver/front_end.h"
#include "support/budget.h"

namespace {

constexpr uint32_t ALL_FLAGS =
    MTRANSLATE_WITHOUT_DISK | MTRANSLATE_WITHOUT_TRANSLATOR | MTRANSLATE_DISPLAYS |
    MTRANSLATE_DETAILS | MTRANSLATE_TREE | MTRANSLATE_VALUES | MTRANSLATE_TEXTS |
    MTRANSLATE_PIECES | MTRANSLATE_OUTLINE | MTRANSLATE_ONLY_READ | MTRANSLATE_LIBRARY_APART |
    MTRANSLATE_WHOLE_LIBRARY | MTRANSLATE_COUNTS_ON | MTRANSLATE_TOKENS |
    MTRANSLATE_WITHOUT_METHODS;

constexpr char TOO_NEW[] = "invalid request: it has fields that this library does not know";

// A struct that the caller may know with fewer fields or with more. False where one is set that the
// library does not know.
template <typename Record>
bool read_record(const void *from, Record *to) {
    uint32_t size;
    memcpy(&size, from, sizeof size);
    *to = {};
    memcpy(to, from, std::min<size_t>(size, sizeof(Record)));
    to->size = sizeof(Record);
    const char *bytes = static_cast<const char *>(from);
    for (size_t at = sizeof(Record); at < size; at++)
        if (bytes[at] != 0) return false;
    return true;
}

const char *find_fault(const mTranslateProgramRequest *request) {
    if (!request->command == !request->file)
        return "invalid request: either a command or a file is expected";
    if ((request->flags & ~ALL_FLAGS) != 0) return TOO_NEW;
    if (request->language && !find_front_end(request->language))
        return "invalid request: the language must be classic, matlab or octave";
    if (request->max_memory > LARGEST_BUDGET)
        return "invalid request: max_memory must be a number of megabytes";
    if (request->source_count > 0 && !request->sources)
        return "invalid request: there are no sources";
    if (request->folder_count > 0 && !request->folders)
        return "invalid request: there are no folders";
    for (size_t i = 0; i < request->folder_count; i++)
        if (!request->folders[i]) return "invalid request: a folder has no name";
    return nullptr;
}

}  // namespace

const char *read_request(const mTranslateProgramRequest *from, mTranslateProgramRequest *to) {
    if (!from || from->size < sizeof from->size) return "invalid request: it has no size";
    if (!read_record(from, to)) return TOO_NEW;
    if ((to->flags & MTRANSLATE_DETAILS) != 0) to->flags |= MTRANSLATE_PIECES | MTRANSLATE_OUTLINE;
    return find_fault(to);
}

const char *read_program_source(const mTranslateProgramRequest *request, size_t index,
                                mTranslateProgramSource *to) {
    size_t size = request->sources->size;
    if (size < sizeof request->sources->size) return "invalid request: a source has no size";
    const char *at = reinterpret_cast<const char *>(request->sources) + index * size;
    uint32_t own_size;
    memcpy(&own_size, at, sizeof own_size);
    if (own_size != size) return "invalid request: the sources have different sizes";
    if (!read_record(at, to)) return TOO_NEW;
    if (!to->name) return "invalid request: a source has no name";
    return to->length > 0 && !to->text ? "invalid request: a source has no text" : nullptr;
}
