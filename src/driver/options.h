/* The arguments of mTranslate. */
#pragma once

#include <mtranslate.h>
#include <stddef.h>

/* What a run is asked for; the texts are the host's. */
struct RunRequest {
    const char *mode;
    const char *source; /* command text or file name */
    HostValue source_value;
    bool has_path;            /* a list option was given, perhaps an empty one */
    HostValue unknown_option; /* name of the first that looks like one of ours; 0 for none */
};

/* Reads the arguments; sets SearchPath, AddTranslator, UsedFrontEnd, KeepGoing and Displays by the
 * options. False when a required argument is missing or no string, the language is none, or
 * matlab or octave are given an unknown option: the error has been raised. */
bool read_arguments(HostValue args, RunRequest *request);
/* Puts a directory of length bytes of text in front of SearchPath. */
void add_search_directory(const char *text, size_t length);
