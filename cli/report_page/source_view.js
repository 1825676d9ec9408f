// A file: its source and its translation side by side, with the messages at their lines.

const linesOf = text => {
  const lines = text.split(/\r\n|\n|\r/);
  if (lines.at(-1) === "") lines.pop();
  return lines;
};

// What a line of the source, and one of the translation, may have in common. The kinds are tried one
// after the other, each between the matches of those before it, no further ahead than its reach.
const alignments = [
  { reach: Infinity,
    source: line => line.match(/^\s*function\b(?:[^=(%]*=)?\s*([A-Za-z][\w.]*)/)?.[1],
    target: line => line.match(/^\s*(?:m_)?(\w+) := proc\(/)?.[1] },
  { reach: Infinity,
    source: line => line.match(/^\s*[%#](.*\w.*\w.*)$/)?.[1].trim(),
    target: line => line.match(/^\s*#(.*\w.*\w.*)$/)?.[1].trim() },
  { reach: 40,
    source: line => line.match(/^\s*([A-Za-z]\w*)[^=<>~]*=(?!=)/)?.[1],
    target: line => line.match(/^\s*([A-Za-z]\w*)[^:]*:=(?! copy\(qxrp_)/)?.[1] },
  { reach: 20,
    source: line => line.match(/^\s*(if|for|while|elseif|else)\b/)?.[1].replace("elseif", "elif"),
    target: line => line.match(/^\s*(if|for|while|elif|else)\b/)?.[1] },
];

// Pairs [source line, translation line], both from 0 and ascending.
function matches(source, target, level = 0, from = [0, 0], to = [source.length, target.length]) {
  if (level === alignments.length) return [];
  const { reach, source: keyOfSource, target: keyOfTarget } = alignments[level];
  const pairs = [];
  let [done, next] = from;
  const between = (a, b) => pairs.push(...matches(source, target, level + 1, [done, next], [a, b]));
  for (let i = from[0]; i < to[0]; i++) {
    const key = keyOfSource(source[i]);
    if (!key) continue;
    const end = Math.min(to[1], next + (i - done) + reach);
    for (let j = next; j < end; j++) {
      if (keyOfTarget(target[j]) !== key) continue;
      between(i, j);
      pairs.push([i, j]);
      [done, next] = [i + 1, j + 1];
      break;
    }
  }
  between(...to);
  return pairs;
}

// Rows [source line, translation line]; undefined where one side has none.
function alignedRows(source, target) {
  const rows = [];
  let [i, j] = [0, 0];
  for (const [a, b] of [...matches(source, target), [source.length, target.length]]) {
    while (i < a || j < b) rows.push([i < a ? i++ : undefined, j < b ? j++ : undefined]);
    if (a < source.length) rows.push([i++, j++]);
  }
  return rows;
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
  message.code ? element("span", { class: "code" }, message.code) : null,
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

function sourceTable(source, target, messages) {
  const byLine = new Map(messages.map(message => [message.line, []]));
  for (const message of messages) byLine.get(message.line).push(message);
  const body = element("tbody");
  for (const row of alignedRows(source, target ?? [])) {
    const own = row[0] === undefined ? [] : byLine.get(row[0] + 1) ?? [];
    body.append(sourceRow(row, source, target, own));
    if (own.length) body.append(messageRow(own));
  }
  const head = title => [element("th"), element("th", { scope: "col" }, title)];
  return element("table", { class: "source" },
    element("colgroup", {}, element("col", { class: "digits" }), element("col"),
            element("col", { class: "digits" }), element("col")),
    element("thead", {}, element("tr", {}, head("Source"), target ? head("Translation") : null)),
    body);
}

// Texts are parsed when they are wanted.
function textsOf(number) {
  const node = document.getElementById(`text-${number}`);
  return node ? JSON.parse(node.textContent) : null;
}

const messageList = messages => element("ul", {}, messages.map(message =>
  element("li", {}, message.line ? `Line ${message.line}: ` : "", messageText(message))));

function sourceSection(number, file) {
  const texts = textsOf(number);
  const own = file.messages.filter(message => !message.file);
  if (!texts)
    return element("section", {}, element("p", { class: "hint" },
      "The text of this file is not in the page: it could not be read, or the page would have become too large."),
      messageList(own));
  const placed = own.filter(message => message.line);
  const target = texts.translation === undefined ? null : linesOf(texts.translation);
  return element("section", {},
    target ? null : element("p", { class: "hint" }, "There is no translation of this file."),
    sourceTable(linesOf(texts.source), target, placed));
}

function elsewhere(file) {
  const messages = file.messages.filter(message => message.file || !message.line);
  if (messages.length === 0) return null;
  return element("section", {}, element("h2", {}, "Messages about other files, or without a place"),
    element("ul", {}, messages.map(message => element("li", {},
      message.file ? [fileLink(message.file, message.line), ": "] : null, messageText(message)))));
}

function fileView(number, line) {
  const file = report.files[number];
  const facts = `${counted(file.lines, "line", "lines")}, ` +
    `${counted(file.functions.length, "function", "functions")}, ` +
    `${percent(file.statements.withoutMessage, file.statements.all)} of the statements without a message`;
  const view = element("div", {},
    element("div", { class: "crumbs" }, element("h2", {}, file.path), stateBadge(file.state),
            element("span", { class: "hint" }, facts)),
    sourceSection(number, file), elsewhere(file), neighbourhoodSection(number));
  const row = line && view.querySelector(`#line-${line}`);
  if (row) {
    row.classList.add("target");
    requestAnimationFrame(() => row.scrollIntoView({ block: "center" }));
  }
  return view;
}
