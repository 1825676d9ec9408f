// Expressions: a loop over the levels of operators, prefixes, and operands with their selectors.
#include "syntax/parse/expressions.h"

#include <assert.h>
#include <string.h>

#include "syntax/parse/parser_state.h"
#include "syntax/parse/steps.h"
#include "syntax/scan/class_table.h"

namespace {

Node *parse_operand();

bool is_selector() {
    return Current.kind == TOKEN_OPEN_PAREN || Current.kind == TOKEN_FIELD ||
           Current.kind == TOKEN_OPEN_BRACE || Current.kind == TOKEN_DOT_PAREN;
}

Node *parse_selectors(Node *base);

OperatorLevel current_level() { return OperatorRows[Current.op].level; }

[[gnu::noinline]] Node *bad_operand() {
    expected_value();
    return new_node(NODE_BAD, Current.start);
}

// A chain or range under way ends with its last operand.
Node *end_at_child(Node *node, const Node *last) {
    assert(node->offset <= last->offset);
    node->length = end_of(last) - node->offset;
    return node;
}

Node *parse_operators(Node *left, int min_level);

Node *parse_operand_above(int level) { return parse_operators(parse_operand(), level + 1); }

Node *parse_chain(Node *left, int level) {
    NodeList operands;
    append(&operands, left);
    Node *chain = new_parent(NODE_CHAIN, left);
    chain->op = Current.op;
    enter_chain();
    bool may_step = Parsing.may_step;
    if (level == LEVEL_OR_ELSE || level == LEVEL_AND_THEN) Parsing.may_step = false;
    while (current_level() == level) {
        OperatorId joint = Current.op;
        advance();
        Node *right = parse_operand_above(level);
        right->joint = joint;
        append(&operands, right);
    }
    Parsing.may_step = may_step;
    leave_chain();
    return end_at_child(chain, operands.last);
}

// start:stop, start:step:stop; a third colon begins a range of that range.
Node *parse_range(Node *start) {
    assert(Current.op == OPERATOR_COLON);
    Node *range = new_parent(NODE_RANGE, start);
    advance();
    Node *last = start->next = parse_operand_above(LEVEL_COLON);
    if (Current.op == OPERATOR_COLON) {
        advance();
        last = last->next = parse_operand_above(LEVEL_COLON);
    }
    return end_at_child(range, last);
}

// Ranges of ranges nest.
Node *parse_ranges(Node *start) {
    int levels = 0;
    for (; Current.op == OPERATOR_COLON; levels++) {
        enter_level();
        if (!Failed) start = parse_range(start);
    }
    Parsing.depth -= levels;
    return start;
}

// What binds looser than the operand left, down to the level.
Node *parse_operators(Node *left, int min_level) {
    for (;;) {
        OperatorLevel level = current_level();
        if (level < min_level || level == LEVEL_NONE) return left;
        left = level == LEVEL_COLON ? parse_ranges(left) : parse_chain(left, level);
    }
}

bool is_prefix() {
    return Current.kind == TOKEN_NOT || Current.op == OPERATOR_PLUS || Current.op == OPERATOR_MINUS;
}

OperatorId prefix_operator() {
    return Current.kind == TOKEN_NOT ? OPERATOR_NOT : static_cast<OperatorId>(Current.op);
}

// A ~ that stands alone between commas is a target, if targets these are.
bool is_lone_tilde(const Node *prefix, int depth) {
    bool is_alone = Current.kind == TOKEN_COMMA || Current.kind == TOKEN_CLOSE_BRACKET;
    return is_alone && prefix->op == OPERATOR_NOT && depth == Parsing.target_depth;
}

void become_tilde(Node *prefix) {
    assert(prefix->kind == NODE_PREFIX);
    prefix->kind = NODE_TILDE;
    prefix->op = OPERATOR_NONE;
    if (Parsing.lone_tilde == NO_TILDE) Parsing.lone_tilde = prefix->offset;
}

Node *new_prefix() {
    Node *prefix = new_node(NODE_PREFIX, Current.start);
    prefix->op = prefix_operator();
    advance();
    return finish(prefix);
}

// All prefixes end where the innermost one does.
void end_prefixes(Node *first, const Node *last, uint32_t end) {
    for (Node *prefix = first;; prefix = prefix->first_child) {
        prefix->length = end - prefix->offset;
        if (prefix == last) return;
    }
}

// Prefixes in front of an operand, which parse reads.
[[gnu::noinline]] Node *parse_prefixes(Node *(*parse)()) {
    int outer_depth = Parsing.depth;
    Node *first = new_prefix();
    Node *last = first;
    enter_level();
    while (is_prefix()) {
        enter_level();
        if (!Failed) last = last->first_child = new_prefix();
    }
    if (is_lone_tilde(last, outer_depth)) {
        become_tilde(last);
    } else {
        last->first_child = parse();
        end_prefixes(first, last, end_of(last->first_child));
    }
    Parsing.depth = outer_depth;
    return first;
}

Node *parse_exponent() { return is_prefix() ? parse_prefixes(parse_reference) : parse_reference(); }

Node *take_joined() {
    OperatorId joint = Current.op;
    bool is_postfix = Current.kind == TOKEN_TRANSPOSE;
    uint32_t start = Current.start;
    advance();
    Node *node = is_postfix ? finish(new_node(NODE_POSTFIX, start)) : parse_exponent();
    node->joint = joint;
    return node;
}

// ^ and ' are of one level, to the left.
Node *parse_powers(Node *base) {
    NodeList operands;
    append(&operands, base);
    Node *chain = new_parent(NODE_CHAIN, base);
    chain->op = Current.op;
    do append(&operands, take_joined());
    while (current_level() == LEVEL_POWER);
    return end_at_child(chain, operands.last);
}

// An index after a transpose is one of all that stands before it.
[[gnu::noinline]] Node *parse_index_of_powers(Node *base) {
    int outer_depth = Parsing.depth;
    while (is_selector()) {
        enter_level();
        Node *parentheses = new_parent(NODE_PARENS, base);
        parentheses->length = base->length;
        base = parse_selectors(parentheses);
        if (current_level() == LEVEL_POWER) base = parse_powers(base);
    }
    Parsing.depth = outer_depth;
    return base;
}

Node *parse_power() {
    Node *base = parse_reference();
    if (current_level() != LEVEL_POWER) return base;
    base = parse_powers(base);
    return is_selector() ? parse_index_of_powers(base) : base;
}

Node *parse_operand() { return is_prefix() ? parse_prefixes(parse_power) : parse_power(); }

// 0x1Fu8 is uint8(31).
[[gnu::noinline]] Node *call_of_type(Node *number, const char *type) {
    if (number->text[0] == '-') {
        number->text++;
        Node *sign = new_parent(NODE_PREFIX, number);
        sign->op = OPERATOR_MINUS;
        number = finish(sign);
    }
    uint32_t length = static_cast<uint32_t>(__builtin_strlen(type));
    Node *name = finish(new_node(NODE_NAME, number->offset));
    name->text = text_of(spelling_of_bytes(type, length));
    name->next = finish(new_parent(NODE_ARGUMENTS, number));
    return finish(new_parent(NODE_REFERENCE, name));
}

// NUMBER, or a call of its type.
[[gnu::noinline]] Node *take_number() {
    uint16_t flags = Current.flags & IS_INTEGER ? NUMBER_INTEGER : 0;
    if (Current.flags & IS_IMAGINARY) flags |= NUMBER_IMAGINARY;
    const char *type = Current.type;
    Node *number = take_leaf(NODE_NUMBER);
    number->flags = flags;
    return type ? call_of_type(number, type) : number;
}

// Octave's texts in double quotes are no objects, so that none is marked.
[[gnu::noinline]] Node *take_string() {
    bool may_be_object = (Current.flags & IS_DOUBLE_QUOTED) && Scan.language == LANGUAGE_MATLAB;
    uint16_t flags = may_be_object ? DOUBLE_QUOTED : 0;
    Node *string = take_leaf(NODE_STRING);
    string->flags = flags;
    return string;
}

[[gnu::noinline]] Node *take_end() {
    if (Parsing.index_depth == 0) return bad_operand();
    Node *end = take_leaf(NODE_END);
    end->text = nullptr;
    return end;
}

void expect_closing(TokenKind closer, const char *text, uint32_t opener) {
    bool assigns = Current.kind == TOKEN_ASSIGN && !Parsing.may_be_target;
    if (assigns) syntax_error(ASSIGNMENT_AS_VALUE, Current.start, Current.end);
    if (Current.kind != closer) return unclosed_bracket(text, opener);
    advance();
}

[[gnu::noinline]] Node *parse_parentheses() {
    Node *node = new_node(NODE_PARENS, Current.start);
    enter_level();
    if (!Failed) advance();
    node->first_child = parse_expression();
    leave_level();
    if (Current.kind == TOKEN_ASSIGN) syntax_error(ASSIGNMENT_AS_VALUE, Current.start, Current.end);
    expect_closing(TOKEN_CLOSE_PAREN, ")", node->offset);
    return finish(node);
}

// The parameters of @( ).
Node *parse_parameters() {
    Node *parameters = new_node(NODE_PARAMETERS, Current.start);
    NodeList list;
    do {
        advance();
        if (Current.kind == TOKEN_NAME)
            append(&list, take_name());
        else if (Current.kind == TOKEN_NOT)
            append(&list, take_leaf(NODE_TILDE));
        else if (list.first || Current.kind != TOKEN_CLOSE_PARAMETERS)
            unexpected_token("a parameter");
    } while (Current.kind == TOKEN_COMMA);
    expect_closing(TOKEN_CLOSE_PARAMETERS, ")", parameters->offset);
    parameters->first_child = list.first;
    return finish(parameters);
}

Node *parse_anonymous(uint32_t start) {
    Node *node = new_node(NODE_ANONYMOUS, start);
    enter_level();
    bool may_step = Parsing.may_step;
    Parsing.may_step = false;
    if (!Failed) node->first_child = parse_parameters();
    if (!Failed) node->first_child->next = parse_expression();
    Parsing.may_step = may_step;
    leave_level();
    return finish(node);
}

// @name with the dots of packages, from the name on.
Node *take_handle(uint32_t start) {
    const char *text = Current.text;
    for (advance(); Current.kind == TOKEN_FIELD; advance()) text = join({text, ".", Current.text});
    Node *handle = finish(new_node(NODE_HANDLE, start));
    handle->text = text_of(spelling_of_bytes(text, static_cast<uint32_t>(strlen(text))));
    return handle;
}

[[gnu::noinline]] Node *parse_at() {
    uint32_t start = Current.start;
    advance();
    if (Current.kind == TOKEN_OPEN_PAREN) return parse_anonymous(start);
    if (Current.kind == TOKEN_NAME) return take_handle(start);
    return bad_operand();
}

[[gnu::noinline]] Node *refuse(MessageId id) {
    syntax_error(id, Current.start, Current.end);
    return new_node(NODE_BAD, Current.start);
}

[[gnu::noinline]] Node *take_operand_name() { return take_name(); }

// Out of line, as others here, so that the frames of nested expressions stay small.
[[gnu::noinline]] Node *parse_base() {
    switch (Current.kind) {
        case TOKEN_NAME: return take_operand_name();
        case TOKEN_NUMBER: return take_number();
        case TOKEN_STRING: return take_string();
        case TOKEN_OPEN_PAREN: return parse_parentheses();
        case TOKEN_OPEN_BRACKET:
        case TOKEN_OPEN_BRACE: return parse_literal();
        case TOKEN_AT: return parse_at();
        case TOKEN_STEP: return take_step_before();
        case TOKEN_END_INDEX: return take_end();
        case TOKEN_QUESTION: return refuse(CLASS_QUERY);
        default: return bad_operand();
    }
}

Node *take_colon() {
    Node *colon = take_leaf(NODE_COLON);
    colon->text = nullptr;
    return colon;
}

// Name=value stands for the name's text and the value.
void append_named(NodeList *list, Node *name) {
    name->kind = NODE_STRING;
    name->flags |= DOUBLE_QUOTED;
    append(list, name);
    advance();
    append(list, parse_expression());
}

void append_argument(NodeList *list) {
    if (Current.op == OPERATOR_COLON) {
        append(list, take_colon());
        return;
    }
    Node *argument = parse_expression();
    if (Current.kind == TOKEN_ASSIGN && is_plain_name(argument)) {
        append_named(list, argument);
    } else {
        append(list, argument);
    }
}

// Line ends between arguments in braces have no meaning.
void skip_row_ends() {
    while (Current.kind == TOKEN_ROW_END) advance();
}

struct ArgumentForm {
    NodeKind kind;
    TokenKind closer;
    const char *closing;
};
constexpr ArgumentForm PARENTHESES = {NODE_ARGUMENTS, TOKEN_CLOSE_PAREN, ")"};
constexpr ArgumentForm BRACES = {NODE_BRACES, TOKEN_CLOSE_BRACE, "}"};

void append_arguments(NodeList *list, TokenKind closer) {
    skip_row_ends();
    if (Current.kind == closer) return;
    append_argument(list);
    skip_row_ends();
    while (Current.kind == TOKEN_COMMA) {
        advance();
        skip_row_ends();
        append_argument(list);
        skip_row_ends();
    }
}

[[gnu::noinline]] Node *parse_field_expression() {
    Node *node = new_node(NODE_DYNAMIC_FIELD, Current.start);
    enter_level();
    if (!Failed) advance();
    node->first_child = parse_expression();
    leave_level();
    expect_closing(TOKEN_CLOSE_PAREN, ")", node->offset + 1);
    return finish(node);
}

Node *parse_selector() {
    if (Current.kind == TOKEN_FIELD) return take_leaf(NODE_FIELD);
    if (Current.kind == TOKEN_DOT_PAREN) return parse_field_expression();
    return parse_arguments();
}

// One selector or more after a base.
Node *parse_selectors(Node *base) {
    Node *reference = new_parent(NODE_REFERENCE, base);
    NodeList parts;
    append(&parts, base);
    while (is_selector()) append(&parts, parse_selector());
    return finish(reference);
}

// name@superclass
bool is_superclass_call() {
    return Current.kind == TOKEN_AT && Current.start == Previous.end &&
           class_of(*Scan.at) == BYTE_LETTER;
}

// .name without blanks, directly after the token before it.
bool is_plain_field() {
    return Current.kind == TOKEN_FIELD && Current.start == Previous.end &&
           Current.end - Current.start == strlen(Current.text) + 1;
}

// With the class, perhaps of a package, the name is one that only functions have.
void take_superclass(Node *name) {
    advance();
    if (Current.kind != TOKEN_NAME) return unexpected_token("the name of a superclass after '@'");
    advance();
    while (is_plain_field()) advance();
    finish(name);
    name->text = text_of(spelling_of_bytes(Scan.text + name->offset, name->length));
}

Node *refuse_superclass_call(Node *name) {
    uint32_t start = name->offset;
    const char *text = describe_bytes(Scan.text + start, Scan.text + Current.end);
    syntax_error(SUPERCLASS_CALL, start, Current.end, {text});
    return name;
}

}  // namespace

