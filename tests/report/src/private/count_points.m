function n = count_points(data)
% Rows with numbers in them.
n = size(data, 1);
if n == 0
    % nothing to fit
    error('no points');
end
