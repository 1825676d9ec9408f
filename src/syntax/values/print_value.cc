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

LongString print_kinds(LongString text, Value value) {
    if (kinds_of(value) == ANY_KIND) return AppendStringToString(text, "any");
    const char *between = "";
    for (const KindName &kind : KindNames) {
        if (!may_be(value, kind.kind)) continue;
        bool is_count = kind.kind == MAY_BE_NUMBER && !may_be(value, ANY_SIGN);
        text = AppendStringToString(text, between);
        text = AppendStringToString(text, is_count ? "count" : kind.name);
        between = "|";
    }
    return text;
}

const char *shape_text(Value value) {
    if (!kinds_of(value)) return "";
    if (!may_be(value, MAY_BE_FILLED)) return "0";
    bool has_rows = may_be(value, MAY_HAVE_ROWS);
    bool has_columns = may_be(value, MAY_HAVE_COLUMNS);
    if (!has_rows && !has_columns) return may_be(value, MAY_BE_ARRAY) ? "[.]" : "";
    if (may_be(value, MAY_BE_ARRAY) && may_be(value, MAY_BE_SINGLE)) return "[?]";
    if (!has_rows) return "[1]";
    return has_columns ? "[]" : "[;]";
}

}  // namespace

LongString print_value(LongString text, Value value) {
    text = print_kinds(text, value);
    text = AppendStringToString(text, shape_text(value));
    return may_be(value, MAY_BE_MISSING) ? AppendStringToString(text, "?") : text;
}
