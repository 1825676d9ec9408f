/* What the class folders hold: which classes a run has, and the files of their methods. The folders
 * beside the files of the search path are read once, when a class is first asked for. */
#pragma once

#include "run/run_state.h"

/* The path of the file of a class's method, of class_name null: of any class that has it, but of a
 * constructor. Null for none. For programs that know all files beforehand, in the place of the
 * folders; null by default. The path stays valid until the run ends. It must not throw. */
typedef const char *(*MethodFinder)(const char *class_name, const char *method);
extern MethodFinder FindMethod;

/* Forgets the run before. */
void begin_class_folders();
/* The search path; in the place of a class folder, the folder around it. */
const SearchDirectory *search_directories();
/* As described at MethodFinder; the names are interned. */
const char *find_method(const char *class_name, const char *method);
/* The file that makes objects of the class, or null. */
const char *find_constructor(const char *class_name);
