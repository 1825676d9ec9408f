function s = settings(file)
% Reads what the user wants.
s = struct('size', 10);
try
    s = load_settings(file);   % may fail
catch
    disp('defaults');
end
eval(file);   % not translated
end
