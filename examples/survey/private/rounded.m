function y = rounded(x, digits)
% x to a number of decimal digits.
scale = 10^digits;
y = round(x * scale) / scale;
