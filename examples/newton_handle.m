function [x, steps] = newton_handle(f, x, tolerance)
% Newton's method for a function of one variable, with a difference for the slope.
if nargin < 3 || isempty(tolerance), tolerance = 1e-10; end
slope = @(at) (f(at + 1e-6) - f(at - 1e-6)) / 2e-6;
steps = 0;
while abs(f(x)) > tolerance && steps < 50
    x = x - f(x) / slope(x);    % the parameter is a copy of the caller's value
    steps = steps + 1;
end
end
