// The entry: one call is one translation run.
#include <mtranslate.h>
#include <stdlib.h>
#include <string.h>

#include "driver/front_end.h"
#include "driver/options.h"
#include "driver/run.h"
#include "lexer/source_files.h"
#include "run/host_kernel.h"
#include "run/last_error.h"
#include "run/run_state.h"
#include "run/run_turn.h"
#include "support/allocation.h"
#include "support/budget.h"
#include "support/observers.h"

namespace {

HostValue translate_command(const char *text) {
    FileMode = 0;
    widen_budget(strlen(text));
    UsedFrontEnd->parse_command(text);
    UsedFrontEnd->translate_called();
    return HostKernel->ToHostString(OutputText);
}

// Without a path option the functions that a file calls are looked for beside it.
void search_beside(const char *file) {
    const char *slash = strrchr(file, '/');
    bool has_directory = slash && slash != file;
    add_search_directory(has_directory ? file : ".",
                         has_directory ? static_cast<size_t>(slash - file) : 1);
}

HostValue translate_file(const RunRequest *request) {
    if (open_source(request->source) != 0) {
        raise_error("unable to open %1", request->source_value);
        return 0;
    }
    if (!request->has_path) search_beside(request->source);
    FileMode = 1;
    UsedFrontEnd->parse_file(request->source);
    close_source();
    UsedFrontEnd->translate_called();
    return HostKernel->ToHostString(OutputText);
}

HostValue run(HostValue args) {
    begin_run();
    RunRequest request;
    if (!read_arguments(args, &request)) return 0;
    UsedFrontEnd->begin();
    if (strcmp(request.mode, "command") == 0) return translate_command(request.source);
    if (strcmp(request.mode, "file") == 0) return translate_file(&request);
    return 0;
}

}  // namespace

HostValue mTranslate(const HostKernelTable *kernel, HostValue args) {
    RunTurn turn;
    if (!take_turn(&turn)) {
        kernel->RaiseError("a translation is already running", 0);
        return 0;
    }
    release_run();  // what an abandoned run has left
    HostKernel = kernel;
    HostValue result;
    try {
        result = run_to_end(&turn, run, args);
    } catch (...) {
        if (has_turn(&turn)) end_observation();
        end_turn(&turn);
        throw;
    }
    if (!has_turn(&turn)) return 0;  // another run has released this one
    release_run();
    end_turn(&turn);
    return result;
}

void mTranslateRelease() {
    RunTurn turn;
    if (!take_turn(&turn)) return;
    release_run();
    ReleaseRegion();
    observe_next_run({});
    end_turn(&turn);
}

#define TEXT_OF(number) #number
#define VERSION_TEXT(major, minor, patch) TEXT_OF(major) "." TEXT_OF(minor) "." TEXT_OF(patch)

const char *mTranslateVersion() {
    return VERSION_TEXT(MTRANSLATE_VERSION_MAJOR, MTRANSLATE_VERSION_MINOR,
                        MTRANSLATE_VERSION_PATCH);
}

static bool ProcessEnds;

__attribute__((constructor)) static void prepare_unload() {
    atexit([] { ProcessEnds = true; });
}

// A host that unloads the library after an abandoned run need not release it itself. At the end of
// the process, which sets the flag before, other threads may still translate: nothing is touched.
__attribute__((destructor)) static void release_at_unload() {
    if (!ProcessEnds) mTranslateRelease();
}
