// Which loop variables live on.
#include "syntax/names/loop_variables.h"

#include <algorithm>

#include "support/allocation.h"

struct LoopEntry {
    Node *loop;
    Symbol *symbol;
    LoopEntry *next;
};

namespace {

void keep_variable(Node *loop) { loop->flags |= KEEPS_VARIABLE; }

// Whatever has been read once need not be watched any longer.
void keep_ended(LoopUse *use) {
    for (; use->ended && !use->ended->hides; use->ended = use->ended->next)
        if (use->ended->loop) keep_variable(use->ended->loop);
}

// A setting hides the loops that have ended before it in the same block, unless a jump may have
// left the block in between.
void hide_ended(const LoopWalk *walk, LoopUse *use) {
    uint32_t since = std::max(walk->block_start, walk->last_jump);
    while (use->ended && use->ended->ended > since) use->ended = use->ended->next;
}

// Those that have ended before the block are hidden in the rest of it.
void hide_in_block(LoopWalk *walk, LoopUse *use) {
    if (!use->ended || use->ended->hides) return;
    EndedLoop *setting = AllocRecord<EndedLoop>();
    *setting = {nullptr, walk->clock, true, use->ended, walk->settings};
    use->ended = walk->settings = setting;
}

void begin_use(LoopWalk *walk, OpenLoop *open, Symbol *symbol) {
    if (!symbol->loops) {
        symbol->loops = AllocRecord<LoopUse>();
        *symbol->loops = {};
    }
    LoopUse *use = symbol->loops;
    open->outer_same = use->open;
    open->ended = use->ended;
    open->read_before = use->inner_read;
    use->open = open;
    use->ended = nullptr;
    LoopEntry *entry = AllocRecord<LoopEntry>();
    *entry = {open->loop, symbol, walk->entries};
    walk->entries = entry;
}

// Whether an earlier reading in a loop around may come after the loop in the next round.
bool is_read_again(const LoopWalk *walk, const OpenLoop *open) {
    if (open->outer_same) return open->read_before > open->outer_same->start;
    return walk->loop_start > 0 && open->symbol->last_read > walk->loop_start;
}

void end_use(LoopWalk *walk, OpenLoop *open) {
    LoopUse *use = open->symbol->loops;
    keep_ended(use);  // a loop over the same variable in this one
    use->open = open->outer_same;
    EndedLoop *ended = AllocRecord<EndedLoop>();
    *ended = {open->loop, ++walk->clock, false, open->ended, nullptr};
    use->ended = ended;
    if (is_read_again(walk, open)) keep_variable(open->loop);
}

}  // namespace

void begin_loop(LoopWalk *walk, OpenLoop *open, Node *loop, Symbol *symbol) {
    *open = {};
    open->loop = loop;
    open->symbol = symbol;
    open->start = ++walk->clock;
    open->outer = walk->innermost;
    open->jump_before = walk->last_jump;
    if (!walk->innermost) walk->loop_start = open->start;
    if (symbol) {
        note_setting(walk, symbol);
        begin_use(walk, open, symbol);
    }
    walk->innermost = open;
}

void end_loop(LoopWalk *walk, OpenLoop *open) {
    walk->innermost = open->outer;
    walk->last_jump = open->jump_before;
    if (open->symbol) end_use(walk, open);
    if (!walk->innermost) walk->loop_start = 0;
}

void note_reading(LoopWalk *walk, Symbol *symbol) {
    uint32_t moment = ++walk->clock;
    LoopUse *use = symbol->loops;
    if (use) keep_ended(use);
    (use && use->open ? use->inner_read : symbol->last_read) = moment;
}

void note_setting(LoopWalk *walk, Symbol *symbol) {
    symbol->last_change = ++walk->clock;
    LoopUse *use = symbol->loops;
    if (!use) return;
    if (use->open) keep_variable(use->open->loop);
    hide_ended(walk, use);
    hide_in_block(walk, use);
}

EndedLoop *begin_loop_block(LoopWalk *walk) {
    EndedLoop *outer = walk->settings;
    walk->settings = nullptr;
    return outer;
}

void end_loop_block(LoopWalk *walk, EndedLoop *outer) {
    for (EndedLoop *setting = walk->settings; setting; setting = setting->same_block)
        setting->hides = false;
    walk->settings = outer;
}

void note_change(LoopWalk *walk, Symbol *symbol) {
    note_reading(walk, symbol);
    symbol->last_change = ++walk->clock;
    if (symbol->loops && symbol->loops->open) keep_variable(symbol->loops->open->loop);
}

void note_jump(LoopWalk *walk) { walk->last_jump = std::max(walk->last_jump, ++walk->clock); }

void finish_loops(LoopWalk *walk) {
    constexpr uint32_t SEEN_BY_OTHERS =
        SYMBOL_OUTPUT | SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
    for (const LoopEntry *entry = walk->entries; entry; entry = entry->next)
        if (entry->symbol->flags & SEEN_BY_OTHERS) keep_variable(entry->loop);
}
