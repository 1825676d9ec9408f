// The position variables and the moves that the scanner's rules make with them.
#include "lexer/position.h"

unsigned int SourceLine = 1;
int SourcePos;
const char *SourceText = "";
const char *PrevLine = "";
long TokenOffset;
long ScanOffset;

void reset_position() {
    begin_position();
    SourcePos = 0;
    PrevLine = SourceText = "";
}

void begin_position() {
    SourceLine = 1;
    TokenOffset = ScanOffset = 0;
}

SourcePosition save_position() {
    return {SourceLine, SourcePos, SourceText, PrevLine, TokenOffset, ScanOffset};
}

void restore_position(const SourcePosition *position) {
    SourceLine = position->line;
    SourcePos = position->column;
    SourceText = position->text;
    PrevLine = position->previous_text;
    TokenOffset = position->token_offset;
    ScanOffset = position->scan_offset;
}

void count_lines(unsigned int lines) {
    SourceLine += lines;
    SourcePos = 0;
}

void start_line(unsigned int lines, const char *text) {
    count_lines(lines);
    PrevLine = SourceText;
    SourceText = text;
}

unsigned int lines_in_run(const char *run, int length) {
    unsigned int lines = 0;
    for (int i = 0; i < length; i++) {
        bool ends_pair = i > 0 && run[i - 1] == '\r' && run[i] == '\n';
        if (!ends_pair) lines++;
    }
    return lines;
}
