// The tokens of a run's own source, by what programs colour.
#include <algorithm>

#include "driver/program/program_details.h"
#include "lower/program/program_files.h"
#include "syntax/parse/token_list.h"

namespace {

int32_t kind_of(TokenKind kind) {
    switch (kind) {
        case TOKEN_BAD: return MTRANSLATE_TOKEN_BAD;
        case TOKEN_COMMENT: return MTRANSLATE_TOKEN_COMMENT;
        case TOKEN_SEMICOLON:
        case TOKEN_COMMA: return MTRANSLATE_TOKEN_SEPARATOR;
        case TOKEN_NAME: return MTRANSLATE_TOKEN_NAME;
        case TOKEN_NUMBER: return MTRANSLATE_TOKEN_NUMBER;
        case TOKEN_STRING: return MTRANSLATE_TOKEN_TEXT;
        case TOKEN_FIELD: return MTRANSLATE_TOKEN_FIELD;
        case TOKEN_CLOSE_PAREN:
        case TOKEN_CLOSE_BRACKET:
        case TOKEN_CLOSE_BRACE:
        case TOKEN_CLOSE_PARAMETERS:
        case TOKEN_OPEN_PAREN:
        case TOKEN_OPEN_BRACKET:
        case TOKEN_OPEN_BRACE:
        case TOKEN_DOT_PAREN: return MTRANSLATE_TOKEN_BRACKET;
        case TOKEN_END_INDEX: return MTRANSLATE_TOKEN_KEYWORD;
        default: return is_keyword(kind) ? MTRANSLATE_TOKEN_KEYWORD : MTRANSLATE_TOKEN_OPERATOR;
    }
}

// What lacks memory is told when the run has ended.
void add(void *context, int32_t kind, uint32_t start, uint32_t end) {
    ProgramRun *run = static_cast<ProgramRun *>(context);
    try {
        const PlacedText text = text_of_source(CurrentFile->source);
        auto *token = new_result<mTranslateProgramToken>(memory_of(run));
        token->kind = kind;
        token->place = ask_range(&run->places, memory_of(run), &text, start, end);
        run->tokens.push_back(token);
    } catch (...) {
        run->lacks_memory = true;
    }
}

void add_token(void *context, TokenKind kind, uint32_t start, uint32_t end) {
    add(context, kind_of(kind), start, end);
}

void add_command(void *context, uint32_t start, uint32_t end) {
    add(context, MTRANSLATE_TOKEN_COMMAND, start, end);
}

void collect_commands(const Node *node, std::vector<const Node *> *commands) {
    for (; node; node = node->next) {
        if (node->kind == NODE_COMMAND || node->kind == NODE_SYSTEM)
            commands->push_back(node);
        else
            collect_commands(first_child(node), commands);
    }
}

}  // namespace

void find_commands(ProgramRun *run, const Node *tree) {
    collect_commands(tree, &run->commands);
    std::stable_sort(run->commands.begin(), run->commands.end(),
                     [](const Node *a, const Node *b) { return a->offset < b->offset; });
}

void note_program_tokens(ProgramRun *run) {
    const TokenListing listing = {run, add_token, add_command};
    list_tokens(CurrentFile->source, run->commands.data(), run->commands.size(), &listing);
}

void finish_tokens(ProgramRun *run) {
    result_of(run)->tokens = list_result(memory_of(run), run->tokens);
    result_of(run)->token_count = run->tokens.size();
}
