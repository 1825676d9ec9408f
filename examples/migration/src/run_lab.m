% Evaluates the measurements of one day and prints a table.
limits = read_limits('strict');
samples = {[4.1 3.9 4.0], [5.2 5.1], [], [3.7 3.8 3.9 4.4]};
names = {'alpha', 'beta', 'gamma', 'delta'};
for k = 1:numel(samples)
    [average, spread] = evaluate(samples{k});
    if average > limits.high || average < limits.low
        state = 'outside';
    else
        state = 'inside';
    end
    fprintf('%-8s %6.2f %6.2f  %s\n', names{k}, average, spread, state);
end
