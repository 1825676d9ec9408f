/* Which expressions are objects of a class, as far as the text tells surely. */
#pragma once

#include "syntax/tree/tree.h"

/* Of a value that is surely no object: a number, a text, an array, a function. */
extern const char *const NO_OBJECT;

/* The class, interned, of what is surely an object: the value of a call of a constructor, or of
 * class(s, 'name'), the first parameter of a method, and variables that hold nothing else. Else
 * NO_OBJECT, or null when nothing is known. Names must have been settled. */
const char *class_of_value(const Node *expression);
