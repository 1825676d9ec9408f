
% Comments and separators wherever the language allows them.
% This comment and the one above belong to the function below.
function layout(pages)

margin = 2.5;  % in centimetres; moves to the line before the next statement

% A run of comments keeps its order,
% line by line.
width = 21 - 2*margin; height = 29.7 - ...  the rest of this line is ignored
         2*margin;

if pages > 1  % not kept: the comment before the first statement of a block
    % not kept either
    show(width, height);
    % kept, as a statement follows

    show(height, width);
else, show(width); end

for page = 1:pages, show(page); end;;

while pages > 3;
    pages = pages/2;   % not kept: it ends the block
end

if pages > 1, end   % an empty block

% A line may begin with the separator of the line before it.
fold(pages)
; cut(pages)
, bind(pages)
% The last comment of a function stays at its end.

function nothing
