// The files: chosen by folder, state and message, which stand in the address, and summed up by folder.

const folderOf = path => path.slice(0, path.lastIndexOf("/") + 1);

function isChosen(file, { folder, state, code }) {
  return (!folder || file.path.startsWith(folder)) && (!state || shownState(file) === state) &&
    (!code || file.messages.some(message => message.code === code));
}

// The folders directly within one, each with all that lies below it.
function foldersIn(folder, files) {
  const sums = new Map();
  for (const file of files) {
    const end = file.path.indexOf("/", folder.length);
    if (end < 0) continue;
    const path = file.path.slice(0, end + 1);
    const sum = sums.get(path) ?? { path, files: 0, translated: 0, gaps: 0, errors: 0, failed: 0,
                                    statements: { all: 0, withoutMessage: 0 } };
    sum.files++;
    sum[file.state]++;
    sum.statements.all += file.statements.all;
    sum.statements.withoutMessage += file.statements.withoutMessage;
    sums.set(path, sum);
  }
  return [...sums.values()];
}

const folderLink = (path, text = path) =>
  element("a", { class: "code", href: `#${withAddress({ view: "files", folder: path, search: "" })}` }, text);

const folderTable = (items, folder) => ({
  id: "folders",
  items,
  text: item => item.path,
  empty: "None.",
  columns: [
    textColumn("Folder", item => item.path, item => folderLink(item.path, item.path.slice(folder.length))),
    numberColumn("Files", item => item.files),
    numberColumn("Without errors or gaps", item => item.translated),
    numberColumn("Gaps", item => item.gaps),
    numberColumn("Errors", item => item.errors + item.failed),
    numberColumn("Statements", item => item.statements.all),
    numberColumn("Without a message", shareValue, shareOf),
  ],
});

function choice(label, key, chosen, options) {
  const select = element("select", { change: () => changeAddress({ [key]: select.value }) },
    element("option", { value: "" }, "all"),
    options.map(([value, text]) => element("option", { value, selected: value === chosen ? "" : null }, text)));
  return element("label", {}, `${label} `, select);
}

function filesView(search) {
  const chosen = Object.fromEntries(["folder", "state", "code"].map(key => [key, wanted().get(key) ?? ""]));
  const folder = chosen.folder || commonFolder;
  const files = report.files.filter(file => isChosen(file, chosen));
  const folders = foldersIn(folder, files);
  const parents = [...folder.slice(commonFolder.length).matchAll(/\//g)]
    .map(({ index }) => folder.slice(0, commonFolder.length + index + 1));
  const codes = [...messageNames].sort().map(([code, name]) => [code, `${code} ${name}`]);
  const states = Object.entries(stateNames).filter(([state]) => report.files.some(file => shownState(file) === state));
  return [
    element("div", { class: "tools filters" },
      element("span", {}, "Folder ", folderLink("", commonFolder || "all"),
              parents.map(path => [" ", folderLink(path, path.split("/").at(-2) + "/")])),
      choice("State", "state", chosen.state, states), choice("Message", "code", chosen.code, codes)),
    folders.length ? section("Folders", tableOf(folderTable(folders, folder), search)) : null,
    section(`${counted(files.length, "file", "files")}`, tableOf(fileTable(files), search)),
  ];
}
