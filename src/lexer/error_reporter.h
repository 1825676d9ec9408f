/* Reporting errors in the source. */
#pragma once

#include <mtranslate.h>

/* Raises message to the host, framed by the line and file that the scanner has reached, an excerpt
 * of the source line and a caret. Moves SourceText (and PrevLine) to the first character shown.
 * Answers what RaiseError answers, if it returns. */
HostValue yyerror(const char *message);
