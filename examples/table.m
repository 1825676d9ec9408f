% A table of measurements, and what can be said of it with functions of MATLAB's library.
table = reshape(1:12, 3, 4);
table(2, 3) = NaN;

% Its shape, and what is missing.
[points, series] = size(table);
missing = find(isnan(table));
count = nnz(~isnan(table));
table(missing) = 0;

% Each series by itself.
means = mean(table);
products = prod(table, 2);
[highest, at] = max(table, [], 2);
lowest = min(table(:));
complete = all(table);
some_above = any(table > 9, 2);

% Weights on a grid.
[across, down] = meshgrid(linspace(0, 1, series), 1:points);
weights = across.*down + eye(points, series);
weights = [weights; repmat([1 2], 1, 2)];
far = max(abs(weights - 1), 0.5);

% Cells of several shapes.
parts = cell(size(table));
parts{2, 3} = means;
filled = ~cellfun(@isempty, parts);
sizes = arrayfun(@(k) numel(parts{k}), 1:numel(parts));
spread = cellfun(@(p) [p 0], {1, [2 3]}, 'UniformOutput', false);
is_line = isvector(parts{2, 3}) && isrow(means) && ~iscolumn(means);
longest = length(weights);
