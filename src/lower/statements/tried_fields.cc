// A try that only asks for a field.
#include "lower/statements/tried_fields.h"

#include "lower/calls/keyword_calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/paths.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "syntax/names/names.h"

namespace {

const Node *only_statement(const Node *block) {
    const Node *only = nullptr;
    for (const Node *node = block->first_child; node; node = node->next) {
        if (node->kind == NODE_COMMENT) continue;
        if (only) return nullptr;
        only = node;
    }
    return only;
}

// What is read: s.a, or x = s.a.
const Node *value_after(const Node *statement) {
    if (statement->kind == NODE_EXPRESSION) return statement->first_child;
    bool is_plain = statement->kind == NODE_ASSIGN && statement->op == OPERATOR_NONE &&
                    statement->first_child->kind == NODE_NAME;
    return is_plain ? second_child(statement) : nullptr;
}

// Whether the variable surely has a value: a test of one that has none would fail itself.
bool has_value(const Symbol *symbol, uint32_t offset) {
    if (symbol->flags & (SYMBOL_GLOBAL | SYMBOL_PERSISTENT)) return true;
    if (symbol->first_set > 0 && symbol->first_set < offset) return true;
    bool is_given = symbol->position > 0 && !(symbol->flags & SYMBOL_MAY_BE_MISSING);
    return is_given && !(Lowering.scope->flags & READS_NARGIN);
}

bool are_fields(const Node *reference) {
    const Node *base = reference->first_child;
    if (base->kind != NODE_NAME || !is_variable(base->symbol)) return false;
    for (const Node *selector = base->next; selector; selector = selector->next)
        if (selector->kind != NODE_FIELD) return false;
    return has_value(base->symbol, reference->offset);
}

}  // namespace

const Node *tried_fields(const Node *node) {
    const Node *statement = only_statement(node->first_child);
    const Node *value = statement ? value_after(statement) : nullptr;
    if (!value || has_flag(node, HAS_IDENTIFIER)) return nullptr;
    value = without_parens(value);
    return value->kind == NODE_REFERENCE && are_fields(value) ? value : nullptr;
}

static const char *question(const Path *path, const Node *field) {
    const char *name = string_text(written_field(field->text));
    return new_keyword_call("isfield", {path->text, name})->text;
}

// A field of a field is asked for when the first one is there.
const char *lower_field_test(const Node *fields) {
    const Node *field = second_child(fields);
    Path path = begin_path(written_name(fields->first_child->symbol), false);
    const char *test = question(&path, field);
    if (!field->next) return value_condition(test);
    const char *name = new_temporary();
    put_line("%s := %s;", {name, test});
    for (; field->next; field = field->next) {
        add_field(&path, field);
        put_line("if %s then", {value_condition(name)});
        Lowering.level++;
        put_line("%s := %s;", {name, question(&path, field->next)});
        Lowering.level--;
        put_line("end if;", {});
    }
    return value_condition(name);
}
