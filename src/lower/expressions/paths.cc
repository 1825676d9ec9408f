// The text of a reference.
#include "lower/expressions/paths.h"

#include <assert.h>
#include <string.h>

#include "lower/calls/calls.h"
#include "lower/calls/plain_calls.h"
#include "lower/calls/requested_results.h"
#include "lower/expressions/earlier_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/expressions/operands.h"
#include "lower/lines/gaps.h"
#include "lower/lines/pieces.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "syntax/values/values.h"
#include "translate/indices.h"
#include "translate/text_forms.h"

namespace {

// Space for size more bytes and a NUL; long paths do not copy their beginning at each selector.
char *reserve(Path *path, size_t size) {
    if (path->spare < size) {
        size_t spare = path->is_own ? path->length + size : size;
        char *text = static_cast<char *>(AllocKept(path->length + spare + 1));
        memcpy(text, path->text, path->length + 1);
        path->text = text;
        path->spare = spare;
        path->is_own = true;
    }
    assert(path->spare >= size);
    path->spare -= size;
    return const_cast<char *>(path->text) + path->length;
}

void append_text(Path *path, const char *text) {
    size_t length = strlen(text);
    memcpy(reserve(path, length), text, length + 1);
    path->length += length;
}

void begin_selector(Path *path, bool is_index) {
    name_path(path);
    path->has_index = is_index;
}

const char *field_name(const Node *field) {
    const char *written = written_field(field->text);
    if (written != field->text) report_at(RENAMED_FIELD, field, {field->text, written});
    return written;
}

bool needs_base(const vExpr *arguments) {
    for (; arguments; arguments = arguments->next)
        if (is_range(arguments->item) && !arguments->item->range->stop) return true;
    return false;
}

}  // namespace

Path begin_path(const char *text, bool is_call) {
    return {text, strlen(text), 0, false, is_call, false, false, nullptr, 0};
}

namespace {

constexpr size_t LONGEST_REPEATED = 400;

const char *put_temporary(const char *text) {
    const char *name = new_temporary();
    put_line("%s := %s;", {name, text});
    return name;
}

// The text by a temporary. One that has the value of its beginning stands for that.
const char *name_text(Path *path) {
    const char *text = path->text;
    if (path->named) text = form_text("%s%s", {path->named, text + path->named_length});
    path->named = put_temporary(text);
    path->named_length = path->length;
    return path->named;
}

}  // namespace

void name_path(Path *path) {
    if (path->is_call) *path = begin_path(put_temporary(path->text), false);
}

void name_repeated_path(Path *path) {
    path->is_call |= path->length > LONGEST_REPEATED;
    name_path(path);
}

void add_field(Path *path, const Node *field) {
    assert(field->kind == NODE_FIELD);
    begin_selector(path, false);
    append_text(path, ":-");
    append_text(path, field_name(field));
    path->has_field = true;
}

namespace {

void append_index_of(const char *base, Path *path, const vExpr *values) {
    vExpr *arguments = plain_arguments(values);
    Index index = {base, VARIABLE_INDEX, count_vExpr(arguments)};
    size_t size = arguments_size(base, arguments) + strlen("()");
    char *start = reserve(path, size);
    Writer to = {start, start + size + 1};
    write_text(&to, "(");
    write_arguments(&to, &index, arguments);
    write_text(&to, ")");
    size_t written = static_cast<size_t>(to.at - start);
    path->length += written;
    path->spare += size - written;
    free_vExpr(arguments);
}

// The text stands for each end, so that it would double with each index that has one: where it is
// long, a variable does.
bool repeats_too_much(const Path *path, const Node *selector) {
    return path->length > LONGEST_REPEATED && has_end_inside(selector);
}

}  // namespace

void append_index(Path *path, const vExpr *arguments) {
    const char *base = needs_base(arguments) ? KeepText(path->text, path->length) : path->text;
    append_index_of(base, path, arguments);
}

void add_index(Path *path, const Node *selector, bool may_be_call) {
    assert(selector->kind == NODE_ARGUMENTS || selector->kind == NODE_BRACES);
    begin_selector(path, true);
    bool is_long = repeats_too_much(path, selector);
    const char *base = is_long ? name_text(path) : path->text;
    ExprList arguments = lower_index(selector, base, may_be_call);
    if (Lowering.is_read_too) {
        LinesEnd end = end_of_lines();
        name_calls(&end, selector->first_child, arguments.first);
    }
    if (is_long) {
        append_index_of(base, path, arguments.first);
    } else {
        append_index(path, arguments.first);
    }
    free_vExpr(arguments.first);
}

void add_dynamic_field(Path *path, const Node *selector) {
    assert(selector->kind == NODE_DYNAMIC_FIELD);
    begin_selector(path, false);
    const mExpr *name = lower_expression(selector->first_child);
    const mExpr *call = new_keyword_call("getfield", {path->text, name->text});
    *path = begin_path(call->text, true);
}

void add_selector(Path *path, const Node *selector, bool may_be_call) {
    switch (selector->kind) {
        case NODE_FIELD: return add_field(path, selector);
        case NODE_DYNAMIC_FIELD: return add_dynamic_field(path, selector);
        default: return add_index(path, selector, may_be_call);
    }
}

