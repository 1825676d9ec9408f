// The values of expressions.
#include <algorithm>
#include <map>

#include "tests/execution/machine.h"

namespace mtranslate::execution {

namespace {

const std::map<std::string, std::string> PACKAGES = {{"Concatenate", "ArrayTools"},
                                                     {"AllNonZero", "ArrayTools"},
                                                     {"Size", "ArrayTools"},
                                                     {"Transpose", "LinearAlgebra"},
                                                     {"HermitianTranspose", "LinearAlgebra"},
                                                     {"mldivide", "QXR"},
                                                     {"mrdivide", "QXR"},
                                                     {"mpower", "QXR"}};

ValuePointer function_of_host(const std::string &name) {
    return std::make_shared<Value>(Value{ValueKind::FUNCTION, 1, 1, {}, {}, {}, name});
}

bool is_package(const std::string &name) {
    return std::any_of(PACKAGES.begin(), PACKAGES.end(),
                       [&](const auto &entry) { return entry.second == name; });
}

ValuePointer member_of_package(const std::string &package, const std::string &name) {
    const auto found = PACKAGES.find(name);
    if (found == PACKAGES.end() || found->second != package)
        throw ExecutionError("the member " + name + " of " + package);
    return function_of_host(name);
}

}  // namespace

ValuePointer Machine::evaluate(const Expression &node, size_t requested_results) {
    switch (node.kind) {
        case ExpressionKind::NUMBER: return number(node.number);
        case ExpressionKind::TEXT: return text(node.text);
        case ExpressionKind::NAME: return named(node.text);
        case ExpressionKind::SIGN:
            return each_two(node.text[0], *number(0), *single(*node.parts[0]));
        case ExpressionKind::OPERATOR: return operation(node);
        case ExpressionKind::RELATION:
        case ExpressionKind::MEMBERSHIP: return relation(node);
        case ExpressionKind::NOT: return condition(!holds(*node.parts[0]));
        case ExpressionKind::LOGIC: {  // neither language nor pages say that a side is left out
            const bool left = holds(*node.parts[0]);
            const bool right = holds(*node.parts[1]);
            return condition(node.text == "and" ? left && right : left || right);
        }
        case ExpressionKind::CALL: return call(node, requested_results);
        case ExpressionKind::SELECTION: return selection(node);
        case ExpressionKind::MEMBER: return member(node);
        case ExpressionKind::SEQUENCE: return list(spread(node.parts, 0));
        case ExpressionKind::PROCEDURE: {
            Value function{ValueKind::FUNCTION, 1, 1};
            function.procedure = node.procedure.get();
            function.surrounding = frame_->procedure ? frame_ : nullptr;
            return std::make_shared<Value>(std::move(function));
        }
        default: throw ExecutionError("a form that has no value here");
    }
}

ValuePointer Machine::single(const Expression &node) {
    const ValuePointer value = evaluate(node);
    if (value->kind != ValueKind::LIST) return held(value);
    if (value->elements.size() == 1) return value->elements[0];
    throw ExecutionError(std::to_string(value->elements.size()) + " values where one is needed");
}

std::vector<ValuePointer> Machine::spread(const std::vector<ExpressionPointer> &nodes,
                                          size_t first) {
    std::vector<ValuePointer> values;
    for (size_t k = first; k < nodes.size(); k++) {
        const ValuePointer value = evaluate(*nodes[k]);
        if (value->kind == ValueKind::LIST)
            values.insert(values.end(), value->elements.begin(), value->elements.end());
        else
            values.push_back(held(value));
    }
    return values;
}

ValuePointer Machine::named(const std::string &name) {
    if (ValuePointer *place = variable(name)) {
        if (!*place) throw ExecutionError("the variable " + name + " has no value");
        return *place;
    }
    if (name == "true" || name == "false") return condition(name == "true");
    if (frame_->procedure && name == "nargs")
        return number(static_cast<double>(frame_->arguments.size()));
    if (frame_->procedure && name == "_nresults")
        return number(static_cast<double>(frame_->requested_results));
    if (frame_->procedure && name == "args") return list(frame_->arguments);
    const auto member = PACKAGES.find(name);
    if (member != PACKAGES.end()) {
        const auto opens = [&](const std::vector<std::string> &packages) {
            return std::find(packages.begin(), packages.end(), member->second) != packages.end();
        };
        bool is_open = opens(packages_);
        for (Frame *frame = frame_; frame && frame->procedure; frame = frame->surrounding)
            is_open = is_open || opens(frame->procedure->packages);
        if (is_open) return function_of_host(name);
    } else if (is_host_function(name)) {
        return function_of_host(name);
    }
    throw ExecutionError("the name " + name + " is not known");
}

ValuePointer Machine::operation(const Expression &node) {
    const ValuePointer left = single(*node.parts[0]);
    const ValuePointer right = single(*node.parts[1]);
    if (node.text == ".") return product(*left, *right);
    if (node.text == "^") return power(*left, *right);
    if (node.text == "/" && count_of(*right) != 1)
        throw ExecutionError("a division by " + kind_of(*right));
    return each_two(node.text[0], *left, *right);
}

bool Machine::are_equal(const Value &left, const Value &right) {
    const bool is_left_text = left.kind == ValueKind::CHARACTERS;
    const bool is_right_text = right.kind == ValueKind::CHARACTERS;
    if (is_left_text && is_right_text) return text_of(left) == text_of(right);
    if (is_left_text || is_right_text) {
        const Value &other = is_left_text ? right : left;
        const bool is_known = is_array(other) || other.kind == ValueKind::CELL;
        if (!is_known) throw ExecutionError("a comparison with " + kind_of(other));
        return false;
    }
    return number_of(left) == number_of(right);
}

ValuePointer Machine::relation(const Expression &node) {
    const ValuePointer left = single(*node.parts[0]);
    if (node.kind == ExpressionKind::MEMBERSHIP) {
        if (node.parts[1]->kind != ExpressionKind::SET) throw ExecutionError("in other than a set");
        bool is_in = false;
        for (const ValuePointer &value : spread(node.parts[1]->parts, 0))
            is_in = are_equal(*left, *value) || is_in;
        return condition(is_in);
    }
    const ValuePointer right = single(*node.parts[1]);
    if (node.text == "=") return condition(are_equal(*left, *right));
    return condition(
        compared(node.text, *number(number_of(*left)), *number(number_of(*right)))->numbers[0] !=
        0);
}

ValuePointer Machine::member(const Expression &node) {
    const Expression &base = *node.parts[0];
    if (base.kind == ExpressionKind::NAME && is_package(base.text) && !variable(base.text))
        return member_of_package(base.text, node.text);
    ValuePointer record = single(base);
    const bool is_in_array = record->kind == ValueKind::CELL && record->elements.size() == 1;
    if (is_in_array) record = record->elements[0];
    for (const auto &[name, value] : record->fields)
        if (name == node.text) return value;
    throw ExecutionError("no field " + node.text + " in " + kind_of(*record));
}

// args[k], args[2..], ArrayDims(x)[1], and members of packages.
ValuePointer Machine::selection(const Expression &node) {
    const Expression &base = *node.parts[0];
    if (node.parts.size() != 2) throw ExecutionError("square brackets of unknown meaning");
    if (base.kind == ExpressionKind::NAME && is_package(base.text) && !variable(base.text))
        return member_of_package(base.text, node.parts[1]->text);
    const ValuePointer whole = evaluate(base);
    const ValuePointer found =
        whole->kind == ValueKind::SIDES
            ? element_at(row_of(whole->numbers), indices(node))
            : element_at(cell(1, whole->elements.size(), whole->elements), indices(node));
    const bool is_range = node.parts[1]->kind == ExpressionKind::RANGE;
    if (whole->kind == ValueKind::SIDES)
        return array(ValueKind::SIDES, 1, found->numbers.size(), found->numbers);
    if (whole->kind != ValueKind::LIST && base.text != "args")
        throw ExecutionError("square brackets after " + kind_of(*whole));
    return is_range ? list(found->elements) : found;
}

ValuePointer Machine::call(const Expression &node, size_t requested_results) {
    const Expression &head = *node.parts[0];
    if (head.kind == ExpressionKind::NAME && is_host_form(head.text) && !variable(head.text))
        return form(head.text, node);
    const bool is_vector =
        head.kind == ExpressionKind::SELECTION && head.parts[0]->text == "Vector";
    if (is_vector) return vector(node, head.parts.back()->text == "row");
    const ValuePointer base = single(head);
    if (base->kind != ValueKind::FUNCTION)
        return node.parts.size() == 1 ? base : element_at(base, indices(node));
    for (size_t k = 1; k < node.parts.size(); k++)
        if (node.parts[k]->kind == ExpressionKind::RELATION)
            throw ExecutionError("an equation as an argument");
    return apply(*base, spread(node.parts, 1), requested_results);
}

Indices Machine::indices(const Expression &call) {
    Indices found;
    for (size_t k = 1; k < call.parts.size(); k++) {
        const Expression &part = *call.parts[k];
        if (part.kind == ExpressionKind::RANGE) {
            const auto bound = [&](size_t at) { return whole_number_of(*single(*part.parts[at])); };
            Index index{part.parts[0] || part.parts[1] ? Index::SPAN : Index::ALL};
            if (part.parts[0]) index.first = bound(0);
            if (part.parts[1]) index.last = bound(1);
            found.push_back(index);
            continue;
        }
        found.push_back({Index::VALUE, 1, {}, single(part)});
    }
    return found;
}

}  // namespace mtranslate::execution
