/* Source files on disk: opened through here, so that a run that is abandoned while it reads them
 * leaves none open. */
#pragma once

#include <stdio.h>

/* The file opened for reading, or null. */
FILE *open_source(const char *path);
/* Closes the file opened last. */
void close_source();
/* Closes whatever is still open. */
void close_all_sources();
/* Reads at most room characters into buffer; 0 at the end of the file. An interactive file (a
 * terminal) gives at most a line. A read error ends the run. */
int read_source(FILE *file, bool interactive, char *buffer, int room);
