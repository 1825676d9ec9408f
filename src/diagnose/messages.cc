// The messages of a run.
#include "diagnose/messages.h"

#include <assert.h>
#include <string.h>

#include "support/allocation.h"
#include "support/observers.h"

const Message *FirstMessage;
const Message *FirstFailure;

namespace {

Message *LastMessage;
// The messages by place and id, with open addressing; its storage goes with the run.
Message **Places;
uint32_t PlacesSize;  // a power of two, or 0
uint32_t PlacesUsed;
constexpr uint32_t FIRST_PLACES = 64;

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

const char *const *keep_operands(std::initializer_list<const char *> operands) {
    if (operands.size() == 0) return nullptr;
    const char **kept = static_cast<const char **>(AllocKept(operands.size() * sizeof(char *)));
    const char **to = kept;
    for (const char *operand : operands) *to++ = KeepText(operand, strlen(operand));
    return kept;
}

bool is_same(const Message *a, const Message *b) {
    return a->id == b->id && a->offset == b->offset && a->source == b->source;
}

// The slot of the same message, or the free one where it belongs. The table is not full.
Message **find_place(const Message *message) {
    uint32_t at = (message->offset * 64 + message->id) * 0x9E3779B1U >> 8;
    for (;; at++) {
        Message **slot = Places + (at & (PlacesSize - 1));
        if (!*slot || is_same(*slot, message)) return slot;
    }
}

void grow_places() {
    Message **old = Places;
    uint32_t old_size = PlacesSize;
    PlacesSize = old_size ? 2 * old_size : FIRST_PLACES;
    Places = static_cast<Message **>(Alloc(PlacesSize * sizeof(void *)));
    memset(Places, 0, PlacesSize * sizeof(void *));
    for (uint32_t i = 0; i < old_size; i++)
        if (old[i]) *find_place(old[i]) = old[i];
    Free(old);
}

// Enters the message into the table; false when it is there already.
bool enter_place(Message *message) {
    if (PlacesUsed >= PlacesSize / 4 * 3) grow_places();
    Message **slot = find_place(message);
    if (*slot) return false;
    *slot = message;
    PlacesUsed++;
    return true;
}

bool is_too_much(MessageId id, Source *source) {
    return severity_of(id) == SEVERITY_ERROR && source->errors >= MOST_ERRORS;
}

void set_place(Message *message, Source *source) {
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
    PlacesSize = PlacesUsed = 0;
}

MessageText message_text(MessageId id, std::initializer_list<const char *> operands) {
    return {fill_form(MessageTable[id].form, operands), keep_operands(operands),
            static_cast<uint32_t>(operands.size())};
}

void report_text(MessageId id, Source *source, uint32_t offset, uint32_t length,
                 const MessageText *said) {
    if (is_too_much(id, source)) return;
    Message *message = AllocRecord<Message>();
    *message = {};
    message->id = id;
    message->source = source;
    message->offset = offset;
    message->length = length;
    message->text = said->text;
    message->operands = said->operands;
    message->operand_count = said->operand_count;
    if (!enter_place(message)) return;
    set_place(message, source);
    if (severity_of(id) == SEVERITY_ERROR) source->errors++;
    append(message);
    if (Observing.message) Observing.message(Observing.context, message);
}

void report(MessageId id, Source *source, uint32_t offset, uint32_t length,
            std::initializer_list<const char *> operands) {
    MessageText said = message_text(id, operands);
    report_text(id, source, offset, length, &said);
}
