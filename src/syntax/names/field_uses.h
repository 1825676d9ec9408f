/* Which fields of a variable the text has named so far. */
#pragma once

#include "syntax/names/names.h"

/* A field of the variable, with an interned name, is read or set. */
void note_field_use(Symbol *symbol, const char *field);
/* Braces are used after a field of the variable; whether they are somewhere, of the first few such
 * fields. */
void note_cell_field(Symbol *symbol, const char *field);
bool is_cell_field(const Symbol *symbol, const char *field);
