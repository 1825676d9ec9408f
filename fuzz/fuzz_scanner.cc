/* The scanner alone, with the fixer called after operands in one bracket context, which the first
 * byte of the input chooses. Positions stay within the source and reach its end, and what is kept
 * of a line is what stands in the source. */
#include <sys/mman.h>
#include <unistd.h>

#include <cassert>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "driver/run.h"
#include "lexer/brackets.h"
#include "lexer/scanner.h"
#include "lexer/source_files.h"

namespace {

void check_line_text(std::string_view source) {
    const std::string_view text(SourceText);
    const auto start = static_cast<std::size_t>(TokenOffset);
    assert(!text.empty() && source.substr(start, text.size()) == text);
    const std::string_view rest = source.substr(start + text.size());
    assert(rest.empty() || std::strchr("\n\r", rest[0]));  // or a NUL
}

void check_tokens(std::string_view source) {
    const long size = static_cast<long>(source.size());
    long offset = 0;
    while (const int token = yylex()) {
        assert(token > 0 && token <= DOT_CARET);
        assert(TokenOffset >= offset && ScanOffset >= TokenOffset && ScanOffset <= size);
        assert(SourceLine >= 1 && SourceLine <= source.size() + 1 && SourcePos >= 0);
        offset = TokenOffset;
        if (token == NEWLINE) check_line_text(source);
        if (token == STRING || token == REAL || token == ')' || token == TRANSPOSE) fixinput(token);
    }
    assert(TokenOffset == size && yylex() == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size == 0) return 0;
    static const int delimiters[] = {0, IN_PARENTHESES, IN_LITERAL, IN_TARGETS};
    const int file = memfd_create("source", 0);
    if (write(file, data + 1, size - 1) != static_cast<ssize_t>(size) - 1) std::abort();
    begin_run();
    initLexer();
    if (open_source(("/proc/self/fd/" + std::to_string(file)).c_str()) != 0) std::abort();
    yyrestart();
    begin_source();
    BracketDelimiter = delimiters[data[0] % 4];
    check_tokens(std::string_view(reinterpret_cast<const char *>(data) + 1, size - 1));
    release_run();
    close(file);
    return 0;
}
