% The decay of an oscillation, plotted with commands as they are typed at the prompt.
format long
lookfor case
help global case
measured = load('measured.mat');
clear global old
warning off MATLAB.singularMatrix

t = 0:0.01:2;
model = 3*exp(-t) .* cos(4*pi*t);

% Commands may be separated by commas, too.
figure(), hold on, grid on
plot(t, model, 'b-');
plot(measured.time, measured.volts, 'r.');
title 'Decay of the oscillation'
xlabel('time in s'), ylabel('voltage in V')
legend 'model' 'measured'
axis([0 2 -3 3]);
hold off

% Only some frames of the film go to disk.
for frame = 10:-2:1
    drawnow();
    print film.eps;
end
save results.mat t model
disp done
% The window stays open.
