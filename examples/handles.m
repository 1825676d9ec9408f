% Functions as values: anonymous functions, the values that they capture, and tables of them.

% A function that is made once keeps the values that it was made with.
rate = 0.2;
grow = @(amount, years) amount * (1 + rate)^years;
rate = 0.5;                     % grow goes on with 0.2
after_three = grow(100, 3);

% Functions of functions.
compose = @(f, g) @(x) f(g(x));
square = @(x) x.^2;
shift = @(x) x + 1;
square_of_shift = compose(square, shift);
shift_of_square = compose(shift, square);
pair = [square_of_shift(3), shift_of_square(3)];

% A table of functions, called by number.
steps = {@sin, @(x) x/2, square, @(x) max(x, 0)};
value = 2;
for k = 1:numel(steps)
    step = steps{k};
    value = step(value);
end

% Handles made in a loop differ by what the loop's variable was.
multiples = cell(1, 3);
for factor = 1:3
    multiples{factor} = @(x) factor * x;
end
triple = multiples{end};
total = triple(14);

% Sums of a function over a grid, without a loop.
integrand = @(t) exp(-t) .* cos(3*t);
midpoints = 0.05:0.1:1.95;
area = sum(integrand(midpoints)) * 0.1;

lengths = cellfun(@numel, {'one', 'three', ''});
