/* The smallest host: translates the MATLAB text in its argument and prints the result. It needs
 * the public header and the shared library alone. */
#include <mtranslate.h>
#include <stdio.h>
#include <stdlib.h>

enum { TYPE_STRING = 1, TYPE_VECTOR = 2 };

static HostValue words[256]; /* every value of the one run, one after the other */
static int used;

/* A new value: the header with its type, then room for count words. */
static HostValue *new_value(unsigned type, int count) {
    HostValue *value = words + used;
    used += 1 + count;
    if (used > 256) exit(3);
    *(uint32_t *)value = (uint32_t)type << HOST_TYPE_SHIFT;
    return value;
}

static uint32_t type_of(HostValue value) {
    return value && !(value & 1) ? *(const uint32_t *)value >> HOST_TYPE_SHIFT : 0;
}

static HostValue raise_error(const char *message, HostValue value) {
    (void)value;
    fprintf(stderr, "%s\n", message);
    exit(1);
}

static HostValue no_answer(HostValue procedure, HostValue argument) {
    (void)procedure, (void)argument;
    return 0;
}

static HostValue no_name(const char *name) {
    (void)name;
    return 0;
}

static int is_string(HostValue value) { return type_of(value) == TYPE_STRING; }

static HostValue element(HostValue list, int index) { return ((HostValue *)list)[index]; }

static int is_true(HostValue value) { return value != 0; }

static const char *text_of(HostValue value) { return (const char *)((HostValue *)value)[1]; }

static int vector_length(HostValue value) {
    (void)value;
    return 2; /* the argument vector is the only one that is counted */
}

static HostValue new_sequence(int count) { return (HostValue)new_value(TYPE_VECTOR, count); }

static HostValue new_string(const char *text) {
    HostValue *value = new_value(TYPE_STRING, 1);
    value[1] = (HostValue)text;
    return (HostValue)value;
}

static HostValue copy_string(const char *text) {
    static char copy[4096];
    snprintf(copy, sizeof copy, "%s", text);
    return new_string(copy);
}

static int is_list(HostValue value) {
    (void)value;
    return 0;
}

static const HostKernelTable kernel = {
    raise_error, no_answer,     no_name,      is_string,   element, is_true,
    text_of,     vector_length, new_sequence, copy_string, is_list,
};

int main(int argc, char **argv) {
    if (argc != 2) return 2;
    HostValue *args = (HostValue *)new_sequence(2);
    args[1] = new_string("command");
    args[2] = new_string(argv[1]);
    HostValue result = mTranslate(&kernel, (HostValue)args);
    if (!result) return 1;
    fputs(text_of(result), stdout);
    mTranslateRelease();
    return 0;
}
