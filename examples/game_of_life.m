% Conway's game of life on a board whose edges meet.
board = zeros(8);
board(2, 3) = 1;
board(3, 4) = 1;
board(4, 2:4) = 1;              % a glider

left = @(b) b(:, [2:end 1]);
up = @(b) b([2:end 1], :);
right = @(b) b(:, [end 1:end-1]);
down = @(b) b([end 1:end-1], :);

population = sum(board(:));
generation = 0;
while generation < 12
    around = left(board) + right(board) + up(board) + down(board) + ...
             left(up(board)) + left(down(board)) + ...
             right(up(board)) + right(down(board));
    born = ~board & around == 3;
    stays = board & (around == 2 | around == 3);
    board = double(born | stays);
    generation = generation + 1;
    population(end+1) = sum(board(:));
end
[rows, columns] = find(board);
corner = [min(rows) min(columns)];
is_steady = all(population == population(1));
