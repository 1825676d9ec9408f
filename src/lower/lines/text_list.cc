// Lists of names.
#include "lower/lines/text_list.h"

#include <string.h>

#include "support/allocation.h"
#include "translate/text_forms.h"

void append_text(TextList *list, const char *text) {
    TextCell *cell = AllocRecord<TextCell>();
    *cell = {text, nullptr};
    (list->last ? list->last->next : list->first) = cell;
    list->last = cell;
}

static const char *join_until(const TextList *list, const TextCell *end, const char *separator) {
    size_t size = 1;
    for (const TextCell *cell = list->first; cell != end; cell = cell->next)
        size += strlen(cell->text) + strlen(separator);
    Writer to = new_text(size);
    const char *text = to.at;
    for (const TextCell *cell = list->first; cell != end; cell = cell->next) {
        if (cell != list->first) write_text(&to, separator);
        write_text(&to, cell->text);
    }
    return text;
}

const char *separated_texts(const TextList *list, const char *separator) {
    return join_until(list, nullptr, separator);
}

const char *join_texts(const TextList *list, const TextCell *end) {
    return join_until(list, end, ", ");
}
