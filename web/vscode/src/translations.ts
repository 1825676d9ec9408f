/* Translations as documents at the side of their sources, in step with the cursor. */
import * as vscode from 'vscode';
import type { LanguageClient } from 'vscode-languageclient/node';
import { hostLinesOf, sourceLinesOf, type Lines, type Piece } from './pieces.js';

const SCHEME = 'mtranslate-translation';
const LANGUAGE = 'mtranslate-host';
const DELAY = 150; // milliseconds without typing

interface Translation {
    text: string;
    failure: string | null;
    pieces: Piece[];
}

const addressOf = (source: vscode.Uri): vscode.Uri =>
    vscode.Uri.from({
        scheme: SCHEME,
        path: `${source.path.replace(/\.m$/, '')}.translation`,
        query: source.toString(),
    });
const sourceOf = (address: vscode.Uri): vscode.Uri => vscode.Uri.parse(address.query);

export class Translations implements vscode.TextDocumentContentProvider, vscode.Disposable {
    readonly #changed = new vscode.EventEmitter<vscode.Uri>();
    readonly onDidChange = this.#changed.event;
    readonly #pieces = new Map<string, Piece[]>();
    readonly #timers = new Map<string, NodeJS.Timeout>();
    readonly #mark = vscode.window.createTextEditorDecorationType({
        isWholeLine: true,
        backgroundColor: new vscode.ThemeColor('editor.rangeHighlightBackground'),
    });
    readonly #parts: vscode.Disposable[];

    constructor(readonly client: LanguageClient) {
        this.#parts = [
            this.#changed,
            this.#mark,
            vscode.workspace.registerTextDocumentContentProvider(SCHEME, this),
            vscode.workspace.onDidChangeTextDocument(({ document }) => this.#changedText(document)),
            vscode.workspace.onDidCloseTextDocument(({ uri }) => void this.#pieces.delete(uri.toString())),
            vscode.window.onDidChangeTextEditorSelection(({ textEditor }) => this.#follow(textEditor)),
        ];
    }

    dispose(): void {
        for (const timer of this.#timers.values()) clearTimeout(timer);
        vscode.Disposable.from(...this.#parts).dispose();
    }

    async provideTextDocumentContent(address: vscode.Uri, token: vscode.CancellationToken): Promise<string> {
        const textDocument = { uri: this.client.code2ProtocolConverter.asUri(sourceOf(address)) };
        const translation = await this.client.sendRequest<Translation | null>(
            'mtranslate/translation',
            { textDocument },
            token,
        );
        if (!translation) return '';
        this.#pieces.set(address.toString(), translation.pieces);
        return translation.failure === null ? translation.text : `# ${translation.failure}\n`;
    }

    /** uri, line: of the source; without them those of the editor in front. */
    async show(uri?: string, line?: number): Promise<void> {
        const active = vscode.window.activeTextEditor;
        const source = uri === undefined ? active?.document.uri : vscode.Uri.parse(uri);
        if (!source || source.scheme === SCHEME) return;
        const opened = await vscode.workspace.openTextDocument(addressOf(source));
        const document = await vscode.languages.setTextDocumentLanguage(opened, LANGUAGE);
        const editor = await vscode.window.showTextDocument(document, {
            viewColumn: vscode.ViewColumn.Beside,
            preserveFocus: true,
            preview: true,
        });
        this.#show(editor, hostLinesOf(this.#piecesOf(document), line ?? active?.selection.active.line ?? 0));
    }

    #piecesOf({ uri }: vscode.TextDocument): Piece[] {
        return this.#pieces.get(uri.toString()) ?? [];
    }

    /** What belongs together is known anew with each translation. */
    #changedText(document: vscode.TextDocument): void {
        const active = vscode.window.activeTextEditor;
        if (document.languageId === 'matlab') this.#later(document);
        else if (document.uri.scheme === SCHEME && active) this.#follow(active);
    }

    #later({ uri }: vscode.TextDocument): void {
        const address = addressOf(uri);
        const key = address.toString();
        if (!this.#pieces.has(key)) return;
        clearTimeout(this.#timers.get(key));
        this.#timers.set(
            key,
            setTimeout(() => this.#changed.fire(address), DELAY),
        );
    }

    /** Marks on the other side what belongs to the line of the cursor. */
    #follow(editor: vscode.TextEditor): void {
        const { document, selection } = editor;
        const isHost = document.uri.scheme === SCHEME;
        const other = isHost ? sourceOf(document.uri) : addressOf(document.uri);
        const beside = vscode.window.visibleTextEditors.find(
            ({ document: { uri } }) => uri.toString() === other.toString(),
        );
        if (!beside || editor !== vscode.window.activeTextEditor) return;
        const pieces = this.#piecesOf(isHost ? document : beside.document);
        this.#show(beside, (isHost ? sourceLinesOf : hostLinesOf)(pieces, selection.active.line));
        editor.setDecorations(this.#mark, []);
    }

    #show(editor: vscode.TextEditor, lines: Lines | null): void {
        if (!lines) {
            editor.setDecorations(this.#mark, []);
            return;
        }
        const range = new vscode.Range(lines.first, 0, lines.last, 0);
        editor.setDecorations(this.#mark, [range]);
        editor.revealRange(range, vscode.TextEditorRevealType.InCenterIfOutsideViewport);
    }
}
