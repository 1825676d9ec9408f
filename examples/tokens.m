function [kinds, texts] = tokens(line)
% Splits an expression into numbers, names and signs.
%
% Text is read character by character; cells collect the pieces.
kinds = {};
texts = {};
k = 1;
while k <= length(line)
    c = line(k);
    if isspace(c)
        k = k + 1;
        continue
    end
    first = k;
    if is_digit(c) || (c == '.' && k < length(line) && is_digit(line(k+1)))
        while k <= length(line) && (is_digit(line(k)) || line(k) == '.')
            k = k + 1;
        end
        kinds{end+1} = 'number';
    elseif isletter(c)
        while k <= length(line) && (isletter(line(k)) || is_digit(line(k)))
            k = k + 1;
        end
        kinds{end+1} = 'name';
    else
        k = k + 1;              % a sign stands alone
        kinds{end+1} = 'sign';
    end
    texts{end+1} = line(first:k-1);
end

function yes = is_digit(c)
yes = c >= '0' && c <= '9';
