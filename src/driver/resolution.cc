// The resolution of called functions: passes over the names that the pass before has brought.
#include "driver/resolution.h"

#include <string.h>

#include "driver/run.h"
#include "driver/run_state.h"
#include "lexer/scanner.h"
#include "lexer/source_files.h"
#include "parser/parser.h"
#include "support/allocation.h"
#include "support/string_hash.h"
#include "translate/text_forms.h"

namespace {

constexpr int32_t PASS_BUCKETS = 100;
constexpr int32_t PENDING_BUCKETS = 1024;

// What the parse that is under way goes on with when the resolution is done.
struct SuspendedParse {
    int look_ahead;
    SemanticValue value;
    int errors;
    const char *file_name;
    SuspendedScanner scanner;
};

struct Resolution {
    int32_t new_names;   // entered into pending in this pass
    HashTable *defined;  // DefinedNames
    HashTable *pending;  // names to search in the next pass; null for none
    bool has_suspended;  // a file was found, so suspended is set
    SuspendedParse suspended;
};

void suspend_parse(Resolution *resolution) {
    if (resolution->has_suspended) return;
    resolution->has_suspended = true;
    resolution->suspended = {yychar, yylval, yynerrs, InputFileName, suspend_scanner()};
}

void resume_parse(const Resolution *resolution) {
    if (!resolution->has_suspended) return;
    const SuspendedParse *parse = &resolution->suspended;
    yychar = parse->look_ahead;
    yylval = parse->value;
    yynerrs = parse->errors;
    InputFileName = parse->file_name;
    resume_scanner(&parse->scanner);
}

const char *source_path(const char *directory, const char *name) {
    const char *form = "%s/%s.m";
    char *path = static_cast<char *>(Alloc(strlen(directory) + strlen(name) + strlen(form)));
    write_form(path, form, {directory, name});
    return path;
}

void translate_open_file(FILE *file, const char *path, Resolution *resolution) {
    suspend_parse(resolution);
    yyrestart(file);
    begin_source();
    InputFileName = path;
    SourceLine = 1;
    UsesArrayTools = 0;
    UsesLinearAlgebra = 0;
    yyparse();
    close_source();
}

}  // namespace

static int translate_called_file(const char *name, HashValue, void *context) {
    if (StringHashLookup(DefinedNames, name)) return 1;
    // Entered first: two scripts may call each other.
    StringHashInsert(DefinedNames, name, const_cast<char *>(name));
    for (const SearchDirectory *at = SearchPath; at; at = at->next) {
        const char *path = source_path(at->directory, name);
        if (FILE *file = open_source(path)) {
            translate_open_file(file, path, static_cast<Resolution *>(context));
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
    Resolution resolution = {0, DefinedNames, CalledNames, false, {}};
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
    resume_parse(&resolution);
}
