// The life of a run.
#include <setjmp.h>
#include <stdint.h>

#include "driver/host_kernel.h"
#include "driver/run.h"
#include "driver/run_end.h"
#include "driver/run_state.h"
#include "emit/comments.h"
#include "emit/globals.h"
#include "lexer/brackets.h"
#include "lexer/scanner.h"
#include "lexer/source_files.h"
#include "support/allocation.h"
#include "support/heap.h"

namespace {

constexpr int32_t NAME_BUCKETS = 1024;

// Where end_run goes when the host's error operation returns.
jmp_buf RunExit;

}  // namespace

HashTable *new_name_table(int32_t buckets) {
    HashTable *table = HashCreate(buckets);
    if (!table) end_run("memory exhausted");
    return table;
}

void begin_run() {
    CalledNames = new_name_table(NAME_BUCKETS);
    DefinedNames = new_name_table(NAME_BUCKETS);
    KnownVariables = new_name_table(NAME_BUCKETS);
    AllocationTable = new_name_table(ALLOCATION_BUCKETS);
    OutputText = NewLongString();
    UsesArrayTools = 0;
    UsesLinearAlgebra = 0;
    SourceLine = 1;
    SearchPath = nullptr;
    LastComment = nullptr;
    InputSequence = nullptr;
    BracketDelimiter = 0;
    ResolutionDepth = 0;
}

void release_run() {
    yylex_destroy();
    close_all_sources();
    if (AllocationTable) FreeAll();
    HeapReleaseAll();
    AllocationTable = CalledNames = DefinedNames = KnownVariables = GlobalNames = nullptr;
    OutputText = nullptr;
    PrevLine = SourceText = "";
}

// A host that unloads the library, or ends, behind an abandoned run need not release it itself.
__attribute__((destructor)) static void release_at_unload() { release_run(); }

void end_run(const char *message) {
    HostKernel->RaiseError(message, 0);
    longjmp(RunExit, 1);
}

uintptr_t run_to_end(uintptr_t (*body)(uintptr_t), uintptr_t argument) {
    if (setjmp(RunExit)) return 0;
    return body(argument);
}
