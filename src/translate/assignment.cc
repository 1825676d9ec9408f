// Assignments.
#include "translate/assignment.h"

#include <string.h>

#include "run/run_state.h"
#include "support/string_hash.h"
#include "translate/text_forms.h"

// Enters each text between commas; the texts are put back together behind it.
static void note_targets(char *targets) {
    for (char *target = targets;;) {
        char *comma = strchr(target, ',');
        if (comma) *comma = '\0';
        add_name(KnownVariables, target);
        if (!comma) return;
        *comma = ',';
        if (!comma[1]) return;
        target = comma + 2;  // behind the comma and its blank
    }
}

// The arguments of the concatenation that a matrix literal makes of several targets, with their
// blank in front and the parenthesis behind them; null for any other text, such as an answer of the
// host that only begins like one.
static const char *concatenated(const char *target) {
    const char *prefix = FileMode ? "Concatenate(2," : "ArrayTools:-Concatenate(2,";
    if (!has_prefix(target, prefix)) return nullptr;
    const char *rest = target + strlen(prefix);
    return strlen(rest) >= strlen(" )") ? rest : nullptr;
}

// " a, b)" becomes "(a, b)".
static char *write_concatenated(char *at, const char *rest) {
    size_t length = strlen(rest);
    char *end = at + length - 1;
    memcpy(at, rest, length);
    *at = '(';
    *end = '\0';
    note_targets(at + 1);
    return write_text(end, ")");
}

char *write_assignment(char *at, const char *target, const char *value) {
    if (const char *rest = concatenated(target)) {
        return write_form(write_concatenated(at, rest), " := %s", {value});
    }
    if (is_identifier(target)) add_name(KnownVariables, target);
    return write_single_assignment(at, target, value);
}

char *write_single_assignment(char *at, const char *target, const char *value) {
    const char *form = is_identifier(value) ? "%s := copy(%s)" : "%s := %s";
    return write_form(at, form, {target, value});
}

char *write_targets(char *at, const vExpr *targets) {
    const char *before = "(";
    for (; targets; targets = targets->next, before = ", ") {
        at = write_text(write_text(at, before), targets->item->text);
    }
    return write_text(at, ")");
}
