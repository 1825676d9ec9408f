/* Translating the functions that the translated code calls. */
#pragma once

/* Looks for every name of CalledNames that is not defined yet as directory/name.m along
 * SearchPath and translates the files found into OutputText, pass by pass until no new names
 * appear. Leaves CalledNames empty. */
void resolve_called_functions();
/* The same in the middle of a parse, which goes on as if nothing else had been parsed. Scripts
 * that call each other too deeply for the machine's stack are an error. */
void resolve_within_parse();
