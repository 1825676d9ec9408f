% The scale of the answers.
limit = 5;
labels = {'poor', 'fair', 'good', 'very good', 'excellent'};
