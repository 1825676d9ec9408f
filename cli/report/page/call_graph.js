// The call graph: files as cards with their functions, and names that are in no file.

const MOST_CARDS = 40;
const MOST_NAMES = 16;
const MOST_NEIGHBOURS = 16;
const MOST_ROWS = 12;

// Calls between places: {from, fromFunction, to, toFunction} with numbers of files and functions
// (-1: the statements of a script), or {from, fromFunction, name}; end and count.
const graphCalls = report.files.flatMap((file, from) => file.calls
  .filter(call => call.end !== "builtIn")
  .map(call => {
    const to = call.target === undefined ? undefined : fileNumbers.get(call.target);
    const known = { from, fromFunction: call.in ?? -1, end: call.end, count: call.count };
    if (to === undefined) return { ...known, name: call.name };
    const functions = report.files[to].functions;
    const own = to === from ? functions.findIndex(({ name }) => name === call.name) : -1;
    return { ...known, to, toFunction: own >= 0 ? own : functions.length ? 0 : -1 };
  }));

const nameKey = call => `${call.end} ${call.name}`;
const cardKey = number => `file ${number}`;
const targetKey = call => (call.to === undefined ? nameKey(call) : cardKey(call.to));

function countBy(items, keyOf, weight = () => 1) {
  const counts = new Map();
  for (const item of items) {
    const key = keyOf(item);
    counts.set(key, (counts.get(key) ?? 0) + weight(item));
  }
  return counts;
}

const mostOf = (counts, most) =>
  new Set([...counts].sort((a, b) => b[1] - a[1]).slice(0, most).map(([key]) => key));

const widthOf = text => Math.ceil(Array.from(text).length * 7.3);
// The folder that all files are in tells nothing.
const commonFolder = (() => {
  const folders = report.files.map(file => file.path.split("/").slice(0, -1));
  const first = folders[0] ?? [];
  const same = first.findIndex((part, at) => folders.some(folder => folder[at] !== part));
  return first.slice(0, same < 0 ? first.length : same).map(part => `${part}/`).join("");
})();

const shortened = (text, most) => {
  const characters = Array.from(text);
  return characters.length > most ? `…${characters.slice(1 - most).join("")}` : text;
};

// Only functions that calls lead to or from are shown.
function cardNode(number, calls, chosen) {
  const file = report.files[number];
  const used = new Set();
  for (const call of calls) {
    if (call.from === number) used.add(call.fromFunction);
    if (call.to === number) used.add(call.toFunction);
  }
  const rows = [...used].sort((a, b) => a - b);
  const shown = rows.slice(0, MOST_ROWS);
  const labels = shown.map(row => (row < 0 ? "(statements)" : shortened(file.functions[row].name, 30)));
  const rest = rows.length - shown.length;
  if (rest > 0) labels.push(`and ${rest} more`);
  const title = shortened(file.path.slice(commonFolder.length), 34);
  return { key: cardKey(number), number, title, labels, rest, chosen, path: file.path,
           places: new Map(shown.map((row, place) => [row, place])),
           width: Math.max(110, 1.08 * widthOf(title) + 24, ...labels.map(label => widthOf(label) + 24)),
           height: 28 + 18 * labels.length + (labels.length ? 6 : 0), look: `card-node ${file.state}` };
}

function nameNode(key, call) {
  const title = shortened(call.name, 30);
  const look = call.end === "found" ? "outside" : call.end;
  return { key, title, labels: [], places: new Map(), width: widthOf(title) + 24, height: 24, look,
           name: call.name };
}

// The nodes that the calls join, by key.
function nodesOf(calls, chosen, cards = []) {
  const nodes = new Map();
  const wanted = new Set(cards);
  for (const call of calls) {
    wanted.add(call.from);
    if (call.to !== undefined) wanted.add(call.to);
  }
  for (const number of wanted)
    nodes.set(cardKey(number), cardNode(number, calls, number === chosen));
  for (const call of calls)
    if (call.to === undefined && !nodes.has(nameKey(call)))
      nodes.set(nameKey(call), nameNode(nameKey(call), call));
  return nodes;
}

