/* Requests of tools: read as the caller knows them, whatever the size of his structs. */
#pragma once

#include <mtranslate_program.h>

/* Copies the caller's request into the one that the library knows. Answers what is wrong with it, a
 * constant, or null. */
const char *read_request(const mTranslateProgramRequest *from, mTranslateProgramRequest *to);
/* Source number index, from 0, of a request that has been read; the same. */
const char *read_program_source(const mTranslateProgramRequest *request, size_t index,
                                mTranslateProgramSource *to);
