// Scopes and their symbols.
#include <assert.h>
#include <string.h>

#include <algorithm>
#include <utility>

#include "support/allocation.h"
#include "syntax/library/library_table.h"
#include "syntax/names/assigned_values.h"
#include "syntax/names/clear_words.h"
#include "syntax/names/name_walk.h"
#include "syntax/scan/class_table.h"
#include "syntax/scan/spellings.h"

/* A variable or function around an anonymous function that is named in it. */
struct Capture {
    Symbol *symbol;
    Capture *next;
    uint32_t mark_before; /* the symbol's, for the anonymous function around */
};

namespace {

// Flags that reading the function of a name brings: those that tell about the call.
uint32_t special_flags(const char *name) {
    uint32_t traits = spelling_of(name)->traits;
    uint32_t flags = 0;
    if (traits & ASKS_INPUTS) flags |= READS_NARGIN;
    if (traits & ASKS_OUTPUTS) flags |= READS_NARGOUT;
    if (traits & ASKS_PRESENCE) flags |= ASKS_EXIST;
    return flags;
}

void append_symbol(Scope *scope, Symbol *symbol) {
    (scope->last_symbol ? scope->last_symbol->next : scope->first_symbol) = symbol;
    scope->last_symbol = symbol;
}

Symbol *bound_symbol(const char *name) { return spelling_of(name)->bound; }

// The name stands for it from here on.
[[gnu::noinline]] Symbol *new_symbol(Scope *scope, const char *name) {
    Symbol *symbol = AllocRecord<Symbol>();
    *symbol = {};
    symbol->name = name;
    symbol->scope = scope;
    symbol->around = std::exchange(spelling_of(name)->bound, symbol);
    append_symbol(scope, symbol);
    return symbol;
}

// A symbol of the innermost scope itself.
Symbol *own_symbol(NameWalk *walk, Node *name) {
    assert(name->kind == NODE_NAME);
    Symbol *symbol = bound_symbol(name->text);
    if (!symbol || symbol->scope != walk->scope) symbol = new_symbol(walk->scope, name->text);
    name->symbol = symbol;
    return symbol;
}

void capture(Scope *anonymous, Symbol *symbol) {
    assert(symbol->scope != anonymous);
    if (symbol->mark == anonymous->number) return;
    Capture *cell = AllocRecord<Capture>();
    *cell = {symbol, nullptr, symbol->mark};
    symbol->mark = anonymous->number;
    (anonymous->last_capture ? anonymous->last_capture->next : anonymous->captures) = cell;
    anonymous->last_capture = cell;
}

bool is_anonymous(const Scope *scope) { return scope->owner->kind == NODE_ANONYMOUS; }

bool has_name(const Node *node, const char *name) {
    return node->kind == NODE_NAME && strcmp(node->text, name) == 0;
}

void declare_outputs(NameWalk *walk, Node *outputs) {
    for (Node *output = first_child(outputs); output; output = output->next) {
        Symbol *symbol = own_symbol(walk, output);
        symbol->flags |= SYMBOL_OUTPUT;
        if (output->next || !has_name(output, "varargout")) continue;
        walk->scope->flags |= HAS_VARARGOUT;
        symbol->flags |= SYMBOL_ASSIGNED | SYMBOL_OTHER_VALUE;
        note_whole_set(&walk->sets, symbol);
    }
}

void declare_parameter(NameWalk *walk, Node *parameter) {
    Scope *scope = walk->scope;
    if (!parameter->next && has_name(parameter, "varargin")) {
        scope->flags |= HAS_VARARGIN;
        Symbol *symbol = own_symbol(walk, parameter);
        symbol->flags |= SYMBOL_ASSIGNED | SYMBOL_OTHER_VALUE;
        note_whole_set(&walk->sets, symbol);
        return;
    }
    scope->parameters++;
    if (parameter->kind == NODE_TILDE) return;
    Node *name = parameter->kind == NODE_DEFAULT ? parameter->first_child : parameter;
    Symbol *symbol = own_symbol(walk, name);
    symbol->flags |= SYMBOL_PARAMETER;
    symbol->position = scope->parameters;
}

void append_global(Scope *scope, Symbol *symbol) {
    SymbolCell *cell = AllocRecord<SymbolCell>();
    *cell = {symbol, nullptr};
    (scope->last_global ? scope->last_global->next : scope->globals) = cell;
    scope->last_global = cell;
}

// Once for each function, unless it has been captured since.
void add_global(Scope *scope, Symbol *symbol) {
    if (symbol->mark == scope->number) return;
    symbol->mark = scope->number;
    append_global(scope, symbol);
}

// What is global around a nested function is declared in it too.
void note_sharing(Scope *nested, Symbol *symbol) {
    symbol->flags |= SYMBOL_SHARED;
    if (symbol->flags & (SYMBOL_GLOBAL | SYMBOL_PERSISTENT)) add_global(nested, symbol);
}

}  // namespace