// Each file's layer is after those of its callers; calls that close a circle do not count. Names
// that no file has come last.
function layersOf(nodes, edges) {
  const targets = new Map([...nodes.keys()].map(key => [key, []]));
  for (const [from, to] of edges) if (from !== to) targets.get(from).push(to);
  const order = [];
  const open = new Set();
  const done = new Set();
  const forward = [];
  const visit = root => {
    const stack = [[root, 0]];
    open.add(root);
    while (stack.length) {
      const top = stack.at(-1);
      const next = targets.get(top[0])[top[1]++];
      if (next === undefined) {
        stack.pop();
        open.delete(top[0]);
        done.add(top[0]);
        order.push(top[0]);
      } else if (!open.has(next)) {
        forward.push([top[0], next]);
        if (done.has(next)) continue;
        open.add(next);
        stack.push([next, 0]);
      }
    }
  };
  const called = new Set(edges.filter(([from, to]) => from !== to).map(([, to]) => to));
  const roots = [...nodes.keys()].filter(key => !called.has(key));
  for (const key of [...roots, ...nodes.keys()]) if (!done.has(key)) visit(key);
  const sources = new Map(order.map(key => [key, []]));
  for (const [from, to] of forward) sources.get(to).push(from);
  const layer = new Map();
  for (const key of order.reverse())
    layer.set(key, Math.max(-1, ...sources.get(key).map(from => layer.get(from) ?? -1)) + 1);
  const files = [...layer.keys()].filter(key => nodes.get(key).number !== undefined);
  const last = Math.max(-1, ...files.map(key => layer.get(key))) + 1;
  const layers = [];
  for (const node of nodes.values())
    (layers[node.number === undefined ? last : layer.get(node.key)] ??= []).push(node);
  return layers.filter(Boolean);
}

// Neighbours stand at the same height as far as that goes.
function orderLayers(layers, edges) {
  const near = new Map();
  for (const [from, to] of edges) {
    near.set(from, [...(near.get(from) ?? []), to]);
    near.set(to, [...(near.get(to) ?? []), from]);
  }
  const place = new Map();
  const number = layer => layer.forEach((node, at) => place.set(node.key, at / layer.length));
  layers.forEach(number);
  for (let sweep = 0; sweep < 6; sweep++)
    for (const layer of sweep % 2 ? [...layers].reverse() : layers) {
      const middle = new Map(layer.map(node => {
        const others = (near.get(node.key) ?? []).map(key => place.get(key));
        const sum = others.reduce((a, b) => a + b, 0);
        return [node, others.length ? sum / others.length : place.get(node.key)];
      }));
      layer.sort((a, b) => middle.get(a) - middle.get(b));
      number(layer);
    }
}

const COLUMN_HEIGHT = 900;

// A layer that would become too high takes several columns.
function columnsOf(layers) {
  const columns = [];
  for (const layer of layers) {
    let height = Infinity;
    for (const node of layer) {
      if (height + node.height > COLUMN_HEIGHT) {
        columns.push([]);
        height = 0;
      }
      columns.at(-1).push(node);
      height += node.height + 14;
    }
  }
  return columns;
}

function placeNodes(layers) {
  const columns = columnsOf(layers);
  const heights = columns.map(column => column.reduce((sum, node) => sum + node.height + 14, -14));
  const height = Math.max(...heights);
  let x = 16;
  columns.forEach((column, at) => {
    const width = Math.max(...column.map(node => node.width));
    let y = 16 + (height - heights[at]) / 2;
    for (const node of column) {
      Object.assign(node, { x, y, width: node.number === undefined ? node.width : width });
      y += node.height + 14;
    }
    x += width + 90;
  });
  return { width: x - 90 + 16, height: height + 32 };
}

const rowHeight = (node, row) => {
  const place = node.places.get(row) ?? (node.rest > 0 ? MOST_ROWS : undefined);
  return node.y + (place === undefined ? Math.min(node.height / 2, 14) : 28 + 18 * place + 9);
};

