function [slope, offset] = fit_line(data)
%FIT_LINE Least squares.
    x = data(:, 1);
    y = data(:, 2);
    n = count_points(data);
    slope = (n * sum(x .* y) - sum(x) * sum(y)) / (n * sum(x .^ 2) - sum(x) ^ 2);
    offset = middle(y) - slope * middle(x);   % through the middle
end

function m = middle(v)
    m = sum(v) / numel(v);
end
