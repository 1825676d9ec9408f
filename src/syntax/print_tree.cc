// Trees as text: a row per kind of node, and the few kinds that look otherwise.
#include "syntax/print_tree.h"

#include <string.h>

#include "syntax/values/print_value.h"

namespace {

const char *const Words[] = {
#define NODE_KIND(name, word) word,
    NODE_KIND_TABLE
#undef NODE_KIND
};

LongString Text;
int Indentation;
bool ShowsValues;

void print(const char *text) { Text = AppendStringToString(Text, text); }
void print_node(const Node *node);

void print_enclosed(const char *open, const Node *node, const char *between, const char *close) {
    print(open);
    for (const Node *child = node->first_child; child; child = child->next) {
        if (child != node->first_child) print(between);
        print_node(child);
    }
    print(close);
}

// In quotes, the same quotes inside doubled.
void print_quoted(const char *text, char quote) {
    Text = AppendToString(Text, quote);
    for (; *text; text++) {
        if (*text == quote) Text = AppendToString(Text, quote);
        Text = AppendToString(Text, *text);
    }
    Text = AppendToString(Text, quote);
}

void print_operator(OperatorId op) { print(OperatorRows[op].spelling); }

void print_chain(const Node *chain) {
    print("(");
    print_node(chain->first_child);
    for (const Node *node = chain->first_child->next; node; node = node->next) {
        print(" ");
        print_operator(node->joint);
        if (node->kind == NODE_POSTFIX) continue;
        print(" ");
        print_node(node);
    }
    print(")");
}

void print_prefix(const Node *node) {
    print("(");
    print_operator(node->op);
    print(" ");
    print_node(node->first_child);
    print(")");
}

void print_word_of(const Node *node) {
    if (node->kind == NODE_ASSIGN && node->op != OPERATOR_NONE) print_operator(node->op);
    print(has_flag(node, PARALLEL) ? "parfor" : Words[node->kind]);
    if (has_flag(node, HAS_CHECKS)) print(" checked");
    if (has_flag(node, REPEATING)) print(" repeating");
    if (has_flag(node, FOR_OUTPUTS)) print(" outputs");
}

void print_form(const Node *node) {
    print("(");
    print_word_of(node);
    for (const Node *child = node->first_child; child; child = child->next) {
        print(" ");
        print_node(child);
    }
    print(")");
}

void print_comment(const Node *node) {
    print(has_flag(node, TRAILING) ? "(trailing "
          : has_flag(node, INSIDE) ? "(inside "
                                   : "(comment ");
    print_quoted(node->text, '"');
    print(")");
}

void print_text_form(const Node *node) {
    print("(");
    print(Words[node->kind]);
    print(" ");
    print_quoted(node->text, '"');
    print(")");
}

bool can_print_value(const Node *node) {
    switch (node->kind) {
        case NODE_EXPRESSION:
        case NODE_ASSIGN:
        case NODE_MULTI_ASSIGN:
        case NODE_COMMAND: return true;
        default: return false;
    }
}

// The lines of a block, one level deeper than the line that they are in.
void print_lines(const Node *first) {
    Indentation++;
    for (const Node *node = first; node; node = node->next) {
        print(has_flag(node, BLANK_BEFORE) ? "\n\n" : "\n");
        for (int i = 0; i < Indentation; i++) print("  ");
        print_node(node);
        if (can_print_value(node) && !has_flag(node, PRINTS)) print(";");
    }
    Indentation--;
}

void print_block(const Node *node) {
    print("(");
    print(Words[node->kind]);
    print_lines(node->first_child);
    print(")");
}

void print_text(const char *before, const char *text, const char *after) {
    print(before);
    print(text);
    print(after);
}

// A node without children; false for others.
bool print_leaf(const Node *node) {
    switch (node->kind) {
        case NODE_NUMBER:
            print_text("", node->text, has_flag(node, NUMBER_IMAGINARY) ? "i" : "");
            return true;
        case NODE_NAME: print(node->text); return true;
        case NODE_STRING:
            print_quoted(node->text, has_flag(node, DOUBLE_QUOTED) ? '"' : '\'');
            return true;
        case NODE_WORD: print_quoted(node->text, '"'); return true;
        case NODE_END:
        case NODE_COLON:
        case NODE_TILDE: print(Words[node->kind]); return true;
        case NODE_FIELD: print_text(".", node->text, ""); return true;
        case NODE_HANDLE: print_text("@", node->text, ""); return true;
        default: return false;
    }
}

// What a literal is shows itself.
bool has_value(const Node *node) {
    switch (node->kind) {
        case NODE_NAME:
        case NODE_PREFIX:
        case NODE_CHAIN:
        case NODE_RANGE:
        case NODE_MATRIX:
        case NODE_CELL:
        case NODE_REFERENCE: return node->value != 0;
        default: return false;
    }
}

void print_plain_node(const Node *node) {
    if (print_leaf(node)) return;
    switch (node->kind) {
        case NODE_CHAIN: return print_chain(node);
        case NODE_PREFIX: return print_prefix(node);
        case NODE_REFERENCE:
        case NODE_EXPRESSION: return print_enclosed("", node, "", "");
        case NODE_MATRIX: return print_enclosed("[", node, "; ", "]");
        case NODE_CELL: return print_enclosed("{", node, "; ", "}");
        case NODE_ROW: return print_enclosed("", node, ", ", "");
        case NODE_TARGETS: return print_enclosed("[", node, ", ", "]");
        case NODE_ARGUMENTS: return print_enclosed("(", node, ", ", ")");
        case NODE_BRACES: return print_enclosed("{", node, ", ", "}");
        case NODE_DYNAMIC_FIELD: return print_enclosed(".(", node, "", ")");
        case NODE_COMMENT: return print_comment(node);
        case NODE_SYSTEM: return print_text_form(node);
        case NODE_BLOCK:
        case NODE_FILE: return print_block(node);
        default: return print_form(node);
    }
}

void print_node(const Node *node) {
    print_plain_node(node);
    if (!ShowsValues || !has_value(node)) return;
    print(":");
    Text = print_value(Text, node->value);
}

LongString print_whole(LongString text, const Node *node, bool shows_values) {
    Text = text;
    Indentation = 0;
    ShowsValues = shows_values;
    print_node(node);
    return Text;
}

}  // namespace

LongString print_tree_of_values(LongString text, const Node *node) {
    return print_whole(text, node, true);
}

LongString print_tree(LongString text, const Node *node) { return print_whole(text, node, false); }
