function y = broken(x)
y = (x + 1;
z = x * 2;
if level > 3
    y = z;
end
end
