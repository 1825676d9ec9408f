/* Runs programs of the host's language. */
#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "tests/execution/values.h"

namespace mtranslate::execution {

/* What it means to store a value that a variable, an element or a parameter holds already. The
 * language leaves it open, so that a translation has to mean the same under both. */
enum class Sharing {
    VALUES,    /* each has a value of its own */
    REFERENCES /* what is changed in one place is changed in the other; numbers and texts are not */
};

/* The variables that a program leaves, as written() shows them, but for functions and the names
 * that begin with the made-up prefix. Whatever is not known to have a meaning throws
 * ExecutionError: an unknown name, a variable without a value, one that a procedure does not
 * declare, the counter of a loop after the loop, a comparison of other than single numbers or
 * texts, a condition that is no truth value, an index out of bounds. So does a program that does
 * not end. */
std::map<std::string, std::string> variables_left_by(const HostProgram &program, Sharing sharing);
std::map<std::string, std::string> variables_left_by(std::string_view host_text, Sharing sharing);

/* A call of a procedure, or the top level. */
struct Frame {
    const Procedure *procedure = nullptr; /* null at the top */
    Frame *surrounding = nullptr;         /* of a procedure in a procedure */
    std::vector<ValuePointer> arguments;
    size_t requested_results = 0;
    std::map<std::string, ValuePointer> variables;           /* null: without a value */
    std::vector<std::pair<std::string, ValuePointer>> bound; /* variables of seq and mul */
    std::vector<ValuePointer> results;
};

class Machine {
public:
    explicit Machine(Sharing sharing) : sharing_(sharing) {}
    void run(const HostProgram &program);
    std::map<std::string, std::string> variables() const;

    /* What a function makes of values; several results are a list. */
    ValuePointer apply(const Value &function, const std::vector<ValuePointer> &arguments,
                       size_t requested_results);

private:
    enum class Flow { ON, NEXT, BREAK, RETURN };

    // machine.cc: statements, and calls of procedures
    Flow run_block(const Block &block);
    Flow run_statement(const Statement &statement);
    Flow run_loop(const Statement &statement, const std::vector<ValuePointer> &values);
    std::vector<ValuePointer> counted(const Statement &statement);
    bool holds(const Expression &condition);
    void assign(const Expression &target, const Expression &value);
    void store(const Expression &target, const ValuePointer &value);
    ValuePointer &place_of(const Expression &target);
    Value &changeable(ValuePointer &place) const;
    ValuePointer call_procedure(const Value &function, const std::vector<ValuePointer> &arguments,
                                size_t requested_results);
    ValuePointer *variable(const std::string &name);
    ValuePointer &declared_variable(const std::string &name);

    // expressions.cc: the value of each form; a list only where several values may stand
    ValuePointer evaluate(const Expression &node, size_t requested_results = 1);
    ValuePointer single(const Expression &node);
    std::vector<ValuePointer> spread(const std::vector<ExpressionPointer> &nodes, size_t first);
    ValuePointer named(const std::string &name);
    ValuePointer operation(const Expression &node);
    ValuePointer relation(const Expression &node);
    ValuePointer member(const Expression &node);
    ValuePointer selection(const Expression &node);
    ValuePointer call(const Expression &node, size_t requested_results);
    Indices indices(const Expression &call);
    static bool are_equal(const Value &left, const Value &right);

    // host_forms.cc: forms that look like calls and are none
    ValuePointer form(const std::string &name, const Expression &call);
    ValuePointer sequence(const Expression &call);
    ValuePointer product_of(const Expression &call);
    ValuePointer vector(const Expression &call, bool is_row);
    ValuePointer matrix(const Expression &call);
    ValuePointer cell_of(const Expression &call);
    std::vector<double> numbers_of_range(const Expression &call);
    template <typename Body>
    void for_each_bound(const Expression &equation, const Body &body);

    Sharing sharing_;
    Frame top_;
    Frame *frame_ = &top_;
    std::vector<std::unique_ptr<Frame>> frames_; /* of all calls: a procedure may outlive its own */
    std::vector<std::string> packages_;
    size_t depth_ = 0;
    size_t steps_ = 0;
};

/* Whether the host has the name, as a function that values are given to. */
bool is_host_function(const std::string &name);
/* What it makes of them. */
ValuePointer call_host_function(const std::string &name,
                                const std::vector<ValuePointer> &arguments);
/* Whether the name is a form, whose arguments are no values. */
bool is_host_form(const std::string &name);

}  // namespace mtranslate::execution
