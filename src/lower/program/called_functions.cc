// Calls of functions.
#include "lower/program/called_functions.h"

#include <assert.h>
#include <mtranslate_program.h>
#include <stdio.h>
#include <string.h>

#include "diagnose/messages.h"
#include "lower/classes/class_folders.h"
#include "lower/classes/methods.h"
#include "lower/classes/procedure_names.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/lines/pieces.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "syntax/library/library_table.h"
#include "syntax/scan/spellings.h"

bool CallsFromProcedure;

namespace {

// What a name means in a file.
struct Callee {
    const char *written;
    SourceFile *file;  // with the function, or the script; null: none that the run has
    const char *path;  // of the file, if one is known; it may be translated for itself
    bool is_own;       // a function of the file itself
    bool is_method;    // methods of classes have the name, too, or they alone
    Node *definition;  // FUNCTION of one of the file itself; else null
};

struct QueuedFile {
    SourceFile *file;
    QueuedFile *next;
};

struct FileQueue {
    QueuedFile *first;
    QueuedFile *last;
};

FileQueue CalledFiles;
FileQueue LibraryFiles;  // after those
NameMap UsedByProcedures;
NameMap Unknown;  // names that have been reported

Callee *new_callee(SourceFile *in, const char *name, Callee value) {
    Callee *callee = AllocRecord<Callee>();
    *callee = value;
    enter_name(&in->callees, name, callee);
    return callee;
}

// The first of several functions of a name counts. A method is called by its name as it is from
// elsewhere.
[[gnu::noinline]] void enter_own_functions(SourceFile *file) {
    const FileFunction *own = file->functions;
    if (is_method_file(file)) own = own->next;
    for (; own; own = own->next)
        if (!find_name(&file->callees, own->name))
            new_callee(file, own->name, {own->written, file, file->path, true, false, own->node});
}

const char *name_of_unknown(const char *name) {
    return is_host_keyword(name) ? intern(form_text("m_%s", {name})) : name;
}

// What the key means as far as that is known; the file's own functions always are.
const Callee *find_callee(const char *key) {
    SourceFile *in = CurrentFile;
    if (in->functions && !in->callees.size) enter_own_functions(in);
    return static_cast<const Callee *>(find_name(&in->callees, key));
}

const Callee *known_callee(const Node *place) { return find_callee(place->text); }

const char *written_in(const FoundFile *found) {
    const SourceFile *file = found->file;
    if (file && !file->is_script && file->functions) return file->functions->written;
    return found->path && (!file || file->place.name) ? procedure_name(found->path) : nullptr;
}

Callee found_callee(const char *name, const FoundFile *found) {
    const char *written = written_in(found);
    if (!written) written = name_of_unknown(name);
    bool is_method = !CurrentFile->is_library && find_method(nullptr, name);
    return {written, found->file, found->path, false, is_method, nullptr};
}

const Callee *callee_of(const Node *place) {
    assert(is_named(place));
    if (const Callee *known = known_callee(place)) return known;
    FoundFile found = AddTranslator ? find_file(place) : FoundFile{};
    return new_callee(CurrentFile, place->text, found_callee(place->text, &found));
}

void queue_file(SourceFile *file) {
    if (file->is_queued) return;
    file->is_queued = true;
    QueuedFile *cell = AllocRecord<QueuedFile>();
    *cell = {file, nullptr};
    FileQueue *queue = file->is_library ? &LibraryFiles : &CalledFiles;
    (queue->last ? queue->last->next : queue->first) = cell;
    queue->last = cell;
}

const char *describe_creator(const Node *creator) {
    const Node *name = creator->first_child;
    if (name->kind != NODE_NAME) name = name->first_child;
    char line[16];
    snprintf(line, sizeof line, "%u", position_of(CurrentFile->source, creator->offset).line);
    return form_text("'%s' on line %s may create it", {name->text, line});
}

// What mostly stands for a value of MATLAB's own nobody loads.
void report_unknown(const Node *place, bool is_in_class) {
    Source *source = CurrentFile->source;
    bool is_value =
        (place->symbol->flags & SYMBOL_IS_VALUE) && !has_trait(place->text, STANDS_FOR_VALUE);
    const Node *creator =
        is_value ? creator_of(Lowering.scope, place->text, place->offset) : nullptr;
    if (creator) {
        report(UNASSIGNED_NAME, source, place->offset, place->length,
               {place->text, describe_creator(creator)});
    } else {
        report(UNKNOWN_FUNCTION, source, place->offset, place->length,
               {place->text, is_in_class ? MTRANSLATE_FOUND_IN_CLASSES : MTRANSLATE_FOUND_NOWHERE});
    }
}

// A file with errors of its own says itself why it gives no function.
void note_script(const Node *place, const SourceFile *file) {
    if (file->source->errors > 0 || Lowering.gap != MESSAGE_COUNT) return;
    report(SCRIPT_AS_FUNCTION, CurrentFile->source, place->offset, place->length, {place->text});
}

// Once a run; the name must not become that of a procedure. is_told: a message has been given.
void note_unknown(const Node *place, const Callee *callee, bool is_told) {
    if (const SourceFile *other = file_with_procedure(callee->written)) {
        report(FOREIGN_FUNCTION, CurrentFile->source, place->offset, place->length,
               {place->text, other->path ? other->path : "the command"});
        return;
    }
    reserve_name(callee->written);
    // a statement that is given up calls nothing
    bool is_silent = !AddTranslator || Lowering.gap != MESSAGE_COUNT || CurrentFile->is_library;
    if (is_silent || is_told || enter_name(&Unknown, place->text, &Unknown)) return;
    report_unknown(place, callee->is_method);
}

}  // namespace

