// Writing host text.
#include "translate/text_forms.h"

#include <assert.h>
#include <string.h>

char *write_text(char *at, const char *text) { return stpcpy(at, text); }

char *write_form(char *at, const char *form, std::initializer_list<const char *> operands) {
    for (const char *operand : operands) {
        while (*form != '%') *at++ = *form++;
        assert(form[1] == 's');
        at = stpcpy(at, operand);
        form += strlen("%s");
    }
    return stpcpy(at, form);
}

char *write_escaped(char *at, const char *text) {
    for (; *text; text++) {
        if (*text == '\\') *at++ = '\\';
        *at++ = *text;
    }
    *at = '\0';
    return at;
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
