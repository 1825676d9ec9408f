% An array of structures grows, is searched, changed and thinned out.
people = struct('name', {}, 'age', {}, 'mail', {});
people(end+1) = struct('name', 'Ida', 'age', 41, 'mail', 'ida@example.org');
people(end+1) = struct('name', 'Omar', 'age', 29, 'mail', '');
people(end+1).name = 'Kim';
people(end).age = 35;
people(end).mail = 'kim@example.org';

% Fields of all elements, side by side.
ages = [people.age];
[~, order] = sort(ages);
names = {people.name};
youngest = names{order(1)};
oldest = people(order(end)).name;

% A change in the middle of a chain.
people(2).phone.home = '555 0101';
people(2).phone.work = '555 0102';
people(2).phone.work(end) = '9';
number = people(2).phone.work;

% Who cannot be written to leaves the list.
without_mail = cellfun(@isempty, {people.mail});
people(without_mail) = [];
left = numel(people);

% Field names from a table.
units = {'length', 'm'; 'mass', 'kg'; 'time', 's'};
table = struct();
for row = 1:size(units, 1)
    table.(units{row, 1}) = units{row, 2};
end
quantities = fieldnames(table);
mass_unit = table.mass;
