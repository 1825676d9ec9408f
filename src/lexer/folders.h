/* Folders on disk, with what a tool gives in them. One is open at a time; a run that is abandoned
 * while it reads one leaves none open. */
#pragma once

/* Opens the folder; false where there is none. One that is there and cannot be read ends the run.
 * The path stays until the folder is closed. */
bool open_folder(const char *path);
/* The name of the next thing in it, valid until the next call, in no certain order. Null after the
 * last one: the folder is closed then. A read error ends the run. */
const char *next_in_folder();
/* Closes what is still open. */
void close_folder();
