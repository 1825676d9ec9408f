/* Files of called functions: NAME.m in a directory. */
#pragma once

/* Whether a file that could not be found out about, with this errno, is not there at all. */
bool means_absent(int cause);
/* Ends the run: the file, or folder, is there and cannot be opened or read. */
[[noreturn]] void refuse_file(const char *path, int cause);
/* Opens the file of a function like open_source; false when it is not there. One that is there and
 * cannot be opened ends the run: without it the translation would lack a function. */
bool open_if_there(const char *path);
/* The same of directory/name.m. Answers its path, a tracked text; null when it is not there. */
const char *open_named_source(const char *directory, const char *name);
