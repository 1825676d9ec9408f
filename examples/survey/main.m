% A program of several files: functions beside it, in a private folder, and a script that is called.
settings                        % sets the variables limit and labels
answers = [3 5 1 4 4 2 5 3 4 9];
[counts, ignored] = tally(answers, limit);
shares = percent(counts);
for k = 1:limit
    fprintf('%-10s %2d  %5.1f%%\n', labels{k}, counts(k), shares(k));
end
best = labels{find(counts == max(counts), 1)};
