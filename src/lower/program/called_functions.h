/* Which function a name means, and what the host calls it. A name is looked for among the functions
 * of its own file, then in other files; called files wait in a queue, in the order of their first
 * call. */
#pragma once

#include "lower/program/program_files.h"
#include "syntax/names/names.h"

/* Forgets the calls of the run before, at the start of a run. */
void begin_calls();

/* The host name of a nested function, of a function of the current file, or of name@superclass,
 * which is a gap where it is found nowhere: none is offered to the host. Null for any other, also
 * for the method that a file of a class folder holds. name: NAME or HANDLE. */
const char *own_function(const Node *name);
/* FUNCTION of a name for which own_function answers a nested function or one of the current file;
 * else null. */
Node *own_definition(const Symbol *symbol);
/* The host name of any other function that the host has no answer for. Its file enters the queue; a
 * name that is found nowhere is reported, once a run; so is one that methods of classes have, if
 * an argument may be an object. name: NAME or HANDLE. */
const char *called_function(const Node *name, bool may_get_object = false);
/* The host name of the method of that class; its file enters the queue. Null when there is none.
 * place: a NAME or HANDLE that calls it, or the operator's operands. Both names are interned. */
const char *called_method(const Node *place, const char *class_name, const char *method);
/* The same name, without a call of it. */
const char *uncalled_name(const Node *name);
/* Whether the program may have a function of that name, NAME; no file is read for that. */
bool has_function(const Node *name);
/* A kept name of a member, name.field, in the place of both. */
const Node *member_name(const Node *name, const Node *field);
/* How many outputs the function of a name has; -1 where it is in no file, or has varargout. */
int count_outputs(const Node *name);
/* The host name of the function that the host has by this name, whatever the files have. */
const char *host_function(const Node *name);
/* Whether the name of such a function means nothing that is in a file, nor a method that an
 * argument, which may be an object, has. */
bool is_found_nowhere(const Node *name, bool may_get_object);
/* The host name of a function that the front end brings along (library_file); it enters the queue,
 * after all files. */
const char *supplied_function(const char *text);
/* Whether the name of such a function means one of a file. */
bool is_function_of_file(const Node *name);
/* Whether it is one that the current file's folder keeps to itself. */
bool is_private_function(const Node *name);
/* The class of the objects that a call of the name makes, interned; null for any other name. */
const char *constructed_class(const Node *name);
/* Reports a statement, an EXPRESSION or COMMAND, that makes variables of what a file holds. */
void report_loading(const Node *statement);
/* The FILE of the script that a bare name calls, or null (of NameFinders). */
Node *find_script(const Node *name);
/* The file of that script, or null where the name leads elsewhere from the file under way; its
 * functions enter the queue. */
SourceFile *file_of_script(const Node *name);
/* The next file of the queue, or null when it is empty. */
SourceFile *take_called_file();

/* Whether calls from here on are a procedure's; the statements of the script are none. */
extern bool CallsFromProcedure;
/* Whether a procedure of the run calls a function by this host name, or declares it global. */
bool is_used_by_procedure(const char *written);
/* A procedure declares the name global. */
void note_global(const char *written);
