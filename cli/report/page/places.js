// Where things are: the places of a message, the callers of a function.

const messageNames = new Map(report.messages.filter(kind => kind.code)
  .map(kind => [kind.code, kind.name ?? ""]));

const messageLink = (code, text) => (report.explanations[code]
  ? element("a", { class: "code", href: `#message=${code}` }, text ?? code)
  : element("span", { class: "code" }, text ?? code));
const functionLink = name =>
  element("a", { class: "code", href: `#function=${encodeURIComponent(name)}` }, name);

const allMessages = () => report.files.flatMap(file => file.messages.map(message =>
  ({ ...message, file: message.file ?? file.path })));

const messagePlaces = (items, id = "places") => ({
  id,
  items,
  text: item => `${item.code ?? ""} ${messageNames.get(item.code) ?? ""} ${item.message} ${item.file}`,
  empty: "None.",
  columns: [
    textColumn("Place", item => item.file, item => fileLink(item.file, item.line)),
    textColumn("Message", item => item.code ?? "", item => messageText(item)),
  ],
});

function messageView(code, search) {
  return [
    element("section", {},
      element("h2", {}, `${code} ${messageNames.get(code) ?? ""}`),
      element("pre", { class: "explanation" }, report.explanations[code])),
    section("Where it is", tableOf(messagePlaces(allMessages().filter(item => item.code === code)), search)),
  ];
}

// What calls a function of the name, and from where.
const callsOf = name => report.files.flatMap(file => file.calls
  .filter(call => call.name === name)
  .map(call => ({ file, call, caller: call.in >= 0 ? file.functions[call.in].name : "(statements)" })));

const callerTable = items => ({
  id: "callers",
  items,
  text: ({ file, caller }) => `${file.path} ${caller}`,
  empty: "Nothing calls it.",
  columns: [
    textColumn("Caller", ({ caller }) => caller,
               ({ caller, call }) => (call.in >= 0 ? functionLink(caller) : caller)),
    textColumn("First place", ({ file, call }) => `${file.path}:${call.line}`,
               ({ file, call }) => fileLink(file.path, call.line)),
    numberColumn("Calls", ({ call }) => call.count),
    textColumn("Ends in", ({ call }) => call.target ?? callEnds[call.end],
               ({ call }) => (call.target ? fileLink(call.target) : callEnds[call.end])),
  ],
});
const callEnds = { found: "found", answered: "the host's answer", builtIn: "a form built in",
                   unresolved: "nothing: unresolved", classOnly: "classes only" };

const definitions = () => report.files.flatMap(file =>
  file.functions.map(({ name, line }) => ({ name, line, file: file.path })));

const definitionTable = items => ({
  id: "definitions",
  items,
  text: item => item.name,
  empty: "None.",
  columns: [
    textColumn("Function", item => item.name, item => functionLink(item.name)),
    textColumn("Place", item => placeText(item), item => fileLink(item.file, item.line)),
  ],
});

function functionView(name, search) {
  return [
    section(`Callers of ${name}`, tableOf(callerTable(callsOf(name)), search)),
    section(`Where ${name} is`, tableOf(
      { ...definitionTable(definitions().filter(item => item.name === name)), empty: "No file has it." })),
  ];
}

// What to do first, as mtranslate assess has it.
function adviceSections() {
  const known = new Map(report.unresolved.map(item => [item.name, item]));
  const rules = report.advice.map(item => ({ ...known.get(item.name), ...item }));
  const obstacles = report.messages.filter(kind => kind.severity !== "note" && kind.code !== "MT401")
    .sort((a, b) => b.count - a.count).slice(0, 15);
  return element("div", { class: "pair" },
    section("What to do first: rules that help most", tableOf({
      id: "advice", items: rules, text: item => item.name,
      empty: "Nothing: no function is left to the host.",
      columns: [
        textColumn("Function", item => item.name, item => functionLink(item.name)),
        numberColumn("Completes statements", item => item.completed,
                     item => `+${grouped(item.completed)}`),
        numberColumn("Calls", item => item.count),
        numberColumn("Files", item => item.files.length),
      ],
    })),
    section("What stands in the way", tableOf({ ...messageTable(obstacles), id: "obstacles" })));
}
