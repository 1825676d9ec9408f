/* Calls and operators that methods of classes answer. The class of the arguments decides in MATLAB:
 * where it is surely known, the method is called; where an argument may be an object, a message
 * says so, once for each name in a file, and the call stays one by name. */
#pragma once

#include "syntax/tree/tree.h"

/* Forgets the run before. */
void begin_methods();

struct Dispatch {
    const char *class_name; /* whose method it surely is; null for none */
    bool may_get_object;    /* else: of a name that methods have, an argument may be an object */
};
/* What a call of the NAME with these ARGUMENTS means, where that is no function of its own file. In
 * a file of a class that has the method, the message has been given. */
Dispatch dispatch_call(const Node *name, const Node *arguments);
/* Says that the class of the arguments decides about a method's name; shown: how it is written. */
void report_undecided(const Node *place, const char *method, const char *shown);

/* Whether any class has a method for an operator, brackets, or an index. */
bool has_operator_methods();
/* The host name of the method for the operator between such operands (class_of_value; of a prefix
 * or postfix, right is NO_OBJECT), or null. In a file of a class that has one, operands that may be
 * objects are reported, at the place. */
const char *operator_method(OperatorId op, const Node *place, const char *left, const char *right);
/* The same of a prefix, and of a RANGE. */
const char *prefix_method(const Node *prefix);
const char *range_method(const Node *range);
/* The same of [ ] with several elements: of a MATRIX of one row horzcat, of one column vertcat. In
 * any other with an object that has such a method a message is given. */
const char *matrix_method(const Node *matrix);
/* Reports an index or a field of an object, the base, whose class has a method for that (subsref or
 * subsasgn), outside of the files of the class, where it is not called in MATLAB either. */
void check_object_index(const Node *base, const char *method, const char *shown);
