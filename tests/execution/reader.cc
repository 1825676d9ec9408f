// The parser of host text, by a table of levels.
#include <algorithm>
#include <array>
#include <sstream>

#include "tests/execution/tree.h"

namespace mtranslate::execution {

namespace {

// Operators with two operands from the loosest to the tightest; those of a level group to the left.
// A sign binds tighter than they do, and a power tighter than a sign: -2^2 is -(2^2).
const std::array<std::vector<std::string_view>, 2> LEVELS = {{
    {"+", "-", "+~", "-~"},
    {"*", "/", ".", "*~", "/~"},
}};

const std::vector<std::string_view> POWERS = {"^", "^~"};
const std::vector<std::string_view> SIGNS_OF_NUMBERS = {"+", "-"};
const std::vector<std::string_view> RELATIONS = {"=", "<>", "<", "<=", ">", ">="};

bool holds(const std::vector<std::string_view> &signs, const Token &token) {
    return token.kind == TokenKind::SIGN &&
           std::find(signs.begin(), signs.end(), token.text) != signs.end();
}

ExpressionPointer made(ExpressionKind kind, std::string text, ExpressionPointer first = nullptr,
                       ExpressionPointer second = nullptr) {
    auto made = std::make_unique<Expression>(Expression{kind, std::move(text)});
    if (first) made->parts.push_back(std::move(first));
    if (second) made->parts.push_back(std::move(second));
    return made;
}

class Reader {
public:
    explicit Reader(std::vector<Token> tokens) { program_.tokens = std::move(tokens); }

    HostProgram program() {
        program_.statements = block();
        expect_end();
        return std::move(program_);
    }

    ExpressionPointer only_expression() {
        ExpressionPointer read = expression();
        expect_end();
        return read;
    }

private:
    const Token &token(size_t ahead = 0) const {
        return program_.tokens[std::min(at_ + ahead, program_.tokens.size() - 1)];
    }
    bool is_sign(std::string_view text) const {
        return token().kind == TokenKind::SIGN && token().text == text;
    }
    bool is_word(std::string_view text) const {
        return token().kind == TokenKind::WORD && token().text == text;
    }
    bool accept_sign(std::string_view text) { return is_sign(text) && ++at_; }
    bool accept_word(std::string_view text) { return is_word(text) && ++at_; }
    [[noreturn]] void fail(std::string_view expected) const {
        throw ExecutionError("line " + std::to_string(token().line) + ": '" + token().text +
                             "' where " + std::string(expected) + " was expected");
    }
    void take_sign(std::string_view text) {
        if (!accept_sign(text)) fail(text);
    }
    void take_word(std::string_view text) {
        if (!accept_word(text)) fail(text);
    }
    std::string take_name() {
        if (token().kind != TokenKind::NAME) fail("a name");
        return program_.tokens[at_++].text;
    }
    void expect_end() const {
        if (token().kind != TokenKind::END) fail("the end");
    }

    // -- expressions, from the loosest
    ExpressionPointer expression() {
        ExpressionPointer left = conjunction();
        while (accept_word("or"))
            left = made(ExpressionKind::LOGIC, "or", std::move(left), conjunction());
        return left;
    }

    ExpressionPointer conjunction() {
        ExpressionPointer left = negation();
        while (accept_word("and"))
            left = made(ExpressionKind::LOGIC, "and", std::move(left), negation());
        return left;
    }

    ExpressionPointer negation() {
        if (accept_word("not")) return made(ExpressionKind::NOT, "not", negation());
        ExpressionPointer left = range();
        if (accept_word("in"))
            return made(ExpressionKind::MEMBERSHIP, "in", std::move(left), range());
        if (!holds(RELATIONS, token())) return left;
        std::string relation = program_.tokens[at_++].text;
        return made(ExpressionKind::RELATION, std::move(relation), std::move(left), range());
    }

    ExpressionPointer range() {
        ExpressionPointer start = is_sign("..") ? nullptr : level(0);
        if (!accept_sign("..")) return start;
        const bool is_open = is_sign(")") || is_sign(",") || is_sign("]");
        ExpressionPointer range = made(ExpressionKind::RANGE, "..");
        range->parts.push_back(std::move(start));
        range->parts.push_back(is_open ? nullptr : level(0));
        return range;
    }

