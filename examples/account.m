function history = account(start, varargin)
% The balances of an account; every movement is a name and an amount.
% account(100, 'deposit', 50, 'withdraw', 30) gives [100 150 120].
balance = start;
history = balance;
if mod(numel(varargin), 2) ~= 0
    error('account:pairs', 'a movement needs a name and an amount');
end
for k = 1:2:numel(varargin)
    balance = moved(varargin{k}, varargin{k+1});
    history(end+1) = balance;
end

    function new = moved(kind, amount)
        % Nested functions see the balance of the function around them.
        switch lower(kind)
            case {'deposit', 'credit'}
                new = balance + amount;
            case {'withdraw' 'debit'}
                new = balance - payable(amount);
            otherwise
                error('account:kind', 'unknown movement %s', kind);
        end
    end

    function part = payable(amount)
        limit = max(balance, 0);        % no more than there is
        part = min(amount, limit);
    end
end
