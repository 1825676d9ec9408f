/* The messages of open documents: each is translated again when its text has changed, or what it reads. */
import { pathToFileURL } from 'node:url';
import {
    DiagnosticSeverity,
    type Connection,
    type Diagnostic,
    type TextDocuments,
} from 'vscode-languageserver/node.js';
import type { TextDocument } from 'vscode-languageserver-textdocument';
import { Published, pathOf, type OpenDocument } from './documents.js';
import type { Threads } from './threads.js';
import type { Workspace } from './workspace.js';

/** A translation of a text that is no longer there is given up after so many milliseconds. */
const LONGEST_STALE = 300;

const errorAt = (line: number, character: number, endLine: number, message: string): Diagnostic => ({
    range: { start: { line, character }, end: { line: endLine, character: endLine > line ? 0 : character } },
    severity: DiagnosticSeverity.Error,
    source: 'mtranslate',
    message,
});

/** Mistakes in rules by their files. text: a line for each, with its place. */
function mistakesIn(text: string | null): Map<string, Diagnostic[]> {
    const mistakes = new Map<string, Diagnostic[]>();
    const places = text?.matchAll(/^(.*?):(\d+):(\d+): error: (.*)$/gm) ?? [];
    for (const [, file, line, column, message] of places) {
        const at = Number(line) - 1;
        const mistake = errorAt(at, Number(column) - 1, at, message!);
        mistakes.set(file!, [...(mistakes.get(file!) ?? []), mistake]);
    }
    return mistakes;
}

export class Messages {
    readonly #published: Published;
    /** Of each document the version that those who read it have been told of. */
    readonly #told = new Map<string, number>();
    /** Files with mistakes in rules. */
    #mistaken: string[] = [];

    constructor(
        readonly connection: Connection,
        readonly documents: TextDocuments<TextDocument>,
        readonly open: Map<string, OpenDocument>,
        readonly workspace: Workspace,
        readonly threads: Threads,
    ) {
        this.#published = new Published(open, (uri, diagnostics) => {
            const version = documents.get(uri)?.version;
            const about = version === undefined ? { uri } : { uri, version };
            void connection.sendDiagnostics({ ...about, diagnostics });
        });
    }

    get #debounce(): number {
        return this.workspace.configurations.settings.debounce;
    }

    opened(uri: string): void {
        this.open.set(uri, { uri, path: pathOf(uri), timer: null, reads: new Set(), diagnostics: null });
        this.#again(uri, 0);
    }

    changed(uri: string): void {
        const document = this.open.get(uri);
        if (!document) return;
        const isOwn = (params: unknown): boolean => (params as { path: string }).path === document.path;
        const since = this.threads.front.runningFor('diagnostics', isOwn);
        if (since !== null && since > LONGEST_STALE) this.threads.front.stopRunning();
        this.#again(uri, document.diagnostics ? this.#debounce : 0);
    }

    /** What other documents tell of it is told on. */
    closed(uri: string): void {
        const document = this.open.get(uri);
        if (!document) return;
        if (document.timer) clearTimeout(document.timer);
        this.open.delete(uri);
        this.#told.delete(uri);
        this.#published.update([...Object.keys(document.diagnostics ?? {}), uri]);
        for (const other of this.open.values())
            if (other.reads.has(document.path)) this.#again(other.uri, this.#debounce);
    }

    againAll(): void {
        for (const uri of this.open.keys()) this.#again(uri, 0);
    }

    /** After changes on the disk. */
    againReaders(paths: ReadonlySet<string>): void {
        for (const { uri, reads } of this.open.values())
            if ([...reads].some((path) => paths.has(path))) this.#again(uri, 0);
    }

    /** Translates the document after so many milliseconds without a change. */
    #again(uri: string, delay: number): void {
        const document = this.open.get(uri);
        if (!document) return;
        if (document.timer) clearTimeout(document.timer);
        document.timer = setTimeout(() => {
            document.timer = null;
            this.#translate(document).catch((error: Error) => this.connection.console.error(error.message));
        }, delay);
    }

    async #translate(document: OpenDocument): Promise<void> {
        const { uri, path } = document;
        await this.workspace.ready;
        const version = this.documents.get(uri)?.version;
        const isMeant = (): boolean =>
            this.open.get(uri) === document && this.documents.get(uri)?.version === version;
        if (!isMeant() || document.timer) return;
        try {
            const told = await this.threads.front.ask('diagnostics', { path });
            if (!told || !isMeant()) return;
            this.#showMistakes(told.rulesMistakes);
            document.reads = new Set(told.reads);
            this.#show(document, told.diagnostics);
            this.#againOtherReaders(document, version ?? 0);
        } catch (error) {
            if (!isMeant() || document.timer) return;
            this.#show(document, { [uri]: [errorAt(0, 0, 1, (error as Error).message)] });
        }
    }

    /** Those that read a document whose text has changed since they were told. */
    #againOtherReaders({ uri, path }: OpenDocument, version: number): void {
        if (this.#told.get(uri) === version) return;
        this.#told.set(uri, version);
        for (const other of this.open.values())
            if (other.uri !== uri && other.reads.has(path)) this.#again(other.uri, 0);
    }

    #show(document: OpenDocument, diagnostics: Record<string, Diagnostic[]>): void {
        const before = Object.keys(document.diagnostics ?? {});
        document.diagnostics = diagnostics;
        this.#published.update([document.uri, ...before, ...Object.keys(diagnostics)]);
    }

    #showMistakes(text: string | null): void {
        const mistakes = mistakesIn(text);
        for (const file of new Set([...this.#mistaken, ...mistakes.keys()]))
            void this.connection.sendDiagnostics({
                uri: pathToFileURL(file).href,
                diagnostics: mistakes.get(file) ?? [],
            });
        this.#mistaken = [...mistakes.keys()];
    }
}
