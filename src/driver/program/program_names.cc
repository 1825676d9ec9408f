// The names of a run's own source: what each is, and where it stands.
#include <unordered_map>

#include "driver/program/program_details.h"
#include "lower/program/program_files.h"
#include "syntax/names/names.h"

namespace {

using Name = mTranslateProgramName;

struct FoundName {
    Name *name;
    std::vector<const mTranslateProgramRange *> uses;
};

struct NameWalk {
    ProgramRun *run;
    const SourceFile *file;
    std::vector<FoundName> found; /* in the order of their first uses */
    std::unordered_map<const Symbol *, size_t> places;
    std::unordered_map<const Node *, int32_t> functions; /* those that have been met */
    std::map<std::string, const mTranslateProgramRange *, std::less<>> own; /* their names */
};

int32_t kind_of(const Symbol *symbol) {
    if (!is_variable(symbol)) return MTRANSLATE_NAME_FUNCTION;
    if ((symbol->flags & SYMBOL_PARAMETER) != 0) return MTRANSLATE_NAME_PARAMETER;
    if ((symbol->flags & SYMBOL_OUTPUT) != 0) return MTRANSLATE_NAME_OUTPUT;
    if ((symbol->flags & SYMBOL_GLOBAL) != 0) return MTRANSLATE_NAME_GLOBAL;
    bool is_persistent = (symbol->flags & SYMBOL_PERSISTENT) != 0;
    return is_persistent ? MTRANSLATE_NAME_PERSISTENT : MTRANSLATE_NAME_VARIABLE;
}

// function: in which the name stands, an anonymous one not counted.
FoundName *enter_symbol(NameWalk *walk, const Symbol *symbol, int32_t function) {
    const auto [at, is_new] = walk->places.try_emplace(symbol, walk->found.size());
    if (!is_new) return &walk->found[at->second];
    auto *name = new_result<Name>(memory_of(walk->run));
    name->kind = kind_of(symbol);
    name->text = keep_result(memory_of(walk->run), symbol->name);
    const auto owner = walk->functions.find(symbol->scope->owner);
    bool is_known = owner != walk->functions.end();
    bool is_script = symbol->scope->owner->kind == NODE_FILE;
    name->function = is_known ? owner->second : is_script ? -1 : function;
    walk->found.push_back({name, {}});
    return &walk->found.back();
}

void note_use(NameWalk *walk, const Node *node, int32_t function, bool sets) {
    if (!node->symbol) return;
    FoundName *found = enter_symbol(walk, node->symbol, function);
    const auto *place = range_of_node(walk->run, walk->file, node);
    if (sets && !found->name->definition && found->name->kind != MTRANSLATE_NAME_FUNCTION)
        found->name->definition = place;
    found->uses.push_back(place);
}

// Whether the child is given a value by its parent.
bool sets_child(const Node *parent, const Node *child, bool parent_is_set) {
    switch (parent->kind) {
        case NODE_TARGETS:
        case NODE_OUTPUTS:
        case NODE_PARAMETERS:
        case NODE_GLOBAL:
        case NODE_PERSISTENT: return true;
        case NODE_ASSIGN:
        case NODE_DEFAULT:
        case NODE_FOR: return child == parent->first_child;
        case NODE_REFERENCE: return parent_is_set && child == parent->first_child;
        case NODE_TRY: return child->kind == NODE_NAME;
        default: return false;
    }
}

void walk_names(NameWalk *walk, const Node *node, int32_t function, bool is_set) {
    if (node->kind == NODE_BAD) return;  // its names are not settled
    if (is_named(node)) return note_use(walk, node, function, is_set);
    if (node->kind == NODE_FUNCTION) {
        function = static_cast<int32_t>(walk->functions.size());
        walk->functions[node] = function;
    }
    for (const Node *child = node->first_child; child; child = child->next) {
        bool is_own_name = node->kind == NODE_FUNCTION && child->kind == NODE_NAME;
        if (is_own_name)
            walk->own.try_emplace(child->text, range_of_node(walk->run, walk->file, child));
        else
            walk_names(walk, child, function, sets_child(node, child, is_set));
    }
}

}  // namespace

void finish_names(ProgramRun *run, const SourceFile *file) {
    NameWalk walk = {run, file, {}, {}, {}, {}};
    walk_names(&walk, file->tree, -1, false);
    std::vector<const Name *> names;
    for (const auto &[name, uses] : walk.found) {
        const auto own = walk.own.find(name->text);
        if (name->kind == MTRANSLATE_NAME_FUNCTION && own != walk.own.end())
            name->definition = own->second;
        name->uses = list_result(memory_of(run), uses);
        name->use_count = uses.size();
        names.push_back(name);
    }
    result_of(run)->names = list_result(memory_of(run), names);
    result_of(run)->name_count = names.size();
}
