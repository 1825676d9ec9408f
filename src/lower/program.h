/* A whole program: its own source, the files that it calls, and its statements after them. */
#pragma once

#include "lower/program/program_files.h"

/* Start of a run in a language: nothing is left of the run before. */
void begin_program(SourceLanguage language);
/* Writes the translation of the source and of everything that it calls into OutputText. path null
 * for a command. */
void lower_program(const char *path, const char *text, uint32_t length);
/* Puts the statements of the script that a bare name calls in the place of the call; null. Where
 * that cannot be it says why. */
const char *lower_script_call(const Node *name);
