function shares = percent(counts)
% Shares in per cent; nothing of nothing is nothing.
total = sum(counts);
if total == 0
    shares = counts;
else
    shares = rounded(100 * counts / total, 1);
end
