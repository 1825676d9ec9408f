/* What the rules of the parser share. */
#pragma once

#include <stdint.h>

#include "syntax/scan/scanner.h"
#include "syntax/scan/spellings.h"
#include "syntax/scan/syntax_errors.h"
#include "syntax/tree/new_nodes.h"

/* Whether the functions of the source are closed by an end. */
enum FunctionEnds : uint8_t { ENDS_UNKNOWN, WITH_ENDS, WITHOUT_ENDS };

/* A block that is open, or a function's body. */
struct OpenBlock {
    TokenKind opener;
    uint32_t offset;
    uint64_t closers; /* a bit for each kind of token that ends its statements */
};

/* A function whose variables are known by name, for the choice between command and expression. */
struct FunctionFrame {
    uint32_t number;      /* from 1; no two functions of a run have the same */
    FunctionFrame *outer; /* the function around a nested one, or null */
};

struct ParserState {
    int32_t depth;        /* open brackets, prefixes and blocks */
    int32_t chains;       /* chains of operators under way, one in another */
    int32_t blocks;       /* open blocks, in OpenBlocks */
    int32_t index_depth;  /* open indices, in which end is a position */
    int32_t open_do;      /* blocks that an until ends */
    int32_t target_depth; /* depth at which a lone ~ may be a target, or -1 */
    uint32_t lone_tilde;  /* offset of such a ~, or NO_TILDE */
    uint32_t read_again;  /* bytes that have been read again after an error */
    FunctionEnds ends;
    bool may_be_target;    /* the statement has only begun: = may follow what is read */
    bool is_script;        /* a statement stands in front of all functions */
    bool at_body_start;    /* no statement of the function's body has been read */
    bool may_step;         /* what is read is evaluated once, in a simple statement of Octave */
    uint8_t steps;         /* ++ and -- in that statement */
    NodeList steps_before; /* they as statements, in front of it and after it */
    NodeList steps_after;
    FunctionFrame *function;
};
constexpr uint32_t NO_TILDE = UINT32_MAX;

extern ParserState Parsing;
extern OpenBlock OpenBlocks[MOST_NESTED];

/* Goes one bracket, prefix or block deeper; fails the statement where that is too deep. */
inline void enter_level() {
    if (++Parsing.depth > MOST_NESTED) {
        syntax_error(NESTING_TOO_DEEP, Current.start, Current.end, {"400"});
    }
}
inline void leave_level() { Parsing.depth--; }
/* The same for a chain in another, inside the brackets that are open. */
inline void enter_chain() {
    if (++Parsing.chains > MOST_NESTED) {
        syntax_error(NESTING_TOO_DEEP, Current.start, Current.end, {"400"});
    }
}
inline void leave_chain() { Parsing.chains--; }

/* Ends a node with the token before the current one. */
inline Node *finish(Node *node) {
    node->length = Previous.end - node->offset;
    return node;
}
/* A node of the current token's place and text, and on to the next token. */
inline Node *take_leaf(NodeKind kind) {
    Node *node = new_text_node(kind, Current.start, Current.end, Current.text);
    advance();
    return node;
}
/* A name's node; the symbol is not known yet. */
inline Node *take_name() { return take_leaf(NODE_NAME); }

/* The name becomes a variable of the function under way. */
inline void add_variable(const Node *name) {
    spelling_of(name->text)->function = Parsing.function->number;
}
/* Whether it has been one so far. */
inline bool is_variable(const Spelling *spelling) {
    for (const FunctionFrame *frame = Parsing.function; frame; frame = frame->outer) {
        if (spelling->function == frame->number) return true;
    }
    return false;
}
