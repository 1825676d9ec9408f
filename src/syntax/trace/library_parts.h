/* What lies inside of what MATLAB's own functions give that take cells and records apart, or make
 * others of them. The values of arguments have been traced. */
#pragma once

#include "syntax/values/field_values.h"

/* getfield, setfield, horzcat and the like of these arguments: what they give, with what is known
 * of its inside. Null for another function, and where nothing is known. */
const KnownPart *record_part(const Node *name, Node *arguments);
/* The elements of a cell that a function gives which only moves those of its arguments, as
 * reshape. */
const KnownPart *moved_elements(const LibraryFunction *function, Node *arguments);
