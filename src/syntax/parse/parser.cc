// Reading a source from its first token to its last.
#include "syntax/parse/parser.h"

#include <assert.h>
#include <string.h>

#include "syntax/parse/eval_texts.h"
#include "syntax/parse/parser_state.h"
#include "syntax/parse/statements.h"
#include "syntax/scan/spellings.h"

ParserState Parsing;

namespace {

void begin_parsing(Source *source, SourceLanguage language, FunctionEnds ends) {
    begin_errors(source);
    Parsing = {};
    Parsing.ends = ends;
    Parsing.target_depth = -1;
    Parsing.lone_tilde = NO_TILDE;
    begin_scan(source, language);
}

Node *read_source(Source *source, SourceLanguage language, FunctionEnds ends) {
    FunctionFrame frame;
    begin_parsing(source, language, ends);
    begin_frame(&frame, nullptr);
    Node *file = new_node(NODE_FILE, 0);
    file->length = source->length;
    NodeList list;
    parse_statements(&list);
    append_all(&list, &Scan.comments);
    assert(Current.kind == TOKEN_END_OF_FILE && Parsing.blocks == 0 && Parsing.depth == 0);
    file->first_child = list.first;
    return file;
}

// Whether functions have ends of their own, by what the source has been found to hold.
FunctionEnds counted_ends() {
    if (Scan.functions == 0 || Parsing.is_script) return Parsing.ends;
    if (Scan.openers + Scan.functions == Scan.ends) return WITH_ENDS;
    return Scan.openers == Scan.ends ? WITHOUT_ENDS : Parsing.ends;
}

Node *read_to_end(Source *source, SourceLanguage language) {
    Node *file = read_source(source, language, ENDS_UNKNOWN);
    FunctionEnds ends = counted_ends();
    return ends == Parsing.ends ? file : read_source(source, language, ends);
}

}  // namespace

void begin_syntax() {
    begin_arena();
    begin_spellings();
    begin_functions();
}

Node *parse_source(Source *source, SourceLanguage language) {
    Node *file = read_to_end(source, language);
    report_errors();
    if (Scan.names_eval) put_eval_texts(file, source, language);
    return file;
}

Node *parse_unreported(Source *source, SourceLanguage language, bool *has_errors) {
    Node *file = read_to_end(source, language);
    *has_errors = forget_errors();
    return file;
}

Node *parse_text(const char *text, SourceLanguage language) {
    Source *source = new_source(nullptr, text, static_cast<uint32_t>(strlen(text)));
    int32_t made = Scan.comments_made;  // of the source around
    Node *file = read_source(source, language, WITH_ENDS);
    bool has_comments = Scan.comments_made > 0;
    Scan.comments_made = made;
    bool has_errors = forget_errors();
    return has_errors || has_comments ? nullptr : file;
}
