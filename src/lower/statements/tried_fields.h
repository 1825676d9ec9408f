/* A try that only asks for a field, try, g.a; catch, g.a = 1; end: it fails where the field is
 * missing, which the host can be asked. */
#pragma once

#include "syntax/tree/tree.h"

/* The fields, a REFERENCE, that are all that can fail in the TRY; null for any other. */
const Node *tried_fields(const Node *node);
/* Whether they are there, as the host's condition; what it needs in front is put. */
const char *lower_field_test(const Node *fields);
