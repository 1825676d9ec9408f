/* sprintf of a format that the source shows. */
#pragma once

#include "lower/library/offered_call.h"

/* sprintf('%d of %s', n, name) as the parts of the text, joined; null where a part of the format or
 * an argument could mean more than one text. */
mExpr *new_formatted_text(const OfferedCall *call);
