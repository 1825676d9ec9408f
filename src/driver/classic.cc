// The classic front end: the scanner of flex and the parser of bison.
#include <limits.h>
#include <string.h>

#include "driver/front_end.h"
#include "driver/resolution.h"
#include "lexer/error_reporter.h"
#include "lexer/scanner.h"
#include "parser/parser.h"
#include "run/run_end.h"
#include "run/run_state.h"
#include "support/heap.h"

namespace {

void begin() {
    CurrentProc = nullptr;
    BeforeScript = resolve_within_parse;
    RaiseInPlace = raise_where_read;
    initLexer();
}

// A copy of the command with its last statement ended, whatever the command ends with.
char *copy_command(const char *text) {
    size_t length = strlen(text);
    if (length >= INT_MAX - 10) end_run(TEXT_TOO_LONG);
    char *copy = static_cast<char *>(HeapAlloc(length + 10));
    if (!copy) end_run(OUT_OF_MEMORY);
    memcpy(copy, text, length);
    memcpy(copy + length, "\n;", 3);
    return copy;
}

void parse_command(const char *text) {
    char *copy = copy_command(text);
    yy_buffer_state *buffer = yy_scan_string(copy);
    begin_source();
    InputFileName = nullptr;
    SourceText = copy;
    yyparse();
    yy_delete_buffer(buffer);  // called files get a buffer made for files
}

void parse_file(const char *name) {
    yyrestart();
    begin_source();
    InputFileName = name;
    UsesArrayTools = 0;
    UsesLinearAlgebra = 0;
    yyparse();
}

void parse_aside(void (*work)()) {
    int look_ahead = yychar;
    SemanticValue value = yylval;
    int errors = yynerrs;
    const char *file_name = InputFileName;
    SuspendedScanner scanner = suspend_scanner();
    work();
    resume_scanner(&scanner);
    InputFileName = file_name;
    yynerrs = errors;
    yylval = value;
    yychar = look_ahead;
}

}  // namespace

const FrontEnd ClassicFrontEnd = {begin, parse_command, parse_file, parse_aside,
                                  resolve_called_functions};
const FrontEnd *UsedFrontEnd = &ClassicFrontEnd;
