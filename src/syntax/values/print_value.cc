// Values as text.
#include "syntax/values/print_value.h"

namespace {

struct KindName {
    Value kind;
    const char *name;
};

const KindName KindNames[] = {{MAY_BE_NUMBER, "number"}, {MAY_BE_TRUTH, "truth"},
                              {MAY_BE_TEXT, "text"},     {MAY_BE_CELL, "cell"},
                              {MAY_BE_RECORD, "record"}, {MAY_BE_FUNCTION, "function"},
                              {MAY_BE_OTHER, "other"}};

const char *number_name(Value value) {
    if (!may_be(value, ANY_SIGN)) return "count";
    if (!may_be(value, MAY_BE_BROKEN)) return "whole";
    return may_be(value, MAY_BE_NEGATIVE) ? "number" : "positive";
}

LongString print_kinds(LongString text, Value value) {
    if (kinds_of(value) == ANY_KIND) return AppendStringToString(text, "any");
    const char *between = "";
    for (const KindName &kind : KindNames) {
        if (!may_be(value, kind.kind)) continue;
        text = AppendStringToString(text, between);
        bool is_number = kind.kind == MAY_BE_NUMBER;
        text = AppendStringToString(text, is_number ? number_name(value) : kind.name);
        between = "|";
    }
    return text;
}

const char *size_text(Value value) {
    bool has_rows = may_be(value, MAY_HAVE_ROWS);
    if (may_be(value, MAY_HAVE_COLUMNS)) return has_rows ? "" : "1";
    return has_rows ? ";" : ".";
}

LongString print_shape(LongString text, Value value) {
    if (!kinds_of(value)) return text;
    if (!may_be(value, MAY_BE_FILLED)) return AppendStringToString(text, "[0]");
    bool may_be_empty = may_be(value, MAY_BE_EMPTY);
    if (!may_be(value, MAY_BE_ARRAY | MAY_HAVE_ROWS | MAY_HAVE_COLUMNS))
        return may_be_empty ? AppendStringToString(text, "[?0]") : text;
    text = AppendStringToString(text, "[");
    text = AppendStringToString(text, size_text(value));
    if (may_be(value, MAY_BE_SINGLE)) text = AppendStringToString(text, "?");
    return AppendStringToString(text, may_be_empty ? "]" : "+]");
}

}  // namespace

LongString print_value(LongString text, Value value) {
    text = print_kinds(text, value);
    text = print_shape(text, value);
    return may_be(value, MAY_BE_MISSING) ? AppendStringToString(text, "?") : text;
}
