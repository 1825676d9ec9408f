// A file: its source and its translation side by side, with the messages at their lines.

const linesOf = text => {
  const lines = text.split(/\r\n|\n|\r/);
  if (lines.at(-1) === "") lines.pop();
  return lines;
};

// The source line of each line of the translation, both from 0. Parts of the map are [line, end line,
// first, last, kind], from 1: what stands on the lines of a part goes beside it line by line. What
// functions need at their starts and ends, and what comes from elsewhere, follows the line before it.
function sourceLines(source, target, map) {
  const lines = new Array(target.length);
  const ends = new Array(target.length);
  const enter = ([line, endLine, first, last]) => {
    for (let j = first - 1; j < last; j++) {
      lines[j] ??= Math.min(line + j - first, endLine - 1);
      ends[j] ??= endLine - 1;
    }
  };
  const isPlaced = kind => kind !== "prelude" && kind !== "results";
  for (const part of map) if (part[4] !== "comment" && isPlaced(part[4])) enter(part);
  for (const part of map) if (part[4] === "comment") enter(part);
  let before = 0;
  let end = 0;
  return Array.from(lines, (line, j) => {
    const isEmpty = target[j] === "" && source[end + 1]?.trim() === "";
    before = line ?? (isEmpty ? end + 1 : before);
    end = ends[j] ?? before;
    return before;
  });
}

// Rows [source line, translation line] in the order of the source; undefined where one side has none.
function alignedRows(source, target, map) {
  const beside = source.map(() => []);
  if (source.length) sourceLines(source, target, map).forEach((line, j) => beside[line].push(j));
  return beside.flatMap(([first, ...others], i) =>
    [[i, first], ...others.map(j => [undefined, j])]);
}

// The line with the ranges of its messages marked; columns count characters.
function markedLine(line, messages) {
  const characters = Array.from(line);
  const parts = [];
  let done = 0;
  for (const { column, endColumn, severity } of messages) {
    const begin = (column ?? 0) - 1;
    if (begin < done) continue;
    const end = Math.max(endColumn - 1, begin + 1);
    parts.push(characters.slice(done, begin).join(""));
    parts.push(element("mark", { class: severity }, characters.slice(begin, end).join("") || " "));
    done = end;
  }
  return [...parts, characters.slice(done).join("")];
}

const messageText = message => [
  severityBadge(message.severity), " ", message.message, " ",
  message.code ? messageLink(message.code) : null,
];

