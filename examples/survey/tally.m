function [counts, ignored] = tally(values, limit)
% Counts the values 1 to limit; all others are ignored.
counts = zeros(1, limit);
ignored = 0;
for value = values
    if inside(value, limit)
        counts(value) = counts(value) + 1;
    else
        ignored = ignored + 1;
    end
end
end

function yes = inside(value, limit)
yes = value >= 1 && value <= limit && value == floor(value);
end
