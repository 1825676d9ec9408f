// Forms of the host whose arguments are no values: sequences, literals, operators over arrays.
#include <algorithm>
#include <array>

#include "tests/execution/machine.h"

namespace mtranslate::execution {

namespace {

constexpr std::array<std::string_view, 11> FORMS = {
    "seq", "mul",  "rtable",        "Matrix",    "Vector", "zip",
    "map", "with", "ArrayNumElems", "ArrayDims", "rhs"};

[[noreturn]] void unknown_form(const std::string &name) {
    throw ExecutionError("this form of " + name + " is not known");
}

bool is_quoted(const Expression &node, std::string_view text) {
    return node.kind == ExpressionKind::QUOTED && node.text == text;
}

// a..b with both bounds, or null.
const Expression *closed_range(const Expression &node) {
    const bool is_closed = node.kind == ExpressionKind::RANGE && node.parts[0] && node.parts[1];
    return is_closed ? &node : nullptr;
}

}  // namespace

bool is_host_form(const std::string &name) {
    return std::find(FORMS.begin(), FORMS.end(), name) != FORMS.end();
}

ValuePointer Machine::form(const std::string &name, const Expression &call) {
    const auto &parts = call.parts;
    const size_t count = parts.size() - 1;
    if (name == "seq") return sequence(call);
    if (name == "mul") return product_of(call);
    if (name == "rtable") return cell_of(call);
    if (name == "Matrix") return matrix(call);
    if (name == "Vector" && count == 0) return std::make_shared<Value>();
    if (name == "zip" && count == 3 && parts[1]->kind == ExpressionKind::QUOTED) {
        const ValuePointer left = single(*parts[2]);
        return compared(parts[1]->text, *left, *single(*parts[3]));
    }
    if (name == "map" && count == 2 && is_quoted(*parts[1], "not"))
        return negated(*single(*parts[2]));
    if (name == "with" && count == 1) {
        packages_.push_back(parts[1]->text);
        return list({});
    }
    if (name == "ArrayNumElems" && count == 2 && is_quoted(*parts[2], "All"))
        return number(static_cast<double>(count_of(*single(*parts[1]))));
    if (name == "ArrayDims" && count == 1) {
        const ValuePointer whole = single(*parts[1]);
        const bool is_one = whole->kind == ValueKind::RECORD;
        if (!is_array(*whole) && whole->kind != ValueKind::CELL && !is_one) unknown_form(name);
        return array(ValueKind::SIDES, 1, 2,
                     {static_cast<double>(whole->rows), static_cast<double>(whole->columns)});
    }
    if (name == "rhs" && count == 1) {
        const ValuePointer side = evaluate(*parts[1]);
        if (side->kind == ValueKind::SIDES && side->numbers.size() == 1)
            return number(side->numbers[0]);
    }
    unknown_form(name);
}

// The numbers of seq(a..b) and seq(a..b,step).
std::vector<double> Machine::numbers_of_range(const Expression &call) {
    const Expression *range = call.parts.size() > 1 ? closed_range(*call.parts[1]) : nullptr;
    if (!range || call.parts.size() > 3) unknown_form("seq");
    const double first = bound_of(*single(*range->parts[0]));
    const double last = bound_of(*single(*range->parts[1]));
    const double step = call.parts.size() == 3 ? bound_of(*single(*call.parts[2])) : 1;
    return numbers_from(first, last, step);
}

// Calls body with the variable of "i=a..b" or "i in x" at each of its values.
template <typename Body>
void Machine::for_each_bound(const Expression &equation, const Body &body) {
    const bool is_range = equation.kind == ExpressionKind::RELATION && equation.text == "=";
    if (equation.parts.size() != 2 || equation.parts[0]->kind != ExpressionKind::NAME)
        throw ExecutionError("a sequence of unknown form");
    const Expression &over = *equation.parts[1];
    std::vector<ValuePointer> values;
    if (is_range && closed_range(over)) {
        const double last = number_of(*single(*over.parts[1]));
        for (double at = number_of(*single(*over.parts[0])); at <= last; at++)
            values.push_back(number(at));
    } else {
        const ValuePointer whole = evaluate(over);
        const bool are_sides = whole->kind == ValueKind::SIDES;
        if (!are_sides && whole->kind != ValueKind::NUMBERS) unknown_form("seq");
        for (const double each : whole->numbers)
            values.push_back(are_sides ? array(ValueKind::SIDES, 1, 1, {each}) : number(each));
    }
    for (const ValuePointer &value : values) {
        frame_->bound.emplace_back(equation.parts[0]->text, value);
        body();
        frame_->bound.pop_back();
    }
}

ValuePointer Machine::sequence(const Expression &call) {
    std::vector<ValuePointer> values;
    if (call.parts.size() == 3 && call.parts[2]->kind == ExpressionKind::RELATION) {
        for_each_bound(*call.parts[2], [&] {
            const ValuePointer value = evaluate(*call.parts[1]);
            if (value->kind == ValueKind::LIST)
                values.insert(values.end(), value->elements.begin(), value->elements.end());
            else
                values.push_back(value);
        });
        return list(std::move(values));
    }
    for (const double each : numbers_of_range(call)) values.push_back(number(each));
    return list(std::move(values));
}

ValuePointer Machine::product_of(const Expression &call) {
    if (call.parts.size() != 3) unknown_form("mul");
    double product = 1;
    for_each_bound(*call.parts[2], [&] { product *= number_of(*single(*call.parts[1])); });
    return number(product);
}

// Vector[row]([a, b]), and Vector[column](x(..)), which has all elements of x below each other.
ValuePointer Machine::vector(const Expression &call, bool is_row) {
    if (call.parts.size() != 2) unknown_form("Vector");
    if (call.parts[1]->kind == ExpressionKind::LIST)
        return joined(spread(call.parts[1]->parts, 0), is_row ? 2 : 1);
    auto column = std::make_shared<Value>(*single(*call.parts[1]));
    if (is_row || (!is_array(*column) && column->kind != ValueKind::CELL)) unknown_form("Vector");
    column->rows = count_of(*column);
    column->columns = 1;
    return column;
}

ValuePointer Machine::matrix(const Expression &call) {
    if (call.parts.size() < 2 || call.parts[1]->kind != ExpressionKind::LIST)
        unknown_form("Matrix");
    std::vector<ValuePointer> rows;
    for (const ExpressionPointer &row : call.parts[1]->parts) {
        if (row->kind != ExpressionKind::LIST && row->kind != ExpressionKind::BLOCKS)
            unknown_form("Matrix");
        rows.push_back(joined(spread(row->parts, 0), 2));
    }
    return joined(rows, 1);
}

ValuePointer Machine::cell_of(const Expression &call) {
    const bool has_subtype = call.parts.size() == 3 &&
                             call.parts[1]->kind == ExpressionKind::LIST &&
                             call.parts[2]->kind == ExpressionKind::RELATION &&
                             call.parts[2]->parts[0]->text == "subtype" &&
                             call.parts[2]->parts[1]->kind == ExpressionKind::QUOTED;
    if (!has_subtype) unknown_form("rtable");
    const std::string &subtype = call.parts[2]->parts[1]->text;
    std::vector<ValuePointer> elements = spread(call.parts[1]->parts, 0);
    const size_t count = elements.size();
    if (subtype == "Vector[row]") return cell(1, count, std::move(elements));
    if (subtype == "Vector[column]") return cell(count, 1, std::move(elements));
    unknown_form("rtable");
}

}  // namespace mtranslate::execution
