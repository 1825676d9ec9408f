// Calls that set or clear variables, or do not return.
#include "syntax/values/effects.h"

#include <string.h>

#include "syntax/spellings.h"
#include "syntax/values/library_values.h"
#include "syntax/values/trace_function.h"

namespace {

NameMap TracedScripts;   // FILE nodes by their addresses: those that may set any variable
NameMap NamedVariables;  // of the function, where a command asks for them
int Forgotten;           // how often all variables have got more possibilities
int OpenScripts;

// A function that runs texts as programs all the time is not followed on and on.
constexpr int MOST_FORGOTTEN = 20;

bool is_one_of(const char *name, const char *const *names) {
    for (; *names; names++)
        if (strcmp(name, *names) == 0) return true;
    return false;
}

bool is_creator(const char *name) {
    static const char *const creators[] = {"load", "assignin", "run",  "source",
                                           "syms", "uiopen",   nullptr};
    return is_one_of(name, creators);
}

bool is_clearing(const char *name) {
    static const char *const clearing[] = {"clear", "clearvars", "clearall", nullptr};
    return is_one_of(name, clearing);
}

const Node *called_name(const Node *expression) {
    const Node *name = expression->kind == NODE_REFERENCE ? expression->first_child : expression;
    return name->kind == NODE_NAME && !is_variable(name->symbol) ? name : nullptr;
}

void add_to_all(Value value) {
    if (++Forgotten > MOST_FORGOTTEN) return give_up_flow();
    for (Symbol *symbol = TracedScope->first_symbol; symbol; symbol = symbol->next)
        if (is_variable(symbol)) set_value(symbol, value_now(symbol) | value);
}

// It may be called again by itself before it is known what it does.
void trace_called_script(Node *file) {
    const char *key = reinterpret_cast<const char *>(file);
    void *effects = find_name(&TracedScripts, key);
    if (effects == file) return forget_all();
    if (effects) return;
    enter_name(&TracedScripts, key, file);
    int forgotten = Forgotten;
    bool was_dead = is_dead();
    OpenScripts++;
    trace_script(file);
    OpenScripts--;
    set_dead(was_dead);
    if (Forgotten == forgotten) enter_name(&TracedScripts, key, &TracedScripts);
}

// error of an empty text goes on, as that of what is no text may.
bool is_end(const LibraryFunction *function, const Node *arguments) {
    if (function->shape != SHAPE_NOTHING) return false;
    if (strcmp(function->name, "rethrow") == 0) return arguments && arguments->kind == NODE_NAME;
    if (strcmp(function->name, "error") != 0) return true;
    if (!arguments) return false;
    Value value = value_of(arguments);
    return kinds_of(value) == MAY_BE_TEXT && !may_be(value, MAY_BE_EMPTY);
}

// assert(condition, message); of two values it compares them.
bool is_assertion(const LibraryFunction *function, const Node *arguments) {
    if (!arguments || strcmp(function->name, "assert") != 0) return false;
    return !arguments->next || kinds_of(value_of(arguments->next)) == MAY_BE_TEXT;
}

Symbol *variable_named(const char *name) {
    if (!NamedVariables.used)
        for (Symbol *symbol = TracedScope->first_symbol; symbol; symbol = symbol->next)
            if (is_variable(symbol)) enter_name(&NamedVariables, symbol->name, symbol);
    return static_cast<Symbol *>(find_name(&NamedVariables, intern(name)));
}

bool is_plain_word(const char *word) { return !strpbrk(word, "*?[-"); }

bool is_clearing_all(const Node *words) {
    bool has_words = false;
    for (const Node *word = words; word; word = word->next) {
        if (!is_plain_word(word->text)) return true;
        has_words |= *word->text != 0;
    }
    return !has_words || strcmp(words->text, "all") == 0;
}

// clear x y: they have no values. A pattern, and all, may mean any; what a script clears is not
// kept apart.
void clear_variables(const Node *words) {
    if (OpenScripts || is_clearing_all(words)) return add_to_all(MAY_BE_MISSING);
    for (const Node *word = words; word; word = word->next) {
        Symbol *symbol = *word->text ? variable_named(word->text) : nullptr;
        if (symbol) set_value(symbol, MAY_BE_MISSING);
    }
}

}  // namespace

void begin_effects() {
    TracedScripts = {};
    NamedVariables = {};
    Forgotten = OpenScripts = 0;
}

bool runs_text(const char *name) {
    static const char *const runners[] = {"eval", "evalc", "evalin", nullptr};
    return is_one_of(name, runners);
}

int times_forgotten() { return Forgotten; }

void forget_all() { add_to_all(ANY_VALUE | MAY_BE_MISSING); }

void note_effects(Node *expression) {
    const Node *name = called_name(expression);
    if (!name) return;
    Node *definition = name->symbol->definition;
    bool is_script = definition && definition->kind == NODE_FILE;
    if (is_script) return trace_called_script(definition);
    if (is_creator(name->text)) return forget_all();
    if (is_clearing(name->text)) return add_to_all(MAY_BE_MISSING);
    LibraryCall call = library_call(expression);
    if (!call.function) return;
    if (is_end(call.function, call.arguments)) end_here();
    if (is_assertion(call.function, call.arguments)) assume(call.arguments, true);
}

void trace_command(const Node *command) {
    const Node *name = command->first_child;
    if (is_creator(name->text) || runs_text(name->text)) forget_all();
    if (is_clearing(name->text)) clear_variables(name->next);
}
