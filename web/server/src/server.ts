/* The language server: what comes over the protocol, handed to the threads that translate. */
import {
    DidChangeConfigurationNotification,
    DidChangeWatchedFilesNotification,
    FileChangeType,
    TextDocuments,
    type CancellationToken,
    type ClientCapabilities,
    type Connection,
    type FileEvent,
    type InitializeParams,
    type InitializeResult,
} from 'vscode-languageserver/node.js';
import { TextDocument } from 'vscode-languageserver-textdocument';
import { pathOf, type OpenDocument } from './documents.js';
import { TRANSLATION_COMMAND, clientOf, serverCapabilities } from './initialization.js';
import { Messages } from './messages.js';
import { invalidParams, withPath, type HasDocument, type Needs } from './params.js';
import type { Client, OpenText } from './service.js';
import { DEFAULTS, mergeSettings, type Configurations, type Settings } from './settings.js';
import { update } from './source.js';
import { Threads } from './threads.js';
import { Workspace } from './workspace.js';
import type { JobName, State } from './worker.js';

/** Of the package; the build puts it here. */
declare const VERSION: string;

const WATCHED = ['**/*.m', '**/*.toml', '**/.gitignore'];

export class Server {
    readonly #threads: Threads;
    readonly #workspace: Workspace;
    readonly #documents: TextDocuments<TextDocument>;
    readonly #messages: Messages;
    #capabilities: ClientCapabilities = {};
    #client: Client = clientOf({});
    /** What the client has given at the beginning. */
    #options: unknown = null;

