/* What somebody outside knows of the results of functions: those that no source of the program
 * defines, or that the host has in their place. */
#pragma once

#include "syntax/tree/value.h"

/* The value of a call of a NAME, of a package with the fields that its selectors begin with; null
 * for a bare name. 0 where nobody tells, and of functions of the same file. */
Value told_value(const Node *name, const Node *selectors);
