// The entry: one call is one translation run.
#include <limits.h>
#include <mtranslate.h>
#include <string.h>

#include "driver/options.h"
#include "driver/resolution.h"
#include "driver/run.h"
#include "lexer/scanner.h"
#include "lexer/source_files.h"
#include "parser/parser.h"
#include "run/host_kernel.h"
#include "run/last_error.h"
#include "run/run_end.h"
#include "run/run_state.h"
#include "support/heap.h"

namespace {

// A copy of the command with its last statement ended, whatever the command ends with.
char *copy_command(const char *text) {
    size_t length = strlen(text);
    char *copy = length < INT_MAX - 10 ? static_cast<char *>(HeapAlloc(length + 10)) : nullptr;
    if (!copy) end_run("memory exhausted");
    memcpy(copy, text, length);
    memcpy(copy + length, "\n;", 3);
    return copy;
}

HostValue translate_command(const char *text) {
    char *copy = copy_command(text);
    yy_buffer_state *buffer = yy_scan_string(copy);
    begin_source();
    FileMode = 0;
    InputFileName = nullptr;
    SourceText = copy;
    yyparse();
    yy_delete_buffer(buffer);  // called files get a buffer made for files
    resolve_called_functions();
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
    FILE *file = open_source(request->source);
    if (!file) {
        raise_error("unable to open %1", request->source_value);
        return 0;
    }
    if (!request->has_path) search_beside(request->source);
    yyrestart(file);
    begin_source();
    FileMode = 1;
    InputFileName = request->source;
    SourceLine = 1;
    yyparse();
    close_source();
    resolve_called_functions();
    return HostKernel->ToHostString(OutputText);
}

HostValue run(HostValue args) {
    begin_run();
    RunRequest request;
    if (!read_arguments(args, &request)) return 0;
    CurrentProc = nullptr;
    BeforeScript = resolve_within_parse;
    initLexer();
    if (strcmp(request.mode, "command") == 0) return translate_command(request.source);
    if (strcmp(request.mode, "file") == 0) return translate_file(&request);
    return 0;
}

}  // namespace

HostValue mTranslate(const HostKernelTable *kernel, HostValue args) {
    release_run();  // what an abandoned run has left
    HostKernel = kernel;
    HostValue result = run_to_end(run, args);
    release_run();
    return result;
}

void mTranslateRelease() { release_run(); }
