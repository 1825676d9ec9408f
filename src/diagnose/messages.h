/* Messages about a source: the records, and the way that they take. Whoever finds something reports
 * it; the run keeps it in a list, and an observer gets it at once. */
#pragma once

#include <stdint.h>

#include <initializer_list>

#include "diagnose/message_table.h"
#include "diagnose/source.h"

/* One message. All texts are kept until the run ends. */
struct Message {
    MessageId id;
    const char *text; /* one line: the form with its operands */
    const char *const
        *operands; /* what stands for the %s of the form: names, mostly; null for none */
    uint32_t operand_count;
    const char *file;        /* null for a command */
    const char *called_from; /* name of the file that calls this one, or null */
    uint32_t called_from_line;
    uint32_t offset; /* in the file, in bytes from 0 */
    uint32_t length; /* of the marked range, in bytes; may be 0 */
    Source *source;
    Message *next; /* reported after this one, or null */
};

/* Line and column of the offset. Most messages are never asked. */
inline Position place_of(const Message *message) {
    return position_of(message->source, message->offset);
}

/* The first message of the run, or null, and the first one that is an error or a gap. */
extern const Message *FirstMessage;
extern const Message *FirstFailure;

/* Forgets the messages of the run before, at the start of a run. */
void begin_messages();

/* What a message says, kept until the run ends. */
struct MessageText {
    const char *text;
    const char *const *operands;
    uint32_t operand_count;
};

/* The form of a message with copies of the operands, one for each of its %s. */
MessageText message_text(MessageId id, std::initializer_list<const char *> operands);

/* Reports a message about length bytes at offset. The operands stand for the %s of its form and
 * are copied. The same message at the same place, and errors of a source beyond MOST_ERRORS, are
 * dropped. */
void report(MessageId id, Source *source, uint32_t offset, uint32_t length,
            std::initializer_list<const char *> operands = {});
/* The same with a finished text. */
void report_text(MessageId id, Source *source, uint32_t offset, uint32_t length,
                 const MessageText *said);
constexpr int32_t MOST_ERRORS = 20;