void begin_calls() {
    CalledFiles = LibraryFiles = {};
    UsedByProcedures = Unknown = {};
    CallsFromProcedure = false;
}

static void note_call(const char *written) {
    if (CallsFromProcedure) enter_name(&UsedByProcedures, written, &UsedByProcedures);
}

static void note_callee(const Node *name, const Callee *callee) {
    PieceEnd unknown = callee->is_method ? CALL_OF_CLASS : CALL_OF_UNKNOWN;
    note_piece(name, callee->path ? CALL_OF_FILE : unknown, callee->path);
}

// Its file enters the queue when the run has it.
static void call_file(const Node *name, const Callee *callee) {
    note_call(callee->written);
    if (name->kind == NODE_NAME || name->kind == NODE_HANDLE) note_callee(name, callee);
    if (callee->file && !callee->file->is_script) queue_file(callee->file);
}

static const Callee *method_callee(const Node *place, const char *class_name, const char *method) {
    const char *key = intern(form_text("%s@%s", {method, class_name}));
    if (const Callee *known = find_callee(key)) return known;
    FoundFile found = find_method_file(place, class_name, method);
    Callee callee = found_callee(method, &found);
    return new_callee(CurrentFile, key, callee);
}

const char *called_method(const Node *name, const char *class_name, const char *method) {
    const Callee *callee = method_callee(name, class_name, method);
    if (!callee->path) return nullptr;
    call_file(name, callee);
    return callee->written;
}

// name@class; what is found nowhere is a gap.
static const char *superclass_method(const Node *name, const char *at) {
    const char *method = intern(KeepText(name->text, static_cast<size_t>(at - name->text)));
    const char *written = called_method(name, intern(at + 1), method);
    if (written) return written;
    note_piece(name, CALL_OF_UNKNOWN);
    if (Lowering.gap == MESSAGE_COUNT) report_gap(SUPERCLASS_GAP, name, {method, at + 1});
    return method;
}

const char *own_function(const Node *name) {
    if (const char *at = strchr(name->text, '@')) return superclass_method(name, at);
    const Node *definition = name->symbol->definition;
    if (definition && definition->kind == NODE_FUNCTION) {
        note_piece(name, CALL_OF_OWN, CurrentFile->path);
        return written_name(name->symbol);
    }
    const Callee *callee = known_callee(name);
    if (!callee || !callee->is_own) return nullptr;
    note_piece(name, CALL_OF_OWN, CurrentFile->path);
    note_call(callee->written);
    return callee->written;
}

const Node *member_name(const Node *name, const Node *field) {
    assert(field->kind == NODE_FIELD);
    Node *member = AllocRecord<Node>();
    *member = *name;
    member->text = intern(form_text("%s.%s", {name->text, field->text}));
    member->length = end_of(field) - name->offset;
    return member;
}

