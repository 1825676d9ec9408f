function history = account(start, varargin)
% A balance that nested functions share; every movement is a name and an amount.
% account(100, 'deposit', 50, 'withdraw', 30) gives [100 150 120].
balance = start;
history = balance;
if mod(numel(varargin), 2) ~= 0
    error('account:pairs', 'a movement needs a name and an amount');
end
for k = 1:2:numel(varargin)
    move(varargin{k}, varargin{k+1});
    history(end+1) = balance;
end

    function move(kind, amount)
        % The nested functions change the balance of the function around them.
        switch lower(kind)
            case {'deposit', 'credit'}
                deposit(amount);
            case {'withdraw' 'debit'}
                withdraw(amount);
            otherwise
                error('account:kind', 'unknown movement %s', kind);
        end
    end

    function deposit(amount)
        balance = balance + amount;
    end

    function withdraw(amount)
        limit = max(balance, 0);        % no more than there is
        balance = balance - min(amount, limit);
    end
end