function curve(from, to, call) {
  const y1 = rowHeight(from, call.fromFunction);
  const y2 = rowHeight(to, call.toFunction);
  const x1 = from.x + from.width;
  if (from === to) return `M${x1} ${y1} C${x1 + 26} ${y1} ${x1 + 26} ${y2} ${x1} ${y2}`;
  if (to.x > x1) {
    const bend = Math.max(36, (to.x - x1) / 2);
    return `M${x1} ${y1} C${x1 + bend} ${y1} ${to.x - bend} ${y2} ${to.x} ${y2}`;
  }
  const x2 = to.x + to.width;
  const far = Math.max(x1, x2) + 40;
  return `M${x1} ${y1} C${far} ${y1} ${far} ${y2} ${x2} ${y2}`;
}

function drawnEdge(nodes, call) {
  const from = nodes.get(cardKey(call.from));
  const to = nodes.get(targetKey(call));
  const path = drawn("path", { class: call.end, d: curve(from, to, call), "marker-end": "url(#head)" });
  path.dataset.from = from.key;
  path.dataset.to = to.key;
  const times = call.count > 1 ? `, ${counted(call.count, "call", "calls")}` : "";
  return add(path, [drawn("title", {}, `${from.title} → ${to.title}${times}`)]);
}

function cardRows(node) {
  return node.labels.map((label, row) => drawn("text", {
    x: node.x + 12, y: node.y + 28 + 18 * row + 13,
    class: node.rest > 0 && row === MOST_ROWS ? "rest" : null }, label));
}

function drawnNode(node) {
  const isCard = node.number !== undefined;
  const link = drawn("a", { href: isCard ? `#file=${node.number + 1}`
                                         : `#function=${encodeURIComponent(node.name)}`,
                            class: `node ${node.look} ${node.chosen ? "chosen" : ""}` });
  link.dataset.key = node.key;
  return add(link, [
    drawn("title", {}, node.path ?? node.name),
    drawn("rect", { x: node.x, y: node.y, width: node.width, height: node.height,
                    rx: isCard ? 7 : 12, class: isCard ? "card" : null }),
    drawn("text", { x: node.x + 12, y: node.y + (isCard ? 18 : 16), class: isCard ? "title" : null },
          node.title),
    isCard && node.labels.length
      ? drawn("line", { x1: node.x, x2: node.x + node.width, y1: node.y + 26, y2: node.y + 26 })
      : null,
    cardRows(node),
  ]);
}

// What the pointer or the focus is on stands out with its calls.
function lightUp(picture) {
  const show = key => {
    const lit = new Set([key]);
    for (const path of picture.querySelectorAll("path[data-from]")) {
      const isLit = path.dataset.from === key || path.dataset.to === key;
      path.classList.toggle("lit", isLit);
      if (isLit) lit.add(path.dataset.from).add(path.dataset.to);
    }
    for (const node of picture.querySelectorAll(".node"))
      node.classList.toggle("lit", lit.has(node.dataset.key));
    picture.classList.toggle("focused", key !== undefined);
  };
  for (const node of picture.querySelectorAll(".node"))
    set(node, { pointerenter: () => show(node.dataset.key), pointerleave: () => show(),
                focus: () => show(node.dataset.key), blur: () => show() });
}

const arrowHead = () => drawn("defs", {}, drawn("marker", {
  id: "head", viewBox: "0 0 8 8", refX: 7, refY: 4, markerWidth: 7, markerHeight: 7,
  orient: "auto-start-reverse" }, drawn("path", { d: "M1 1 L7 4 L1 7" })));

