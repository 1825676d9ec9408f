// Functions whose results hold what they are given.
#include "lower/library/kept_arguments.h"

#include "lower/expressions/operands.h"
#include "lower/expressions/value_lists.h"
#include "lower/program/called_functions.h"
#include "lower/targets/shared_parts.h"
#include "support/row_index.h"

namespace {

typedef const char *(*HeldForm)(const Node *value, const char *text);

struct KeepingFunction {
    const char *name;
    HeldForm form;
};

// clang-format off
constexpr KeepingFunction KeepingFunctions[] = {
    {"deal",       held_text},
    {"struct",     held_element_text},
    {"setfield",   held_element_text},
    {"horzcat",    joined_text},
    {"vertcat",    joined_text},
    {"cat",        joined_text},
    {"reshape",    joined_text},
    {"flip",       joined_text},
    {"fliplr",     joined_text},
    {"flipud",     joined_text},
    {"circshift",  joined_text},
    {"permute",    joined_text},
    {"squeeze",    joined_text},
    {"transpose",  joined_text},
    {"struct2cell", joined_text},
    {"cell2struct", joined_text},
    {"rmfield",    joined_text},
    {"orderfields", joined_text},
};
// clang-format on

constexpr auto KeepingIndex = index_rows(KeepingFunctions);

HeldForm form_of(const Node *name) {
    const KeepingFunction *row = find_row(KeepingFunctions, KeepingIndex, name->text);
    return row && !is_function_of_file(name) ? row->form : nullptr;
}

}  // namespace

bool keeps_arguments(const Node *name) { return form_of(name) != nullptr; }

void hold_arguments(const Node *name, const Node *arguments, ExprList *values) {
    HeldForm form = form_of(name);
    if (!form) return;
    vExpr *cell = values->first;
    for (const Node *node = arguments->first_child; node; node = node->next, cell = cell->next) {
        if (is_value_list(node, false)) continue;  // of each value by itself
        const char *text = form(node, cell->item->text);
        if (text != cell->item->text) cell->item = new_call_leaf(text);
    }
}
