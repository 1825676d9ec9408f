// Global declarations.
#include "emit/globals.h"

#include "emit/output.h"
#include "run/run_end.h"
#include "run/run_state.h"
#include "support/string_hash.h"

HashTable *GlobalNames;

static constexpr int32_t GLOBAL_BUCKETS = 1024;

void register_global(const char *const *names, int count) {
    if (count == 0) return;
    if (!GlobalNames) GlobalNames = HashCreate(GLOBAL_BUCKETS);
    if (!GlobalNames) end_run(OUT_OF_MEMORY);
    for (int i = 0; i < count; i++) {
        add_name(KnownVariables, names[i]);
        add_name(GlobalNames, names[i]);
    }
}

int write_global_name(const char *name, HashValue, void *first) {
    int *is_first = static_cast<int *>(first);
    if (*is_first) {
        write_indent(1);
        write_output({"global ", name});
        *is_first = 0;
    } else {
        write_output({", ", name});
    }
    return 1;
}

void write_globals() {
    if (!GlobalNames) return;
    int first = 1;
    StringHashForEach(GlobalNames, &first, write_global_name);
    if (!first) write_output(";\n\n");
}

void drop_globals() {
    StringHashDestroy(GlobalNames);
    GlobalNames = nullptr;
}
