/* Asking the host's translation procedures. The answers are the host's texts, valid until the run
 * ends; null means that the host has no translation. */
#pragma once

#include <mtranslate.h>

struct vExpr;

/* The host's name for a MATLAB name. */
const char *translate_name(const char *name);
/* The host text of the whole call; the arguments go as their texts, in list order. */
const char *translate_call(const char *name, const vExpr *arguments);
