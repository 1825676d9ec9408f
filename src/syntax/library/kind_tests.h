/* MATLAB's functions that ask of which kind a value is, and the names of its classes. */
#pragma once

#include "support/row_index.h"
#include "syntax/tree/value.h"

/* Whether values are of a kind: all of "yes" are, and only some of "perhaps", which includes those.
 * Numbers may be those of any of MATLAB's classes. */
struct KindTest {
    const char *name;
    Value yes;
    Value perhaps;
};

/* isreal and iscomplex, which look at the parts of a number, are not among them. Null for others.
 */
const KindTest *find_kind_test(RowName function);
/* Of isa(x, name); null for classes of integers by their sizes and for those of objects. */
const KindTest *find_class_test(RowName name);
/* The class of values of these kinds alone; null where numbers may be of several. */
const char *class_of_kinds(Value kinds);
