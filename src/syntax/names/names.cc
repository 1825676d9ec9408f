// The walk that settles names: what each statement and expression does with the names in it.
//
// It goes once over the function, in source order, nested functions after the one around them:
// only when that has been walked is it known which names they share. Scripts that bare names call
// are walked after the statements of their caller, as its statements tell which names are
// variables and call nothing.
#include "syntax/names/names.h"

#include <string.h>

#include <algorithm>

#include "support/allocation.h"
#include "syntax/names/assigned_values.h"
#include "syntax/names/field_uses.h"
#include "syntax/names/later_uses.h"
#include "syntax/names/name_walk.h"
#include "syntax/names/part_changes.h"
#include "syntax/scan/spellings.h"

namespace {

void walk_node(NameWalk *walk, Node *node);

void read_value(NameWalk *walk, Node *name) {
    read_name(walk, name);
    name->symbol->flags |= SYMBOL_IS_VALUE;
}

// Most are numbers, in a table, or names.
[[gnu::noinline]] void walk_nodes(NameWalk *walk, Node *first, const Node *end = nullptr) {
    for (; first != end; first = first->next) {
        if (first->kind == NODE_NAME)
            read_value(walk, first);
        else if (first->kind != NODE_NUMBER)
            walk_node(walk, first);
    }
}

void note_bare_name(NameWalk *walk, Node *name) {
    BareName *bare = AllocRecord<BareName>();
    *bare = {name, nullptr};
    (walk->last_bare ? walk->last_bare->next : walk->bare_names) = bare;
    walk->last_bare = bare;
}

void walk_expression_statement(NameWalk *walk, Node *statement) {
    Node *expression = statement->first_child;
    if (expression->kind == NODE_NAME) {
        note_bare_name(walk, expression);
        note_clearing(walk, statement);
        return read_name(walk, expression);
    }
    note_creator(walk, statement);
    note_clearing(walk, statement);
    walk_node(walk, expression);
}

bool is_index(const Node *selector) {
    if (selector->kind != NODE_ARGUMENTS) return true;
    for (const Node *argument = selector->first_child; argument; argument = argument->next)
        if (argument->kind == NODE_COLON || argument->kind == NODE_END) return true;
    return false;
}

void walk_command(NameWalk *walk, Node *command) {
    note_creator(walk, command);
    note_clearing(walk, command);
    read_name(walk, command->first_child);
    command->first_child->symbol->flags |= SYMBOL_CALLED;
}

void note_asking(NameWalk *walk, const Node *asked) {
    AskedName *name = AllocRecord<AskedName>();
    *name = {asked, walk->loops.innermost != nullptr, walk->function->asked};
    walk->function->asked = name;
    Symbol *symbol = spelling_of(intern(asked->text))->bound;
    if (!symbol || symbol->position == 0) return;
    symbol->flags |= SYMBOL_MAY_BE_MISSING;
    if (symbol->first_set == 0 && !walk->loops.innermost) return;
    symbol->last_asked =
        walk->loops.innermost ? UINT32_MAX : std::max(symbol->last_asked, asked->offset);
}

// s.f = {...}, s.a.f = {...}
void note_cell_value(const Node *base, const Node *value) {
    if (!value || value->kind != NODE_CELL) return;
    const Node *field = base->next;
    while (field->next) field = field->next;
    if (field->kind == NODE_FIELD) note_cell_field(base->symbol, field->text);
}

// s.f{k}, s.a.f{k}
void note_braces(const Node *base) {
    for (const Node *field = base->next; field->next; field = field->next)
        if (field->kind == NODE_FIELD && field->next->kind == NODE_BRACES)
            note_cell_field(base->symbol, field->text);
}

void note_cell_question(const Node *base) {
    if (!is_known_to(base->text, TELLS_CELLS) || base->next->kind != NODE_ARGUMENTS) return;
    const Node *asked = base->next->first_child;
    if (asked && asked->kind == NODE_NAME) asked->symbol->flags |= SYMBOL_CELL_ASKED;
}

// exist('x') of a parameter: it may not have been given.
[[gnu::noinline]] void walk_reference(NameWalk *walk, Node *reference) {
    Node *base = reference->first_child;
    if (base->kind != NODE_NAME) return walk_nodes(walk, base);
    read_name(walk, base);
    if (is_index(base->next)) base->symbol->flags |= SYMBOL_IS_VALUE;
    if (is_index(base->next) && base->next->kind == NODE_ARGUMENTS)
        base->symbol->flags |= SYMBOL_IS_INDEXED;
    if (base->next->kind == NODE_BRACES) base->symbol->flags |= SYMBOL_HAS_BRACES;
    if (base->next->kind == NODE_FIELD) note_field_use(base->symbol, base->next->text);
    note_braces(base);
    walk_nodes(walk, base->next);
    note_cell_question(base);
    if (!is_known_to(base->text, ASKS_PRESENCE)) return;
    const Node *asked = base->next->first_child;
    if (base->next->kind != NODE_ARGUMENTS || !asked || asked->kind != NODE_STRING) return;
    if (*asked->text) note_asking(walk, asked);
}

// A target is named before its value, so that it counts as the first to appear, and set after it.
void name_target(NameWalk *walk, Node *target) {
    Node *base = target->kind == NODE_REFERENCE ? target->first_child : target;
    if (base->kind == NODE_NAME) mention(walk, base);
    if (base != target) walk_nodes(walk, base->next);
}

// A field that is set before anything is read makes a struct of a parameter that is not given.
void note_field(const Node *base) {
    constexpr uint32_t USED = SYMBOL_READ | SYMBOL_ASSIGNED | SYMBOL_CHANGED;
    Symbol *symbol = base->symbol;
    bool is_field = base->next->kind == NODE_FIELD || base->next->kind == NODE_DYNAMIC_FIELD;
    if (symbol->position > 0 && is_field && !(symbol->flags & USED))
        symbol->flags |= SYMBOL_MAY_BE_MISSING;
}

void set_target(NameWalk *walk, Node *target, const Node *value) {
    if (target->kind == NODE_NAME) {
        set_name(walk, target, value);
        target->symbol->fields = nullptr;  // those of another value
        return;
    }
    if (target->kind != NODE_REFERENCE) return;
    Node *base = target->first_child;
    if (base->kind != NODE_NAME) return;
    note_field(base);
    note_braces(base);
    note_cell_value(base, value);
    note_element(mention(walk, base), target, value);
    if (base->next->kind == NODE_FIELD) note_field_use(base->symbol, base->next->text);
    change_name(walk, base);
}

// One of several targets.
void set_result(NameWalk *walk, Node *target, const Node *value) {
    if (target->kind != NODE_NAME) return set_target(walk, target, nullptr);
    set_name(walk, target, nullptr);
    target->symbol->values->node = value;
    target->symbol->values->kind = VALUE_RESULT;
}

void note_assigned_name(NameWalk *walk, const Node *assignment) {
    const OpenLoop *open = walk->loops.innermost;
    const Node *loop = open ? open->loop : nullptr;
    while (open && open->outer) open = open->outer;
    note_giving(&walk->givings, assignment, loop, open ? open->loop : nullptr);
}

void walk_assignment(NameWalk *walk, Node *assignment) {
    Node *target = assignment->first_child;
    bool is_plain = assignment->op == OPERATOR_NONE;
    name_target(walk, target);
    if (!is_plain && target->kind == NODE_NAME) read_name(walk, target);
    walk_node(walk, target->next);
    if (is_plain) note_assigned_name(walk, assignment);
    set_target(walk, target, is_plain ? target->next : nullptr);
    if (target->kind == NODE_NAME) target->symbol->values->statement = assignment->offset;
}

// Of a list of targets the number is not known.
constexpr int32_t MOST_LISTED = 8;

int32_t count_listed(const Node *target) {
    const Node *last = target->first_child->next;
    while (last->next) last = last->next;
    const Node *range = last->kind == NODE_BRACES ? last->first_child : nullptr;
    if (!range || range->next || range->kind != NODE_RANGE) return MOST_LISTED;
    const Node *stop = range->first_child->next;
    bool is_plain = stop->kind == NODE_NUMBER && !stop->next && strlen(stop->text) == 1;
    return is_plain ? std::min<int32_t>(stop->text[0] - '0', MOST_LISTED) : MOST_LISTED;
}

// How many values a call of a variable is asked for.
void note_results(const Node *value, int32_t targets) {
    const Node *base = value->kind == NODE_REFERENCE ? value->first_child : value;
    if (base->kind == NODE_NAME && base->symbol->results < targets) base->symbol->results = targets;
}

void walk_multi_assignment(NameWalk *walk, Node *assignment) {
    Node *targets = assignment->first_child;
    Node *first = targets->first_child;
    for (Node *target = first; target; target = target->next) name_target(walk, target);
    walk_node(walk, targets->next);
    if (first && !first->next) {
        if (first->kind == NODE_REFERENCE) note_results(targets->next, count_listed(first));
        return set_target(walk, first, targets->next);
    }
    int32_t count = 0;
    for (Node *target = first; target; target = target->next, count++)
        set_result(walk, target, targets->next);
    note_results(targets->next, count);
}

void walk_statements(NameWalk *walk, Node *block) {
    uint32_t outer = walk->loops.block_start;
    const Node *outer_block = walk->block;
    EndedLoop *outer_settings = begin_loop_block(&walk->loops);
    walk->loops.block_start = walk->loops.clock;
    walk->block = block;
    walk_nodes(walk, block->first_child);
    end_loop_block(&walk->loops, outer_settings);
    walk->loops.block_start = outer;
    walk->block = outer_block;
}

void walk_block(NameWalk *walk, Node *block) {
    SetCell *outer = begin_set_block(&walk->sets);
    walk_statements(walk, block);
    end_set_block(&walk->sets, outer);
}

// Its block is the last child.
void walk_branch(NameWalk *walk, const Node *statement, Node *branch, SetBranches *branches) {
    Node *block = branch->first_child;
    for (; block->next; block = block->next) walk_node(walk, block);
    SetCell *outer = begin_set_block(&walk->sets);
    const Giving *before = walk->givings.last;
    const OtherBranches *around = walk->givings.others;
    if (!walk->loops.innermost) {
        OtherBranches *others = AllocRecord<OtherBranches>();
        *others = {end_of(block), end_of(statement), around};
        walk->givings.others = others;
    }
    walk_statements(walk, block);
    walk->givings.others = around;
    end_giving_branch(&walk->givings, before);
    end_set_branch(&walk->sets, outer, branches, block);
}

// if and switch
void walk_branches(NameWalk *walk, Node *statement) {
    SetBranches branches = {};
    const Giving *before = walk->givings.last;
    for (Node *child = statement->first_child; child; child = child->next) {
        bool is_rest = child->kind == NODE_ELSE || child->kind == NODE_OTHERWISE;
        if (is_rest) branches.is_whole = true;
        if (is_rest || child->kind == NODE_BRANCH || child->kind == NODE_CASE)
            walk_branch(walk, statement, child, &branches);
        else
            walk_node(walk, child);
    }
    end_giving_branches(&walk->givings, before);
    end_set_branches(&walk->sets, &branches);
}

void walk_for(NameWalk *walk, Node *loop) {
    Node *target = loop->first_child;
    name_target(walk, target);
    walk_node(walk, target->next);
    bool is_name = target->kind == NODE_NAME;
    if (is_name) {
        begin_variable(walk, target);
        mention(walk, target);
        target->symbol->flags |= SYMBOL_ASSIGNED | SYMBOL_OTHER_VALUE;
        note_set(walk, target);
        note_value(target->symbol, VALUE_LOOP, target->next);
    }
    OpenLoop open;
    begin_loop(&walk->loops, &open, loop, is_name ? target->symbol : nullptr);
    if (is_name)
        note_whole_set(&walk->sets, target->symbol);
    else
        set_target(walk, target, nullptr);
    walk_nodes(walk, target->next->next);
    end_loop(&walk->loops, &open);
}

void walk_while(NameWalk *walk, Node *loop) {
    OpenLoop open;
    begin_loop(&walk->loops, &open, loop, nullptr);
    walk_nodes(walk, loop->first_child);
    end_loop(&walk->loops, &open);
}

// The condition sees what the block has set.
void walk_do(NameWalk *walk, Node *loop) {
    OpenLoop open;
    begin_loop(&walk->loops, &open, loop, nullptr);
    SetCell *outer = begin_set_block(&walk->sets);
    walk_statements(walk, loop->first_child);
    walk_nodes(walk, loop->first_child->next);
    end_set_block(&walk->sets, outer);
    end_loop(&walk->loops, &open);
}

// An error may leave the block anywhere.
void walk_try(NameWalk *walk, Node *statement) {
    uint32_t jump = walk->loops.last_jump;
    walk->loops.last_jump = UINT32_MAX;
    Node *body = statement->first_child;
    SetBranches branches = {};
    branches.is_whole = true;
    SetCell *outer = begin_set_block(&walk->sets);
    walk_statements(walk, body);
    end_set_branch(&walk->sets, outer, &branches, body);
    walk->loops.last_jump = jump;
    outer = begin_set_block(&walk->sets);
    Node *handler = body->next;
    if (has_flag(statement, HAS_IDENTIFIER)) {
        set_name(walk, handler, nullptr);
        handler->symbol->set_in = nullptr;  // only after an error
        handler = handler->next;
    }
    walk_statements(walk, handler);
    end_set_branch(&walk->sets, outer, &branches, handler);
    end_set_branches(&walk->sets, &branches);
}

void walk_declaration(NameWalk *walk, Node *declaration, SymbolFlag flag) {
    for (Node *child = declaration->first_child; child; child = child->next) {
        bool has_value = child->kind == NODE_ASSIGN;
        declare_name(walk, has_value ? child->first_child : child, flag);
        if (has_value) walk_assignment(walk, child);
    }
}

// It may be missing, and is not set where it is given.
void note_default(Symbol *parameter) {
    parameter->flags |= SYMBOL_MAY_BE_MISSING | SYMBOL_GIVEN_COUNTS;
}

// The default value of a parameter is an assignment.
void walk_argument(NameWalk *walk, Node *argument) {
    Node *target = argument->first_child;
    name_target(walk, target);
    bool is_option = target->kind == NODE_REFERENCE && target->first_child->kind == NODE_NAME;
    if (is_option) target->first_child->symbol->flags |= SYMBOL_OPTIONS | SYMBOL_CHANGED;
    if (!target->next) return;
    if (target->kind == NODE_NAME) note_default(target->symbol);
    SetCell *outer = begin_set_block(&walk->sets);
    walk_nodes(walk, target->next);
    set_target(walk, target, nullptr);
    end_set_block(&walk->sets, outer);
}

void walk_arguments(NameWalk *walk, Node *block) {
    if (has_flag(block, FOR_OUTPUTS)) return;
    for (Node *argument = block->first_child; argument; argument = argument->next)
        if (argument->kind == NODE_ARGUMENT) walk_argument(walk, argument);
}

[[gnu::noinline]] void walk_anonymous(NameWalk *walk, Node *anonymous) {
    Scope *outer = walk->scope;
    Scope *scope = new_scope(outer, anonymous);
    const LoopWalk *loops = &walk->loops;
    bool is_repeated = walk->in_script || loops->innermost;
    scope->moment = is_repeated ? loops->loop_start : loops->clock;
    scope->number = ++walk->anonymous_count;
    walk->scope = scope;
    declare_header(walk, nullptr, anonymous->first_child);
    walk_nodes(walk, anonymous->first_child->next);
    leave_scope(scope);
    walk->scope = outer;
    pass_captures(walk, scope);
}

// A nested function waits until the function around it has been walked.
void note_nested(NameWalk *walk, Node *function, Node *name) {
    if (walk->in_script) return;
    Scope *scope = walk->function;
    append_cell(&scope->nested, &scope->last_nested, function);
    mention(walk, name)->definition = function;
}

[[gnu::noinline]] void walk_text(NameWalk *walk, const Node *text) {
    if (is_colon(text)) walk->function->flags |= HAS_COLON_TEXT;
}

// What is no expression.
[[gnu::noinline]] void walk_statement(NameWalk *walk, Node *node) {
    switch (node->kind) {
        case NODE_EXPRESSION: return walk_expression_statement(walk, node);
        case NODE_ASSIGN: return walk_assignment(walk, node);
        case NODE_MULTI_ASSIGN: return walk_multi_assignment(walk, node);
        case NODE_COMMAND: return walk_command(walk, node);
        case NODE_FOR: return walk_for(walk, node);
        case NODE_WHILE: return walk_while(walk, node);
        case NODE_DO_UNTIL: return walk_do(walk, node);
        case NODE_IF:
        case NODE_SWITCH: return walk_branches(walk, node);
        case NODE_RETURN: return note_set_return(&walk->sets);
        case NODE_TRY: return walk_try(walk, node);
        case NODE_GLOBAL: return walk_declaration(walk, node, SYMBOL_GLOBAL);
        case NODE_PERSISTENT: return walk_declaration(walk, node, SYMBOL_PERSISTENT);
        case NODE_BREAK:
        case NODE_CONTINUE: return note_jump(&walk->loops);
        case NODE_FUNCTION: return note_nested(walk, node, child_of_kind(node, NODE_NAME));
        case NODE_ARGUMENT_BLOCK: return walk_arguments(walk, node);
        case NODE_BLOCK: return walk_block(walk, node);
        default: return walk_nodes(walk, node->first_child);
    }
}

void walk_node(NameWalk *walk, Node *node) {
    if (node->kind > NODE_ANONYMOUS) return walk_statement(walk, node);
    switch (node->kind) {
        case NODE_NAME: return read_value(walk, node);
        case NODE_STRING: return walk_text(walk, node);
        case NODE_HANDLE: mention(walk, node)->flags |= SYMBOL_CALLED; return;
        case NODE_REFERENCE: return walk_reference(walk, node);
        case NODE_ANONYMOUS: return walk_anonymous(walk, node);
        default: return walk_nodes(walk, node->first_child);
    }
}

void walk_defaults(NameWalk *walk, const Node *parameters) {
    for (Node *parameter = parameters->first_child; parameter; parameter = parameter->next) {
        if (parameter->kind != NODE_DEFAULT) continue;
        SetCell *outer = begin_set_block(&walk->sets);
        walk_node(walk, second_child(parameter));
        note_default(parameter->first_child->symbol);
        set_name(walk, parameter->first_child, nullptr);
        end_set_block(&walk->sets, outer);
    }
}

// The statements of a script; functions in its file are none of its caller's.
void walk_script(NameWalk *walk, Node *file) {
    file->scope = walk->function;
    for (Node *child = file->first_child; child; child = child->next)
        if (child->kind != NODE_FUNCTION) walk_node(walk, child);
}

void walk_called_scripts(NameWalk *walk) {
    if (!walk->finders.script) return;
    bool outer = walk->in_script;
    walk->in_script = true;
    for (const BareName *bare = walk->bare_names; bare; bare = bare->next) {
        Symbol *symbol = bare->name->symbol;
        if (is_variable(symbol) || symbol->definition) continue;
        symbol->definition = walk->finders.script(bare->name);
        if (symbol->definition) walk_script(walk, symbol->definition);
    }
    walk->in_script = outer;
}

void walk_function(NameWalk *walk, Node *function);

void walk_nested_functions(NameWalk *walk) {
    for (const NodeCell *cell = walk->function->nested; cell; cell = cell->next)
        walk_function(walk, cell->node);
}

// The names of a function whose scope is the innermost.
void walk_body(NameWalk *walk, Node *function) {
    Node *parameters = child_of_kind(function, NODE_PARAMETERS);
    declare_header(walk, child_of_kind(function, NODE_OUTPUTS), parameters);
    walk_defaults(walk, parameters);
    walk_nodes(walk, parameters->next->first_child);
}

Scope *enter_function(NameWalk *walk, Node *owner) {
    Scope *scope = new_scope(walk->function, owner);
    scope->number = ++walk->anonymous_count;
    walk->scope = walk->function = scope;
    walk->bare_names = walk->last_bare = nullptr;
    return scope;
}

void finish_function(NameWalk *walk) {
    walk_called_scripts(walk);
    walk_nested_functions(walk);
    finish_sets(&walk->sets, walk->function);
    finish_loops(&walk->loops);
    finish_givings(&walk->givings, walk->function);
    index_names(walk->function);
    note_asked_variables(walk->function);
    leave_scope(walk->function);
}

void walk_function(NameWalk *walk, Node *function) {
    NameWalk outer = *walk;
    enter_function(walk, function);
    walk->sets = {};
    walk->loops = {};
    walk->block = nullptr;
    walk->givings = {};
    walk->loops.clock = walk->loops.block_start = outer.loops.clock;
    walk_body(walk, function);
    finish_function(walk);
    outer.loops.clock = walk->loops.clock;
    outer.anonymous_count = walk->anonymous_count;
    *walk = outer;
}

}  // namespace

Scope *settle_function(Node *function, NameFinders finders) {
    NameWalk walk = {};
    walk.finders = finders;
    Scope *scope = enter_function(&walk, function);
    walk_body(&walk, function);
    finish_function(&walk);
    return scope;
}

Scope *settle_script(Node *file, NameFinders finders) {
    NameWalk walk = {};
    walk.finders = finders;
    Scope *scope = enter_function(&walk, file);
    walk_script(&walk, file);
    finish_function(&walk);
    return scope;
}