void append_cell(NodeCell **first, NodeCell **last, Node *node) {
    NodeCell *cell = AllocRecord<NodeCell>();
    *cell = {node, nullptr};
    (*last ? (*last)->next : *first) = cell;
    *last = cell;
}

Scope *new_scope(Scope *outer, Node *owner) {
    Scope *scope = AllocRecord<Scope>();
    *scope = {};
    scope->outer = outer;
    scope->owner = owner;
    return scope;
}

void declare_header(NameWalk *walk, Node *outputs, Node *parameters) {
    if (outputs) declare_outputs(walk, outputs);
    parameters->scope = walk->scope;
    for (Node *parameter = parameters->first_child; parameter; parameter = parameter->next)
        declare_parameter(walk, parameter);
}

void leave_scope(const Scope *scope) {
    for (const Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        spelling_of(symbol->name)->bound = symbol->around;
}

[[gnu::noinline]] static Symbol *mention_elsewhere(NameWalk *walk, const char *name,
                                                   Symbol *symbol) {
    if (!symbol) symbol = new_symbol(walk->function, name);
    const Scope *owner = symbol->scope;
    if (owner != walk->scope && is_anonymous(walk->scope)) {
        capture(walk->scope, symbol);
        symbol->flags |= SYMBOL_CAPTURED;
    }
    if (owner != walk->function && !is_anonymous(owner)) note_sharing(walk->function, symbol);
    if (walk->in_script) symbol->flags |= SYMBOL_IN_SCRIPT;
    return symbol;
}

// Most are those of a function itself and have been named before.
static Symbol *mention_text(NameWalk *walk, const char *name) {
    Symbol *symbol = bound_symbol(name);
    bool is_plain = symbol && symbol->scope == walk->scope && walk->scope == walk->function;
    return is_plain && !walk->in_script ? symbol : mention_elsewhere(walk, name, symbol);
}

Symbol *mention(NameWalk *walk, Node *name) {
    assert(is_named(name));
    name->symbol = mention_text(walk, name->text);
    name->symbol->last_named = name;
    return name->symbol;
}

void read_name(NameWalk *walk, Node *name) {
    constexpr uint32_t SET = SYMBOL_ASSIGNED | SYMBOL_CHANGED;
    Symbol *symbol = mention(walk, name);
    symbol->flags |= symbol->flags & SET ? SYMBOL_READ : SYMBOL_READ | SYMBOL_READ_FIRST;
    walk->scope->flags |= special_flags(name->text);
    note_unseen_uses(&walk->givings, name);
    note_reading(&walk->loops, symbol);
    note_set_reading(symbol);
}

static bool is_function_expression(const Node *value) {
    while (value && value->kind == NODE_PARENS) value = value->first_child;
    return value && (value->kind == NODE_HANDLE || value->kind == NODE_ANONYMOUS);
}

static void note_outer_setting(NameWalk *walk, Node *name) {
    constexpr uint32_t KNOWN = SYMBOL_SET_INSIDE | SYMBOL_GLOBAL | SYMBOL_PERSISTENT;
    Symbol *symbol = name->symbol;
    Scope *scope = walk->function;
    if (symbol->scope == scope || (symbol->flags & KNOWN)) return;
    symbol->flags |= SYMBOL_SET_INSIDE;
    append_cell(&scope->settings, &scope->last_setting, name);
}

void note_set(NameWalk *walk, Node *name) {
    note_outer_setting(walk, name);
    if (name->symbol->first_set == 0) name->symbol->first_set = end_of(name);
}

// Whether statements in front may have set variables that the walk has not seen.
static bool may_hide_variables(const NameWalk *walk) {
    if (walk->finders.is_prompt || walk->in_script || walk->function->creator) return true;
    for (const BareName *bare = walk->bare_names; bare && walk->finders.script; bare = bare->next)
        if (!is_variable(bare->name->symbol) && walk->finders.script(bare->name)) return true;
    return false;
}

static bool names_function(const NameWalk *walk, const Node *name) {
    return library_result(name->text) || (walk->finders.function && walk->finders.function(name));
}

void begin_variable(NameWalk *walk, const Node *name) {
    constexpr uint32_t OTHERS =
        SYMBOL_VARIABLE | SYMBOL_SHARED | SYMBOL_HAS_BRACES | SYMBOL_IS_INDEXED;
    Symbol *before = bound_symbol(name->text);
    if (!before || before->scope != walk->scope || walk->scope != walk->function) return;
    if (!(before->flags & SYMBOL_READ_FIRST) || (before->flags & OTHERS)) return;
    if (before->fields || before->definition || walk->loops.innermost) return;
    if (may_hide_variables(walk) || !names_function(walk, name)) return;
    Symbol *symbol = new_symbol(walk->function, before->name);
    symbol->around = before->around;
    symbol->flags |= SYMBOL_CALLED;  // so that the host has another name for it
}

static Symbol *set_symbol(NameWalk *walk, Node *name) {
    begin_variable(walk, name);
    Symbol *symbol = mention(walk, name);
    note_set(walk, name);
    return symbol;
}

void set_name(NameWalk *walk, Node *name, const Node *value) {
    constexpr uint32_t USED = SYMBOL_READ | SYMBOL_ASSIGNED | SYMBOL_CHANGED;
    Symbol *symbol = set_symbol(walk, name);
    if (symbol->position > 0 && !(symbol->flags & USED)) symbol->flags |= SYMBOL_MAY_BE_MISSING;
    if (!(symbol->flags & USED)) symbol->set_in = walk->block;
    symbol->flags |= SYMBOL_ASSIGNED;
    if (!is_function_expression(value)) symbol->flags |= SYMBOL_OTHER_VALUE;
    note_value(symbol, value ? VALUE_WHOLE : VALUE_UNKNOWN, value);
    note_setting(&walk->loops, symbol);
    note_whole_set(&walk->sets, symbol);
}

void change_name(NameWalk *walk, Node *name) {
    Symbol *symbol = set_symbol(walk, name);
    symbol->flags |= SYMBOL_CHANGED;
    note_change(&walk->loops, symbol);
    note_part_set(&walk->sets, symbol);
}

static void clear_name(NameWalk *walk, const Node *word) {
    Symbol *symbol = mention_text(walk, intern(word->text));
    note_setting(&walk->loops, symbol);
    walk->function->flags |= NAMES_VARIABLES;
}

static bool is_name(const char *text) {
    if (class_of(*text) != BYTE_LETTER) return false;
    while (is_word(*text)) text++;
    return !*text;
}

void note_clearing(NameWalk *walk, const Node *statement) {
    ClearWords words = clear_words(statement);
    if (!words.name || !words.is_known) return;
    if (means_all(words.first) || !is_name(words.first->text))
        walk->function->last_clear = ++walk->loops.clock;
    for (const Node *word = words.first; word; word = word->next)
        if (is_name(word->text)) clear_name(walk, word);
}

void declare_name(NameWalk *walk, Node *name, SymbolFlag flag) {
    Symbol *symbol = mention(walk, name);
    symbol->flags |= flag;
    add_global(walk->function, symbol);
}

void pass_captures(NameWalk *walk, Scope *anonymous) {
    for (Capture *cell = anonymous->captures; cell; cell = cell->next) {
        cell->symbol->mark = cell->mark_before;
        if (is_anonymous(walk->scope) && cell->symbol->scope != walk->scope)
            capture(walk->scope, cell->symbol);
    }
}

Scope *scope_of(const Node *node) {
    assert(node->kind == NODE_FUNCTION || node->kind == NODE_ANONYMOUS || node->kind == NODE_FILE);
    const Node *holder = node->kind == NODE_FILE ? node : node->first_child;
    while (holder->kind != NODE_FILE && holder->kind != NODE_PARAMETERS) holder = holder->next;
    return holder->scope;
}

bool holds_function(const Symbol *symbol) {
    constexpr uint32_t OTHERS =
        SYMBOL_OTHER_VALUE | SYMBOL_PARAMETER | SYMBOL_CHANGED | SYMBOL_GLOBAL | SYMBOL_PERSISTENT;
    return (symbol->flags & SYMBOL_ASSIGNED) && !(symbol->flags & OTHERS);
}

bool is_copied_parameter(const Symbol *symbol) {
    constexpr uint32_t CHANGING = SYMBOL_ASSIGNED | SYMBOL_CHANGED | SYMBOL_OUTPUT;
    return symbol->position > 0 && (symbol->flags & CHANGING);
}

bool owns_given_value(const Symbol *parameter) {
    bool may_differ = parameter->depth_changed > 0 || (parameter->flags & SYMBOL_OUTPUT);
    return may_differ && (parameter->flags & SYMBOL_GIVEN_IS_OWN);
}

void index_names(Scope *scope) {
    if (!(scope->flags & (ASKS_EXIST | NAMES_VARIABLES))) return;
    for (Symbol *symbol = scope->first_symbol; symbol; symbol = symbol->next)
        enter_name(&scope->names, symbol->name, symbol);
}

static Symbol *find_own_symbol(const Scope *scope, const char *name) {
    if (scope->names.size) return static_cast<Symbol *>(find_name(&scope->names, name));
    Symbol *symbol = scope->first_symbol;
    while (symbol && symbol->name != name) symbol = symbol->next;
    return symbol;
}

Symbol *find_symbol(const Scope *scope, const char *name) {
    for (; scope; scope = scope->outer)
        if (Symbol *symbol = find_own_symbol(scope, name)) return symbol;
    return nullptr;
}

bool needs_binding(const Scope *anonymous, const Symbol *symbol) {
    if (symbol->flags & (SYMBOL_GLOBAL | SYMBOL_PERSISTENT)) return true;
    if (symbol->flags & SYMBOL_SHARED) return symbol->last_change > 0;
    uint32_t last_change = std::max(symbol->last_change, symbol->scope->last_clear);
    return last_change > anonymous->moment;
}

const Capture *next_captured(const Scope *anonymous, const Capture *capture) {
    capture = capture ? capture->next : anonymous->captures;
    while (capture && !is_variable(capture->symbol)) capture = capture->next;
    return capture;
}

Symbol *symbol_of(const Capture *capture) { return capture->symbol; }

// The name that a statement begins with, if it does.
static const Node *leading_name(const Node *statement) {
    const Node *node = statement->first_child;
    if (node->kind == NODE_REFERENCE) node = node->first_child;
    return node->kind == NODE_NAME ? node : nullptr;
}

static bool creates_variables(const Node *statement) {
    const Node *name = leading_name(statement);
    return name && is_known_to(name->text, SETS_VARIABLES | RUNS_TEXT);
}

static void note_word(Scope *scope, const char *text, Node *command) {
    if (!*text) return;
    const char *word = intern(text);
    if (!find_name(&scope->words, word)) enter_name(&scope->words, word, command);
}

void note_creator(NameWalk *walk, Node *statement) {
    Scope *scope = walk->function;
    if (!scope->creator && creates_variables(statement)) scope->creator = statement;
    if (statement->kind != NODE_COMMAND) return;
    for (const Node *word = second_child(statement); word; word = word->next)
        note_word(scope, word->text, statement);
}

// The earlier one, of those that stand in front of offset.
static const Node *choose_creator(const Node *a, const Node *b, uint32_t offset) {
    if (!a || a->offset >= offset) a = nullptr;
    if (!b || b->offset >= offset) b = nullptr;
    if (!a || !b) return a ? a : b;
    return a->offset < b->offset ? a : b;
}

const Node *creator_of(const Scope *scope, const char *name, uint32_t offset) {
    for (; scope; scope = scope->outer) {
        const Node *command = static_cast<const Node *>(find_name(&scope->words, name));
        const Node *found = choose_creator(scope->creator, command, offset);
        if (found) return found;
    }
    return nullptr;
}

static bool may_be_created(const Scope *scope, const char *name) {
    for (; scope; scope = scope->outer) {
        const Node *command = static_cast<const Node *>(find_name(&scope->words, name));
        if (scope->creator || (command && !clear_words(command).name)) return true;
    }
    return false;
}

// Variables that others may set, or that commands may create, are not known to be there or not.
void note_asked_variables(const Scope *scope) {
    constexpr uint32_t SET_ELSEWHERE =
        SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    if (scope->owner->kind != NODE_FUNCTION) return;
    for (const AskedName *asked = scope->asked; asked; asked = asked->next) {
        Symbol *symbol = find_own_symbol(scope, intern(asked->text->text));
        if (!symbol || !is_variable(symbol) || symbol->position > 0) continue;
        if ((symbol->flags & SET_ELSEWHERE) || may_be_created(scope, symbol->name)) continue;
        uint32_t place = asked->in_loop ? UINT32_MAX : asked->text->offset;
        symbol->last_asked = std::max(symbol->last_asked, place);
    }
}
