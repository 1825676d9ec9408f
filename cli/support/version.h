/* The version of the tool, which is the library's. */
#pragma once

#include <mtranslate.h>

namespace mtranslate {

#define MTRANSLATE_TEXT_OF(token) #token
#define MTRANSLATE_VERSION_TEXT(major, minor, patch) \
    MTRANSLATE_TEXT_OF(major) "." MTRANSLATE_TEXT_OF(minor) "." MTRANSLATE_TEXT_OF(patch)

constexpr const char *VERSION = MTRANSLATE_VERSION_TEXT(
    MTRANSLATE_VERSION_MAJOR, MTRANSLATE_VERSION_MINOR, MTRANSLATE_VERSION_PATCH);

#undef MTRANSLATE_VERSION_TEXT
#undef MTRANSLATE_TEXT_OF

}  // namespace mtranslate
