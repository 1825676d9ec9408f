// MATLAB's library.
#include "lower/library/library.h"

#include <assert.h>

#include "lower/expressions/expressions.h"
#include "lower/expressions/value_lists.h"
#include "lower/library/element_calls.h"
#include "lower/library/forms.h"
#include "lower/library/kind_questions.h"
#include "lower/library/operator_calls.h"
#include "lower/library/rewrites.h"
#include "lower/library/source_calls.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "run/run_state.h"

namespace {

int count_arguments(const Node *first) {
    int count = 0;
    for (const Node *argument = first; argument; argument = argument->next) {
        if (argument->kind == NODE_COLON || is_value_list(argument, false)) return -1;
        count++;
    }
    return count;
}

// Words that cannot be called have a form in any case.
bool is_offered(const Node *name, bool may_get_object) {
    if (is_host_keyword(name->text)) return true;
    return AddTranslator && is_found_nowhere(name, may_get_object);
}

}  // namespace

mExpr *new_library_call(const OutsideCall *of, const vExpr *values) {
    assert(of->name->kind == NODE_NAME);
    if (!is_offered(of->name, of->may_get_object)) return nullptr;
    const Node *first = of->arguments ? of->arguments->first_child : nullptr;
    bool is_tested = of->name == Lowering.tested;
    OfferedCall call = {of->name, first, values, count_arguments(first), of->results, is_tested};
    if (mExpr *rewritten = new_rewritten_call(&call)) return rewritten;
    if (call.count < 0) return nullptr;
    if (mExpr *answer = new_kind_answer(&call)) return answer;
    if (mExpr *form = new_form_call(&call)) return form;
    if (mExpr *operators = new_operator_call(&call)) return operators;
    if (mExpr *applied = new_element_call(&call)) return applied;
    return new_source_call(&call);
}

const char *library_handle(const Node *handle) {
    if (!is_offered(handle, true)) return nullptr;
    if (const char *source = source_value(handle->text)) return source;
    if (const char *operators = operator_value(handle->text)) return operators;
    return form_value(handle->text);
}
