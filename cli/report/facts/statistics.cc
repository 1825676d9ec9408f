/* From the library's outline of a source to what is told about it. */
#include "cli/report/facts/statistics.h"

#include <algorithm>
#include <map>
#include <set>
#include <tuple>

#include "cli/files/file_index.h"
#include "cli/report/facts/unread_statements.h"

namespace mtranslate {

namespace {

using Result = mTranslateProgramResult;
using Call = mTranslateProgramCall;

CallEnd end_of_call(std::int32_t end) {
    switch (end) {
        case MTRANSLATE_CALL_OF_HOST: return CallEnd::Answered;
        case MTRANSLATE_CALL_OF_LANGUAGE: return CallEnd::BuiltIn;
        case MTRANSLATE_CALL_OF_CLASS: return CallEnd::ClassOnly;
        case MTRANSLATE_CALL_OF_UNKNOWN: return CallEnd::Unresolved;
        default: return CallEnd::Found;
    }
}

/* A file that the run knows by name only is in the index. */
std::string target_of(const Call &call, const RunFiles &files, const FileIndex *index) {
    if (call.target) return files.path(call.target);
    if (call.end != MTRANSLATE_CALL_OF_FILE || !index) return "";
    return index->find(files.path(call.place->file), call.name).value_or("");
}

/* Those that end in the same way together. */
std::vector<CallFact> count_calls(const Result &result, const RunFiles &files,
                                  const FileIndex *index) {
    std::map<std::tuple<int, std::string, CallEnd, std::string>, std::size_t> known;
    std::vector<CallFact> calls;
    for (std::size_t i = 0; i < result.call_count; ++i) {
        const Call &call = *result.calls[i];
        CallFact fact{call.function, call.name, end_of_call(call.end),
                      target_of(call, files, index)};
        const auto [at, is_new] =
            known.try_emplace({fact.in, fact.name, fact.end, fact.target}, calls.size());
        if (is_new) {
            fact.line = call.place->line;
            fact.column = files.column(*call.place);
            calls.push_back(std::move(fact));
        }
        ++calls[at->second].count;
    }
    return calls;
}

/* By statements, the names that they call and that are left to the host. */
std::vector<std::set<std::string>> unresolved_names(const Result &result) {
    std::vector<std::set<std::string>> names(result.statement_count);
    for (std::size_t i = 0; i < result.call_count; ++i) {
        const Call &call = *result.calls[i];
        if (call.statement >= 0 && is_left_to_host(end_of_call(call.end)))
            names[static_cast<std::size_t>(call.statement)].insert(call.name);
    }
    return names;
}

/* A class definition, say, counts as the statements in its source. */
std::size_t weight_of(const mTranslateProgramStatement &statement, const RunFiles &files) {
    if (statement.is_read) return 1;
    const mTranslateProgramRange &place = *statement.place;
    const auto text = files.text(place.file).substr(place.begin, place.end - place.begin);
    return std::max(count_unread_statements(text), std::size_t{1});
}

void count_statements(const Result &result, const RunFiles &files, FileFacts &facts) {
    const auto unresolved = unresolved_names(result);
    std::map<std::set<std::string>, std::size_t> waiting;
    for (std::size_t i = 0; i < result.statement_count; ++i) {
        const mTranslateProgramStatement &statement = *result.statements[i];
        facts.statements += weight_of(statement, files);
        if (statement.has_message) continue;
        if (unresolved[i].empty())
            ++facts.without_message;
        else
            ++waiting[unresolved[i]];
    }
    for (const auto &[names, count] : waiting)
        facts.waiting.push_back({{names.begin(), names.end()}, count});
}

}  // namespace

FileFacts facts_of(const Result &result, const RunFiles &files, const FileIndex *index) {
    FileFacts facts;
    if (!result.statistics) return facts;  // in classic
    facts.lines = result.statistics->lines;
    facts.bytes = result.statistics->bytes;
    facts.comments = result.statistics->comments;
    facts.comments_kept = result.statistics->comments_kept;
    for (std::size_t i = 0; i < result.function_count; ++i)
        facts.functions.push_back({result.functions[i]->name, result.functions[i]->place->line});
    facts.calls = count_calls(result, files, index);
    count_statements(result, files, facts);
    return facts;
}

}  // namespace mtranslate
