// Writing host text.
#include "translate/text_forms.h"

#include "support/allocation.h"

void write_form(Writer *to, const char *form, std::initializer_list<const char *> operands) {
    for (const char *operand : operands) {
        char *at = to->at;  // the compiler keeps it apart from the characters that are written
        for (; *form != '%'; form++) {
            assert(*form && at + 1 < to->end);
            *at++ = *form;
        }
        assert(form[1] == 's');
        to->at = at;
        write_text(to, operand);
        form += strlen("%s");
    }
    write_text(to, form);
}

void write_escaped(Writer *to, const char *text, const char *escaped) {
    for (size_t length; text[length = strcspn(text, escaped)]; text += length + 1) {
        write_bytes(to, text, length);
        write_character(to, '\\');
        write_character(to, text[length]);
    }
    write_text(to, text);
}

size_t escaped_length(const char *text, const char *escaped) {
    size_t length = strlen(text);
    while (*(text += strcspn(text, escaped))) {
        length++;
        text++;
    }
    return length;
}

Writer new_text(size_t size) {
    char *text = static_cast<char *>(AllocKept(size));
    *text = '\0';
    return {text, text + size};
}

// Most texts of a translation are made here: the operands' lengths are found once.
const char *form_text(const char *form, std::initializer_list<const char *> operands) {
    constexpr size_t MOST_OPERANDS = 16;
    assert(operands.size() <= MOST_OPERANDS);
    size_t lengths[MOST_OPERANDS];
    const char *end = form + strlen(form) + 1;
    size_t size = static_cast<size_t>(end - form) - operands.size() * strlen("%s");
    const char *const *operand = operands.begin();
    for (size_t k = 0; k < operands.size(); k++) size += lengths[k] = strlen(operand[k]);
    char *text = static_cast<char *>(AllocKept(size));
    char *at = text;
    for (size_t k = 0; k < operands.size(); k++, form += strlen("%s")) {
        while (*form != '%') *at++ = *form++;
        memcpy(at, operand[k], lengths[k]);
        at += lengths[k];
    }
    memcpy(at, form, static_cast<size_t>(end - form));
    return text;
}

bool has_prefix(const char *text, const char *prefix) {
    return strncmp(text, prefix, strlen(prefix)) == 0;
}

static bool is_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool is_identifier(const char *text) {
    if (!is_letter(*text)) return false;
    while (is_letter(*text) || (*text >= '0' && *text <= '9') || *text == '_') text++;
    return *text == '\0';
}
