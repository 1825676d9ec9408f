// The life of a run.
#include "driver/run.h"

#include "emit/comments.h"
#include "emit/globals.h"
#include "lexer/brackets.h"
#include "lexer/folders.h"
#include "lexer/scanner.h"
#include "lexer/source_files.h"
#include "run/last_error.h"
#include "run/run_end.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "support/budget.h"
#include "support/heap.h"
#include "support/long_string.h"
#include "support/observers.h"

static constexpr int32_t NAME_BUCKETS = 1024;
// The output of most small files fits and need not move.
static constexpr int32_t OUTPUT_CAPACITY = 4400;

HashTable *new_name_table(int32_t buckets) {
    HashTable *table = HashCreate(buckets);
    if (!table) end_run(OUT_OF_MEMORY);
    return table;
}

void begin_run() {
    InputFileName = nullptr;  // first: what fails below is of no file
    begin_observation();
    begin_budget();
    RaiseInPlace = nullptr;
    CalledNames = new_name_table(NAME_BUCKETS);
    DefinedNames = new_name_table(NAME_BUCKETS);
    KnownVariables = new_name_table(NAME_BUCKETS);
    AllocationTable = new_name_table(ALLOCATION_BUCKETS);
    OutputText = NewLongString(OUTPUT_CAPACITY);
    UsesArrayTools = 0;
    UsesLinearAlgebra = 0;
    SourceLine = 1;
    SearchPath = nullptr;
    LastComment = nullptr;
    InputSequence = nullptr;
    BracketDelimiter = 0;
    ResolutionDepth = 0;
    RequestedResults = HOST_RESULTS_UNKNOWN;
}

void release_run() {
    end_observation();
    yylex_destroy();
    close_all_sources();
    close_folder();
    if (AllocationTable) FreeAll();
    HeapReleaseAll();
    AllocationTable = CalledNames = DefinedNames = KnownVariables = GlobalNames = nullptr;
    OutputText = nullptr;
    PrevLine = SourceText = "";
    LastError = {nullptr, nullptr, 0, -1, GIVEN_IS_WRONG};
}