    constructor(
        readonly connection: Connection,
        wasm: WebAssembly.Module,
    ) {
        const open = new Map<string, OpenDocument>();
        const log = (text: string): void => connection.console.error(text);
        this.#threads = new Threads(wasm, () => this.#whole(), log);
        this.#workspace = new Workspace(open, () => this.#filesChanged(), log);
        this.#documents = new TextDocuments({
            create: (uri, language, version, text) => {
                if (typeof uri !== 'string' || typeof text !== 'string')
                    throw invalidParams('a document has an address and a text');
                return TextDocument.create(uri, language, version, text);
            },
            update: (document, changes, version) => update(document, changes, version, this.#client.encoding),
        });
        this.#messages = new Messages(connection, this.#documents, open, this.#workspace, this.#threads);
        this.#listen();
        this.#listenForRequests();
        this.#threads.warmUp();
    }

    get #configurations(): Configurations {
        return this.#workspace.configurations;
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
    }

    /** A request about a document as a job of a thread. */
    #job<Name extends JobName>(name: Name, needs: Needs = null, thread = this.#threads.front) {
        return async (params: HasDocument, token?: CancellationToken) => {
            const wanted = withPath(params, needs);
            await this.#workspace.ready;
            return (await thread.ask(name, wanted, token)) as never;
        };
    }

    #listenForRequests(): void {
        const { connection } = this;
        const { front, search } = this.#threads;
        connection.onHover(this.#job('hover', 'position'));
        connection.onDefinition(this.#job('definition', 'position'));
        connection.onReferences(this.#job('references', 'position', search));
        connection.onDocumentHighlight(this.#job('highlights', 'position'));
        connection.onPrepareRename(this.#job('prepareRename', 'position'));
        connection.onRenameRequest(this.#job('rename', 'position', search));
        connection.onDocumentSymbol(this.#job('documentSymbols'));
        connection.onFoldingRanges(this.#job('foldingRanges'));
        connection.languages.semanticTokens.on(this.#job('semanticTokens'));
        connection.onSignatureHelp(this.#job('signatureHelp', 'position'));
        connection.onCompletion(this.#job('completion', 'position'));
        connection.onCodeAction(this.#job('codeActions', 'range'));
        connection.onCodeLens(this.#job('codeLenses'));
        connection.onRequest('mtranslate/translation', this.#job('translation'));
        connection.onCompletionResolve((item, token) => front.ask('completionResolve', item, token));
        connection.onWorkspaceSymbol(async ({ query }, token) => {
            if (typeof query !== 'string') throw invalidParams('a query is expected');
            await this.#workspace.ready;
            return search.ask('workspaceSymbols', { query }, token);
        });
        connection.onExecuteCommand(({ command, arguments: [uri] = [] }, token) => {
            if (command !== TRANSLATION_COMMAND) throw invalidParams(`no command '${command}'`);
            return this.#job('translation')({ textDocument: { uri: uri as string } }, token);
        });
    }

    // The beginning, and settings

    #initialize(params: InitializeParams): InitializeResult {
        const { capabilities, workspaceFolders, rootUri, initializationOptions } = params;
        this.#capabilities = capabilities ?? {};
        this.#client = clientOf(this.#capabilities);
        this.#workspace.setFolders(workspaceFolders?.map(({ uri }) => uri) ?? (rootUri ? [rootUri] : []));
        this.#threads.tell({ client: this.#client, folders: this.#configurations.folders });
        this.#options = initializationOptions;
        this.#setSettings(DEFAULTS, initializationOptions);
        this.#workspace.begin();
        return {
            serverInfo: { name: 'mtranslate-language-server', version: VERSION },
            capabilities: serverCapabilities(this.#client),
        };
    }

    #initialized(): void {
        const { workspace } = this.#capabilities;
        const { client, console } = this.connection;
        const trouble = (error: Error): void => console.error(error.message);
        const watchers = WATCHED.map((globPattern) => ({ globPattern }));
        if (workspace?.didChangeWatchedFiles?.dynamicRegistration)
            client.register(DidChangeWatchedFilesNotification.type, { watchers }).catch(trouble);
        if (workspace?.didChangeConfiguration?.dynamicRegistration)
            client
                .register(DidChangeConfigurationNotification.type, { section: 'mtranslate' })
                .catch(trouble);
        if (workspace?.workspaceFolders)
            this.connection.workspace.onDidChangeWorkspaceFolders(({ added, removed }) => {
                const uris = (folders: { uri: string }[]): string[] => folders.map(({ uri }) => uri);
                this.#workspace.changeFolders(uris(added), uris(removed));
                this.#threads.tell({ folders: this.#configurations.folders });
                void this.#workspace.scan();
            });
        this.#changeSettings(null);
    }

    /** given: what a notification has brought along. */
    #changeSettings(given: unknown): void {
        const own = (given as Record<string, unknown> | null)?.['mtranslate'];
        const [folder = null] = this.#configurations.folders;
        const base = mergeSettings(DEFAULTS, this.#options, folder, () => {});
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
        const [folder = null] = this.#configurations.folders;
        const settings = mergeSettings(base, value, folder, complain);
        if (JSON.stringify(settings) === JSON.stringify(this.#configurations.settings)) return;
        this.#workspace.setSettings(settings);
        this.#threads.tell({ settings });
        this.#messages.againAll();
    }

    /** All that a new thread has to know. */
    #whole(): State {
        return {
            opened: this.#documents.all().map((document) => this.#textOf(document)),
            files: this.#workspace.files,
            folders: this.#configurations.folders,
            settings: this.#configurations.settings,
            client: this.#client,
        };
    }

    #textOf(document: TextDocument): OpenText {
        const { uri, version } = document;
        return { path: pathOf(uri), uri, version, text: document.getText() };
    }

    // Files

    #filesChanged(): void {
        this.#threads.tell({ files: this.#workspace.files });
        this.#threads.warmUp();
        this.#messages.againAll();
    }

    /** For clients that watch no files. */
    #lookAgain(): void {
        if (this.#capabilities.workspace?.didChangeWatchedFiles?.dynamicRegistration) return;
        this.#threads.tell({ forget: true });
        this.#messages.againAll();
        this.#workspace.scanAtTimes();
    }

    #changeFiles(changes: readonly FileEvent[]): void {
        const isSource = ({ uri }: FileEvent): boolean => uri.endsWith('.m');
        this.#threads.tell({ forget: true });
        if (changes.some((change) => change.type !== FileChangeType.Changed || !isSource(change)))
            void this.#workspace.scan();
        if (changes.every(isSource))
            this.#messages.againReaders(new Set(changes.map(({ uri }) => pathOf(uri))));
        else this.#messages.againAll();
    }

    // Documents

    #opened({ uri }: TextDocument): void {
        const path = pathOf(uri);
        this.#messages.opened(uri);
        if (!this.#workspace.isFound(path)) this.#threads.tell({ files: this.#workspace.files });
        this.#workspace.opened(path);
    }

    #changed(document: TextDocument): void {
        this.#threads.tell({ opened: [this.#textOf(document)] });
        this.#messages.changed(document.uri);
    }

    #closed({ uri }: TextDocument): void {
        const path = pathOf(uri);
        this.#messages.closed(uri);
        this.#threads.tell({
            closed: [path],
            ...(this.#workspace.isFound(path) ? {} : { files: this.#workspace.files }),
        });
    }
}