Node *parse_arguments() {
    const ArgumentForm &form = Current.kind == TOKEN_OPEN_BRACE ? BRACES : PARENTHESES;
    Node *node = new_node(form.kind, Current.start);
    NodeList list;
    enter_level();
    Parsing.index_depth++;
    if (!Failed) advance();
    append_arguments(&list, form.closer);
    Parsing.index_depth--;
    leave_level();
    expect_closing(form.closer, form.closing, node->offset);
    node->first_child = list.first;
    return finish(node);
}

// What may follow an operand as part of a reference: a selector, a step, the @ of a superclass.
static bool may_go_on() {
    switch (Current.kind) {
        case TOKEN_OPEN_PAREN:
        case TOKEN_OPEN_BRACE:
        case TOKEN_DOT_PAREN:
        case TOKEN_FIELD:
        case TOKEN_AT:
        case TOKEN_STEP:
        case TOKEN_INCREMENT: return true;
        default: return false;
    }
}

[[gnu::noinline]] static Node *parse_rest_of_reference(Node *base) {
    if (base->kind == NODE_NAME && is_superclass_call()) take_superclass(base);
    if (is_step_after()) return take_step_after(base);
    if (!is_selector()) return base;
    Node *reference = parse_selectors(base);
    if (is_step_after()) return take_step_after(reference);
    return is_superclass_call() ? refuse_superclass_call(reference) : reference;
}

Node *parse_reference() {
    Node *base = parse_base();
    return may_go_on() ? parse_rest_of_reference(base) : base;
}

bool is_plain_name(const Node *node) { return node->kind == NODE_NAME && !strchr(node->text, '@'); }

// Most have no operators.
Node *parse_expression() {
    Node *operand = parse_operand();
    return Current.op == OPERATOR_NONE ? operand : parse_operators(operand, LEVEL_NONE);
}
