// Assignments.
#include "translate/assignment.h"

#include <string.h>

#include "run/run_state.h"
#include "support/string_hash.h"
#include "translate/text_forms.h"

// Enters each text between commas; the texts are put back together after it.
static void note_targets(char *targets) {
    for (char *target = targets;;) {
        char *comma = strchr(target, ',');
        if (comma) *comma = '\0';
        add_name(KnownVariables, target);
        if (!comma) return;
        *comma = ',';
        if (!comma[1]) return;
        target = comma + 2;  // after the comma and its blank
    }
}

// The arguments of the concatenation that a matrix literal makes of several targets, with their
// blank in front and the parenthesis after them; null for any other text, such as an answer of the
// host that only begins like one.
static const char *concatenated(const char *target) {
    const char *prefix = FileMode ? "Concatenate(2," : "ArrayTools:-Concatenate(2,";
    if (!has_prefix(target, prefix)) return nullptr;
    const char *rest = target + strlen(prefix);
    return strlen(rest) >= strlen(" )") ? rest : nullptr;
}

// " a, b)" becomes "(a, b)".
static void write_concatenated(Writer *to, const char *rest) {
    write_text(to, "(");
    char *targets = to->at;
    write_bytes(to, rest + 1, strlen(rest) - strlen(" )"));
    note_targets(targets);
    write_text(to, ")");
}

static const char *form_of(const char *value) {
    return is_identifier(value) ? "%s := copy(%s)" : "%s := %s";
}

size_t assignment_size(const char *target, const char *value) {
    return form_size(form_of(value), {target, value});
}

void write_assignment(Writer *to, const char *target, const char *value) {
    if (const char *rest = concatenated(target)) {
        write_concatenated(to, rest);
        write_form(to, " := %s", {value});
        return;
    }
    if (is_identifier(target)) add_name(KnownVariables, target);
    write_form(to, form_of(value), {target, value});
}
