// The front ends that read MATLAB as people write it: src/syntax and src/lower.
#include <limits.h>
#include <stdio.h>

#include "diagnose/messages.h"
#include "driver/front_end.h"
#include "lexer/error_reporter.h"
#include "lexer/whole_source.h"
#include "lower/lines/lines.h"
#include "lower/program.h"
#include "lower/program/context.h"
#include "lower/program/program_files.h"
#include "run/run_end.h"
#include "run/run_state.h"
#include "syntax/tree/tree.h"

namespace {

// In the statement that is being lowered.
void raise_in_statement(const RunEnd &end) {
    if (!Lowering.statement) {
        raise_error(end, 0);
        return;
    }
    Source *source = CurrentFile->source;
    Position at = position_of(source, Lowering.statement->offset);
    uint32_t length;
    const char *line = line_text(source, at.line, &length);
    ErrorRecord error = {end.message, source->name, at.line,
                         static_cast<long>(Lowering.statement->offset), end.cause};
    raise_in_line(&error, line, length, at.column - 1);
}

void begin(SourceLanguage language) {
    begin_program(language);
    Lowering.statement = nullptr;
    RaiseInPlace = raise_in_statement;
}

void begin_matlab() { begin(LANGUAGE_MATLAB); }

void begin_octave() { begin(LANGUAGE_OCTAVE); }

void parse_command(const char *text) {
    size_t length = strlen(text);
    if (length > INT_MAX) end_run(TEXT_TOO_LONG);
    lower_program(nullptr, text, static_cast<uint32_t>(length));
}

void parse_file(const char *name) {
    InputFileName = name;
    uint32_t length;
    const char *text = read_whole_source(&length);
    lower_program(name, text, length);
}

const char *failure_text(const Message *failure) {
    if (!failure->called_from) return failure->text;
    char line[16];
    snprintf(line, sizeof line, "%u", failure->called_from_line);
    return form_text("%s (called from %s:%s)", {failure->text, failure->called_from, line});
}

void raise_failure(const Message *failure) {
    Position at = place_of(failure);
    uint32_t length;
    const char *line = line_text(failure->source, at.line, &length);
    ErrorRecord error = {failure_text(failure), failure->file, at.line,
                         static_cast<long>(failure->offset), GIVEN_IS_WRONG};
    raise_in_line(&error, line, length, at.column - 1);
}

// Called files have been translated with their callers.
void finish() {
    if (FirstFailure && !KeepGoing) raise_failure(FirstFailure);
}

}  // namespace

const FrontEnd MatlabFrontEnd = {begin_matlab, parse_command, parse_file, nullptr, finish};
const FrontEnd OctaveFrontEnd = {begin_octave, parse_command, parse_file, nullptr, finish};
