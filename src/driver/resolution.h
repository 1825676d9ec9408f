/* Translating the functions that the translated code calls. */
#pragma once

/* Looks for every name of CalledNames that is not defined yet as directory/name.m along
 * SearchPath and translates the files found into OutputText, pass by pass until no new names
 * appear. Leaves CalledNames empty, and the parse that is under way as it was. */
void resolve_called_functions();
