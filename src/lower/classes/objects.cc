// Which expressions are objects.
#include "lower/classes/objects.h"

#include <assert.h>
#include <string.h>

#include "lower/classes/class_folders.h"
#include "lower/expressions/expressions.h"
#include "lower/program/called_functions.h"
#include "lower/program/program_files.h"
#include "syntax/library/library_table.h"
#include "syntax/scan/spellings.h"
#include "syntax/values/values.h"

const char *const NO_OBJECT = "";

namespace {

constexpr int DEEPEST = 12;  // of expressions in one another, and of variables' values

const char *class_at(const Node *node, int depth);

// None when a class has its own.
bool is_plain_function(const char *name) {
    return has_trait(name, NEVER_OBJECT) && !find_method(nullptr, name);
}

// class(s, 'name'): within a package the class whose folder the file is in.
const char *made_class(const Node *arguments) {
    const Node *value = arguments->first_child;
    const Node *name = value ? value->next : nullptr;
    if (!name || name->kind != NODE_STRING || *name->text == '\0') return nullptr;
    const char *made = intern(name->text);
    const char *own = CurrentFile->place.name;
    return own && name_in_package(own) == made ? own : made;
}

const char *class_of_call(const Node *name, const Node *arguments) {
    if (arguments && strcmp(name->text, "class") == 0)
        if (const char *made = made_class(arguments)) return made;
    if (const char *made = constructed_class(name)) return made;
    return is_plain_function(name->text) ? NO_OBJECT : nullptr;
}

bool is_function(const Node *name) {
    return name->kind == NODE_NAME && !is_variable(name->symbol) && !name->symbol->definition;
}

// The call of a function, perhaps of one in a package, and nothing after it.
const char *class_of_reference(const Node *reference) {
    assert(reference->kind == NODE_REFERENCE);
    const Node *name = reference->first_child;
    const Node *selector = name->next;
    if (!is_function(name)) return nullptr;
    for (; selector->kind == NODE_FIELD && selector->next; selector = selector->next)
        name = member_name(name, selector);
    bool is_call = selector->kind == NODE_ARGUMENTS && !selector->next;
    return is_call ? class_of_call(name, selector) : nullptr;
}

// Operators and brackets: of plain parts, plain.
const char *class_of_parts(const Node *node, int depth) {
    for (const Node *part = node->first_child; part; part = part->next)
        if (part->kind != NODE_POSTFIX && class_at(part, depth) != NO_OBJECT) return nullptr;
    return NO_OBJECT;
}

// The object with which a method is called.
bool is_object_parameter(const Symbol *symbol) {
    const SourceFile *file = CurrentFile;
    if (symbol->position != 1 || symbol->scope->parameters < 1 || !is_method_file(file))
        return false;
    if (symbol->scope->owner != file->functions->node) return false;
    if (file->stem == name_in_package(file->place.name)) return false;
    return symbol->scope->parameters == 1 || !has_trait(file->stem, IS_OPERATOR);
}

struct Join {
    const char *value;
    bool is_begun;
};

void join(Join *all, const char *value) {
    all->value = !all->is_begun || all->value == value ? value : nullptr;
    all->is_begun = true;
}

const char *class_of_assigned(const AssignedValue *value, int depth) {
    return value->kind == VALUE_WHOLE ? class_at(value->node, depth + 1) : nullptr;
}

// Of all that the variable is set to as a whole.
const char *join_values(const Symbol *symbol, int depth) {
    constexpr uint32_t OTHERS =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    Join all = {};
    if (symbol->flags & OTHERS) return nullptr;
    if (symbol->flags & SYMBOL_PARAMETER)
        join(&all, is_object_parameter(symbol) ? CurrentFile->place.name : nullptr);
    for (const AssignedValue *value = symbol->values; value; value = value->next)
        join(&all, class_of_assigned(value, depth));
    return all.value;
}

const char *class_of_variable(Symbol *symbol, int depth) {
    if (symbol->flags & (SYMBOL_CLASS_KNOWN | SYMBOL_CLASS_ASKED)) return symbol->class_name;
    if (depth > DEEPEST) return nullptr;
    symbol->flags |= SYMBOL_CLASS_ASKED;
    const char *found = join_values(symbol, depth);
    symbol->flags &= ~static_cast<uint32_t>(SYMBOL_CLASS_ASKED);
    symbol->flags |= SYMBOL_CLASS_KNOWN;
    bool may_become_object = found == NO_OBJECT && (symbol->flags & SYMBOL_CHANGED);
    return symbol->class_name = may_become_object ? nullptr : found;
}

// A struct becomes an object by the assignment of class(s, 'name').
bool is_before_object(const Node *name) {
    const Symbol *symbol = name->symbol;
    if (!(symbol->flags & SYMBOL_CHANGED) || (symbol->flags & SYMBOL_PARAMETER)) return false;
    const AssignedValue *last = symbol->values;
    return last && name->offset < end_of(last->node);
}

const char *class_of_name(const Node *name, int depth) {
    if (is_function(name)) return class_of_call(name, nullptr);
    if (!is_variable(name->symbol)) return nullptr;
    const char *found = class_of_variable(name->symbol, depth);
    return found && found != NO_OBJECT && is_before_object(name) ? nullptr : found;
}

const char *class_at(const Node *node, int depth) {
    if (depth > DEEPEST) return nullptr;
    switch (node->kind) {
        case NODE_NUMBER:
        case NODE_STRING:
        case NODE_END:
        case NODE_COLON:
        case NODE_CELL:
        case NODE_HANDLE:
        case NODE_ANONYMOUS: return NO_OBJECT;
        case NODE_PARENS: return class_at(without_parens(node), depth);
        case NODE_PREFIX:
        case NODE_CHAIN:
        case NODE_RANGE:
        case NODE_ROW:
        case NODE_MATRIX: return class_of_parts(node, depth + 1);
        case NODE_NAME: return class_of_name(node, depth);
        case NODE_REFERENCE: return class_of_reference(node);
        default: return nullptr;
    }
}

}  // namespace

const char *class_of_value(const Node *expression) { return class_at(expression, 0); }
