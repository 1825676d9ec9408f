// Calls and operators that methods of classes answer.
#include "lower/classes/methods.h"

#include <assert.h>

#include "diagnose/messages.h"
#include "lower/classes/class_folders.h"
#include "lower/classes/objects.h"
#include "lower/lines/gaps.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "syntax/scan/spellings.h"

namespace {

const char *const PREFIX_METHODS[] = {"uplus", "uminus"};
const char *const OTHER_METHODS[] = {"uplus",   "uminus",  "horzcat",
                                     "vertcat", "subsref", "subsasgn"};

// Of the run, once asked for.
enum { NOT_ASKED, NO_METHODS, HAS_METHODS } OperatorMethods;

bool is_object(const char *class_name) { return class_name && class_name != NO_OBJECT; }

bool has_method(const char *class_name, const char *method) {
    return is_object(class_name) && find_method(class_name, method);
}

// Whether the current file belongs to a class that has the method.
bool is_in_class_with(const char *method) { return has_method(CurrentFile->place.name, method); }

const char *class_with(const char *method) {
    if (is_in_class_with(method)) return CurrentFile->place.name;
    return class_place_of(find_method(nullptr, method)).name;
}

bool any_class_has(const char *method) { return find_method(nullptr, intern(method)) != nullptr; }

bool find_operator_methods() {
    if (!may_find_methods()) return false;
    for (const OperatorRow &row : OperatorRows)
        if (row.function && any_class_has(row.function)) return true;
    for (const char *method : OTHER_METHODS)
        if (any_class_has(method)) return true;
    return false;
}

// What is known of all operands.
struct Operands {
    const char *method;  // interned
    const char *owner;   // class of the first object that has the method; null for none
    bool may_have_object;
};

void add_operand(Operands *operands, const char *class_name) {
    if (!operands->owner && has_method(class_name, operands->method)) operands->owner = class_name;
    if (class_name != NO_OBJECT) operands->may_have_object = true;
}

void add_operands(Operands *operands, const Node *first) {
    for (; first; first = first->next) add_operand(operands, class_of_value(first));
}

const char *decide(const Operands *operands, const Node *place, const char *shown) {
    if (operands->owner) return called_method(place, operands->owner, operands->method);
    if (operands->may_have_object && is_in_class_with(operands->method))
        report_undecided(place, operands->method, shown);
    return nullptr;
}

const char *method_for(const char *name, const char *spelling, const Node *place, const char *left,
                       const char *right) {
    Operands operands = {intern(name), nullptr, false};
    add_operand(&operands, left);
    add_operand(&operands, right);
    return decide(&operands, place, spelling);
}

bool has_one_column(const Node *matrix) {
    for (const Node *row = matrix->first_child; row; row = row->next)
        if (row->first_child->next) return false;
    return true;
}

}  // namespace

void begin_methods() { OperatorMethods = NOT_ASKED; }

Dispatch dispatch_call(const Node *name, const Node *arguments) {
    assert(name->kind == NODE_NAME);
    Dispatch dispatch = {};
    if (!find_method(nullptr, name->text) || is_private_function(name)) return dispatch;
    for (const Node *at = arguments->first_child; at; at = at->next) {
        const char *found = class_of_value(at);
        if (has_method(found, name->text)) return {found, false};
        if (found != NO_OBJECT) dispatch.may_get_object = true;
    }
    if (dispatch.may_get_object && is_in_class_with(name->text))
        report_undecided(name, name->text, name->text);
    return dispatch;
}

void report_undecided(const Node *place, const char *method, const char *shown) {
    // a statement that is given up calls nothing
    if (Lowering.gap != MESSAGE_COUNT) return;
    if (enter_name(&CurrentFile->undecided, intern(shown), CurrentFile)) return;
    report_at(CLASS_DECIDES, place, {shown, class_with(method)});
}

bool has_operator_methods() {
    if (OperatorMethods == NOT_ASKED)
        OperatorMethods = find_operator_methods() ? HAS_METHODS : NO_METHODS;
    return OperatorMethods == HAS_METHODS;
}

const char *operator_method(OperatorId op, const Node *place, const char *left, const char *right) {
    const OperatorRow &row = OperatorRows[op];
    return row.function ? method_for(row.function, row.spelling, place, left, right) : nullptr;
}

const char *prefix_method(const Node *prefix) {
    if (!has_operator_methods()) return nullptr;
    const char *operand = class_of_value(prefix->first_child);
    if (prefix->op == OPERATOR_NOT) return operator_method(prefix->op, prefix, operand, NO_OBJECT);
    const char *name = PREFIX_METHODS[prefix->op == OPERATOR_MINUS];
    return method_for(name, OperatorRows[prefix->op].spelling, prefix, operand, NO_OBJECT);
}

const char *range_method(const Node *range) {
    if (!has_operator_methods()) return nullptr;
    Operands operands = {intern("colon"), nullptr, false};
    add_operands(&operands, range->first_child);
    return decide(&operands, range, ":");
}

const char *matrix_method(const Node *matrix) {
    const Node *row = matrix->first_child;
    bool is_row = !row->next;
    if (!has_operator_methods() || (is_row && !row->first_child->next)) return nullptr;
    Operands operands = {intern(is_row ? "horzcat" : "vertcat"), nullptr, false};
    for (; row; row = row->next) add_operands(&operands, row->first_child);
    if (is_row || has_one_column(matrix) || !operands.owner)
        return decide(&operands, matrix, is_row ? "[,]" : "[;]");
    report_undecided(matrix, operands.method, "[;]");
    return nullptr;
}

void check_object_index(const Node *base, const char *method, const char *shown) {
    if (!has_operator_methods()) return;
    const char *class_name = class_of_value(base);
    const char *name = intern(method);
    if (class_name == CurrentFile->place.name || !has_method(class_name, name)) return;
    report_undecided(base, name, shown);
}
