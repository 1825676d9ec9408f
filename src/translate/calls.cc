// Calls and indices in parentheses.
#include "translate/calls.h"

#include <string.h>

#include "run/run_state.h"
#include "support/allocation.h"
#include "support/string_hash.h"
#include "translate/host_queries.h"
#include "translate/indices.h"
#include "translate/package_prefix.h"

mExpr *new_host_call(const char *name, const vExpr *arguments) {
    const char *call = translate_call(name, arguments);
    if (!call) return nullptr;
    mExpr *expr = alloc_mExpr();
    const char *text = note_package(call);
    *expr = {EXPR_CALL, KeepText(text, strlen(text)), NOT_SCALAR, nullptr};
    return expr;
}

mExpr *new_function_node(const mExpr *name, const vExpr *arguments) {
    bool is_variable = StringHashLookup(KnownVariables, name->text) != nullptr;
    if (AddTranslator && !is_variable && !StringHashLookup(CalledNames, name->text)) {
        if (mExpr *call = new_host_call(name->text, arguments)) return call;
        StringHashInsert(CalledNames, name->text, const_cast<char *>(name->text));
    }
    return new_index_node(name->text, is_variable ? VARIABLE_INDEX : FUNCTION_INDEX, arguments);
}
