/* Files of called functions: NAME.m in a directory. */
#pragma once

/* Opens directory/name.m like open_source. Answers its path, a tracked text; null when there is no
 * such file. A file that is there and cannot be opened ends the run: without it the translation
 * would lack a function. */
const char *open_named_source(const char *directory, const char *name);
