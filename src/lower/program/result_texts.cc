// Results of functions, written down: words with blanks after them.
#include "lower/program/result_texts.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "support/allocation.h"
#include "support/long_string.h"
#include "syntax/trace/held_values.h"
#include "syntax/trace/taken_parts.h"

namespace {

// What is known of an inside begins with one of these.
constexpr char NOTHING_KNOWN = '-';
constexpr char HAS_OTHERS = '+';
constexpr char HAS_NO_OTHERS = '.';

LongString append_number(LongString text, uint32_t number) {
    char word[16];
    snprintf(word, sizeof word, "%u ", number);
    return AppendStringToString(text, word);
}

LongString append_sign(LongString text, char sign) {
    const char word[] = {sign, ' ', '\0'};
    return AppendStringToString(text, word);
}

LongString append_parts(LongString text, const KnownParts *parts) {
    if (!parts) return append_sign(text, NOTHING_KNOWN);
    text = append_sign(text, parts->has_others ? HAS_OTHERS : HAS_NO_OTHERS);
    int32_t count = 0;
    for (const KnownPart *part = parts->first; part; part = part->next) count++;
    text = append_number(text, static_cast<uint32_t>(count));
    for (const KnownPart *part = parts->first; part; part = part->next) {
        text = AppendStringToString(AppendStringToString(text, part->name), " ");
        text = append_parts(append_number(text, part->value), part->inside);
    }
    return text;
}

// All fields of a global, with the kinds that it is given.
LongString append_globals(LongString text, const Symbol *global) {
    for (; global; global = global->next) {
        text = append_sign(text, HAS_OTHERS);
        text = AppendStringToString(AppendStringToString(text, global->name), " ");
        text = append_number(text, global->given_kinds);
        text = append_globals(text, global->parts ? global->parts->next : nullptr);
    }
    return append_sign(text, NOTHING_KNOWN);
}

LongString append_output(LongString text, const OutputValue *output) {
    return append_parts(append_number(text, output->value), output->parts);
}

LongString append_taken(LongString text, const TakenPart *taken) {
    for (; taken; taken = taken->next) {
        text = append_number(append_sign(text, HAS_OTHERS), static_cast<uint32_t>(taken->position));
        for (const PartPath *path = taken->path; path; path = path->inner)
            text = AppendStringToString(AppendStringToString(text, path->name), " ");
        text = append_sign(text, HAS_NO_OTHERS);
    }
    return append_sign(text, NOTHING_KNOWN);
}

uint32_t next_number(const char **text) {
    char *rest;
    uint32_t number = static_cast<uint32_t>(strtoul(*text, &rest, 10));
    *text = rest;
    return number;
}

const char *next_word(const char **text) {
    const char *start = *text + strspn(*text, " ");
    size_t length = strcspn(start, " ");
    *text = start + length;
    return KeepText(start, length);
}

const PartPath *next_path(const char **text) {
    const PartPath *first = nullptr;
    const PartPath **end = &first;
    for (const char *name = next_word(text); *name && *name != HAS_NO_OTHERS;
         name = next_word(text)) {
        PartPath *path = AllocRecord<PartPath>();
        *path = {part_name(name), nullptr};
        *end = path;
        end = &path->inner;
    }
    return first;
}

const TakenPart *next_taken(const char **text) {
    const TakenPart *first = nullptr;
    const TakenPart **end = &first;
    while (*next_word(text) == HAS_OTHERS) {
        TakenPart *taken = AllocRecord<TakenPart>();
        *taken = {static_cast<int32_t>(next_number(text)), nullptr, nullptr};
        taken->path = next_path(text);
        *end = taken;
        end = &taken->next;
    }
    return first;
}

const KnownParts *next_parts(const char **text, int depth) {
    char sign = *next_word(text);
    bool is_known = (sign == HAS_OTHERS || sign == HAS_NO_OTHERS) && depth <= DEEPEST_HOLDER;
    if (!is_known) return nullptr;
    const KnownPart *first = nullptr;
    const KnownPart **end = &first;
    for (uint32_t count = next_number(text); count > 0 && **text; count--) {
        KnownPart *part = AllocRecord<KnownPart>();
        *part = {part_name(next_word(text)), 0, nullptr, nullptr};
        part->value = static_cast<Value>(next_number(text));
        part->inside = next_parts(text, depth + 1);
        *end = part;
        end = &part->next;
    }
    return new_known_parts(sign == HAS_OTHERS, first);
}

void next_kinds(const char **text, Symbol *global, int depth) {
    global->given_kinds = static_cast<uint16_t>(next_number(text));
    while (*next_word(text) == HAS_OTHERS) {
        const char *name = part_name(next_word(text));
        Symbol *field = field_of(global, name, depth);
        next_kinds(text, field ? field : new_known_global(name), depth + 1);
    }
}

const Symbol *next_globals(const char **text) {
    Symbol *first = nullptr;
    while (*next_word(text) == HAS_OTHERS) {
        Symbol *global = new_known_global(part_name(next_word(text)));
        next_kinds(text, global, 0);
        global->next = first;
        first = global;
    }
    return first;
}

OutputValue next_output(const char **text) {
    Value value = static_cast<Value>(next_number(text));
    return {value, next_parts(text, 0)};
}

}  // namespace

const FunctionResults *keep_results(const FunctionResults &results) {
    FunctionResults *kept = AllocRecord<FunctionResults>();
    *kept = results;
    return kept;
}

const char *text_of_results(const FunctionResults *results) {
    LongString text = append_taken(NewLongString(), results->taken);
    text = append_globals(text, results->globals);
    text = append_output(text, &results->rest);
    text = append_number(text, static_cast<uint32_t>(results->count));
    for (int32_t k = 0; k < results->count; k++) text = append_output(text, &results->outputs[k]);
    return text;
}

const FunctionResults *results_in(const char *text) {
    FunctionResults results = {};
    results.taken = next_taken(&text);
    results.globals = next_globals(&text);
    results.rest = next_output(&text);
    uint32_t count = next_number(&text);
    if (count > strlen(text)) return nullptr;
    size_t size = sizeof(OutputValue) * (size_t(count) + 1);
    OutputValue *outputs = static_cast<OutputValue *>(AllocKept(size));
    results.count = static_cast<int32_t>(count);
    results.outputs = outputs;
    for (uint32_t k = 0; k < count; k++) outputs[k] = next_output(&text);
    return keep_results(results);
}
