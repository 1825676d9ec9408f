/* The language server: what comes over the protocol, handed to the threads that translate. */
import { existsSync } from 'node:fs';
import { fileURLToPath, pathToFileURL } from 'node:url';
import {
    CodeActionKind,
    DiagnosticSeverity,
    DidChangeConfigurationNotification,
    DidChangeWatchedFilesNotification,
    ErrorCodes,
    FileChangeType,
    ResponseError,
    TextDocumentSyncKind,
    TextDocuments,
    type CancellationToken,
    type ClientCapabilities,
    type Connection,
    type Diagnostic,
    type FileEvent,
    type InitializeParams,
    type InitializeResult,
} from 'vscode-languageserver/node.js';
import { TextDocument } from 'vscode-languageserver-textdocument';
import { Published, pathOf, type OpenDocument } from './documents.js';
import { LEGEND } from './features/tokens.js';
import { folderOf } from './file_index.js';
import { callableFilesIn, filesIn } from './files.js';
import { Configurations, DEFAULTS, mergeSettings, type Settings } from './settings.js';
import { update, type Encoding } from './source.js';
import type { Client, OpenText } from './service.js';
import { TranslatorThread } from './thread.js';
import type { JobName, State } from './worker.js';

/** Of the package; the build puts it here. */
declare const VERSION: string;

export const TRANSLATION_COMMAND = 'mtranslate.translation';
/** A translation of a text that is no longer there is given up after so many milliseconds. */
const LONGEST_STALE = 300;
/** The first messages wait for the scan of the workspace, but no longer. */
const LONGEST_SCAN = 3000;
const BETWEEN_SCANS = 2000;

interface HasDocument {
    textDocument: { uri: string };
}

const isCount = (value: unknown): boolean =>
    typeof value === 'number' && Number.isInteger(value) && value >= 0;
const isPosition = (value: unknown): boolean => {
    const { line, character } = (value ?? {}) as Record<string, unknown>;
    return isCount(line) && isCount(character);
};

/** With the path of the document. Throws a ResponseError for what is none. */
function withPath<Params extends HasDocument>(params: Params): Params & { path: string } {
    const fields = params as unknown as Record<string, unknown>;
    const uri = params?.textDocument?.uri;
    const range = fields?.['range'] as { start: unknown; end: unknown } | undefined;
    const isRight =
        typeof uri === 'string' &&
        (!('position' in fields) || isPosition(fields['position'])) &&
        (range === undefined || (isPosition(range?.start) && isPosition(range?.end)));
    if (!isRight)
        throw new ResponseError(ErrorCodes.InvalidParams, 'a document, and positions in it, are expected');
    return { ...params, path: pathOf(uri) };
}

function encodingOf(capabilities: ClientCapabilities): Encoding {
    const wanted = capabilities.general?.positionEncodings ?? [];
    return (
        wanted.find((encoding): encoding is Encoding => encoding === 'utf-8' || encoding === 'utf-16') ??
        'utf-16'
    );
}

/** The page about messages: that of an installed tool, or the one beside the server. */
function messagesPage(): string | null {
    const installed = [
        '/usr/share/doc/mtranslate/messages.md',
        '/usr/local/share/doc/mtranslate/messages.md',
    ];
    const own = fileURLToPath(new URL('./messages.md', import.meta.url));
    const page = [...installed, own].find((path) => existsSync(path));
    return page === undefined ? null : pathToFileURL(page).href;
}

