/* From notes about pieces of the source, by their offsets, to what is told about it. */
#include "cli/report/statistics.h"

#include <algorithm>
#include <tuple>

#include "cli/files/file_index.h"
#include "cli/messages/excerpt.h"
#include "cli/messages/messages.h"
#include "cli/report/places.h"
#include "cli/report/unread_statements.h"
#include "cli/support/library.h"

namespace mtranslate {

namespace {

using Range = PieceNotes::Range;

/* A statement or a function in the order of the source. */
struct Piece {
    Range place;
    int outer;              /* the piece around it, or -1 */
    std::size_t weight = 1; /* statements that it stands for */
    bool has_message = false;
    std::set<std::string> unresolved{}; /* names that it calls */
};

/* The innermost piece with the byte, or that ends there; -1 for none. */
int piece_at(const std::vector<Piece> &pieces, std::uint32_t offset) {
    const auto after = std::upper_bound(
        pieces.begin(), pieces.end(), offset,
        [](std::uint32_t at, const Piece &piece) { return at < piece.place.begin; });
    int at = static_cast<int>(after - pieces.begin()) - 1;
    while (at >= 0 && pieces[at].place.end < offset) at = pieces[at].outer;
    return at;
}

/* The walk over the tree of a file. */
class Outline {
public:
    explicit Outline(const SourceFile &file) : source_(*file.source) { walk(file.tree, -1, -1); }

    std::vector<Piece> statements;
    std::vector<Piece> functions;
    std::vector<FunctionFact> function_facts;
    std::vector<std::uint32_t> comments;

private:
    void walk(const Node *node, int statement, int function) {
        const bool is_list = node->kind == NODE_BLOCK || node->kind == NODE_FILE;
        for (const Node *child = first_child(node); child; child = child->next) {
            if (child->kind == NODE_COMMENT)
                comments.push_back(child->offset);
            else if (child->kind == NODE_FUNCTION)
                walk(child, -1, add_function(child, function));
            else if (child->kind == NODE_BAD)
                walk_bad(child, is_list ? add_bad(child, statement) : statement);
            else
                walk(child, is_list ? add(statements, child, statement) : statement, function);
        }
    }

    /* A class definition, say: it counts as the statements in its source. */
    int add_bad(const Node *node, int outer) {
        const std::string_view text(source_.text + node->offset, node->length);
        const int added = add(statements, node, outer);
        statements[added].weight = std::max(count_unread_statements(text), std::size_t{1});
        return added;
    }

    void walk_bad(const Node *node, int statement) {
        if (statement >= 0) statements[statement].has_message = true;
        for (const Node *child = node->first_child; child; child = child->next)
            collect_comments(child);
    }

    void collect_comments(const Node *node) {
        if (node->kind == NODE_COMMENT) comments.push_back(node->offset);
        for (const Node *child = first_child(node); child; child = child->next)
            collect_comments(child);
    }

    static int add(std::vector<Piece> &pieces, const Node *node, int outer) {
        pieces.push_back({{node->offset, end_of(node)}, outer});
        return static_cast<int>(pieces.size()) - 1;
    }

    int add_function(const Node *node, int outer) {
        function_facts.push_back({node->text, position_of(&source_, node->offset).line});
        return add(functions, node, outer);
    }

    ::Source &source_;
};

CallEnd end_of_call(PieceEnd end) {
    switch (end) {
        case CALL_OF_HOST: return CallEnd::Answered;
        case CALL_OF_LANGUAGE: return CallEnd::BuiltIn;
        case CALL_OF_CLASS: return CallEnd::ClassOnly;
        case CALL_OF_UNKNOWN: return CallEnd::Unresolved;
        default: return CallEnd::Found;
    }
}

std::uint32_t count_lines(::Source &source) {
    const Position end = position_of(&source, source.length);
    return end.column == 1 ? end.line - 1 : end.line;
}

/* The calls of a file, those that end in the same way together. */
struct CallCounter {
    const SourceFile &file;
    const Outline &outline;
    const FileIndex *index;

