// Statements, stores, and calls of procedures.
#include "tests/execution/machine.h"

#include <algorithm>

namespace mtranslate::execution {

namespace {

constexpr size_t MOST_STEPS = 2000000;
constexpr size_t MOST_CALLS = 200; /* inside each other */

bool contains(const std::vector<std::string> &names, const std::string &name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// What a variable, an element or a result holds: one value that is no condition.
ValuePointer storable(const ValuePointer &value) {
    if (value->kind == ValueKind::LIST) {
        if (value->elements.size() == 1) return storable(value->elements[0]);
        throw ExecutionError(std::to_string(value->elements.size()) + " values for one target");
    }
    if (value->kind == ValueKind::SIDES) throw ExecutionError("sides as a value");
    return held(value);
}

// MATLAB's arrays of records have the same fields everywhere.
void complete_records(Value &records) {
    if (records.kind != ValueKind::CELL) return;
    std::vector<std::string> names;
    for (const ValuePointer &element : records.elements)
        for (const auto &field : element->fields)
            if (!contains(names, field.first)) names.push_back(field.first);
    for (const ValuePointer &element : records.elements)
        for (const std::string &name : names)
            if (ValuePointer &field = field_of(*element, name); !field)
                field = std::make_shared<Value>();
}

}  // namespace

void Machine::run(const HostProgram &program) {
    if (run_block(program.statements) != Flow::ON)
        throw ExecutionError("a statement that leaves the program");
}

std::map<std::string, std::string> Machine::variables() const {
    std::map<std::string, std::string> texts;
    for (const auto &[name, value] : top_.variables) {
        if (!value || value->kind == ValueKind::FUNCTION) continue;
        if (name.starts_with("qxrp_") || name.starts_with("switch_condition")) continue;
        texts[name] = written(*value);
    }
    return texts;
}

Machine::Flow Machine::run_block(const Block &block) {
    for (const auto &statement : block) {
        if (++steps_ > MOST_STEPS) throw ExecutionError("a program without an end");
        Flow flow = Flow::ON;
        try {
            flow = run_statement(*statement);
        } catch (const ExecutionError &error) {
            const std::string what = error.what();
            if (what.starts_with("line ")) throw;
            throw ExecutionError("line " + std::to_string(statement->line) + ": " + what);
        }
        if (flow != Flow::ON) return flow;
    }
    return Flow::ON;
}

Machine::Flow Machine::run_statement(const Statement &statement) {
    const auto &expressions = statement.expressions;
    switch (statement.kind) {
        case StatementKind::ASSIGNMENT: assign(*expressions[0], *expressions[1]); return Flow::ON;
        case StatementKind::EVALUATION: evaluate(*expressions[0], 0); return Flow::ON;
        case StatementKind::IF:
            for (size_t k = 0; k < expressions.size(); k++)
                if (holds(*expressions[k])) return run_block(statement.bodies[k]);
            return run_block(statement.bodies.back());
        case StatementKind::WHILE:
            while (holds(*expressions[0])) {
                const Flow flow = run_block(statement.bodies[0]);
                if (flow == Flow::RETURN) return flow;
                if (flow == Flow::BREAK) break;
                if (++steps_ > MOST_STEPS) throw ExecutionError("a loop without an end");
            }
            return Flow::ON;
        case StatementKind::COUNTED_LOOP: return run_loop(statement, counted(statement));
        case StatementKind::LOOP: return run_loop(statement, spread(expressions, 0));
        case StatementKind::NEXT: return Flow::NEXT;
        case StatementKind::BREAK: return Flow::BREAK;
        case StatementKind::RETURN: frame_->results = spread(expressions, 0); return Flow::RETURN;
    }
    throw ExecutionError("a statement of no kind");
}

std::vector<ValuePointer> Machine::counted(const Statement &statement) {
    const auto &bounds = statement.expressions;
    const double first = bound_of(*single(*bounds[0]));
    const double last = bound_of(*single(*bounds[1]));
    const double step = bounds[2] ? bound_of(*single(*bounds[2])) : 1;
    std::vector<ValuePointer> values;
    for (const double each : numbers_from(first, last, step)) values.push_back(number(each));
    return values;
}

// The variable has no value after a loop that ends by itself: what it holds then is left open.
Machine::Flow Machine::run_loop(const Statement &statement,
                                const std::vector<ValuePointer> &values) {
    for (const ValuePointer &value : values) {
        declared_variable(statement.text) = value;
        const Flow flow = run_block(statement.bodies[0]);
        if (flow == Flow::RETURN) return flow;
        if (flow == Flow::BREAK) return Flow::ON;
        if (declared_variable(statement.text) != value)
            throw ExecutionError("a loop that changes its variable");
    }
    declared_variable(statement.text) = nullptr;
    return Flow::ON;
}

bool Machine::holds(const Expression &node) {
    const ValuePointer value = evaluate(node);
    if (value->kind != ValueKind::CONDITION && !value->is_word)
        throw ExecutionError("a condition that is " + kind_of(*value));
    return value->numbers[0] != 0;
}

void Machine::assign(const Expression &target, const Expression &value) {
    if (target.kind != ExpressionKind::SEQUENCE) return store(target, storable(evaluate(value)));
    const size_t count = target.parts.size();
    const ValuePointer values = evaluate(value, count);
    if (values->kind != ValueKind::LIST || values->elements.size() != count)
        throw ExecutionError(kind_of(*values) + " for " + std::to_string(count) + " targets");
    for (size_t k = 0; k < count; k++) store(*target.parts[k], storable(values->elements[k]));
}

void Machine::store(const Expression &target, const ValuePointer &value) {
    if (target.kind == ExpressionKind::CALL) {
        const Indices where = indices(target);
        return assign_elements(changeable(place_of(*target.parts[0])), where, value);
    }
    place_of(target) = value;
    if (target.kind == ExpressionKind::MEMBER && target.parts[0]->kind == ExpressionKind::CALL)
        complete_records(*place_of(*target.parts[0]->parts[0]));
}

ValuePointer &Machine::place_of(const Expression &target) {
    if (target.kind == ExpressionKind::NAME) return declared_variable(target.text);
    if (target.kind == ExpressionKind::MEMBER)
        return field_of(changeable(place_of(*target.parts[0])), target.text);
    if (target.kind != ExpressionKind::CALL) throw ExecutionError("a target of unknown form");
    const Indices where = indices(target);
    ValuePointer &whole = place_of(*target.parts[0]);
    const bool is_itself = whole && whole->kind == ValueKind::RECORD && where.size() == 1 &&
                           where[0].kind == Index::VALUE && is_single_number(*where[0].value) &&
                           where[0].value->numbers[0] == 1;
    return is_itself ? whole : place_at(changeable(whole), where);
}

// The value in a place, which may be changed there without a change elsewhere that is not meant.
Value &Machine::changeable(ValuePointer &place) const {
    if (!place) throw ExecutionError("a part of what has no value");
    const bool is_shared = sharing_ == Sharing::REFERENCES &&
                           place->kind != ValueKind::CHARACTERS &&
                           !(is_array(*place) && place->numbers.size() == 1);
    if (!is_shared && place.use_count() > 1) place = std::make_shared<Value>(*place);
    return *place;
}

ValuePointer Machine::apply(const Value &function, const std::vector<ValuePointer> &arguments,
                            size_t requested_results) {
    if (function.kind != ValueKind::FUNCTION)
        throw ExecutionError("a call of " + kind_of(function));
    if (!function.procedure) return call_host_function(function.name, arguments);
    return call_procedure(function, arguments, requested_results);
}

ValuePointer Machine::call_procedure(const Value &function,
                                     const std::vector<ValuePointer> &arguments,
                                     size_t requested_results) {
    if (++depth_ > MOST_CALLS) throw ExecutionError("too many calls inside each other");
    frames_.push_back(std::make_unique<Frame>());
    Frame &called = *frames_.back();
    called.procedure = function.procedure;
    called.surrounding = function.surrounding;
    called.arguments = arguments;
    called.requested_results = requested_results;
    const auto &parameters = function.procedure->parameters;
    for (size_t k = 0; k < parameters.size(); k++)
        called.variables[parameters[k]] = k < arguments.size() ? arguments[k] : nullptr;
    Frame *const caller = frame_;
    frame_ = &called;
    const Flow flow = run_block(function.procedure->body);
    frame_ = caller;
    depth_--;
    if (flow != Flow::ON && flow != Flow::RETURN) throw ExecutionError("no loop is left");
    return called.results.size() == 1 ? called.results[0] : list(called.results);
}

// The place of a variable that is read; null where there is none of the name.
ValuePointer *Machine::variable(const std::string &name) {
    for (auto bound = frame_->bound.rbegin(); bound != frame_->bound.rend(); ++bound)
        if (bound->first == name) return &bound->second;
    for (Frame *frame = frame_; frame && frame->procedure; frame = frame->surrounding) {
        if (contains(frame->procedure->globals, name)) break;
        if (contains(frame->procedure->locals, name) ||
            contains(frame->procedure->parameters, name))
            return &frame->variables[name];
    }
    const auto found = top_.variables.find(name);
    return found == top_.variables.end() ? nullptr : &found->second;
}

ValuePointer &Machine::declared_variable(const std::string &name) {
    if (!frame_->procedure || contains(frame_->procedure->globals, name))
        return top_.variables[name];
    for (Frame *frame = frame_; frame && frame->procedure; frame = frame->surrounding)
        if (contains(frame->procedure->locals, name) ||
            contains(frame->procedure->parameters, name))
            return frame->variables[name];
    throw ExecutionError("the variable " + name + " is not declared");
}

std::map<std::string, std::string> variables_left_by(const HostProgram &program, Sharing sharing) {
    Machine machine(sharing);
    machine.run(program);
    return machine.variables();
}

std::map<std::string, std::string> variables_left_by(std::string_view host_text, Sharing sharing) {
    return variables_left_by(read_host_text(host_text), sharing);
}

}  // namespace mtranslate::execution
