// What has been found of variables.
#include "syntax/values/findings.h"

#include "support/allocation.h"

Findings *findings_of(Symbol *symbol) {
    if (symbol->findings) return symbol->findings;
    symbol->findings = AllocRecord<Findings>();
    *symbol->findings = {};
    return symbol->findings;
}

bool is_so(Symbol *symbol, Question question, bool (*test)(const Symbol *symbol)) {
    Findings *findings = findings_of(symbol);
    if (findings->states[question] != IS_FOUND) {
        findings->is_true[question] = test(symbol);
        findings->states[question] = IS_FOUND;
    }
    return findings->is_true[question];
}
