% An inventory in cell arrays and structures.
items = {'bolt', 'nut', 'washer'};
stock = {120; 80; 310};
empty = {};

% Contents are read with braces, cells with parentheses.
first = items{1};
last = items{end};
some = items(2:end);
count = stock{2};
items{4} = 'screw';

% Inside brackets a field needs parentheses.
store.owner = 'Ada';
store.items = items;
store.prices(3) = 0.75;
sum_of_prices = sum(store.prices(:));
label = ['store of ', (store.owner)];

for k = 1:length(items)
    name = items{k};
    if k > length(stock)
        disp([name, ': not counted']);
        continue
    end
    disp(sprintf('%s: %d', name, stock{k}));
end

if isempty(empty)
    nested = {1, {2, 'two'}};
end
