/* What the extension asks of its editor, as far as translations need it: documents, two editors beside
 * each other, and events. */
export class EventEmitter<Value> {
    readonly #listeners: ((value: Value) => void)[] = [];
    readonly event = (listener: (value: Value) => void): Disposable => {
        this.#listeners.push(listener);
        return new Disposable();
    };
    fire(value: Value): void {
        for (const listener of this.#listeners) listener(value);
    }
    dispose(): void {}
}

export class Disposable {
    static from = (): Disposable => new Disposable();
    dispose(): void {}
}

interface Parts {
    scheme: string;
    path: string;
    query: string;
}

export const Uri = {
    from: (parts: Parts) => ({ ...parts, toString: () => `${parts.scheme}:${parts.path}?${parts.query}` }),
    parse: (text: string) => {
        const [, scheme, path, query] = /^([\w-]+):([^?]*)\??(.*)$/.exec(text)!;
        return Uri.from({ scheme: scheme!, path: path!, query: query! });
    },
};
type Address = ReturnType<typeof Uri.parse>;

export class Range {
    constructor(
        readonly first: number,
        readonly _firstCharacter: number,
        readonly last: number,
    ) {}
}

export class ThemeColor {}
export const ViewColumn = { Beside: -2 };
export const TextEditorRevealType = { InCenterIfOutsideViewport: 2 };

class Document {
    text = '';
    constructor(
        readonly uri: Address,
        public languageId: string,
    ) {}
}

export class Editor {
    marked: string[] = [];
    selection = { active: { line: 0 } };
    constructor(readonly document: Document) {}
    setDecorations(_kind: object, ranges: Range[]): void {
        this.marked = ranges.map(({ first, last }) => `${first}-${last}`);
    }
    revealRange(): void {}
}

interface Provider {
    onDidChange: EventEmitter<Address>['event'];
    provideTextDocumentContent(address: Address, token: null): Promise<string>;
}

const changed = new EventEmitter<{ document: Document }>();
const closed = new EventEmitter<Document>();
const selected = new EventEmitter<{ textEditor: Editor }>();
let provider: Provider;

async function provide(document: Document): Promise<void> {
    document.text = await provider.provideTextDocumentContent(document.uri, null);
    changed.fire({ document });
}

export const window = {
    activeTextEditor: undefined as Editor | undefined,
    visibleTextEditors: [] as Editor[],
    createTextEditorDecorationType: () => ({ dispose() {} }),
    onDidChangeTextEditorSelection: selected.event,
    showTextDocument: async (document: Document): Promise<Editor> => {
        const editor = new Editor(document);
        window.visibleTextEditors.push(editor);
        return editor;
    },
};

export const workspace = {
    onDidChangeTextDocument: changed.event,
    onDidCloseTextDocument: closed.event,
    openTextDocument: async (address: Address): Promise<Document> => {
        const document = new Document(address, 'plaintext');
        await provide(document);
        return document;
    },
    registerTextDocumentContentProvider: (_scheme: string, given: Provider): Disposable => {
        provider = given;
        const shown = (address: Address) =>
            window.visibleTextEditors.find(({ document: { uri } }) => `${uri}` === `${address}`);
        return given.onDidChange((address) => void provide(shown(address)!.document));
    },
};

export const languages = {
    setTextDocumentLanguage: async (document: Document, languageId: string): Promise<Document> =>
        Object.assign(document, { languageId }),
};

/** What a user does. */
export const user = {
    opens: (uri: string): Editor => {
        const editor = new Editor(new Document(Uri.parse(uri), 'matlab'));
        window.visibleTextEditors.push(editor);
        return (window.activeTextEditor = editor);
    },
    types: ({ document }: Editor): void => changed.fire({ document }),
    goesTo: (editor: Editor, line: number): void => {
        window.activeTextEditor = editor;
        editor.selection.active.line = line;
        selected.fire({ textEditor: editor });
    },
};
