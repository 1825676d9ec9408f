function values = checked_values(values)
if isempty(values)
    error('lab:empty', 'nothing was measured');
end
values = values(values > 0);
