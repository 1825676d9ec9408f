function limits = read_limits(mode)
% The range that is allowed.
limits.low = 3.5;
limits.high = 5;
if mode == 'strict'
    limits.high = 4.5;
end
