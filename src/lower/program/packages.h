/* Which host packages a procedure or the script uses: each declares its own. */
#pragma once

#include <stdint.h>

struct PackageFlags {
    int32_t array_tools;
    int32_t linear_algebra;
};

/* Something with a declaration of its own begins, inside of what is being lowered; answers what
 * that has used so far. */
PackageFlags begin_packages();
/* It ends: answers what it has used, and goes on with what outer used. */
PackageFlags end_packages(PackageFlags outer);
