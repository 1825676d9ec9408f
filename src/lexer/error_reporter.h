/* Reporting errors in the source. */
#pragma once

#include <mtranslate.h>
#include <stddef.h>

#include "run/last_error.h"

/* Raises message to the host, framed by the line and file that the scanner has reached, an excerpt
 * of the source line and a caret. Moves SourceText (and PrevLine) to the first character shown.
 * Answers what RaiseError answers, if it returns. */
HostValue yyerror(const char *message);
/* The same of what ends the run. */
void raise_where_read(const RunEnd &end);
/* The same for an error at a known place: in the line of length bytes, the caret under the byte at
 * column, from 0. The record tells the line's number and its file. */
HostValue raise_in_line(const ErrorRecord *error, const char *line, size_t length, size_t column);
