// The front ends by their languages.
#include "driver/front_end.h"

#include <string.h>

const FrontEnd *find_front_end(const char *language) {
    if (strcmp(language, "classic") == 0) return &ClassicFrontEnd;
    if (strcmp(language, "matlab") == 0) return &MatlabFrontEnd;
    if (strcmp(language, "octave") == 0) return &OctaveFrontEnd;
    return nullptr;
}
