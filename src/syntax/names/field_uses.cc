// Fields named in the text.
#include "syntax/names/field_uses.h"

#include "support/allocation.h"

struct FieldUse {
    const char *field;
    FieldUse *next;
    int32_t count; /* of those from here on */
};

constexpr int32_t MOST_FIELDS = 64;

static bool has_many(const FieldUse *uses) { return uses && uses->count == MOST_FIELDS; }

static bool has_field(const FieldUse *uses, const char *field) {
    while (uses && uses->field != field) uses = uses->next;
    return uses;
}

static void add_field(FieldUse **uses, const char *field) {
    FieldUse *use = AllocRecord<FieldUse>();
    *use = {field, *uses, *uses ? (*uses)->count + 1 : 1};
    *uses = use;
}

void note_field_use(Symbol *symbol, const char *field) {
    bool is_noted = has_many(symbol->fields) || has_field(symbol->fields, field);
    if (!is_noted) add_field(&symbol->fields, field);
}

void note_cell_field(Symbol *symbol, const char *field) {
    bool is_noted = has_many(symbol->cell_fields) || is_cell_field(symbol, field);
    if (!is_noted) add_field(&symbol->cell_fields, field);
}

bool is_cell_field(const Symbol *symbol, const char *field) {
    return has_field(symbol->cell_fields, field);
}
