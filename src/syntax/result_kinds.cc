// Kinds of results.
#include "syntax/result_kinds.h"

ResultKindFinder ResultKindOf;
