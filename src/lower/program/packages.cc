// Packages in use.
#include "lower/program/packages.h"

#include "run/run_state.h"

static PackageFlags exchange(PackageFlags flags) {
    PackageFlags before = {UsesArrayTools, UsesLinearAlgebra};
    UsesArrayTools = flags.array_tools;
    UsesLinearAlgebra = flags.linear_algebra;
    return before;
}

PackageFlags begin_packages() { return exchange({0, 0}); }

PackageFlags end_packages(PackageFlags outer) { return exchange(outer); }
