// What is being lowered now.
#include "lower/program/context.h"

#include <assert.h>
#include <stdio.h>

#include "support/allocation.h"

LoweringContext Lowering;
int32_t SwitchVariables;

LoweringContext begin_lowering(const Scope *scope, Lines *lines, int level) {
    assert(lines && level >= 0);
    LoweringContext outer = Lowering;
    Lowering = {};
    Lowering.statement = outer.statement;
    Lowering.scope = scope;
    Lowering.lines = lines;
    Lowering.level = level;
    Lowering.gap = MESSAGE_COUNT;
    return outer;
}

void declare_generated(const char *name) {
    GeneratedName *cell = AllocRecord<GeneratedName>();
    *cell = {name, nullptr};
    (Lowering.generated ? Lowering.generated_last->next : Lowering.generated) = cell;
    Lowering.generated_last = cell;
}

const char *new_temporary() {
    char number[16];
    snprintf(number, sizeof number, "%d", ++Lowering.temporaries);
    const char *name = form_text("qxrp_%s", {number});
    declare_generated(name);
    return name;
}

void put_line(const char *form, std::initializer_list<const char *> operands) {
    assert(Lowering.lines && "what is put belongs to a list");
    add_line(Lowering.lines, Lowering.level, form_text(form, operands));
}

void put_inner_line(const char *form, std::initializer_list<const char *> operands) {
    Lowering.level++;
    put_line(form, operands);
    Lowering.level--;
}
