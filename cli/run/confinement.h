/* What a process gives up that reads sources which nobody has looked at: whatever they make of it,
 * it reaches no network and no other process. */
#pragma once

namespace mtranslate {

enum class Programs { NotRun, Run };

/* For this process and those that it starts, for good. Where the system or its processor has no
 * means for that, nothing changes. */
void confine(Programs programs);

}  // namespace mtranslate
