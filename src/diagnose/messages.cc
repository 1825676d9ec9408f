// The messages of a run.
#include "diagnose/messages.h"

#include <assert.h>
#include <string.h>

#include "run/run_end.h"
#include "support/allocation.h"

MessageListener Listener;
const Message *FirstMessage;
const Message *FirstFailure;

namespace {

Message *LastMessage;
// The messages by place and id; null until there is one. Its storage goes with the run.
HashTable *Places;
constexpr int32_t PLACE_BUCKETS = 512;

const char *next_operand(const char *form) { return strstr(form, "%s"); }

size_t text_size(const char *form, std::initializer_list<const char *> operands) {
    size_t size = strlen(form) + 1;
    for (const char *operand : operands) size += strlen(operand);
    return size;
}

// The form with the operands in the places of its %s.
const char *fill_form(const char *form, std::initializer_list<const char *> operands) {
    char *text = static_cast<char *>(AllocKept(text_size(form, operands)));
    char *to = text;
    for (const char *operand : operands) {
        const char *place = next_operand(form);
        assert(place);
        memcpy(to, form, static_cast<size_t>(place - form));
        to = stpcpy(to + (place - form), operand);
        form = place + 2;
    }
    assert(!next_operand(form));
    strcpy(to, form);
    return text;
}

int32_t key_of(MessageId id, uint32_t offset) {
    return static_cast<int32_t>((offset * 64 + id) & INT32_MAX);
}

int is_same(HashValue stored, const void *probe) {
    const Message *old = static_cast<const Message *>(stored);
    const Message *message = static_cast<const Message *>(probe);
    return old->id == message->id && old->offset == message->offset &&
           old->source == message->source;
}

// Enters the message into the table; false when it is there already.
bool enter_place(Message *message) {
    if (!Places) Places = HashCreate(PLACE_BUCKETS);
    int32_t key = key_of(message->id, message->offset);
    HashValue found;
    if (Places && HashLookup(Places, key, &found, message, is_same)) return false;
    if (!Places || !HashInsert(Places, key, message)) end_run(OUT_OF_MEMORY);
    return true;
}

bool is_too_much(MessageId id, Source *source) {
    return severity_of(id) == SEVERITY_ERROR && source->errors >= MOST_ERRORS;
}

void set_place(Message *message, Source *source) {
    Position position = position_of(source, message->offset);
    message->line = position.line;
    message->column = position.column;
    message->file = source->name;
    if (!source->caller) return;
    message->called_from = source->caller->name;
    message->called_from_line = position_of(source->caller, source->caller_offset).line;
}

void append(Message *message) {
    if (LastMessage) {
        LastMessage->next = message;
    } else {
        FirstMessage = message;
    }
    LastMessage = message;
    if (!FirstFailure && is_failure(message->id)) FirstFailure = message;
}

}  // namespace

void begin_messages() {
    FirstMessage = FirstFailure = LastMessage = nullptr;
    Places = nullptr;
}

const char *message_text(MessageId id, std::initializer_list<const char *> operands) {
    return fill_form(MessageTable[id].form, operands);
}

void report_text(MessageId id, Source *source, uint32_t offset, uint32_t length, const char *text) {
    if (is_too_much(id, source)) return;
    Message *message = AllocRecord<Message>();
    *message = {};
    message->id = id;
    message->source = source;
    message->offset = offset;
    message->length = length;
    message->text = text;
    if (!enter_place(message)) return;
    set_place(message, source);
    if (severity_of(id) == SEVERITY_ERROR) source->errors++;
    append(message);
    if (Listener) Listener(message);
}

void report(MessageId id, Source *source, uint32_t offset, uint32_t length,
            std::initializer_list<const char *> operands) {
    report_text(id, source, offset, length, message_text(id, operands));
}
