/* The library's messages of a run as the tool's diagnostics. */
#pragma once

#include <cstddef>

#include "cli/messages/diagnostic.h"
#include "cli/messages/message_policy.h"
#include "cli/messages/run_files.h"

namespace mtranslate {

struct GivenMessages {
    Diagnostics diagnostics; /* in the order of the result */
    std::size_t ignored = 0; /* left out by the policy or by comments */
};

/* Those about sources; what has ended the run is none of them. */
GivenMessages messages_of(const mTranslateProgramResult &result, const RunFiles &files,
                          const MessagePolicy &policy);

}  // namespace mtranslate
