// The entry: one call is one translation run.
#include <mtranslate.h>
#include <stdlib.h>
#include <string.h>

#include "driver/entry.h"

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

void translate_command(const char *text) {
    FileMode = 0;
    widen_budget(strlen(text));
    UsedFrontEnd->parse_command(text);
    UsedFrontEnd->translate_called();
}

// Without a path option the functions that a file calls are looked for beside it.
void search_beside(const char *file) {
    const char *slash = strrchr(file, '/');
    bool has_directory = slash && slash != file;
    add_search_directory(has_directory ? file : ".",
                         has_directory ? static_cast<size_t>(slash - file) : 1);
}

bool translate_file(const RunRequest *request) {
    if (int reason = open_source(request->source)) {
        raise_error({"unable to open %1", FILE_IS_UNREADABLE, reason}, request->source_value);
        return false;
    }
    if (!request->has_path) search_beside(request->source);
    FileMode = 1;
    UsedFrontEnd->parse_file(request->source);
    close_source();
    UsedFrontEnd->translate_called();
    return true;
}

HostValue run(HostValue args) {
    begin_run();
    RunRequest request;
    bool is_done = read_arguments(args, &request) && translate_request(&request);
    return is_done ? HostKernel->ToHostString(OutputText) : 0;
}

}  // namespace

bool translate_request(const RunRequest *request) {
    UsedFrontEnd->begin();
    if (strcmp(request->mode, "file") == 0) return translate_file(request);
    if (strcmp(request->mode, "command") != 0) return false;
    translate_command(request->source);
    return true;
}

bool run_in_turn(const HostKernelTable *kernel, const Observers *observers,
                 HostValue (*body)(HostValue), HostValue *value) {
    RunTurn turn;
    if (!take_turn(&turn)) return false;
    release_run();  // what an abandoned run has left
    if (observers) observe_next_run(*observers);
    HostKernel = kernel;
    try {
        *value = run_to_end(&turn, body, *value);
    } catch (...) {
        if (has_turn(&turn)) end_observation();
        end_turn(&turn);
        throw;
    }
    if (has_turn(&turn)) {
        release_run();
        end_turn(&turn);
    } else {
        *value = 0;  // another run has released this one
    }
    return true;
}

HostValue mTranslate(const HostKernelTable *kernel, HostValue args) {
    if (run_in_turn(kernel, nullptr, run, &args)) return args;
    kernel->RaiseError("a translation is already running", 0);
    return 0;
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
