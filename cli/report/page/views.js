// The views, and which of them the address asks for.

const totals = report.totals;

function meter(parts, all) {
  const bar = element("div", { class: "meter", "aria-hidden": "true" });
  for (const { count, look } of parts) {
    if (count === 0) continue;
    const part = element("i", { class: `${look}-fill` });
    part.style.flex = count;
    bar.append(part);
  }
  const legend = parts.map(({ count, look, text }) => element("li", {},
    element("i", { class: `${look}-fill` }), element("b", {}, grouped(count)), text, " ",
    element("span", {}, percent(count, all))));
  return [bar, element("ul", { class: "legend" }, legend)];
}

function statementSection() {
  const { all, withoutMessage, waiting } = totals.statements;
  return element("section", {},
    element("p", { class: "headline" }, element("strong", {}, percent(withoutMessage, all)),
            element("span", {}, "of the statements are translated without a message")),
    meter([
      { count: withoutMessage, look: "good", text: "without a message" },
      { count: waiting, look: "wait", text: "only wait for functions that nothing answers" },
      { count: all - withoutMessage - waiting, look: "bad", text: "with an error, a gap or a warning" },
    ], all));
}

function fileSection() {
  const { states, files } = totals;
  return element("section", {}, element("h2", {}, `${counted(files, "file", "files")}`), meter([
    { count: states.translated, look: "good", text: "without errors or gaps" },
    { count: states.gaps, look: "wait", text: "with gaps" },
    { count: states.errors, look: "bad", text: "with errors" },
    { count: states.failed, look: "worse", text: "failed" },
  ].filter(part => part.count > 0 || part.look === "good"), files));
}

function figureSection() {
  const figure = (title, number, more) => element("div", {}, element("dt", {}, title),
    element("dd", {}, grouped(number), more ? element("small", {}, more) : null));
  return element("section", {}, element("dl", { class: "figures" },
    figure("Functions", totals.functions),
    figure("Lines", totals.lines, `${grouped(totals.bytes)} bytes`),
    figure("Statements", totals.statements.all),
    figure("Comments", totals.comments.all,
           `${percent(totals.comments.kept, totals.comments.all)} kept`),
    figure("Calls", Object.values(totals.calls).reduce((a, b) => a + b, 0),
           `${grouped(totals.calls.unresolved)} unresolved` + (totals.calls.classOnly
             ? `, ${grouped(totals.calls.classOnly)} found in classes only` : "")),
    figure("Unresolved functions", report.unresolved.length)));
}

const section = (title, table, more) =>
  element("section", {}, element("h2", {}, title), table, more ?? null);

const linkTo = (view, text) =>
  element("p", { class: "more" }, element("a", { href: `#view=${view}` }, text));

function overview() {
  const first = report.unresolved.slice(0, 10);
  const all = report.unresolved.length;
  return [
    report.interrupted
      ? element("p", { class: "notice" }, "The run was interrupted: files are missing here.") : null,
    statementSection(), fileSection(), figureSection(), adviceSections(),
    section("Unresolved functions, most used first", tableOf(unresolvedTable(first)),
            all > first.length ? linkTo("functions", `All ${grouped(all)}`) : null),
    section("Messages by kind", tableOf(messageTable(report.messages))),
  ];
}

const functionViews = search => [
  section("Unresolved functions", tableOf(unresolvedTable(report.unresolved), search)),
  section("Names that nothing assigns", tableOf(unassignedTable(report.unassigned), search)),
  section("Rules", tableOf(ruleTable(report.rules), search)),
];

const results = search => [
  section("Files", tableOf(fileTable(report.files), search)),
  section("Messages by kind", tableOf(messageTable(report.messages), search)),
  section("Messages by place", tableOf(messagePlaces(allMessages()), search)),
  section("Functions of the files", tableOf(definitionTable(definitions()), search)),
  ...functionViews(search),
];

const views = {
  overview: { title: "Overview", show: search => (search ? results(search) : overview()) },
  files: { title: "Files", count: report.files.length, show: search => filesView(search) },
  functions: { title: "Functions and rules", count: report.unresolved.length, show: functionViews },
  graph: { title: "Call graph", show: () => graphView(), isWide: true },
};

const main = document.getElementById("main");
const searchField = document.getElementById("search");
const wanted = () => new URLSearchParams(location.hash.slice(1));

// The address with some of its parts changed, and those that become empty left out.
function withAddress(changes) {
  const address = wanted();
  for (const [key, value] of Object.entries(changes))
    if (value) address.set(key, value);
    else address.delete(key);
  return address;
}
function changeAddress(changes) {
  history.replaceState(history.state, "", `#${withAddress(changes)}`);
  show();
}

function showLinks(current) {
  document.getElementById("views").replaceChildren(...Object.entries(views).map(([name, view]) =>
    element("a", { href: name === "overview" ? "#" : `#view=${name}`,
                   "aria-current": name === current ? "page" : null },
            view.title,
            view.count === undefined ? null
                                     : element("span", { class: "count" }, grouped(view.count)))));
}

let shows = 0;  // which call of show() is the last one
async function show() {
  const turn = ++shows;
  const address = wanted();
  const number = Number(address.get("file")) - 1;
  const search = address.get("search") ?? "";
  const name = views[address.get("view")] ? address.get("view") : "overview";
  const isFile = report.files[number] !== undefined;
  if (document.activeElement !== searchField) searchField.value = search;
  document.body.classList.toggle("wide", isFile || Boolean(views[name].isWide));
  const message = address.get("message");
  const called = address.get("function");
  showLinks(isFile || message || called ? "" : name);
  const shown = isFile ? await fileView(number, Number(address.get("line")))
    : report.explanations[message] ? messageView(message, search)
    : called !== null ? functionView(called, search)
    : views[name].show(search);
  if (turn !== shows) return;
  main.replaceChildren();
  add(main, [shown]);
  document.title = isFile ? `${report.files[number].path} – Translation report` : "Translation report";
}

// The address says what is searched, so that it can be passed on.
const search = () => changeAddress({
  file: "", line: "", message: "", function: "", search: searchField.value,
  view: wanted().get("view") === "graph" ? "" : wanted().get("view"),
});

const step = { n: 1, p: -1 };
function onKey(event) {
  const number = Number(wanted().get("file")) - 1;
  const isTyped = event.target.matches("input, select, textarea");
  if (isTyped || event.ctrlKey || event.altKey || event.metaKey || !step[event.key]) return;
  if (report.files[number]) stepMessage(number, step[event.key]);
}

// Where a view was left it is again after Back.
let scrolled;
window.addEventListener("scroll", () => {
  clearTimeout(scrolled);
  const address = location.hash;
  scrolled = setTimeout(() => {
    if (address === location.hash) keepInHistory("scroll", scrollY);
  }, 100);
});
history.scrollRestoration = "manual";
document.addEventListener("keydown", onKey);

document.getElementById("subtitle").textContent =
  `${counted(totals.files, "file", "files")}, ${counted(totals.lines, "line", "lines")} of MATLAB`;
searchField.addEventListener("input", search);
window.addEventListener("hashchange", async () => {
  const { scroll } = history.state ?? {};
  await show();
  if (scroll !== undefined || !wanted().get("line")) window.scrollTo(0, scroll ?? 0);
});
show();
