// Asking the host's translation procedures.
#include "translate/host_queries.h"

#include "run/host_kernel.h"
#include "translate/expressions.h"

int RequestedResults = HOST_RESULTS_UNKNOWN;

// A tool's host may have no answers at all.
static bool can_answer() { return HostKernel->CallHostFunction != nullptr; }

static const char *ask(const char *procedure, HostValue argument) {
    HostValue resolved = HostKernel->ResolveHostName(procedure);
    HostValue answer = HostKernel->CallHostFunction(resolved, argument);
    if (!answer || !HostKernel->IsString(answer)) return nullptr;
    return HostKernel->ToText(answer);
}

const char *translate_name(const char *name) {
    if (!can_answer()) return nullptr;
    return ask("Matlab:-TranslateName", HostKernel->ToHostString(name));
}

const char *translate_call(const char *name, const vExpr *arguments) {
    if (!can_answer()) return nullptr;
    HostValue sequence = HostKernel->NewSequence(count_vExpr(arguments) + 1);
    HostValue *elements = reinterpret_cast<HostValue *>(sequence);
    *++elements = HostKernel->ToHostString(name);
    for (; arguments; arguments = arguments->next) {
        *++elements = HostKernel->ToHostString(arguments->item->text);
    }
    return ask("Matlab:-TranslateFunction", sequence);
}
