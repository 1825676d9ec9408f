/* The walk over a function that settles its names: its state, and what it does with a name. */
#pragma once

#include "syntax/names/givings.h"
#include "syntax/names/loop_variables.h"
#include "syntax/names/names.h"
#include "syntax/names/set_variables.h"

/* A bare name that may call a script. */
struct BareName {
    Node *name;
    BareName *next;
};

struct NameWalk {
    Scope *scope;    /* innermost: of the function, script or anonymous function */
    Scope *function; /* innermost that is no anonymous function's */
    LoopWalk loops;
    SetWalk sets;
    const Node *block;    /* innermost */
    Givings givings;      /* of the function */
    BareName *bare_names; /* of the function, in source order */
    BareName *last_bare;
    uint32_t anonymous_count;
    bool in_script; /* a called one */
    NameFinders finders;
};

/* Puts a node after those of a list. */
void append_cell(NodeCell **first, NodeCell **last, Node *node);
/* A new scope inside outer (null for none); all else empty. */
Scope *new_scope(Scope *outer, Node *owner);
/* The function's scope with its outputs and parameters, which become variables of their own. */
void declare_header(NameWalk *walk, Node *outputs, Node *parameters);
/* The innermost scope's names stand for what they stood for around it. */
void leave_scope(const Scope *scope);

/* The symbol of a NAME or HANDLE, which gets it; a new one belongs to the innermost function. */
Symbol *mention(NameWalk *walk, Node *name);
/* The name's value is read, or the function called. */
void read_name(NameWalk *walk, Node *name);
/* A name that is set, and was read before anything set it, meant a function there, where one has
 * that name: it stands for a variable from here on. */
void begin_variable(NameWalk *walk, const Node *name);
/* The variable is set to the value of an expression; null for a value that is none. */
void set_name(NameWalk *walk, Node *name, const Node *value);
/* The variable, which the name has, is set: noted where that is first, and when it belongs to a
 * function around. */
void note_set(NameWalk *walk, Node *name);
/* An element or a field of the variable is set. */
void change_name(NameWalk *walk, Node *name);
/* An EXPRESSION or COMMAND: variables are set where it clears them. */
void note_clearing(NameWalk *walk, const Node *statement);
/* A global or persistent declaration. */
void declare_name(NameWalk *walk, Node *name, SymbolFlag flag);

/* Notes what a statement, an EXPRESSION or COMMAND, may create at run time. */
void note_creator(NameWalk *walk, Node *statement);
/* Makes the names of a function that asks exist quick to find. */
void index_names(Scope *scope);

/* Enters in the variables of a function, no parameters, where exist is asked for them. */
void note_asked_variables(const Scope *scope);

/* An anonymous function ends: what it captures, those around it capture too. */
void pass_captures(NameWalk *walk, Scope *anonymous);