// The function that the name means, or null.
static const Node *function_of(const Node *name) {
    const Node *definition = name->symbol->definition;
    if (definition) return definition->kind == NODE_FUNCTION ? definition : nullptr;
    const Callee *callee = callee_of(name);
    if (callee->is_own) return callee->definition;
    const FileFunction *function = callee->file ? callee->file->functions : nullptr;
    return function ? function->node : nullptr;
}

Node *own_definition(const Symbol *symbol) {
    if (Node *definition = symbol->definition)
        return definition->kind == NODE_FUNCTION ? definition : nullptr;
    const Callee *callee = find_callee(symbol->name);
    return callee && callee->is_own ? callee->definition : nullptr;
}

int count_outputs(const Node *name) {
    const Node *function = function_of(name);
    if (!function) return -1;
    int count = 0;
    const Node *output = function->first_child->first_child;
    for (; output; output = output->next, count++)
        if (!output->next && strcmp(output->text, "varargout") == 0) return -1;
    return count;
}

const char *host_function(const Node *name) {
    Callee callee = {name_of_unknown(name->text), nullptr, nullptr, false, false, nullptr};
    call_file(name, &callee);
    note_unknown(name, &callee, false);
    return callee.written;
}

bool is_found_nowhere(const Node *name, bool may_get_object) {
    const Callee *callee = callee_of(name);
    return !callee->path && !(callee->is_method && may_get_object);
}

const char *supplied_function(const char *text) {
    SourceFile *file = library_file(text);
    const char *written = file->functions->written;
    note_call(written);
    if (file->is_apart)
        Observing.library_call(Observing.context);
    else
        queue_file(file);
    return written;
}

bool is_function_of_file(const Node *name) {
    const Callee *callee = callee_of(name);
    return callee->path && !(callee->file && callee->file->is_script);
}

bool is_private_function(const Node *name) {
    const char *path = callee_of(name)->path;
    return path && strcmp(base_name(folder_of(path)), "private") == 0;
}

const char *constructed_class(const Node *name) {
    const char *constructor = find_constructor(name->text);
    const char *path = constructor ? callee_of(name)->path : nullptr;
    return path && class_place_of(path).name == name->text ? name->text : nullptr;
}

bool has_function(const Node *name) {
    if (name->symbol && name->symbol->definition) return true;
    if (const Callee *known = known_callee(name))
        return known->is_own || known->path || known->is_method;
    return AddTranslator && has_file(name);
}

const char *uncalled_name(const Node *name) { return callee_of(name)->written; }

const char *called_function(const Node *name, bool may_get_object) {
    const Callee *callee = callee_of(name);
    bool is_undecided = callee->is_method && may_get_object;
    if (is_undecided) report_undecided(name, name->text, name->text);
    call_file(name, callee);
    if (!callee->path) {
        note_unknown(name, callee, is_undecided);
    } else if (callee->file && callee->file->is_script) {
        note_script(name, callee->file);
    }
    return callee->written;
}

void report_loading(const Node *statement) {
    const Node *name = statement->first_child;
    if (name->kind == NODE_REFERENCE) name = name->first_child;
    if (name->kind != NODE_NAME || strcmp(name->text, "load") != 0) return;
    if (!is_variable(name->symbol))
        report(LOAD_VARIABLES, CurrentFile->source, name->offset, name->length, {name->text});
}

Node *find_script(const Node *name) {
    if (strchr(name->text, '@')) return nullptr;  // name@superclass
    const Callee *callee = callee_of(name);
    bool is_script = !callee->is_own && callee->file && callee->file->is_script;
    return is_script ? callee->file->tree : nullptr;
}

SourceFile *file_of_script(const Node *name) {
    SourceFile *file = callee_of(name)->file;
    if (!file || file->tree != name->symbol->definition) return nullptr;
    queue_file(file);
    note_piece(name, CALL_OF_FILE, file->path);
    return file;
}

SourceFile *take_called_file() {
    FileQueue *queue = CalledFiles.first ? &CalledFiles : &LibraryFiles;
    QueuedFile *cell = queue->first;
    if (!cell) return nullptr;
    queue->first = cell->next;
    if (!queue->first) queue->last = nullptr;
    return cell->file;
}

void note_global(const char *written) { enter_name(&UsedByProcedures, written, &UsedByProcedures); }

bool is_used_by_procedure(const char *written) {
    return find_name(&UsedByProcedures, written) != nullptr;
}
