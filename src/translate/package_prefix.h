/* Members of the host packages ArrayTools and LinearAlgebra. In command mode the generated code
 * names the package at each use ("ArrayTools:-Concatenate"); in file mode the procedure or script
 * declares it, by the flag that every use sets in both modes. */
#pragma once

#include <initializer_list>

/* Set the package's flag, write its prefix in command mode, then the form (text_forms.h); answer
 * the place of the NUL. */
char *with_linear_algebra_prefix(char *at, const char *form, const char *operand);
char *with_array_tools_prefix(char *at, const char *form,
                              std::initializer_list<const char *> operands);

/* A call text from the host, which may begin with a package's prefix: sets the package's flag;
 * answers the text from behind the prefix in file mode, the whole text in command mode. */
const char *note_package(const char *call);
