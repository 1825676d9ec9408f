/* What the class folders hold: which classes a run has, and the files of their methods. The folders
 * beside the files of the search path are read once, when a class is first asked for. */
#pragma once

#include "run/run_state.h"

/* Forgets the run before. */
void begin_class_folders();
/* The search path; in the place of a class folder, the folder around it. */
const SearchDirectory *search_directories();
/* As described at Observers::find_method; the names are interned. */
const char *find_method(const char *class_name, const char *method);
/* False: find_method finds none. */
bool may_find_methods();
/* The file that makes objects of the class, or null. */
const char *find_constructor(const char *class_name);
