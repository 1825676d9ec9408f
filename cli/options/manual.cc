/* The sections of the manual. */
#include "cli/options/manual.h"

namespace mtranslate {

std::span<const ManualSection> manual_sections() {
    static constexpr ManualSection SECTIONS[] = {
        {"Description",
         R"(Translates MATLAB files, or the MATLAB text of -c, to the language of a host
computer-algebra system. The translation of one source goes to standard output
or to the file of -o, those of several, or of whole folders, below the folder
of -O. Messages go to standard error, each with its place and a code.)",
         false},
        {"Called functions",
         R"(Functions that the source calls are looked for as NAME.m in the directory of
the file (for standard input: in the current directory; for -c: nowhere) and
translated along with it. The first -I replaces that directory; name it by an
-I of its own to search it too. With -O every file is translated alone.)"},
        {"What is not translated",
         R"(What cannot be translated is left as comments in the translation, and a message
says why; 'mtranslate explain CODE' tells more about it.)"},
        {"Exit code", R"( 0  all is translated
 1  a source has an error or a gap
 2  wrong usage
 3  a file cannot be read or written, or a worker process is lost)"},
        {"Environment",
         R"( NO_COLOR        set to anything: --color=auto means never
 CLICOLOR_FORCE  set to anything but 0: --color=auto means always
 TERM            of a terminal that is dumb, no colours are expected)",
         false},
        {"Files",
         R"( mtranslate.toml  options and rules of a folder and of those in it, in TOML; the
                  one nearest to the source is taken
 NAME.m           MATLAB sources; NAME is that of the function
 DIR/qxrp_library.txt
                  the translator's own functions, beside what -O writes)",
         false},
        {"Examples", R"(  $ mtranslate -c 'x = 2*(1 + 1)'
  x := 2 . (1+1);
  $ mtranslate -I lib -I . -o solve.txt solve.m
  $ mtranslate src -O translated)"},
        {"See also", R"(diff(1), dot(1), make(1))", false}};
    return SECTIONS;
}

}  // namespace mtranslate
