// Making elements: texts are only ever set as texts.

function add(node, children) {
  for (const child of children.flat(Infinity))
    if (child !== null && child !== undefined && child !== false) node.append(child);
  return node;
}

function set(node, attributes) {
  for (const [name, value] of Object.entries(attributes))
    if (typeof value === "function") node.addEventListener(name, value);
    else if (value !== null && value !== undefined && value !== false) node.setAttribute(name, value);
  return node;
}

const element = (name, attributes = {}, ...children) =>
  add(set(document.createElement(name), attributes), children);

const drawn = (name, attributes = {}, ...children) =>
  add(set(document.createElementNS("http://www.w3.org/2000/svg", name), attributes), children);

const grouped = number => number.toLocaleString("en-US");
const counted = (number, one, several) => `${grouped(number)} ${number === 1 ? one : several}`;

// In percent with one decimal; 100 only of all.
function percent(part, all) {
  if (all === 0) return "–";
  const tenths = Math.min(Math.round((part / all) * 1000), part < all ? 999 : 1000);
  return `${(tenths / 10).toFixed(1)} %`;
}

// A file without errors or gaps of which no statement is free of messages is not called translated.
const shownState = file => (file.state === "translated" && file.statements.all > 0 &&
  file.statements.withoutMessage === 0 ? "warned" : file.state);
const stateNames = { translated: "Translated", warned: "Warnings", gaps: "Gaps", errors: "Errors", failed: "Failed" };
const stateSigns = { translated: "✓", warned: "△", gaps: "◐", errors: "▲", failed: "✕" };
const stateBadge = state =>
  element("span", { class: `badge ${state}` }, `${stateSigns[state]} ${stateNames[state]}`);
const severityBadge = severity => element("span", { class: `badge ${severity}` }, severity);

const fileNumbers = new Map(report.files.map((file, number) => [file.path, number]));

// Where a file, or a line of it, is shown.
function fileLink(path, line, text) {
  const number = fileNumbers.get(path);
  const shown = text ?? (line ? `${path}:${line}` : path);
  if (number === undefined) return element("span", { class: "code" }, shown);
  const place = line ? `&line=${line}` : "";
  return element("a", { class: "code", href: `#file=${number + 1}${place}` }, shown);
}
