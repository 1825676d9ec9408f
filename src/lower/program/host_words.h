/* Words of the host's language, and the host names of what the source calls by one of them: the
 * name with "m_" in front. */
#pragma once

#include "syntax/names/names.h"

/* A word that begins or joins the host's forms: no name of any kind can be one. */
bool is_host_keyword(const char *name);
/* A keyword, a name that the host's forms use bare, or one that looks like a generated name: no
 * variable and no procedure can have it. */
bool is_host_word(const char *name);

/* The host name of a variable: what the host says, which is asked once for each symbol, else its
 * own name, or one that is free where that is a host word. A variable of a script is not called
 * like a function that a procedure of the run calls, or like a global variable of one. */
const char *written_name(Symbol *symbol);
/* Whether the variable's own name cannot be its host name. */
bool must_change_name(const Symbol *symbol);
/* What the head of a procedure calls a parameter: "qxrp_" and its name where the body copies it. */
const char *head_name(Symbol *parameter);
/* The host name of a field. */
const char *written_field(const char *name);
