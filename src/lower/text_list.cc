// Lists of names.
#include "lower/text_list.h"

#include <string.h>

#include "support/allocation.h"
#include "translate/text_forms.h"

void append_text(TextList *list, const char *text) {
    TextCell *cell = AllocRecord<TextCell>();
    *cell = {text, nullptr};
    (list->last ? list->last->next : list->first) = cell;
    list->last = cell;
}

const char *join_texts(const TextList *list, const TextCell *end) {
    size_t size = 1;
    for (const TextCell *cell = list->first; cell != end; cell = cell->next)
        size += strlen(cell->text) + strlen(", ");
    Writer to = new_text(size);
    const char *text = to.at;
    for (const TextCell *cell = list->first; cell != end; cell = cell->next) {
        if (cell != list->first) write_text(&to, ", ");
        write_text(&to, cell->text);
    }
    return text;
}
