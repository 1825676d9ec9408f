/* The table of messages: what each says, and what people are told about it. */
#pragma once

#include <stdint.h>

enum MessageSeverity : uint8_t {
    SEVERITY_ERROR,   /* the source is not valid, or of a part of the language that is left out */
    SEVERITY_GAP,     /* valid, and without a form in the host's language */
    SEVERITY_WARNING, /* translated, and it may mean something else */
    SEVERITY_NOTE     /* translated, and worth a look */
};

/* ORDER MESSAGES: the rows of message_table.cc. */
enum MessageId : uint8_t {
    /* errors */
    UNEXPECTED_TOKEN,
    UNCLOSED_BRACKET,
    UNCLOSED_STRING,
    UNCLOSED_BLOCK,
    UNCLOSED_BLOCK_COMMENT,
    STRAY_END,
    STRAY_BRANCH,
    INVALID_TARGET,
    DOUBLE_ASSIGNMENT,
    ASSIGNMENT_AS_VALUE,
    END_OUTSIDE_INDEX,
    INVALID_CHARACTER,
    INVALID_NUMBER,
    NESTING_TOO_DEEP,
    CLASS_DEFINITION,
    SUPERCLASS_CALL,
    CLASS_QUERY,
    SPMD_BLOCK,
    IMPORT_COMMAND,
    STRAY_JUMP,
    /* gaps */
    TRY_GAP,
    TARGET_VALUES_GAP,
    DELETION_GAP,
    EVAL_GAP,
    SCRIPT_CALL_GAP,
    OUTSIDE_GAP,
    SUPERCLASS_GAP,
    /* the meaning may differ */
    FIELD_VALUES,
    TEXT_COMPARISON,
    ANS_VALUE,
    EXIST_VARIABLE,
    CELL_CASE,
    ARGUMENT_CHECKS,
    LOAD_VARIABLES,
    UNWIND_PROTECT,
    RENAMED_FIELD,
    FOREIGN_FUNCTION,
    SHARED_VARIABLE,
    REPLACED_ERROR,
    GLOBAL_START,
    PACKAGE_MEMBER,
    CLASS_DECIDES,
    COLON_TEXT,
    CLEAR_COMMAND,
    COMPOSED_TEXT,
    CELL_GIVEN,
    FUNCTION_TEXT,
    /* names */
    UNKNOWN_FUNCTION,
    UNASSIGNED_NAME,
    UNASSIGNED_OUTPUT,
    SHADOWED_FILE,
    DIFFERENT_NAMES,
    SCRIPT_AS_FUNCTION,
    MESSAGE_COUNT
};

struct MessageRow {
    MessageId id;
    const char *code; /* MT and three digits */
    const char *name; /* short, for people and for machines: words joined by hyphens */
    MessageSeverity severity;
    const char *form;        /* the text of one line, with a %s for each operand */
    const char *explanation; /* what it means, in sentences */
    const char *example;     /* a source that raises this message alone; null where
                                one file cannot, or only a long one */
    const char *advice;      /* what to do */
};

extern const MessageRow MessageTable[MESSAGE_COUNT];

/* The row with the code ("MT101", in any case) or the short name; null when there is none. */
const MessageRow *find_message(const char *code_or_name);
/* How many %s its form has. */
uint32_t operand_count(const MessageRow *row);
/* "error", "gap", "warning", "note". */
const char *severity_name(MessageSeverity severity);

inline MessageSeverity severity_of(MessageId id) { return MessageTable[id].severity; }
/* Errors and gaps: something is left untranslated. */
inline bool is_failure(MessageId id) { return severity_of(id) <= SEVERITY_GAP; }
