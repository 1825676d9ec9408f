// Members of host packages.
#include "translate/package_prefix.h"

#include <string.h>

#include "run/run_state.h"
#include "translate/text_forms.h"

static constexpr char ARRAY_TOOLS[] = "ArrayTools:-";
static constexpr char LINEAR_ALGEBRA[] = "LinearAlgebra:-";

static char *write_member(char *at, const char *prefix, const char *form,
                          std::initializer_list<const char *> operands) {
    if (!FileMode) at = write_text(at, prefix);
    return write_form(at, form, operands);
}

char *with_linear_algebra_prefix(char *at, const char *form, const char *operand) {
    UsesLinearAlgebra = 1;
    return write_member(at, LINEAR_ALGEBRA, form, {operand});
}

char *with_array_tools_prefix(char *at, const char *form,
                              std::initializer_list<const char *> operands) {
    UsesArrayTools = 1;
    return write_member(at, ARRAY_TOOLS, form, operands);
}

static const char *without_prefix(const char *call, const char *prefix) {
    return FileMode ? call + strlen(prefix) : call;
}

const char *note_package(const char *call) {
    if (has_prefix(call, ARRAY_TOOLS)) {
        UsesArrayTools = 1;
        return without_prefix(call, ARRAY_TOOLS);
    }
    if (has_prefix(call, LINEAR_ALGEBRA)) {
        UsesLinearAlgebra = 1;
        return without_prefix(call, LINEAR_ALGEBRA);
    }
    return call;
}
