% Matrix literals in all their shapes.
n = 3;
nothing = [];
single = [7];
wrapped = [n];
row = [1 2 3];
also_row = [1, 2, 3,];
column = [1; 2; 3;];
square = [1 2; 3 4];

% Rows may end at line ends, and comments may stand between them.
tall = [
    1  2    % the first row
    3  4

    % nothing stands here
    5  6    % the last row
];

% A blank separates elements unless an operator goes on after it.
differences = [n - 1, n-1, n -1];
calls = [sin(n) n (1)];
signs = [-n +n ~n];
turned = [n' (n.') [1; 2]'];
ranges = [1:n, 0:0.5:n];
joined = [row, row; 2*row, -row];
stacked = [row; row];

% Strings side by side make a longer one, below each other a table of characters.
greeting = ['Good ' 'morning'];
measured = ['n = ' num2str(n), ' m'];   % a string after an operand needs the comma
words = ['one  '; 'three'];
mixed = ['a', n; 'b', n];

% Long rows go on after three dots.
long = [1, 2, 3, ...
        4, 5, 6];

corner = square(1, end);
lower = square(end, :);
rest = row(2:end);
steps = row(1:2:end);
block = tall(1:2:end, 1:2);
last_columns = tall(:, 1:2:end);
as_column = square(:);
part = row(n - 1:n);
