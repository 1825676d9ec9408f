/* How many arguments the calls in a file give its functions. */
#pragma once

struct SourceFile;

/* The fewest arguments that a call in the file gives the function of an interned name; INT_MAX for
 * no call. Calls with c{:} among the arguments do not count. */
int fewest_arguments(SourceFile *file, const char *name);
