// Lists of names.
#include "lower/text_list.h"

#include <string.h>

#include "support/allocation.h"

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
    char *text = static_cast<char *>(AllocKept(size));
    char *at = text;
    *at = '\0';
    for (const TextCell *cell = list->first; cell != end; cell = cell->next) {
        if (cell != list->first) at = stpcpy(at, ", ");
        at = stpcpy(at, cell->text);
    }
    return text;
}
