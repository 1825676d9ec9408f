// What is in a run's own source, and what has become of it.
#include "driver/program/program_details.h"

#include <algorithm>

#include "diagnose/messages.h"
#include "lower/lines/pieces.h"

namespace {

using Comment = mTranslateProgramComment;
using Call = mTranslateProgramCall;
using Function = mTranslateProgramFunction;
using Statement = mTranslateProgramStatement;

// A statement or a function, in the order of the source.
struct Part {
    uint32_t begin;
    uint32_t end;
    int32_t outer; /* the part around it, or -1 */
    bool has_message;
    bool calls_unknown; /* or what only classes have */
};
using Parts = std::vector<Part>;

// The innermost part with the byte, or that ends there; -1 for none.
int32_t part_at(const Parts &parts, uint32_t offset) {
    auto after =
        std::upper_bound(parts.begin(), parts.end(), offset,
                         [](uint32_t wanted, const Part &part) { return wanted < part.begin; });
    auto at = static_cast<int32_t>(after - parts.begin()) - 1;
    while (at >= 0 && parts[static_cast<size_t>(at)].end < offset)
        at = parts[static_cast<size_t>(at)].outer;
    return at;
}

struct Outline {
    ProgramRun *run;
    const SourceFile *file;
    Parts statements;
    Parts functions;
    std::vector<const Function *> function_list;
    std::vector<Statement *> statement_list;
    std::vector<const Node *> comments;
};

int32_t add_part(Parts *parts, const Node *node, int32_t outer) {
    parts->push_back({node->offset, end_of(node), outer, false, false});
    return static_cast<int32_t>(parts->size()) - 1;
}

int32_t add_function(Outline *outline, const Node *node, int32_t outer) {
    auto *function = new_result<Function>(memory_of(outline->run));
    function->outer = outer;
    function->name = keep_result(memory_of(outline->run), node->text);
    function->place = range_of_node(outline->run, outline->file, node);
    outline->function_list.push_back(function);
    return add_part(&outline->functions, node, outer);
}

int32_t add_statement(Outline *outline, const Node *node, int32_t outer) {
    auto *statement = new_result<Statement>(memory_of(outline->run));
    statement->outer = outer;
    statement->is_read = node->kind != NODE_BAD;
    statement->place = range_of_node(outline->run, outline->file, node);
    outline->statement_list.push_back(statement);
    return add_part(&outline->statements, node, outer);
}

void collect_comments(Outline *outline, const Node *node) {
    if (node->kind == NODE_COMMENT) outline->comments.push_back(node);
    for (const Node *child = first_child(node); child; child = child->next)
        collect_comments(outline, child);
}

void walk_parts(Outline *outline, const Node *node, int32_t statement, int32_t function);

// Of what could not be read the comments alone are known.
void walk_bad(Outline *outline, const Node *node, int32_t statement) {
    if (statement >= 0) outline->statements[static_cast<size_t>(statement)].has_message = true;
    collect_comments(outline, node);
}

void walk_child(Outline *outline, const Node *child, bool is_in_list, int32_t statement,
                int32_t function) {
    if (child->kind == NODE_COMMENT) return outline->comments.push_back(child);
    if (child->kind == NODE_FUNCTION)
        return walk_parts(outline, child, -1, add_function(outline, child, function));
    if (is_in_list) statement = add_statement(outline, child, statement);
    if (child->kind == NODE_BAD) return walk_bad(outline, child, statement);
    walk_parts(outline, child, statement, function);
}

void walk_parts(Outline *outline, const Node *node, int32_t statement, int32_t function) {
    bool is_list = node->kind == NODE_BLOCK || node->kind == NODE_FILE;
    for (const Node *child = first_child(node); child; child = child->next)
        walk_child(outline, child, is_list, statement, function);
}

void mark(Parts *statements, uint32_t offset) {
    int32_t at = part_at(*statements, offset);
    if (at >= 0) (*statements)[static_cast<size_t>(at)].has_message = true;
}

// A function that is found nowhere is reported once: its calls tell.
void mark_messages(Outline *outline) {
    for (const Message *message : outline->run->messages) {
        bool counts = severity_of(message->id) != SEVERITY_NOTE && message->id != UNKNOWN_FUNCTION;
        if (counts && message->source == outline->file->source)
            mark(&outline->statements, message->offset);
    }
}

// What the caller has answered stays as it is.
const char *keep_target(ProgramRun *run, const char *path) {
    if (!path) return nullptr;
    bool is_answered = run->found_files.contains(path) || run->found_methods.contains(path);
    return keep_result(memory_of(run), is_answered ? path : shortest_path(path).c_str());
}

const Call *new_call(Outline *outline, uint32_t offset, const NotedCall &noted) {
    ResultMemory *memory = memory_of(outline->run);
    auto *call = new_result<Call>(memory);
    call->end = noted.end;
    call->name = keep_result(memory, noted.name);
    call->target = keep_target(outline->run, noted.target);
    call->function = part_at(outline->functions, offset);
    PlacedText in = text_of_source(outline->file->source);
    call->place = ask_range(&outline->run->places, memory, &in, offset, offset + noted.length);
    call->statement = part_at(outline->statements, offset);
    if (noted.end >= CALL_OF_CLASS && call->statement >= 0)
        outline->statements[static_cast<size_t>(call->statement)].calls_unknown = true;
    return call;
}

void finish_calls(Outline *outline) {
    std::vector<const Call *> calls;
    for (const auto &[offset, noted] : outline->run->calls)
        calls.push_back(new_call(outline, offset, noted));
    result_of(outline->run)->calls = list_result(memory_of(outline->run), calls);
    result_of(outline->run)->call_count = calls.size();
}

// The end of the part of the source that is put as it is, and that began last at the byte or
// before; such parts are whole statements, which do not overlap but where one holds another.
uint32_t end_of_put(const std::map<uint32_t, uint32_t> &sources, uint32_t offset) {
    auto after = sources.upper_bound(offset);
    return after == sources.begin() ? 0 : std::prev(after)->second;
}

// Where one part holds another, its end is that of all in it.
std::map<uint32_t, uint32_t> outermost(const std::map<uint32_t, uint32_t> &sources) {
    std::map<uint32_t, uint32_t> joined;
    uint32_t end = 0;
    for (const auto &[begin, own_end] : sources) {
        if (own_end > end) joined[begin] = end = own_end;
    }
    return joined;
}

uint32_t finish_comments(Outline *outline) {
    ProgramRun *run = outline->run;
    const auto sources = outermost(run->put_sources);
    std::stable_sort(outline->comments.begin(), outline->comments.end(),
                     [](const Node *a, const Node *b) { return a->offset < b->offset; });
    std::vector<const Comment *> comments;
    uint32_t kept = 0;
    for (const Node *node : outline->comments) {
        auto *comment = new_result<Comment>(memory_of(run));
        bool is_kept = run->put_comments.contains(node->offset) ||
                       node->offset < end_of_put(sources, node->offset);
        comment->is_kept = is_kept ? 1 : 0;
        kept += is_kept ? 1 : 0;
        comment->place = range_of_node(run, outline->file, node);
        comments.push_back(comment);
    }
    result_of(run)->comments = list_result(memory_of(run), comments);
    result_of(run)->comment_count = comments.size();
    return kept;
}

void finish_statements(Outline *outline) {
    auto &list = outline->statement_list;
    for (size_t i = 0; i < list.size(); i++)
        list[i]->has_message = outline->statements[i].has_message ? 1 : 0;
    result_of(outline->run)->statements =
        list_result<Statement>(memory_of(outline->run), {list.begin(), list.end()});
    result_of(outline->run)->statement_count = list.size();
}

uint32_t count_lines(const Source *source) {
    Position end = position_of(const_cast<Source *>(source), source->length);
    return end.column == 1 ? end.line - 1 : end.line;
}

void finish_statistics(const Outline *outline, uint32_t comments_kept) {
    auto *statistics = new_result<mTranslateProgramStatistics>(memory_of(outline->run));
    statistics->lines = count_lines(outline->file->source);
    statistics->bytes = outline->file->source->length;
    statistics->statements = static_cast<uint32_t>(outline->statements.size());
    statistics->without_message = static_cast<uint32_t>(std::count_if(
        outline->statements.begin(), outline->statements.end(),
        [](const Part &statement) { return !statement.has_message && !statement.calls_unknown; }));
    statistics->comments = static_cast<uint32_t>(outline->comments.size());
    statistics->comments_kept = comments_kept;
    result_of(outline->run)->statistics = statistics;
}

}  // namespace

