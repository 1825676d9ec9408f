% Fits a line through points, and says how well.
data = [1 2.1; 2 3.9; 3 6.2];   % one point in each row
[slope, offset] = fit_line(data);
scaled = tools.scale(data, 10);

% What is left
for k = 1:size(data, 1)
    left(k) = data(k, 2) - (slope * data(k, 1) + offset);
end
printf_line('largest: %g', max(abs(left)));
save_plot(left);
save_plot(scaled);