function pictureOf(calls, chosen, cards) {
  const nodes = nodesOf(calls, chosen, cards);
  const edges = calls.map(call => [cardKey(call.from), targetKey(call)]);
  const layers = layersOf(nodes, edges);
  orderLayers(layers, edges);
  const size = placeNodes(layers);
  const picture = drawn("svg", { viewBox: `0 0 ${size.width} ${size.height}`, role: "group",
                                 "aria-label": "Call graph", ...size },
    arrowHead(), calls.map(call => drawnEdge(nodes, call)), [...nodes.values()].map(drawnNode));
  lightUp(picture);
  return { picture, size };
}

function scaled(picture, size, factor) {
  set(picture, { width: size.width * factor, height: size.height * factor });
}

// The picture with its legend and what makes it larger and smaller.
function graphFrame(calls, chosen, cards) {
  const { picture, size } = pictureOf(calls, chosen, cards);
  let factor = Math.max(0.5, Math.min(1, (innerWidth - 100) / size.width));
  scaled(picture, size, factor);
  const zoom = (label, by) => element("button", { type: "button", "aria-label": label, click: () => {
    factor *= by;
    scaled(picture, size, factor);
  } }, by > 1 ? "+" : "−");
  const key = (look, text) => element("li", {}, element("i", { class: `key ${look}` }), text);
  return [
    element("div", { class: "tools" },
      element("ul", { class: "legend" }, key("found", "found in a file"),
              key("answered", "answered by the host"), key("unresolved", "unresolved"),
              key("classOnly", "found in classes only")),
      element("span", {}, zoom("Smaller", 1 / 1.25), " ", zoom("Larger", 1.25))),
    element("div", { class: "graph" }, picture),
  ];
}

function limitedNames(calls, most) {
  const kept = mostOf(countBy(calls.filter(call => call.to === undefined), nameKey,
                              call => call.count), most);
  return calls.filter(call => call.to !== undefined || kept.has(nameKey(call)));
}

// The files with most calls between them, and the names that they call most.
function topCalls() {
  const between = graphCalls.filter(call => call.to !== undefined && call.to !== call.from);
  const ends = between.flatMap(call => [call.from, call.to]);
  const degrees = countBy(ends, end => end);
  for (const number of report.files.keys()) if (!degrees.has(number)) degrees.set(number, 0);
  const cards = mostOf(degrees, MOST_CARDS);
  const calls = graphCalls.filter(call => cards.has(call.from) &&
                                          (call.to === undefined || cards.has(call.to)));
  return { cards, calls: limitedNames(calls, MOST_NAMES) };
}

function graphView() {
  const { cards, calls } = topCalls();
  const names = countBy(graphCalls.filter(call => call.to === undefined), nameKey).size;
  const isPart = report.files.length > MOST_CARDS;
  const files = isPart
    ? `A part: of ${counted(report.files.length, "file", "files")} the ${cards.size} with most calls ` +
      "between them"
    : "Every file, with the functions that calls lead to or from";
  const others = names > MOST_NAMES
    ? `, and of ${counted(names, "name", "names")} that no file has the ${MOST_NAMES} that are called most`
    : "";
  const note = `${files}${others}. A click leads to a file's own page, which shows what is around it.`;
  return element("section", {}, element("h2", {}, "Call graph"), element("p", { class: "hint" }, note),
                 graphFrame(calls, undefined, cards));
}

// The file, who calls it and what it calls.
function neighbourhoodSection(number) {
  const around = graphCalls.filter(call => call.from === number || call.to === number);
  const others = countBy(around.flatMap(call => [call.from, call.to])
    .filter(other => other !== undefined && other !== number), other => other);
  const kept = mostOf(others, MOST_NEIGHBOURS).add(number);
  const shown = limitedNames(around.filter(call => kept.has(call.from) &&
    (call.to === undefined || kept.has(call.to))), 2 * MOST_NAMES);
  const rest = others.size - kept.size + 1;
  return element("section", {}, element("h2", {}, "Calls of this file"),
    rest > 0 ? element("p", { class: "hint" }, `${counted(rest, "more file", "more files")} around it, not drawn.`) : null,
    shown.length ? graphFrame(shown, number, [number])
                 : element("p", { class: "empty" }, "It calls nothing, and nothing calls it."));
}
