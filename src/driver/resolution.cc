// The resolution of called functions: passes over the names that the pass before has brought.
#include "driver/resolution.h"

#include <assert.h>

#include "driver/front_end.h"
#include "driver/run.h"
#include "lexer/error_reporter.h"
#include "lexer/named_source.h"
#include "lexer/source_files.h"
#include "run/run_state.h"
#include "support/string_hash.h"

namespace {

constexpr int32_t PASS_BUCKETS = 100;
constexpr int32_t PENDING_BUCKETS = 1024;

// Each level is a parse of its own on the machine's stack.
constexpr int DEEPEST_NESTING = 500;

struct Resolution {
    int32_t new_names;   // entered into pending in this pass
    HashTable *defined;  // DefinedNames
    HashTable *pending;  // names to search in the next pass; null for none
};

}  // namespace

static int translate_called_file(const char *name, HashValue, void *) {
    if (StringHashLookup(DefinedNames, name)) return 1;
    // Entered first: two scripts may call each other.
    StringHashInsert(DefinedNames, name, const_cast<char *>(name));
    for (const SearchDirectory *at = SearchPath; at; at = at->next) {
        if (const char *path = open_named_source(at->directory, name)) {
            UsedFrontEnd->parse_file(path);
            close_source();
            return 1;
        }
    }
    return 1;
}

static int collect_pending_name(const char *name, HashValue value, void *context) {
    Resolution *resolution = static_cast<Resolution *>(context);
    if (StringHashLookup(resolution->defined, name)) return 1;
    if (!resolution->pending) resolution->pending = new_name_table(PENDING_BUCKETS);
    StringHashInsert(resolution->pending, name, value);
    resolution->new_names++;
    return 1;
}

void resolve_called_functions() {
    Resolution resolution = {0, DefinedNames, CalledNames};
    do {
        HashTable *searched = resolution.pending;
        resolution.new_names = 0;
        CalledNames = new_name_table(PASS_BUCKETS);
        StringHashForEach(searched, &resolution, translate_called_file);
        resolution.pending = nullptr;
        // A script among the files has put a table of its own into CalledNames: what was in the
        // pass's table before it has been searched with the script.
        StringHashForEach(CalledNames, &resolution, collect_pending_name);
        StringHashDestroy(CalledNames);
    } while (resolution.new_names > 0);
    CalledNames = new_name_table(PASS_BUCKETS);
}

void resolve_within_parse() {
    if (ResolutionDepth == DEEPEST_NESTING) {
        yyerror("scripts are nested too deeply");
        return;
    }
    assert(ResolutionDepth < DEEPEST_NESTING);
    ResolutionDepth++;
    UsedFrontEnd->parse_aside(resolve_called_functions);
    ResolutionDepth--;
}
