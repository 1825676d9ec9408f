// The messages of a run, for a tool.
#include <algorithm>
#include <map>

#include "diagnose/messages.h"
#include "driver/program/program_run.h"
#include "run/last_error.h"

namespace {

using ProgramMessage = mTranslateProgramMessage;

// A message with the text that its place is in.
struct Placed {
    ProgramMessage *message;
    PlacedText in;
};

const char *const *keep_operands(ResultMemory *memory, const Message *message) {
    size_t count = message->operand_count;
    if (count == 0) return nullptr;
    auto **operands = static_cast<const char **>(take_result(memory, count * sizeof(char *)));
    for (size_t i = 0; i < count; i++) operands[i] = keep_result(memory, message->operands[i]);
    return operands;
}

// What the table says lives as long as the library: only texts of the run are copied.
Placed new_message(ProgramRun *run, const Message *from) {
    ResultMemory *memory = memory_of(run);
    const MessageRow &row = MessageTable[from->id];
    auto *message = new_result<ProgramMessage>(memory);
    message->kind = mTranslateMessageKinds(nullptr)[from->id];
    message->severity = row.severity;
    message->code = row.code;
    message->name = row.name;
    message->text = keep_result(memory, from->text);
    message->help = row.advice ? row.advice : "";
    message->operands = keep_operands(memory, from);
    message->operand_count = from->operand_count;
    if (from->called_from)
        message->called_from = keep_result(memory, shortest_path(from->called_from).c_str());
    message->called_from_line = from->called_from_line;
    PlacedText in = {from->file, from->source->text, from->source->length};
    message->place =
        ask_range(&run->places, memory, &in, from->offset, from->offset + from->length);
    return {message, in};
}

// Its line is copied once for all messages that follow each other on it.
void keep_lines(ResultMemory *memory, const std::vector<Placed> &all) {
    const char *last = nullptr;
    const ProgramMessage *before = nullptr;
    for (const Placed &placed : all) {
        ProgramMessage *message = placed.message;
        if (!message->place) continue;
        const char *end = placed.in.text + placed.in.length;
        const char *start = placed.in.text + std::min(message->place->begin, placed.in.length) -
                            (message->place->column - 1);
        if (start == last) {
            message->source_line = before->source_line;
            message->source_line_length = before->source_line_length;
        } else {
            message->source_line_length = static_cast<size_t>(line_end(start, end) - start);
            message->source_line = keep_result(memory, start, message->source_line_length);
        }
        last = start;
        before = message;
    }
}

// The run's own source first, then the others as they have been met; each by its places.
void sort_messages(std::vector<const Message *> *messages) {
    std::map<const Source *, size_t> met;
    for (const Message *message : *messages) met.try_emplace(message->source, met.size() + 1);
    for (auto &[source, number] : met)
        if (!source->caller) number = 0;
    std::stable_sort(messages->begin(), messages->end(), [&](const Message *a, const Message *b) {
        size_t first = met.at(a->source);
        size_t second = met.at(b->source);
        return first != second ? first < second : a->offset < b->offset;
    });
}

// text: keeps what the place is in.
Placed new_failure(ProgramRun *run, const char *failure, std::string *text) {
    ResultMemory *memory = memory_of(run);
    auto *message = new_result<ProgramMessage>(memory);
    message->code = message->name = message->help = "";
    message->text = failure;
    bool has_place = LastError.line > 0 && LastError.offset >= 0;
    if (!has_place || !find_program_text(run, LastError.file, text)) return {message, {}};
    PlacedText in = {LastError.file, text->data(), static_cast<uint32_t>(text->size())};
    uint32_t offset = std::min(static_cast<uint32_t>(LastError.offset), in.length);
    message->place = ask_range(&run->places, memory, &in, offset, offset);
    return {message, in};
}

}  // namespace

void finish_messages(ProgramRun *run, const char *failure) {
    sort_messages(&run->messages);
    std::vector<Placed> all;
    all.reserve(run->messages.size() + 1);
    run->places.asked.reserve(run->places.asked.size() + 2 * all.capacity());
    for (const Message *message : run->messages) all.push_back(new_message(run, message));
    std::string text;
    if (failure) all.push_back(new_failure(run, failure, &text));
    find_places(&run->places);
    keep_lines(memory_of(run), all);
    std::vector<const ProgramMessage *> list;
    list.reserve(all.size());
    for (const Placed &placed : all) list.push_back(placed.message);
    result_of(run)->messages = list_result(memory_of(run), list);
    result_of(run)->message_count = list.size();
}
