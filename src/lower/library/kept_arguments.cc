// Functions whose results hold what they are given.
#include "lower/library/kept_arguments.h"

#include <assert.h>

#include "lower/expressions/operands.h"
#include "lower/expressions/value_lists.h"
#include "lower/program/called_functions.h"
#include "lower/targets/shared_parts.h"
#include "support/row_index.h"
#include "syntax/scan/spellings.h"

namespace {

typedef const char *(*HeldForm)(const Node *value, const char *text);

// Arguments that may be part of the result.
enum Kept : uint8_t {
    KEEPS_ALL,
    KEEPS_FIRST,
    KEEPS_OUTER, /* the first and the last */
    KEEPS_PAIRS  /* after each name the value; one alone */
};

struct KeepingFunction {
    const char *name;
    HeldForm form;
    Kept kept;
};

// clang-format off
constexpr KeepingFunction KeepingFunctions[] = {
    {"deal",        held_text,         KEEPS_ALL},
    {"struct",      held_element_text, KEEPS_PAIRS},
    {"setfield",    held_element_text, KEEPS_OUTER},
    {"horzcat",     joined_text,       KEEPS_ALL},
    {"vertcat",     joined_text,       KEEPS_ALL},
    {"cat",         joined_text,       KEEPS_ALL},
    {"reshape",     joined_text,       KEEPS_FIRST},
    {"flip",        joined_text,       KEEPS_FIRST},
    {"fliplr",      joined_text,       KEEPS_FIRST},
    {"flipud",      joined_text,       KEEPS_FIRST},
    {"circshift",   joined_text,       KEEPS_FIRST},
    {"permute",     joined_text,       KEEPS_FIRST},
    {"squeeze",     joined_text,       KEEPS_FIRST},
    {"transpose",   joined_text,       KEEPS_FIRST},
    {"struct2cell", joined_text,       KEEPS_FIRST},
    {"cell2struct", joined_text,       KEEPS_FIRST},
    {"rmfield",     joined_text,       KEEPS_FIRST},
    {"orderfields", joined_text,       KEEPS_FIRST},
};
// clang-format on

constexpr auto KeepingIndex = index_rows(KeepingFunctions);

const KeepingFunction *function_of(const Node *name) {
    const KeepingFunction *row = find_row(KeepingFunctions, KeepingIndex, row_name(name->text));
    return row && !is_function_of_file(name) ? row : nullptr;
}

// Whether an argument, at a position from 1, may be part of the result.
bool is_kept(Kept kept, const Node *first, const Node *argument, int position) {
    switch (kept) {
        case KEEPS_ALL: return true;
        case KEEPS_FIRST: return argument == first;
        case KEEPS_OUTER: return argument == first || !argument->next;
        case KEEPS_PAIRS: return position % 2 == 0 || !first->next;
    }
    return true;
}

}  // namespace

bool keeps_arguments(const Node *name) { return function_of(name) != nullptr; }

void hold_arguments(const Node *name, const Node *arguments, ExprList *values) {
    const KeepingFunction *function = function_of(name);
    assert(function);
    Kept kept = function->kept;
    vExpr *cell = values->first;
    int position = 0;
    const Node *first = arguments->first_child;
    for (const Node *node = first; node; node = node->next, cell = cell->next) {
        position++;
        if (is_value_list(node, false)) {  // of each value by itself
            kept = KEEPS_ALL;
            continue;
        }
        if (!is_kept(kept, first, node, position)) continue;
        const char *text = function->form(node, cell->item->text);
        if (text != cell->item->text) cell->item = new_call_leaf(text);
    }
}
