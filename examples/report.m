% Text in both kinds of quotes, joined, formatted and compared.
owner = 'Ada';
title = [owner '''s report'];
quote = "she said ""yes""";
path = 'C:\data\new';
head = ['=== ' title ' ==='];
rule = repmat('-', 1, length(head));

names = {'bolt', 'nut', 'washer'};
counts = [120, 80, 310];
lines = cell(size(names));
for k = 1:numel(names)
    lines{k} = sprintf('%-8s|%5d', names{k}, counts(k));
end
fprintf('%s\n', head, rule, lines{:});
fprintf('%d items, %d%% of them nuts\n', sum(counts), round(100*counts(2)/sum(counts)));

% Rows of a table end at line ends; comments may stand among them.
legend = {
    'bolt',   'M4'      % the smallest
    'nut',    'M4'
    % washers come in one size
    'washer', 'M5'};
sizes = legend(:, 2);
same = strcmp(sizes{1}, sizes{2}) && ~strcmp(sizes{1}, sizes{end});

%{
Words are put together backwards:
the last one first.
%}
words = strsplit('one two three', ' ');
backwards = '';
for k = numel(words):-1:1
    backwards = [backwards, words{k}];
    if k > 1, backwards = [backwards ' ']; end
end
