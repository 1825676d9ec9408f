function [average, spread] = evaluate(values)
% Mean and spread; NaN where nothing was measured.
try
    checked = checked_values(values);
    average = mean(checked);
    spread = max(checked) - min(checked);
catch
    average = NaN;
    spread = NaN;
end
