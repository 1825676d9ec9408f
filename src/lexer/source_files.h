/* Source files on disk: opened through here, so that a run that is abandoned while it reads them
 * leaves none open. The scanner reads the one opened last. */
#pragma once

/* Opens the file for reading: 0, or the errno that tells why it cannot be opened. A file of usual
 * size is read at once and not kept open; what is wrong with its reading shows when the scanner
 * comes to the place. */
int open_source(const char *path);
/* The same for a file that is looked for: a directory of that name is none (EISDIR). */
int open_called_source(const char *path);
/* Closes the file opened last. */
void close_source();
/* Closes whatever is still open. */
void close_all_sources();
/* Reads at most capacity characters of the file opened last into buffer; 0 at its end. A read error
 * ends the run, after the characters in front of it have been given out; so does the end of a file
 * that has become shorter since it was opened. */
int read_source(char *buffer, int capacity);