    ExpressionPointer level(size_t number) {
        if (number == LEVELS.size()) return sign();
        ExpressionPointer left = level(number + 1);
        while (holds(LEVELS[number], token())) {
            std::string text = operator_text();
            left =
                made(ExpressionKind::OPERATOR, std::move(text), std::move(left), level(number + 1));
        }
        return left;
    }

    // What a sign directly after an operator groups is known of no form: it needs parentheses.
    std::string operator_text() {
        std::string text = program_.tokens[at_++].text;
        if (holds(SIGNS_OF_NUMBERS, token())) fail("an operand without a sign");
        return text;
    }

    ExpressionPointer sign() {
        if (!holds(SIGNS_OF_NUMBERS, token())) return power();
        std::string text = operator_text();
        return made(ExpressionKind::SIGN, std::move(text), power());
    }

    // Which of several powers is taken first is left open.
    ExpressionPointer power() {
        ExpressionPointer base = postfix();
        if (!holds(POWERS, token())) return base;
        std::string text = operator_text();
        base = made(ExpressionKind::OPERATOR, std::move(text), std::move(base), postfix());
        if (holds(POWERS, token())) fail("no power of a power");
        return base;
    }

    ExpressionPointer postfix() {
        ExpressionPointer base = primary();
        while (true) {
            if (accept_sign("("))
                base = with_arguments(ExpressionKind::CALL, std::move(base), ")");
            else if (accept_sign("["))
                base = with_arguments(ExpressionKind::SELECTION, std::move(base), "]");
            else if (accept_sign(":-"))
                base = made(ExpressionKind::MEMBER, take_name(), std::move(base));
            else
                return base;
        }
    }

    ExpressionPointer with_arguments(ExpressionKind kind, ExpressionPointer head,
                                     std::string_view close) {
        ExpressionPointer node = made(kind, "", std::move(head));
        for (ExpressionPointer &part : list(close)) node->parts.push_back(std::move(part));
        return node;
    }

    std::vector<ExpressionPointer> list(std::string_view close) {
        std::vector<ExpressionPointer> parts;
        if (accept_sign(close)) return parts;
        do parts.push_back(expression());
        while (accept_sign(","));
        take_sign(close);
        return parts;
    }

    ExpressionPointer bracketed(ExpressionKind kind, std::string_view close) {
        ExpressionPointer node = made(kind, "");
        node->parts = list(close);
        return node;
    }

    ExpressionPointer parenthesised() {
        const size_t open = at_ - 1;
        ExpressionPointer node = bracketed(ExpressionKind::SEQUENCE, ")");
        if (node->parts.size() != 1) return node;
        program_.groupings.push_back({open, at_ - 1, 0, 0});
        return std::move(node->parts[0]);
    }

    ExpressionPointer blocks() {
        ExpressionPointer node = made(ExpressionKind::BLOCKS, "");
        do node->parts.push_back(level(0));
        while (accept_sign("|"));
        take_sign(">");
        return node;
    }

    ExpressionPointer primary() {
        if (accept_word("proc")) return procedure();
        if (accept_sign("(")) return parenthesised();
        if (accept_sign("[")) return bracketed(ExpressionKind::LIST, "]");
        if (accept_sign("{")) return bracketed(ExpressionKind::SET, "}");
        if (accept_sign("<")) return blocks();
        const Token &found = token();
        static constexpr ExpressionKind LEAVES[] = {ExpressionKind::NUMBER, ExpressionKind::TEXT,
                                                    ExpressionKind::QUOTED, ExpressionKind::NAME};
        if (found.kind > TokenKind::NAME) fail("an expression");
        ExpressionPointer leaf = made(LEAVES[static_cast<int>(found.kind)], found.text);
        leaf->number = found.number;
        at_++;
        return leaf;
    }

    // -- statements
    ExpressionPointer whole_expression() {
        const size_t first = at_;
        const size_t known = program_.groupings.size();
        ExpressionPointer read = expression();
        for (size_t k = known; k < program_.groupings.size(); k++) {
            Grouping &grouping = program_.groupings[k];
            if (grouping.end != 0) continue;  // of a statement inside of this expression
            grouping.first = first;
            grouping.end = at_;
        }
        return read;
    }

