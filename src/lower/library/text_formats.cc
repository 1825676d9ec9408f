// sprintf of a format that the source shows.
#include "lower/library/text_formats.h"

#include <string.h>

#include "lower/calls/keyword_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/library/source_calls.h"
#include "syntax/tree/value.h"
#include "translate/text_forms.h"

namespace {

struct Formatting {
    const OfferedCall *call;
    const Node *argument; /* the next one */
    const vExpr *value;
    Writer plain; /* the characters since the last argument */
    const char *start;
    ExprList parts;
};

// The character that an escape of a format stands for, or 0.
char escaped(char letter) {
    switch (letter) {
        case 'n': return '\n';
        case 't': return '\t';
        case '\\': return '\\';
        default: return 0;
    }
}

void end_plain(Formatting *of) {
    if (of->plain.at == of->start) return;
    append_expr(&of->parts, new_leaf(string_text(of->start)));
    of->plain.at = const_cast<char *>(of->start);
}

// Numbers that are whole have the digits of int2str. What is empty takes part in no other way than
// alone.
mExpr *converted(const Formatting *of, char conversion) {
    Value value = value_of(of->argument);
    if (may_be(value, MAY_BE_MISSING)) return nullptr;
    if (conversion == 's') {
        bool is_row = is_surely(value, MAY_BE_TEXT) && !may_be(value, MAY_HAVE_ROWS | MAY_BE_ARRAY);
        bool is_safe = of->call->count == 2 || !may_be(value, MAY_BE_EMPTY);
        return is_row && is_safe ? of->value->item : nullptr;
    }
    bool is_count = is_within(value, COUNT);
    if (!is_count || (conversion != 'd' && conversion != 'i')) return nullptr;
    vExpr *alone = alloc_vExpr(of->value->item);
    OfferedCall digits = {of->call->name, of->argument, alone, 1, 1, false};
    mExpr *text = new_source_call("%d", &digits);
    free_vExpr(alone);
    return text;
}

bool append_argument(Formatting *of, char conversion) {
    mExpr *part = of->argument ? converted(of, conversion) : nullptr;
    if (!part) return false;
    end_plain(of);
    append_expr(&of->parts, part);
    of->argument = of->argument->next;
    of->value = of->value->next;
    return true;
}

bool append_format(Formatting *of, const char *format) {
    for (const char *at = format; *at; at++) {
        char character = *at;
        if (character == '%' && at[1] != '%') {
            if (!append_argument(of, *++at)) return false;
            continue;
        }
        if (character == '%') at++;
        if (character == '\\') character = escaped(*++at);
        if (!character) return false;
        write_character(&of->plain, character);
    }
    end_plain(of);
    return !of->argument && of->parts.first;
}

}  // namespace

mExpr *new_formatted_text(const OfferedCall *call) {
    const Node *format = call->first;
    bool is_shown = format && call->count > 0 && format->kind == NODE_STRING &&
                    !has_flag(format, DOUBLE_QUOTED) && has_one_result(call);
    if (!is_shown) return nullptr;
    Writer plain = new_text(strlen(format->text) + 1);
    Formatting of = {call, format->next, call->values->next, plain, plain.at, {}};
    bool is_known = append_format(&of, format->text);
    bool is_one = is_known && of.parts.first == of.parts.last;
    mExpr *text = is_one ? of.parts.first->item : nullptr;
    if (is_known && !is_one) text = new_keyword_call("horzcat", of.parts.first);
    free_vExpr(of.parts.first);
    return text;
}
