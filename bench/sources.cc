#include "sources.h"

namespace bench {
namespace {

// One function of a realistic file; the number keeps the names apart.
std::string realistic_function(int number) {
    const std::string n = std::to_string(number);
    return "function [y, err] = smooth_" + n +
           "(x, width, tol)\n"
           "% SMOOTH  Weighted moving average of the columns of x.\n"
           "%   y has the size of x; err is the largest change of an element.\n"
           "\n"
           "    rows = size(x, 1);\n"
           "    cols = size(x, 2);\n"
           "    weights = [0.25 0.5 0.25; 1 2 1];  % two kernels\n"
           "    y = zeros(rows, cols);\n"
           "    err = 0;\n"
           "    if width < 1 || width > rows\n"
           "        error('smooth:width', 'width must lie between 1 and the number of rows');\n"
           "    elseif tol == 0\n"
           "        tol = 1e-6;\n"
           "    end\n"
           "\n"
           "    for k = 1:cols\n"
           "        column = x(:, k);\n"
           "        total = weights(1, :) * column(1:3);\n"
           "        for j = 2:rows-1\n"
           "            window = column(j-1:j+1);\n"
           "            total = total + weights(1, 2) .* window(2) - 0.5*(window(1) + "
           "window(3))/2;\n"
           "            y(j, k) = total / sum(weights(2, :)) + offset_" +
           n +
           "(j)';\n"
           "            change = abs(y(j, k) - x(j, k));\n"
           "            if change > err && ~isnan(change)\n"
           "                err = change;\n"
           "            end\n"
           "        end\n"
           "        labels{k} = ['column ', num2str(k), ' of ' name_of(k)];\n"
           "    end\n"
           "    while err > tol^2\n"
           "        err = err / 2;\n"
           "    end\n"
           "end\n"
           "\n";
}

// Some lines of a script.
std::string realistic_paragraph(int number) {
    const std::string n = std::to_string(number);
    return "\n%% Part " + n + "\ndata_" + n + " = load_table('run_" + n +
           ".csv');\n"
           "t = data_" +
           n + "(:, 1); y = data_" + n +
           "(:, 2);\n"
           "ok = ~isnan(y) & t >= 0;  % gaps\n"
           "A = [ones(sum(ok), 1), t(ok)];\n"
           "fit_" +
           n +
           " = A \\ y(ok);\n"
           "for k = 1:2:numel(t)\n"
           "    if abs(y(k)) > 1e3, y(k) = sign(y(k)) * 1e3; end\n"
           "end\n"
           "plot(t, y, 'o', t, A * fit_" +
           n + "); title(['Part ', num2str(" + n +
           ")]);\n"
           "fprintf('%d: slope %g\\n', " +
           n + ", fit_" + n + "(2));\n";
}

}  // namespace

std::string realistic_source(size_t size, int number) {
    std::string source;
    for (; source.size() < size; number++) source += realistic_function(number);
    return source;
}

std::string realistic_script(size_t size, int number) {
    std::string source = "% Reads the measurements, fits a line and shows it.\nclear all\n";
    for (; source.size() < size; number++) source += realistic_paragraph(number);
    return source;
}

std::string wide_matrix(int rows, int columns) {
    std::string source = "x = [";
    for (int r = 0; r < rows; r++) {
        for (int c = 0; c < columns; c++) source += std::to_string(r + c) + ".5 ";
        source += "\n";
    }
    return source + "];\n";
}

std::string nested_blocks(int depth) {
    std::string source;
    for (int i = 0; i < depth; i++) source += "if a\n";
    source += "b = 1;\n";
    for (int i = 0; i < depth; i++) source += "end\n";
    return source;
}

std::string long_comment(size_t length) { return "% " + std::string(length, 'c') + "\nx = 1;\n"; }

std::string long_sum(int count) {
    std::string source = "x = a";
    for (int i = 1; i < count; i++) source += " + a";
    return source + ";\n";
}

std::string long_command(int count) {
    std::string source = "disp";
    for (int i = 0; i < count; i++) source += " word";
    return source + "\n";
}

}  // namespace bench
