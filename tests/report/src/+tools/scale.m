function scaled = scale(data, factor)
% SCALE  <script>alert("no markup")</script> & more
scaled = data * factor;
end
