function n = counter(varargin)
% Counts its calls; counter('reset') starts again, counter('by', k) counts k at once.
persistent calls step
if isempty(calls)
    calls = 0;
    step = 1;
end
if nargin > 0 && strcmp(varargin{1}, 'reset')
    calls = 0;
elseif nargin == 2
    step = varargin{2};
    calls = calls + step;
else
    calls = calls + step;
end
n = calls;
