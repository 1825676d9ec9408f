// The table of messages, for tools.
#include <mtranslate_program.h>

#include <array>

#include "diagnose/message_table.h"

namespace {

using Kind = mTranslateMessageKind;

struct Kinds {
    std::array<Kind, MESSAGE_COUNT> all;
    std::array<const Kind *, MESSAGE_COUNT> list;

    Kinds() : all(), list() {
        for (const MessageRow &row : MessageTable) {
            all[row.id] = {sizeof(Kind),        row.severity,    row.code,    row.name,  row.form,
                           operand_count(&row), row.explanation, row.example, row.advice};
            list[row.id] = &all[row.id];
        }
    }
};

}  // namespace

const Kind *const *mTranslateMessageKinds(size_t *count) {
    static const Kinds kinds;
    if (count) *count = kinds.list.size();
    return kinds.list.data();
}

const Kind *mTranslateFindMessageKind(const char *code_or_name) {
    const MessageRow *row = find_message(code_or_name);
    return row ? mTranslateMessageKinds(nullptr)[row->id] : nullptr;
}
