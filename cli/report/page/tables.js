// Tables that are searched and sorted. Of long ones the first rows are shown, more on demand.

const ROWS_AT_ONCE = 200;

function keepInHistory(key, value) {
  history.replaceState({ ...history.state, [key]: value }, "");
}

// A column: title, the value to sort by, and how it is shown if not as the value itself.
const textColumn = (title, value, show) => ({ title, value, show });
const numberColumn = (title, value, show) => ({ title, value, show, isNumber: true });

function compare(a, b) {
  if (typeof a === "number") return a - b;
  return a < b ? -1 : a > b ? 1 : 0;
}

function cellOf(column, item) {
  const value = column.value(item);
  const shown = column.show ? column.show(item) : column.isNumber ? grouped(value) : value;
  const look = column.isNumber ? (value === 0 ? "number zero" : "number") : null;
  return element("td", { class: look }, shown);
}

// spec: id, columns, items, text (what is searched in an item), empty (what is said of no items).
// How it is sorted, and how many rows are shown, is kept with the entry of the browser's history.
class SearchedTable {
  constructor(spec, search) {
    this.spec = spec;
    const kept = history.state?.[`table ${spec.id}`];
    const column = spec.columns.find(({ title }) => title === kept?.title);
    this.sorted = column ? { column, descending: kept.descending } : null;
    this.limit = kept?.limit ?? ROWS_AT_ONCE;
    const words = search.toLowerCase().split(/\s+/).filter(Boolean);
    this.items = spec.items.filter(item => {
      const text = spec.text(item).toLowerCase();
      return words.every(word => text.includes(word));
    });
    this.node = element("div");
    this.sort();
    this.render();
  }

  keep() {
    const { column, descending } = this.sorted ?? {};
    keepInHistory(`table ${this.spec.id}`, { title: column?.title, descending, limit: this.limit });
  }

  sort() {
    if (!this.sorted) return;
    const { column, descending } = this.sorted;
    const sign = descending ? -1 : 1;
    this.items.sort((a, b) => sign * compare(column.value(a), column.value(b)));
  }

  sortBy(column) {
    const again = this.sorted?.column === column;
    const descending = again ? !this.sorted.descending : Boolean(column.isNumber);
    this.sorted = { column, descending };
    this.sort();
    this.keep();
    this.render();
    this.node.querySelector("th[aria-sort] button").focus();
  }

  headOf(column) {
    const isSorted = this.sorted?.column === column;
    const order = isSorted ? (this.sorted.descending ? "descending" : "ascending") : null;
    const button = element("button", { type: "button", click: () => this.sortBy(column) },
                           column.title);
    return element("th", { scope: "col", "aria-sort": order,
                           class: column.isNumber ? "number" : null }, button);
  }

  more() {
    const left = this.items.length - this.limit;
    if (left <= 0) return null;
    const show = element("button", { type: "button", click: () => {
      this.limit += 5 * ROWS_AT_ONCE;
      this.keep();
      this.render();
    } }, "Show more");
    return element("p", { class: "more" }, `${grouped(left)} more rows `, show);
  }

  render() {
    const { id, columns, empty } = this.spec;
    if (this.items.length === 0) {
      const text = this.spec.items.length === 0 ? empty : "Nothing here matches the search.";
      this.node.replaceChildren(element("p", { class: "empty" }, text));
      return;
    }
    const rows = this.items.slice(0, this.limit).map(item =>
      element("tr", {}, columns.map(column => cellOf(column, item))));
    const table = element("table", { class: "list", id },
      element("thead", {}, element("tr", {}, columns.map(column => this.headOf(column)))),
      element("tbody", {}, rows));
    this.node.replaceChildren(element("div", { class: "scroll" }, table));
    add(this.node, [this.more()]);
  }
}

const tableOf = (spec, search = "") => new SearchedTable(spec, search).node;

const placeText = place => `${place.file}:${place.line}`;

const unresolvedTable = items => ({
  id: "unresolved",
  items,
  text: item => item.name,
  empty: "None: every function that is called is found, or the host answers it.",
  columns: [
    textColumn("Function", item => item.name, item => [functionLink(item.name), item.classOnly ? " (in classes)" : null]),
    numberColumn("Calls", item => item.count),
    numberColumn("Files", item => item.files.length),
    numberColumn("Statements waiting for it alone", item => item.alone),
    textColumn("First place", item => placeText(item.first),
               item => fileLink(item.first.file, item.first.line)),
  ],
});

const messageTable = items => ({
  id: "messages",
  items,
  text: item => `${item.code ?? ""} ${item.name ?? ""} ${item.severity}`,
  empty: "None.",
  columns: [
    textColumn("Message", item => item.code ?? "",
               item => [messageLink(item.code, item.code ?? "–"), " ", item.name ?? ""]),
    textColumn("Severity", item => item.severity, item => severityBadge(item.severity)),
    numberColumn("Number", item => item.count),
    numberColumn("Files", item => item.files),
  ],
});

const unassignedTable = items => ({
  id: "unassigned",
  items,
  text: item => `${item.name} ${item.place.file}`,
  empty: "None.",
  columns: [
    textColumn("Name", item => item.name, item => element("span", { class: "code" }, item.name)),
    textColumn("Place", item => placeText(item.place),
               item => fileLink(item.place.file, item.place.line)),
  ],
});

const ruleTable = items => ({
  id: "rules",
  items,
  text: item => item.title,
  empty: "The run had no rules.",
  columns: [
    textColumn("Rule", item => item.title, item => element("span", { class: "code" }, item.title)),
    numberColumn("Used", item => item.count, item => (item.count ? grouped(item.count) : "never")),
  ],
});

const shareValue = ({ statements: { all, withoutMessage } }) => (all ? withoutMessage / all : -1);
function shareOf(file) {
  const { all, withoutMessage } = file.statements;
  const bar = element("i");
  bar.style.width = all ? `${(100 * withoutMessage) / all}%` : "0";
  return [percent(withoutMessage, all), element("span", { class: "share", "aria-hidden": "true" }, bar)];
}

const fileTable = items => ({
  id: "files",
  items,
  text: file => `${file.path} ${stateNames[shownState(file)]}`,
  empty: "None.",
  columns: [
    textColumn("File", file => file.path, file => fileLink(file.path)),
    textColumn("State", file => shownState(file), file => stateBadge(shownState(file))),
    numberColumn("Functions", file => file.functions.length),
    numberColumn("Lines", file => file.lines),
    numberColumn("Bytes", file => file.bytes),
    numberColumn("Errors", file => file.messageCounts.error),
    numberColumn("Gaps", file => file.messageCounts.gap),
    numberColumn("Warnings", file => file.messageCounts.warning),
    numberColumn("Notes", file => file.messageCounts.note),
    numberColumn("Without a message",
                 shareValue, shareOf),
  ],
});
