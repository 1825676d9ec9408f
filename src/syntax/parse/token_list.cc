// The scanner once more, now that the commands are known.
#include "syntax/parse/token_list.h"

#include "syntax/scan/syntax_errors.h"

namespace {

struct Commands {
    const Node *const *next;
    const Node *const *end;
};

// Programs in texts have the place of their eval: their commands do not begin like it.
bool begins_here(const Node *command) {
    if (command->kind == NODE_SYSTEM) return Current.kind == TOKEN_NOT;
    return Current.kind == TOKEN_NAME && first_child(command)->text == Current.text;
}

const Node *take_command(Commands *commands) {
    for (; commands->next != commands->end; commands->next++) {
        const Node *command = *commands->next;
        if (command->offset > Current.start) return nullptr;
        if (command->offset == Current.start && begins_here(command)) return command;
    }
    return nullptr;
}

void tell_comments(const TokenListing *listing) {
    for (const Node *node = Scan.comments.first; node; node = node->next)
        listing->token(listing->context, TOKEN_COMMENT, node->offset, end_of(node));
    Scan.comments = {};
}

// What follows it has no meaning up to where a statement may begin.
void pass_bad_token() {
    const char *at = Scan.text + Current.end;
    while (at < Scan.end && *at != '\n' && *at != '\r') at++;
    continue_at(at);
}

void tell_token(const TokenListing *listing) {
    bool is_line_end = Current.kind == TOKEN_NEWLINE || Current.kind == TOKEN_ROW_END;
    if (!is_line_end && Current.end > Current.start)
        listing->token(listing->context, Current.kind, Current.start, Current.end);
    if (Current.kind == TOKEN_BAD) pass_bad_token();
}

void tell_command(const TokenListing *listing, const Node *command) {
    listing->command(listing->context, command->offset, end_of(command));
    continue_at(Scan.text + end_of(command));
    Scan.line_flags = 0;
}

}  // namespace

void list_tokens(Source *source, const Node *const *commands, size_t command_count,
                 const TokenListing *listing) {
    Commands left = {commands, commands + command_count};
    begin_errors(source);
    begin_scan(source, Scan.language);
    do {
        advance();
        tell_comments(listing);
        if (const Node *command = take_command(&left))
            tell_command(listing, command);
        else
            tell_token(listing);
    } while (Current.kind != TOKEN_END_OF_FILE);
    forget_errors();
}
