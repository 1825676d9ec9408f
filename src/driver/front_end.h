/* A front end: reads sources in a language and translates them into OutputText. What the entry and
 * the resolution of called functions need of one, so that a run can be given another. */
#pragma once

/* Every operation works on the run state (run/run_state.h) and reports errors by RaiseError; it may
 * not return. */
struct FrontEnd {
    /* Start of a run, after its arguments: nothing is left of the run before. */
    void (*begin)();
    /* Translates the text of a command, which the caller keeps. */
    void (*parse_command)(const char *text);
    /* Translates the source file opened last (lexer/source_files.h), which the caller closes; name
     * is what errors call it, kept until the run ends. May be called while another parse has been
     * put aside. */
    void (*parse_file)(const char *name);
    /* Puts the parse under way aside, calls work, which may parse files, and takes the parse up
     * again as if nothing else had been parsed. Null for one that does not translate called
     * functions within a parse. */
    void (*parse_aside)(void (*work)());
    /* Translates the files of the functions that the source has called. After the source's parse;
     * the order of the files is the front end's. */
    void (*translate_called)();
};

/* Reads what parser/grammar.y describes. */
extern const FrontEnd ClassicFrontEnd;
/* Read MATLAB as people write it (src/syntax, src/lower), and the same as Octave has it. */
extern const FrontEnd MatlabFrontEnd;
extern const FrontEnd OctaveFrontEnd;

/* The one of a language: classic, matlab or octave; null for any other. */
const FrontEnd *find_front_end(const char *language);

/* The front end of the run, set with its options. */
extern const FrontEnd *UsedFrontEnd;
