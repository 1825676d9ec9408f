/* The error raised last, as a record: what the host gets as one text, in its parts. */
#pragma once

#include <mtranslate.h>

#include "run/run_end.h"

/* Texts are constants or the run's or the host's own: valid until the run is released. */
struct ErrorRecord {
    const char *message; /* without line, file and excerpt; null while nothing has been raised */
    const char *file;    /* the file being read; null for a command, and before a file is opened */
    unsigned int line;   /* from 1, as the header of the host's text counts; 0 for no place */
    long offset;         /* of the token, in bytes from the start of the source; -1 for no place */
    EndCause cause;
    int reason = 0; /* as of RunEnd */
};

/* Set right before RaiseError is called; cleared at the start of a run and when it is released, so
 * that it can be read in RaiseError and, after a run that RaiseError left, until the next. */
extern ErrorRecord LastError;

/* Raises an error without a place in a source, "%1" in its message standing for value (else 0).
 * Answers what RaiseError answers, if it returns. */
HostValue raise_error(const RunEnd &end, HostValue value);
/* The same of an error in what the run was given. */
inline HostValue raise_error(const char *message, HostValue value) {
    return raise_error({message, GIVEN_IS_WRONG}, value);
}
/* Raises text, which frames the record's message for people, and keeps the record. */
HostValue raise_framed_error(const ErrorRecord *error, const char *text);
