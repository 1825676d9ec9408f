/* Members of the host packages ArrayTools and LinearAlgebra. In command mode the generated code
 * names the package at each use ("ArrayTools:-Concatenate"); in file mode the procedure or script
 * declares it, by the flag that every use sets in both modes. */
#pragma once

/* Set the package's flag; answer its prefix in command mode, else the empty text. */
const char *linear_algebra_prefix();
const char *array_tools_prefix();

/* A call text from the host, which may begin with a package's prefix: sets the package's flag;
 * answers the text from after the prefix in file mode, the whole text in command mode. */
const char *note_package(const char *call);