namespace {

// What the path is built from.
struct Selectors {
    const Node *next;
    const Node *end;
};

bool is_next(const Selectors *selectors, NodeKind kind) {
    return selectors->next != selectors->end && selectors->next->kind == kind;
}

const Node *take(Selectors *selectors) {
    assert(selectors->next && selectors->next != selectors->end);
    const Node *selector = selectors->next;
    selectors->next = selector->next;
    return selector;
}

// A function of a package, name.name(arguments), is offered to the host like any other. Answers
// whether the host has it.
bool add_member_call(Path *path, Selectors *selectors) {
    while (is_next(selectors, NODE_FIELD)) add_field(path, take(selectors));
    if (!path->has_field || !is_next(selectors, NODE_ARGUMENTS)) return false;
    const Node *arguments = take(selectors);
    bool is_index = false;
    ExprList values = lower_arguments(arguments, path->text, &is_index);
    int32_t results = requested_results(arguments);
    const mExpr *answer = is_index ? nullptr : ask_host(path->text, values.first, results);
    if (answer) {
        *path = begin_path(answer->text, true);
    } else {
        begin_selector(path, true);
        append_index(path, values.first);
    }
    free_vExpr(values.first);
    return answer != nullptr;
}

// Whether a member is called, name.name(arguments).
bool call_members(Selectors selectors) {
    if (!is_next(&selectors, NODE_FIELD)) return false;
    while (is_next(&selectors, NODE_FIELD)) take(&selectors);
    return is_next(&selectors, NODE_ARGUMENTS);
}

constexpr int DEEPEST_PACKAGE = 16;

// The name with its fields, if that is a function of a package that has a file; the selectors
// after it are left. Else null.
const Node *take_package_function(const Node *name, Selectors *selectors) {
    Selectors rest = *selectors;
    for (int depth = 0; depth < DEEPEST_PACKAGE && is_next(&rest, NODE_FIELD); depth++) {
        name = member_name(name, take(&rest));
        if (!is_function_of_file(name)) continue;
        *selectors = rest;
        return name;
    }
    return nullptr;
}

// What a path begins with. Small, as expressions nest: so are the frames of all that follow.
struct Base {
    const char *text;
    bool is_call;
    bool is_package;  // perhaps: nobody has looked for it
};

Base call_base(const Node *function, Selectors *selectors) {
    bool has_arguments = is_next(selectors, NODE_ARGUMENTS);
    const mExpr *call =
        has_arguments ? lower_call(function, take(selectors)) : lower_name(function);
    return {call->text, true, false};
}

Base variable_base(const Node *name, Selectors *selectors) {
    const char *text = written_name(name->symbol);
    if (!is_next(selectors, NODE_ARGUMENTS) || !holds_function(name->symbol))
        return {text, false, false};
    return {new_procedure_call(text, name, take(selectors))->text, true, false};
}

// The host may know the function of a package that has no file.
Base package_base(const Node *name) {
    const char *answer = host_name(name);
    return {answer ? answer : uncalled_name(name), answer && strchr(answer, '('), !answer};
}

// A name that is no variable, called or not.
Base function_base(const Node *name, Selectors *selectors) {
    if (is_next(selectors, NODE_ARGUMENTS)) return call_base(name, selectors);
    if (const Node *function = take_package_function(name, selectors))
        return call_base(function, selectors);
    if (call_members(*selectors) && !own_function(name) && !is_function_of_file(name))
        return package_base(name);
    const char *text = lower_function_name(name)->text;
    return {text, strchr(text, '(') || file_with_procedure(text), false};
}

Base base_of(const Node *base, Selectors *selectors) {
    if (base->kind != NODE_NAME) return {lower_expression(base)->text, true, false};
    return is_variable(base->symbol) ? variable_base(base, selectors)
                                     : function_base(base, selectors);
}

bool is_function(const Node *base) { return base->kind == NODE_NAME && !is_variable(base->symbol); }

// The members of a package, perhaps.
[[gnu::noinline]] void add_members(Path *path, const Node *name, Selectors *selectors,
                                   bool is_package) {
    const Node *member = is_next(selectors, NODE_FIELD) ? selectors->next : nullptr;
    if (add_member_call(path, selectors)) return note_piece(name, CALL_OF_HOST);
    if (is_package) called_function(name);
    if (member) report_at(PACKAGE_MEMBER, name, {name->text, name->text, member->text});
}

Path begin_value(const Node *base, Selectors *selectors, bool *is_package) {
    Base begin = base_of(base, selectors);
    *is_package = begin.is_package;
    return begin_path(begin.text, begin.is_call);
}

}  // namespace

Path value_path(const Node *reference, const Node *end) {
    const Node *base = without_parens(reference->first_child);
    Selectors selectors = {reference->first_child->next, end};
    bool is_package = false;
    Path path = base->kind == NODE_REFERENCE ? value_path(base, nullptr)
                                             : begin_value(base, &selectors, &is_package);
    if (is_function(base) && !path.is_call) add_members(&path, base, &selectors, is_package);
    const Node *before = reference->first_child;
    while (before->next != selectors.next) before = before->next;
    for (; selectors.next != end; before = before->next) {
        const Node *selector = take(&selectors);
        path.is_call |= repeats_too_much(&path, selector);
        add_selector(&path, selector, may_be_called(before));
    }
    return path;
}
