/* The host's operations, for everyone who asks the host. */
#pragma once

#include <mtranslate.h>

/* Table handed to the current run's mTranslate; set first of all, valid until the run ends. A
 * call through it may not return (RaiseError), so no object with a destructor may be alive. */
extern const HostKernelTable *HostKernel;