    std::vector<std::string> names() {
        std::vector<std::string> read;
        do read.push_back(take_name());
        while (accept_sign(","));
        return read;
    }

    ExpressionPointer procedure() {
        auto read = std::make_unique<Procedure>();
        take_sign("(");
        if (!is_sign(")")) read->parameters = names();
        take_sign(")");
        while (true) {
            if (accept_word("local"))
                read->locals = names();
            else if (accept_word("global"))
                read->globals = names();
            else if (accept_word("uses"))
                read->packages = names();
            else if (!accept_sign(";"))
                break;
        }
        read->body = block();
        take_word("end");
        take_word("proc");
        ExpressionPointer node = made(ExpressionKind::PROCEDURE, "");
        node->procedure = std::move(read);
        return node;
    }

    bool ends_block() const {
        return token().kind == TokenKind::END || is_word("end") || is_word("elif") ||
               is_word("else");
    }

    Block block() {
        Block read;
        while (true) {
            while (accept_sign(";") || accept_sign(":")) continue;
            if (ends_block()) return read;
            read.push_back(statement());
            if (!is_sign(";") && !is_sign(":") && !ends_block()) fail("the end of a statement");
        }
    }

    std::unique_ptr<Statement> statement() {
        auto read = std::make_unique<Statement>(Statement{StatementKind::NEXT, token().line});
        if (accept_word("if"))
            branches(*read);
        else if (accept_word("while"))
            loop(*read, StatementKind::WHILE);
        else if (accept_word("for"))
            for_loop(*read);
        else if (accept_word("break"))
            read->kind = StatementKind::BREAK;
        else if (accept_word("return"))
            returned(*read);
        else if (!accept_word("next"))
            assignment(*read);
        return read;
    }

    void assignment(Statement &read) {
        read.kind = StatementKind::EVALUATION;
        read.expressions.push_back(whole_expression());
        if (!accept_sign(":=")) return;
        read.kind = StatementKind::ASSIGNMENT;
        read.expressions.push_back(whole_expression());
    }

    void branches(Statement &read) {
        read.kind = StatementKind::IF;
        do {
            read.expressions.push_back(whole_expression());
            take_word("then");
            read.bodies.push_back(block());
        } while (accept_word("elif"));
        read.bodies.push_back(accept_word("else") ? block() : Block());
        take_word("end");
        take_word("if");
    }

    void loop(Statement &read, StatementKind kind) {
        read.kind = kind;
        if (kind != StatementKind::COUNTED_LOOP) read.expressions.push_back(whole_expression());
        take_word("do");
        read.bodies.push_back(block());
        take_word("end");
        take_word("do");
    }

    void for_loop(Statement &read) {
        read.text = take_name();
        if (accept_word("in")) return loop(read, StatementKind::LOOP);
        take_word("from");
        read.expressions.push_back(whole_expression());
        take_word("to");
        read.expressions.push_back(whole_expression());
        read.expressions.push_back(accept_word("by") ? whole_expression() : nullptr);
        loop(read, StatementKind::COUNTED_LOOP);
    }

    void returned(Statement &read) {
        read.kind = StatementKind::RETURN;
        if (is_sign(";") || ends_block()) return;
        do read.expressions.push_back(whole_expression());
        while (accept_sign(","));
    }

    HostProgram program_;
    size_t at_ = 0;
};

void write_shape(const Expression *node, std::ostringstream &text) {
    if (!node) {
        text << '_';
        return;
    }
    text << '(' << static_cast<int>(node->kind) << ' ' << node->text;
    for (const ExpressionPointer &part : node->parts) write_shape(part.get(), text);
    text << ')';
}

}  // namespace

HostProgram read_host_text(std::string_view text) { return Reader(host_tokens(text)).program(); }

ExpressionPointer read_host_expression(std::vector<Token> tokens) {
    tokens.push_back({});
    return Reader(std::move(tokens)).only_expression();
}

std::string shape_of(const Expression *expression) {
    std::ostringstream text;
    write_shape(expression, text);
    return text.str();
}

}  // namespace mtranslate::execution
