// Fields named in the text.
#include "syntax/names/field_uses.h"

#include "support/allocation.h"

struct FieldUse {
    const char *field;
    FieldUse *next;
    int32_t count; /* of those from here on */
};

constexpr int32_t MOST_FIELDS = 64;

static bool has_many(const Symbol *symbol) {
    return symbol->fields && symbol->fields->count == MOST_FIELDS;
}

bool uses_field(const Symbol *symbol, const char *field) {
    if (has_many(symbol)) return true;
    for (const FieldUse *use = symbol->fields; use; use = use->next)
        if (use->field == field) return true;
    return false;
}

void note_field_use(Symbol *symbol, const char *field) {
    if (uses_field(symbol, field)) return;
    FieldUse *use = AllocRecord<FieldUse>();
    *use = {field, symbol->fields, symbol->fields ? symbol->fields->count + 1 : 1};
    symbol->fields = use;
}