    std::vector<CallFact> count(const std::map<std::uint32_t, PieceNotes::Call> &noted) const {
        Places places(*file.source);
        std::map<std::tuple<int, std::string, CallEnd, std::string>, std::size_t> known;
        std::vector<CallFact> calls;
        for (const auto &[offset, call] : noted) {
            CallFact fact{piece_at(outline.functions, offset), call.name, end_of_call(call.end),
                          target_of(call)};
            const auto [at, is_new] =
                known.try_emplace({fact.in, fact.name, fact.end, fact.target}, calls.size());
            if (is_new) {
                const Place place = places.at(offset);
                fact.line = place.line;
                fact.column = place.column;
                calls.push_back(std::move(fact));
            }
            ++calls[at->second].count;
        }
        return calls;
    }

private:
    /* A file that the run knows by name only is in the index. */
    std::string target_of(const PieceNotes::Call &call) const {
        if (call.end != CALL_OF_FILE || !call.target.empty() || !index) return call.target;
        const IndexedFile *found = index->find(file.path, call.name);
        return found ? found->path : "";
    }
};

/* A function that is found nowhere is reported once, however many statements call it. */
void mark_messages(const SourceFile &file, std::vector<Piece> &statements) {
    for (const Message *message = FirstMessage; message; message = message->next) {
        const bool counts =
            severity_of(message->id) != SEVERITY_NOTE && message->id != UNKNOWN_FUNCTION;
        if (!counts || message->source != file.source) continue;
        const int at = piece_at(statements, message->offset);
        if (at >= 0) statements[at].has_message = true;
    }
}

void mark_unresolved(const PieceNotes &notes, std::vector<Piece> &statements) {
    for (const auto &[offset, call] : notes.calls) {
        if (!is_left_to_host(end_of_call(call.end))) continue;
        const int at = piece_at(statements, offset);
        if (at >= 0) statements[at].unresolved.insert(call.name);
    }
}

void count_statements(const std::vector<Piece> &statements, FileFacts &facts) {
    std::map<std::set<std::string>, std::size_t> waiting;
    for (const Piece &statement : statements) {
        facts.statements += statement.weight;
        if (statement.has_message) continue;
        if (statement.unresolved.empty())
            ++facts.without_message;
        else
            ++waiting[statement.unresolved];
    }
    for (const auto &[names, count] : waiting)
        facts.waiting.push_back({{names.begin(), names.end()}, count});
}

std::size_t count_kept(const std::vector<std::uint32_t> &comments, const PieceNotes &notes) {
    return std::ranges::count_if(comments, [&](std::uint32_t comment) {
        const auto holds = [comment](const Range &range) {
            return comment >= range.begin && comment < range.end;
        };
        return notes.comments.contains(comment) || std::ranges::any_of(notes.sources, holds);
    });
}

}  // namespace

void PieceNotes::note(const Node *node, PieceEnd end, const char *target) {
    if (CurrentFile->source->caller) return;
    if (end == COMMENT_IS_PUT)
        comments.insert(node->offset);
    else if (end == SOURCE_IS_PUT)
        sources.push_back({node->offset, end_of(node)});
    else
        calls[node->offset] = {node->text, end, target ? target : ""};
}

FileFacts facts_of(const SourceFile &file, const PieceNotes &notes, const FileIndex *index) {
    Outline outline(file);
    FileFacts facts;
    facts.lines = count_lines(*file.source);
    facts.bytes = file.source->length;
    facts.functions = outline.function_facts;
    facts.calls = CallCounter{file, outline, index}.count(notes.calls);
    mark_messages(file, outline.statements);
    mark_unresolved(notes, outline.statements);
    count_statements(outline.statements, facts);
    facts.comments = outline.comments.size();
    facts.comments_kept = count_kept(outline.comments, notes);
    return facts;
}

}  // namespace mtranslate
