// Calls that set or clear variables, or do not return.
#include "syntax/trace/effects.h"

#include <string.h>

#include "syntax/names/clear_words.h"
#include "syntax/scan/spellings.h"
#include "syntax/trace/library_values.h"
#include "syntax/trace/parameters.h"
#include "syntax/trace/trace_function.h"
#include "syntax/values/field_values.h"
#include "syntax/values/values.h"

namespace {

NameMap TracedScripts;   // FILE nodes by their addresses: those that may set any variable
NameMap NamedVariables;  // of the function, where a command asks for them
int Forgotten;           // how often all variables have been walked over
int Walked;              // how many those were in all
int OpenScripts;

// A function that runs texts as programs all the time is not followed on and on.
constexpr int MOST_FORGOTTEN = 1000;
constexpr int MOST_WALKED = 200000;

const Node *called_name(const Node *expression) {
    const Node *name = expression->kind == NODE_REFERENCE ? expression->first_child : expression;
    return name->kind == NODE_NAME && !is_variable(name->symbol) ? name : nullptr;
}

// Whether all variables may be walked over once more.
bool is_worth_it() {
    bool is_over = ++Forgotten > MOST_FORGOTTEN || Walked > MOST_WALKED;
    if (is_over) give_up_flow();
    return !is_over;
}

// It may be called again by itself before it is known what it does.
void trace_called_script(Node *file) {
    const char *key = reinterpret_cast<const char *>(file);
    void *effects = find_name(&TracedScripts, key);
    if (effects == file) return forget_all(MAY_BE_MISSING);
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
    if (arguments->kind == NODE_STRING) return *arguments->text != '\0';
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

// What may have been set is made empty in the host.
void clear_variable(Symbol *symbol) {
    if (!is_variable(symbol) || value_now(symbol) == MAY_BE_MISSING) return;
    assign(symbol, cleared_value(symbol));
    if (is_surely(cleared_value(symbol), MAY_BE_RECORD)) begin_fields(symbol);
}

// Those that are assigned as a whole only are left alone.
void clear_all() {
    if (!is_worth_it()) return;
    for (Symbol *symbol = TracedScope->first_symbol; symbol; symbol = symbol->next, Walked++) {
        bool is_left = is_variable(symbol) && !(symbol->flags & SYMBOL_CHANGED);
        is_left ? assign(symbol, MAY_BE_MISSING) : clear_variable(symbol);
    }
}

bool are_names(const Node *word) {
    while (word && *word->text != '-' && !strpbrk(word->text, "*?[")) word = word->next;
    return !word;
}

}  // namespace

void begin_effects() {
    TracedScripts = {};
    NamedVariables = {};
    Forgotten = Walked = OpenScripts = 0;
}

bool is_in_called_script() { return OpenScripts > 0; }

int times_forgotten() { return Forgotten; }

void forget_all(Value missing) {
    if (!is_worth_it()) return;
    for (Symbol *symbol = TracedScope->first_symbol; symbol; symbol = symbol->next, Walked++) {
        Value kept = value_now(symbol) & MAY_BE_MISSING;
        if (is_variable(symbol)) assign(symbol, ANY_VALUE | kept | missing);
    }
}

void note_effects(Node *expression) {
    const Node *name = called_name(expression);
    if (!name) return;
    Node *definition = name->symbol->definition;
    bool is_script = definition && definition->kind == NODE_FILE;
    if (is_script) return trace_called_script(definition);
    if (is_known_to(name->text, SETS_VARIABLES)) return forget_all(0);
    LibraryCall call = library_call(expression);
    if (!call.function) return;
    if (is_end(call.function, call.arguments)) end_here();
    if (is_assertion(call.function, call.arguments)) assume(call.arguments, true);
    assume_given(given_after(expression), expression->offset);
}

void trace_clear(const Node *statement) {
    ClearWords words = clear_words(statement);
    if (!words.name || is_variable(words.name->symbol)) return;
    if (words.is_known && means_all(words.first) && !OpenScripts) return clear_all();
    if (!words.is_known || OpenScripts || !are_names(words.first))
        return forget_all(MAY_BE_MISSING);
    for (const Node *word = words.first; word; word = word->next) {
        Symbol *symbol = *word->text ? variable_named(word->text) : nullptr;
        if (symbol) clear_variable(symbol);
    }
}

void trace_command(const Node *command) {
    const char *name = command->first_child->text;
    note_handle(command->first_child);
    if (is_known_to(name, SETS_VARIABLES | RUNS_TEXT)) forget_all(0);
    trace_clear(command);
}