export class Server {
    readonly #configurations = new Configurations();
    readonly #open = new Map<string, OpenDocument>();
    readonly #published: Published;
    readonly #documents: TextDocuments<TextDocument>;
    readonly #front: TranslatorThread;
    readonly #search: TranslatorThread;
    #encoding: Encoding = 'utf-16';
    #client: Client = {
        encoding: 'utf-16',
        canRenameFiles: false,
        canCreateFiles: false,
        messagesPage: null,
    };
    #capabilities: ClientCapabilities = {};
    #options: unknown = null;
    #files: string[] = [];
    #ready: Promise<void> = Promise.resolve();
    #scanning: Promise<void> | null = null;
    #scanAgain = false;
    #lastScan = 0;
    #mistakes: string[] = [];

    constructor(
        readonly connection: Connection,
        wasm: WebAssembly.Module,
    ) {
        const log = (text: string): void => connection.console.error(text);
        this.#front = new TranslatorThread(wasm, () => this.#whole(), log);
        this.#search = new TranslatorThread(wasm, () => this.#whole(), log);
        this.#published = new Published(this.#open, (uri, diagnostics) => {
            const version = this.#documents.get(uri)?.version;
            void connection.sendDiagnostics({
                uri,
                ...(version === undefined ? {} : { version }),
                diagnostics,
            });
        });
        this.#documents = new TextDocuments({
            create: TextDocument.create,
            update: (document, changes, version) => update(document, changes, version, this.#encoding),
        });
        this.#listen();
        this.#warmUp();
    }

    /** So that the next translation is fast; it gets along with it what has changed. */
    #warmUp(): void {
        void this.#front.ask('warmUp', {}).catch(() => {});
    }

    #listen(): void {
        const { connection } = this;
        connection.onInitialize((params) => this.#initialize(params));
        connection.onInitialized(() => this.#initialized());
        connection.onDidChangeConfiguration(({ settings }) => this.#changeSettings(settings));
        connection.onDidChangeWatchedFiles(({ changes }) => this.#changeFiles(changes));
        this.#documents.onDidOpen(({ document }) => this.#opened(document));
        this.#documents.onDidChangeContent(({ document }) => this.#changed(document));
        this.#documents.onDidClose(({ document }) => this.#closed(document));
        this.#documents.onDidSave(() => this.#lookAgain());
        this.#documents.listen(connection);
        this.#listenForRequests();
    }

    /** A request about a document as a job of a thread. */
    #job<Name extends JobName>(name: Name, thread = this.#front) {
        return async (params: HasDocument, token?: CancellationToken) => {
            const wanted = withPath(params);
            await this.#ready;
            return (await thread.ask(name, wanted, token)) as never;
        };
    }

    #listenForRequests(): void {
        const { connection } = this;
        connection.onHover(this.#job('hover'));
        connection.onDefinition(this.#job('definition'));
        connection.onReferences(this.#job('references', this.#search));
        connection.onDocumentHighlight(this.#job('highlights'));
        connection.onPrepareRename(this.#job('prepareRename'));
        connection.onRenameRequest(this.#job('rename', this.#search));
        connection.onDocumentSymbol(this.#job('documentSymbols'));
        connection.onFoldingRanges(this.#job('foldingRanges'));
        connection.languages.semanticTokens.on(this.#job('semanticTokens'));
        connection.onSignatureHelp(this.#job('signatureHelp'));
        connection.onCompletion(this.#job('completion'));
        connection.onCodeAction(this.#job('codeActions'));
        connection.onCodeLens(this.#job('codeLenses'));
        connection.onRequest('mtranslate/translation', this.#job('translation'));
        connection.onCompletionResolve((item, token) => this.#front.ask('completionResolve', item, token));
        connection.onWorkspaceSymbol(async ({ query }, token) => {
            if (typeof query !== 'string')
                throw new ResponseError(ErrorCodes.InvalidParams, 'a query is expected');
            await this.#ready;
            return this.#search.ask('workspaceSymbols', { query }, token);
        });
        connection.onExecuteCommand(({ command, arguments: [uri] = [] }, token) => {
            if (command !== TRANSLATION_COMMAND)
                throw new ResponseError(ErrorCodes.InvalidParams, `no command '${command}'`);
            return this.#job('translation')({ textDocument: { uri: uri as string } }, token);
        });
    }

    #initialize({
        capabilities,
        workspaceFolders,
        rootUri,
        initializationOptions,
    }: InitializeParams): InitializeResult {
        this.#capabilities = capabilities ?? {};
        this.#encoding = encodingOf(this.#capabilities);
        const { documentChanges, resourceOperations = [] } =
            this.#capabilities.workspace?.workspaceEdit ?? {};
        this.#client = {
            encoding: this.#encoding,
            canRenameFiles: documentChanges === true && resourceOperations.includes('rename'),
            canCreateFiles: documentChanges === true && resourceOperations.includes('create'),
            messagesPage: messagesPage(),
        };
        const uris = workspaceFolders?.map(({ uri }) => uri) ?? (rootUri ? [rootUri] : []);
        this.#setFolders(uris);
        this.#tell({ client: this.#client, folders: this.#configurations.folders });
        this.#options = initializationOptions;
        this.#setSettings(DEFAULTS, initializationOptions);
        this.#ready = this.#limited(this.#scan());
        return {
            serverInfo: { name: 'mtranslate-language-server', version: VERSION },
            capabilities: {
                positionEncoding: this.#encoding,
                textDocumentSync: { openClose: true, change: TextDocumentSyncKind.Incremental, save: true },
                hoverProvider: true,
                definitionProvider: true,
                referencesProvider: true,
                documentHighlightProvider: true,
                renameProvider: { prepareProvider: true },
                documentSymbolProvider: true,
                workspaceSymbolProvider: true,
                foldingRangeProvider: true,
                semanticTokensProvider: { legend: LEGEND, full: true },
                signatureHelpProvider: { triggerCharacters: ['(', ','] },
                completionProvider: { triggerCharacters: ['.'], resolveProvider: true },
                codeActionProvider: { codeActionKinds: [CodeActionKind.QuickFix] },
                codeLensProvider: {},
                executeCommandProvider: { commands: [TRANSLATION_COMMAND] },
                workspace: { workspaceFolders: { supported: true, changeNotifications: true } },
            },
        };
    }

    #setFolders(uris: readonly string[]): void {
        this.#configurations.folders = uris
            .filter((uri) => uri.startsWith('file:'))
            .map((uri) => pathOf(uri).replace(/\/$/, ''));
    }

    /** Lets work go on where a scan takes long. */
    #limited(scan: Promise<void>): Promise<void> {
        return Promise.race([
            scan,
            new Promise<void>((resolve) => setTimeout(resolve, LONGEST_SCAN).unref()),
        ]);
    }

    #initialized(): void {
        const { workspace } = this.#capabilities;
        const trouble = (error: Error): void => this.connection.console.error(error.message);
        if (workspace?.didChangeWatchedFiles?.dynamicRegistration)
            this.connection.client
                .register(DidChangeWatchedFilesNotification.type, {
                    watchers: [
                        { globPattern: '**/*.m' },
                        { globPattern: '**/*.toml' },
                        { globPattern: '**/.gitignore' },
                    ],
                })
                .catch(trouble);
        if (workspace?.didChangeConfiguration?.dynamicRegistration)
            this.connection.client
                .register(DidChangeConfigurationNotification.type, { section: 'mtranslate' })
                .catch(trouble);
        if (workspace?.workspaceFolders)
            this.connection.workspace.onDidChangeWorkspaceFolders(({ added, removed }) => {
                const gone = new Set(removed.map(({ uri }) => pathOf(uri).replace(/\/$/, '')));
                const kept = this.#configurations.folders.filter((folder) => !gone.has(folder));
                this.#setFolders([
                    ...kept.map((folder) => pathToFileURL(folder).href),
                    ...added.map(({ uri }) => uri),
                ]);
                this.#tell({ folders: this.#configurations.folders });
                void this.#scan();
            });
        this.#changeSettings(null);
    }

    /** given: what a notification has brought along. */
    #changeSettings(given: unknown): void {
        const own = (given as Record<string, unknown> | null)?.['mtranslate'];
        const base = mergeSettings(
            DEFAULTS,
            this.#options,
            this.#configurations.folders[0] ?? null,
            () => {},
        );
        if (!this.#capabilities.workspace?.configuration) {
            if (own !== undefined) this.#setSettings(base, own);
            return;
        }
        this.connection.workspace
            .getConfiguration('mtranslate')
            .then((settings: unknown) => this.#setSettings(base, settings ?? own))
            .catch((error: Error) => this.connection.console.error(error.message));
    }

    #setSettings(base: Settings, value: unknown): void {
        const complain = (text: string): void => this.connection.console.warn(text);
        const settings = mergeSettings(base, value, this.#configurations.folders[0] ?? null, complain);
        if (JSON.stringify(settings) === JSON.stringify(this.#configurations.settings)) return;
        this.#configurations.settings = settings;
        this.#tell({ settings });
        if (this.#lastScan > 0) void this.#scan();
        this.#againAll();
    }

    /** All that a new thread has to know. */
    #whole(): State {
        return {
            opened: this.#documents.all().map((document) => this.#textOf(document)),
            files: this.#indexed(),
            folders: this.#configurations.folders,
            settings: this.#configurations.settings,
            client: this.#client,
        };
    }

    #textOf(document: TextDocument): OpenText {
        const { uri, version } = document;
        return { path: pathOf(uri), uri, version, text: document.getText() };
    }

    #tell(state: State): void {
        this.#front.tell(state);
        this.#search.tell(state);
    }

    #indexed(): string[] {
        return [...new Set([...this.#files, ...[...this.#open.values()].map(({ path }) => path)])];
    }

    // Files

    async #scan(): Promise<void> {
        this.#scanAgain = true;
        this.#scanning ??= this.#scanWhileWanted();
        await this.#scanning;
    }

    async #scanWhileWanted(): Promise<void> {
        while (this.#scanAgain) {
            this.#scanAgain = false;
            await this.#scanOnce().catch((error: Error) => this.connection.console.error(error.message));
        }
        this.#scanning = null;
    }

    async #scanOnce(): Promise<void> {
        const { folders, settings } = this.#configurations;
        const own = folders.map((folder) => this.#configurations.for(`${folder}/.m`));
        const outside = [...this.#open.values()].filter(
            ({ path, uri }) =>
                uri.startsWith('file:') && !folders.some((folder) => path.startsWith(`${folder}/`)),
        );
        const others = [
            ...settings.folders,
            ...own.flatMap(({ include }) => include),
            ...outside.map(({ path }) => folderOf(path)),
        ];
        const found = await Promise.all([
            ...folders.map((folder, at) => filesIn(folder, own[at]?.exclude ?? [])),
            ...[...new Set(others)].map(callableFilesIn),
        ]);
        const files = [...new Set(found.flat())];
        this.#lastScan = performance.now();
        if (files.length === this.#files.length && files.every((file, at) => file === this.#files[at]))
            return;
        this.#files = files;
        this.#tell({ files: this.#indexed() });
        this.#warmUp();
        this.#againAll();
    }

    /** For clients that watch no files. */
    #lookAgain(): void {
        if (this.#capabilities.workspace?.didChangeWatchedFiles?.dynamicRegistration) return;
        this.#tell({ forget: true });
        this.#againAll();
        if (performance.now() - this.#lastScan > BETWEEN_SCANS) void this.#scan();
    }

    #changeFiles(changes: readonly FileEvent[]): void {
        const isScanned = changes.some(
            ({ type, uri }) => type !== FileChangeType.Changed || !uri.endsWith('.m'),
        );
        const paths = new Set(changes.map(({ uri }) => pathOf(uri)));
        this.#tell({ forget: true });
        if (isScanned) void this.#scan();
        const isForAll = changes.some(({ uri }) => !uri.endsWith('.m'));
        for (const { uri, reads } of this.#open.values())
            if (isForAll || [...reads].some((path) => paths.has(path))) this.#again(uri, 0);
    }

    // Documents

    #opened(document: TextDocument): void {
        const path = pathOf(document.uri);
        this.#open.set(document.uri, {
            uri: document.uri,
            path,
            timer: null,
            reads: new Set(),
            diagnostics: null,
        });
        const { folders } = this.#configurations;
        const isKnown = this.#files.includes(path);
        if (!isKnown) this.#tell({ files: this.#indexed() });
        if (!isKnown && !folders.some((folder) => path.startsWith(`${folder}/`)))
            this.#ready = this.#limited(this.#scan());
        this.#again(document.uri, 0);
    }

    #changed(document: TextDocument): void {
        const { uri } = document;
        const text = this.#textOf(document);
        this.#tell({ opened: [text] });
        const since = this.#front.runningFor(
            'diagnostics',
            (params) => (params as { path: string }).path === text.path,
        );
        if (since !== null && since > LONGEST_STALE) this.#front.stopRunning();
        if (this.#open.get(uri)?.diagnostics) this.#again(uri, this.#configurations.settings.debounce);
        else this.#again(uri, 0);
    }

    #closed({ uri }: TextDocument): void {
        const document = this.#open.get(uri);
        if (!document) return;
        if (document.timer) clearTimeout(document.timer);
        this.#open.delete(uri);
        this.#tell({
            closed: [document.path],
            ...(this.#files.includes(document.path) ? {} : { files: this.#indexed() }),
        });
        this.#published.update([...Object.keys(document.diagnostics ?? {}), uri]);
        void this.connection.sendDiagnostics({ uri, diagnostics: [] });
        this.#againReaders(document.path);
    }

    #againAll(): void {
        for (const uri of this.#open.keys()) this.#again(uri, 0);
    }

    #againReaders(path: string): void {
        for (const { uri, reads } of this.#open.values())
            if (reads.has(path)) this.#again(uri, this.#configurations.settings.debounce);
    }

    /** Translates the document after so many milliseconds without a change. */
    #again(uri: string, delay: number): void {
        const document = this.#open.get(uri);
        if (!document) return;
        if (document.timer) clearTimeout(document.timer);
        document.timer = setTimeout(() => {
            document.timer = null;
            this.#translate(document).catch((error: Error) => this.connection.console.error(error.message));
        }, delay);
    }

    async #translate(document: OpenDocument): Promise<void> {
        await this.#ready;
        const version = this.#documents.get(document.uri)?.version;
        const isMeant = (): boolean =>
            this.#open.get(document.uri) === document &&
            this.#documents.get(document.uri)?.version === version;
        if (!isMeant() || document.timer) return;
        try {
            const told = await this.#front.ask('diagnostics', { path: document.path });
            if (!told || !isMeant()) return;
            this.#showMistakes(told.rulesMistakes);
            const changed = document.diagnostics === null || version !== undefined;
            document.reads = new Set(told.reads);
            this.#show(document, told.diagnostics);
            if (changed) this.#againOtherReaders(document);
        } catch (error) {
            if (!isMeant() || document.timer) return;
            this.#show(document, { [document.uri]: [atTop((error as Error).message)] });
        }
    }

    #versions = new Map<string, number>();

    /** Those that read a document whose text has changed since they were told. */
    #againOtherReaders({ uri, path }: OpenDocument): void {
        const version = this.#documents.get(uri)?.version ?? 0;
        if (this.#versions.get(uri) === version) return;
        this.#versions.set(uri, version);
        for (const other of this.#open.values())
            if (other.uri !== uri && other.reads.has(path)) this.#again(other.uri, 0);
    }

    #show(document: OpenDocument, diagnostics: Record<string, Diagnostic[]>): void {
        const before = Object.keys(document.diagnostics ?? {});
        document.diagnostics = diagnostics;
        this.#published.update([document.uri, ...before, ...Object.keys(diagnostics)]);
    }

    /** Mistakes in rules, at their places. */
    #showMistakes(text: string | null): void {
        const mistakes = new Map<string, Diagnostic[]>();
        for (const [, file, line, column, message] of text?.matchAll(/^(.*?):(\d+):(\d+): error: (.*)$/gm) ??
            []) {
            const at = { line: Number(line) - 1, character: Number(column) - 1 };
            const diagnostic = {
                range: { start: at, end: at },
                severity: DiagnosticSeverity.Error,
                source: 'mtranslate',
                message: message!,
            };
            mistakes.set(file!, [...(mistakes.get(file!) ?? []), diagnostic]);
        }
        for (const file of new Set([...this.#mistakes, ...mistakes.keys()]))
            void this.connection.sendDiagnostics({
                uri: pathToFileURL(file).href,
                diagnostics: mistakes.get(file) ?? [],
            });
        this.#mistakes = [...mistakes.keys()];
    }
}

const atTop = (message: string): Diagnostic => ({
    range: { start: { line: 0, character: 0 }, end: { line: 1, character: 0 } },
    severity: DiagnosticSeverity.Error,
    source: 'mtranslate',
    message,
});
