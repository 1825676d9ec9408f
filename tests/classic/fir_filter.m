% Low-pass filter by the window method: the ideal impulse response, cut off by a Hamming window.
fs = 8000;              % sampling frequency in Hz
fc = 1.2e3;             % corner frequency in Hz
taps = 31;              % odd, so that the filter is symmetric

n = -(taps - 1)/2 : (taps - 1)/2;
w = 2*pi*fc/fs;
h = sin(w*n) ./ (pi*n);
h((taps + 1)/2) = w/pi;     % the limit at n = 0

window = 0.54 - 0.46*cos(2*pi*(0:taps - 1)/(taps - 1));
h = h .* window;
h = h / sum(h);             % unit gain at frequency 0

% The gain on a grid of frequencies, in decibels
f = 0:50:fs/2;
gain = zeros(1, length(f));
for k = 1:length(f)
    gain(k) = abs(sum(h .* exp(-2i*pi*f(k)/fs*n)));
end
decibels = 20*log10(max(gain, 1e-5));

passed = f(decibels > -3);
fprintf('-3 dB at %g Hz\n', passed(end));

x = sin(2*pi*440*(0:999)/fs) + 0.2*randn(1, 1000);
y = filter(h, 1, x)';
