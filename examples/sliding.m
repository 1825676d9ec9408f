function [smooth, peaks] = sliding(signal, width)
% Smooths a row by a moving mean, and finds its inner peaks.
% The last values of an index are counted from end, wherever they stand.
if nargin < 2
    width = 3;
end
half = floor(width/2);
smooth = signal;
for k = half+1:numel(signal)-half
    smooth(k) = mean(signal(k-half:k+half));
end

% A peak is higher than both its neighbours.
inner = smooth(2:end-1);
is_peak = inner > smooth(1:end-2) & inner > smooth(3:end);
peaks = find(is_peak) + 1;

% The ends count where they are the highest of their side.
if smooth(end) > smooth(end-1)
    peaks(end+1) = numel(smooth);
end
if smooth(1) > smooth(2)
    peaks = [1 peaks];
end

% Of two peaks side by side the second goes.
k = 2;
while k <= numel(peaks)
    if peaks(k) - peaks(k-1) < width
        peaks(k) = [];          % what follows moves up
    else
        k = k + 1;
    end
end
end
