// Members of host packages.
#include "translate/package_prefix.h"

#include <string.h>

#include "run/run_state.h"
#include "translate/text_forms.h"

static constexpr char ARRAY_TOOLS[] = "ArrayTools:-";
static constexpr char LINEAR_ALGEBRA[] = "LinearAlgebra:-";

const char *linear_algebra_prefix() {
    UsesLinearAlgebra = 1;
    return FileMode ? "" : LINEAR_ALGEBRA;
}

const char *array_tools_prefix() {
    UsesArrayTools = 1;
    return FileMode ? "" : ARRAY_TOOLS;
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
