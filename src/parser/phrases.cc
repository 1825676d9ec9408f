// Phrases that the grammar puts together.
#include "parser/phrases.h"

#include <assert.h>
#include <string.h>

#include "emit/globals.h"
#include "emit/procedures.h"
#include "lexer/position.h"
#include "parser/parser.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "translate/calls.h"
#include "translate/cells.h"
#include "translate/fields.h"
#include "translate/ranges.h"
#include "translate/text_forms.h"

mStat *InputSequence;
void (*BeforeScript)();

WordList start_words(const char *word) {
    vExpr *cell = alloc_vExpr(new_node(EXPR_STRING, word));
    return {cell, cell, 0, 0};
}

WordList add_word(WordList words, mExpr *word) {
    assert(!words.last->next);
    words.last->next = alloc_vExpr(word);
    return {words.first, words.last->next, 0, 0};
}

// Joins by a copy, which gets as much again for more. A text with backslashes gets none: they
// are doubled each time.
static WordList join_word_anew(WordList words, const char *name) {
    const char *text = words.last->item->text;
    char *contents = KeepText(text + 1, strlen(text) - 2);  // without its double quotes
    mExpr *joined = new_dotstring(contents, name);
    words.last->item = joined;
    words.spare = 0;
    if (strchr(joined->text, '\\')) return words;
    size_t length = strlen(joined->text);
    Writer growing;
    words.last->item = alloc_text_mExpr(EXPR_STRING, SCALAR, 2 * length + 1, &growing);
    write_text(&growing, joined->text);
    words.length = static_cast<uint32_t>(length);
    words.spare = static_cast<uint32_t>(free_bytes(&growing));
    return words;
}

WordList join_word(WordList words, const char *name) {
    uint32_t added = static_cast<uint32_t>(strlen(name)) + 1;
    if (words.spare < added) return join_word_anew(words, name);
    char *quote = const_cast<char *>(words.last->item->text) + words.length - 1;
    Writer to = {quote, quote + words.spare + sizeof "\""};
    write_form(&to, ".%s\"", {name});
    words.length += added;
    words.spare -= added;
    return words;
}

mStat *new_command_stat(mExpr *name, vExpr *words) {
    mStat *stat = new_expression_stat(new_function_node(name, words));
    free_vExpr(words);
    return stat;
}

mExpr *new_call(mExpr *callee, vExpr *arguments) {
    mExpr *call = new_function_node(callee, arguments);
    free_vExpr(arguments);
    return call;
}

mExpr *new_brace_index(mExpr *callee, vExpr *arguments) {
    mExpr *index = new_cell_node(callee, arguments);
    free_vExpr(arguments);
    return index;
}

// A range without a stop is placed where the parser stands after it.
mExpr *new_range(RangeTriple range) {
    SourcePosition *open_at = nullptr;
    if (!range.stop) {
        open_at = AllocRecord<SourcePosition>();
        *open_at = save_position();
    }
    return new_seq_node(range.start, range.step, range.stop, open_at);
}

RangeTriple start_range(mExpr *start, mExpr *next, bool colon_follows) {
    if (colon_follows) return {start, next, nullptr};
    return {start, unit_step(), next};
}

RangeTriple start_open_range(mExpr *start) { return {start, unit_step(), nullptr}; }

RangeTriple extend_range(RangeTriple range, mExpr *next, bool colon_follows) {
    if (!range.stop) return {range.start, range.step, next};
    return start_range(new_range(range), next, colon_follows);
}

NameList start_names(const char *name) {
    const char **names = static_cast<const char **>(Alloc(sizeof(char *)));
    names[0] = StrDup(name);
    return {1, names};
}

NameList add_global(NameList list, const char *name) {
    assert(list.count > 0);
    bool is_full = (list.count & (list.count - 1)) == 0;  // it holds powers of two
    if (is_full) {
        size_t size = 2 * static_cast<size_t>(list.count) * sizeof(char *);
        list.names = static_cast<const char **>(Realloc(list.names, size));
    }
    list.names[list.count++] = StrDup(name);
    return list;
}

mStat *define_function(mProc *proc, mStat *body) {
    proc->body = body;
    declare_proc(proc, LastComment);
    return body;
}

mStat *define_script(mStat *first) {
    drop_globals();  // a script has no global line
    int32_t uses_array_tools = UsesArrayTools;
    int32_t uses_linear_algebra = UsesLinearAlgebra;
    BeforeScript();  // clears the flags for every file that it translates
    UsesArrayTools = uses_array_tools;
    UsesLinearAlgebra = uses_linear_algebra;
    write_script(first, LastComment);
    return first;
}
