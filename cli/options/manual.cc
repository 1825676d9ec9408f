/* The sections of the manual. */
#include "cli/options/manual.h"

namespace mtranslate {

std::span<const ManualSection> manual_sections() {
    static constexpr ManualSection SECTIONS[] = {
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
        {"Examples", R"(  $ mtranslate -c 'x = 2*(1 + 1)'
  x := 2 . (1+1);
  $ mtranslate -I lib -I . -o solve.txt solve.m
  $ mtranslate src -O translated)"}};
    return SECTIONS;
}

}  // namespace mtranslate