const mTranslateProgramRange *range_of_node(ProgramRun *run, const SourceFile *file,
                                            const Node *node) {
    PlacedText in = text_of_source(file->source);
    return ask_range(&run->places, memory_of(run), &in, node->offset, end_of(node));
}

// Of the last time that a piece is told of.
void note_program_piece(ProgramRun *run, const Node *node, PieceEnd end, const char *target) {
    if (CurrentFile->source->caller) return;
    if (end == COMMENT_IS_PUT)
        run->put_comments.insert(node->offset);
    else if (end == SOURCE_IS_PUT)
        run->put_sources[node->offset] = std::max(run->put_sources[node->offset], end_of(node));
    else
        run->calls[node->offset] = {node->text, target, node->length, end};
}

static void finish_outline(ProgramRun *run, const SourceFile *file) {
    Outline outline = {run, file, {}, {}, {}, {}, {}};
    walk_parts(&outline, file->tree, -1, -1);
    result_of(run)->functions = list_result(memory_of(run), outline.function_list);
    result_of(run)->function_count = outline.function_list.size();
    mark_messages(&outline);
    finish_calls(&outline);
    finish_statements(&outline);
    finish_statistics(&outline, finish_comments(&outline));
}

void finish_details(ProgramRun *run, const SourceFile *file) {
    if (wants(run, MTRANSLATE_OUTLINE)) finish_outline(run, file);
    if (wants(run, MTRANSLATE_PIECES)) finish_pieces(run);
    if (wants(run, MTRANSLATE_DETAILS)) finish_names(run, file);
}