function lookOfTarget(line) {
  if (/^\s*# not translated\b/.test(line)) return "lost";
  return /^\s*#/.test(line) ? "comment" : "";
}

function sourceRow([i, j], source, target, messages) {
  const line = source[i];
  const isComment = line !== undefined && /^\s*[%#]/.test(line);
  const isFunction = line !== undefined && /^\s*function\b/.test(line);
  return element("tr", { id: i === undefined ? null : `line-${i + 1}`,
                         class: `${messages.length ? "marked" : ""} ${isFunction ? "function" : ""}` },
    element("td", { class: "digits" }, i === undefined ? "" : `${i + 1}`),
    element("td", { class: `left ${isComment ? "comment" : ""}` },
            line === undefined ? "" : markedLine(line, messages)),
    target ? [
      element("td", { class: "digits right" }, j === undefined ? "" : `${j + 1}`),
      element("td", { class: lookOfTarget(target[j] ?? "") }, target[j] ?? ""),
    ] : null);
}

const messageRow = messages => element("tr", { class: "marked" },
  element("td"),
  element("td", { class: "left message" },
          messages.map(message => element("div", {}, messageText(message)))),
  element("td", { class: "right" }), element("td"));

function sourceTable(source, target, map, messages) {
  const byLine = new Map(messages.map(message => [message.line, []]));
  for (const message of messages) byLine.get(message.line).push(message);
  const body = element("tbody");
  for (const row of alignedRows(source, target ?? [], map)) {
    const own = row[0] === undefined ? [] : byLine.get(row[0] + 1) ?? [];
    body.append(sourceRow(row, source, target, own));
    if (own.length) body.append(messageRow(own));
  }
  const head = title => [element("td"), element("th", { scope: "col" }, title)];
  return element("table", { class: "source" },
    element("colgroup", {}, element("col", { class: "digits" }), element("col"),
            element("col", { class: "digits" }), element("col")),
    element("thead", {}, element("tr", {}, head("Source"), target ? head("Translation") : null)),
    body);
}

// Texts are unpacked when they are wanted; the last pack is kept, as its files lie side by side.
let lastPack = { number: -1, texts: null };
async function textsOf({ texts: place }) {
  if (!place) return null;
  const [number, index] = place;
  if (lastPack.number !== number) lastPack = { number, texts: await unpacked(`pack-${number}`) };
  return lastPack.texts[index];
}

const messageList = messages => element("ul", {}, messages.map(message =>
  element("li", {}, message.line ? `Line ${message.line}: ` : "", messageText(message))));

function sourceSection(file, texts) {
  const own = file.messages.filter(message => !message.file);
  if (!texts)
    return element("section", {}, element("p", { class: "hint" },
      report.sources
        ? "The text of this file is not in the page: it could not be read, or the page would have become too large."
        : "The page was made without sources (--report-sources=no)."),
      messageList(own));
  const placed = own.filter(message => message.line);
  const target = texts.translation === undefined ? null : linesOf(texts.translation);
  return element("section", {},
    target ? null : element("p", { class: "hint" }, "There is no translation of this file."),
    sourceTable(linesOf(texts.source), target, texts.map, placed));
}

function elsewhere(file) {
  const messages = file.messages.filter(message => message.file || !message.line);
  if (messages.length === 0) return null;
  return element("section", {}, element("h2", {}, "Messages about other files, or without a place"),
    element("ul", {}, messages.map(message => element("li", {},
      message.file ? [fileLink(message.file, message.line), ": "] : null, messageText(message)))));
}

// From message to message, at the last one to the next file that has some; the address goes along.
function stepMessage(number, by) {
  const lines = [...main.querySelectorAll(".source tr.marked[id]")];
  const current = main.querySelector(".source tr.target");
  const at = lines.findIndex(row => row === current);
  const before = current && at < 0
    ? lines.filter(row => row.compareDocumentPosition(current) & Node.DOCUMENT_POSITION_FOLLOWING).length - (by > 0 ? 1 : 0)
    : at < 0 ? (by > 0 ? -1 : 0) : at;
  const row = lines[before + by];
  if (row) {
    current?.classList.remove("target");
    row.classList.add("target");
    row.scrollIntoView({ block: "center" });
    history.replaceState(history.state, "", `#file=${number + 1}&line=${row.id.slice("line-".length)}`);
    return;
  }
  for (let other = number + by; report.files[other]; other += by) {
    const placed = report.files[other].messages.filter(message => !message.file && message.line)
      .map(message => message.line).sort((a, b) => a - b);
    if (placed.length === 0) continue;
    location.hash = `#file=${other + 1}&line=${placed.at(by > 0 ? 0 : -1)}`;
    return;
  }
}

const messageSteps = number => element("span", { class: "tools" },
  element("button", { type: "button", "aria-keyshortcuts": "p", click: () => stepMessage(number, -1) }, "Previous message (p)"), " ",
  element("button", { type: "button", "aria-keyshortcuts": "n", click: () => stepMessage(number, 1) }, "Next message (n)"));

async function fileView(number, line) {
  const file = report.files[number];
  const texts = await textsOf(file);
  const facts = `${counted(file.lines, "line", "lines")}, ` +
    `${counted(file.functions.length, "function", "functions")}, ` +
    `${percent(file.statements.withoutMessage, file.statements.all)} of the statements without a message`;
  const view = element("div", {},
    element("div", { class: "crumbs" }, element("h2", {}, file.path), stateBadge(shownState(file)),
            element("span", { class: "hint" }, facts), messageSteps(number)),
    file.functions.length ? element("p", { class: "hint" }, "Callers of ",
      file.functions.map(({ name }, at) => [at ? ", " : "", functionLink(name)])) : null,
    sourceSection(file, texts), elsewhere(file), neighbourhoodSection(number));
  const row = line && view.querySelector(`#line-${line}`);
  if (row) {
    row.classList.add("target");
    requestAnimationFrame(() => row.scrollIntoView({ block: "center" }));
  }
  return view;
}
