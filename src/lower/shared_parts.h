/* Parts of variables that the host might share where MATLAB copies. */
#pragma once

#include "syntax/names/names.h"

/* Whether a part of the variable that value begins with must be copied for the target, as one of
 * the two changes inside. */
bool needs_part_copy(const Node *target, const Node *value);
/* Its text, as a copy where one is needed. */
const char *part_text(const Node *target, const Node *value, const char *text);
/* Whether a value that is put into a cell or a struct must be a copy: it is a variable, or a part
 * of one, that changes inside there or where it comes from. */
bool needs_kept_copy(const Node *value);
