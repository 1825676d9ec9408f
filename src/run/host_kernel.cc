// The host's operations.
#include "run/host_kernel.h"

const HostKernelTable *HostKernel;
