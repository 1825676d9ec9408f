/* The editors, and what the translation of the text in them tells. */
import type { Diagnostic } from '@codemirror/lint';
import type { Text } from '@codemirror/state';
import { EditorView, type ViewUpdate } from '@codemirror/view';
import type { Language } from 'mtranslate';
import { setTokens } from './colours.js';
import { hostEditor, replaceText, rulesEditor, showDiagnostics, sourceEditor } from './editors.js';
import { byId, counted, save } from './elements.js';
import { Pieces, scrollTo, showLines, type Side } from './joined_lines.js';
import type { Linked } from './link.js';
import { MessageList } from './message_list.js';
import type { FromWorker, ShownMessage, Translated } from './protocol.js';
import { TextWork, type Parts, type TextListener } from './work.js';

/** Milliseconds of rest before a text of some length is translated. */
const restFor = (length: number): number => (length < 100_000 ? 15 : length < 1_000_000 ? 200 : 800);

const severityOf = { error: 'error', gap: 'warning', warning: 'warning', note: 'info' } as const;

export class TextView implements TextListener {
    readonly list = new MessageList();
    readonly language = byId<HTMLSelectElement>('language');
    readonly #source: EditorView;
    readonly #host: EditorView;
    readonly #rules: EditorView;
    readonly #work: TextWork;
    #pieces = new Pieces();
    /** What was last sent to be translated. */
    #sent: Text | null = null;
    #timer: ReturnType<typeof setTimeout> | undefined;

    constructor(parts: Parts) {
        this.#source = sourceEditor(byId('source'), this.#listening('source'));
        this.#host = hostEditor(byId('host'), this.#listening('host'));
        this.#rules = rulesEditor(
            byId('rules'),
            EditorView.updateListener.of((update) => this.#onChange(update)),
        );
        this.#work = new TextWork(parts, this);
        this.language.addEventListener('change', () => this.#translate());
        byId('copy').addEventListener('click', () => void this.#copy());
        byId('save').addEventListener('click', () =>
            save(new Blob([this.#text(this.#host)]), 'translation.txt'),
        );
        byId('rules-button').addEventListener('click', () => this.showRules(byId('rules-pane').hidden));
    }

    get linked(): Linked {
        const language = this.language.value as Language;
        return { text: this.#text(this.#source), language, rules: this.#text(this.#rules) };
    }

    load({ text, language, rules }: Linked): void {
        this.language.value = language;
        this.#source.dispatch({ changes: { from: 0, to: this.#source.state.doc.length, insert: text } });
        replaceText(this.#rules, rules);
        if (rules !== '') this.showRules(true);
        this.#source.dispatch({ selection: { anchor: 0 }, scrollIntoView: true });
        this.#translate();
    }

    showRules(isShown: boolean): void {
        byId('rules-pane').hidden = !isShown;
        byId('rules-button').setAttribute('aria-expanded', String(isShown));
        if (isShown) this.#rules.requestMeasure();
    }

    focus(): void {
        this.#source.focus();
    }

    ready({ kinds }: Extract<FromWorker, { kind: 'ready' }>): void {
        this.list.kinds = new Map(kinds.map((kind) => [kind.code, kind]));
    }

    translated(news: Translated): void {
        if (news.mistakes !== null) {
            this.list.showMistakes(news.mistakes);
            byId('counts').textContent = 'mistakes in the rules';
            this.#markMistakes(news.mistakes);
            return;
        }
        showDiagnostics(this.#rules, []);
        this.#pieces = new Pieces(news.pieces);
        if (news.text !== null) replaceText(this.#host, news.text);
        if (this.#isCurrent) showDiagnostics(this.#source, this.#diagnostics(news.messages));
        const all = Object.values(news.counts).reduce((sum, count) => sum + count, 0);
        this.list.show(news.messages, all, (message) => this.#go(message));
        this.#tellCounts(news);
        const line = this.#lineOf(this.#source, this.#source.state.selection.main.head);
        this.#join('source', line, true);
    }

    coloured(tokens: Uint32Array): void {
        if (this.#isCurrent) this.#source.dispatch({ effects: setTokens.of(tokens) });
    }

    lost(why: string): void {
        const message = { code: '', help: '', from: 0, to: 0, line: 0, column: 0 };
        const text = `The translator was lost, and begins anew with the next change: ${why}`;
        this.list.show([{ ...message, severity: 'error', text }], 1, () => undefined);
        byId('counts').textContent = 'not translated';
        byId('time').textContent = '';
    }

    #listening(side: Side) {
        return [
            EditorView.updateListener.of((update) => {
                if (side === 'source') this.#onChange(update);
                if (update.selectionSet && !update.docChanged && update.view.hasFocus)
                    this.#join(side, this.#lineOf(update.view, update.state.selection.main.head), true);
            }),
            EditorView.domEventHandlers({
                mousemove: (event, view) => {
                    const at = view.posAtCoords({ x: event.clientX, y: event.clientY });
                    if (at !== null && event.buttons === 0) this.#join(side, this.#lineOf(view, at), false);
                },
            }),
        ];
    }

    #onChange(update: ViewUpdate): void {
        if (!update.docChanged) return;
        clearTimeout(this.#timer);
        this.#timer = setTimeout(() => this.#translate(), restFor(update.state.doc.length));
    }

    #translate(): void {
        clearTimeout(this.#timer);
        const { text, ...wanted } = this.linked;
        this.#sent = this.#source.state.doc;
        this.#work.translate(text, wanted);
    }

    /** Whether the places in an answer are those of the text as it is: else the next answer has them. */
    get #isCurrent(): boolean {
        return this.#source.state.doc === this.#sent;
    }

    #text(view: EditorView): string {
        return view.state.doc.toString();
    }

    #lineOf(view: EditorView, at: number): number {
        return view.state.doc.lineAt(Math.min(at, view.state.doc.length)).number;
    }

    /** What belongs to a line lights up on both sides. */
    #join(side: Side, line: number, scrolls: boolean): void {
        const lines = this.#pieces.linesAt(side, line);
        showLines(this.#source, lines.source);
        showLines(this.#host, lines.host);
        if (scrolls && side === 'source') scrollTo(this.#host, lines.host);
        if (scrolls && side === 'host') scrollTo(this.#source, lines.source);
    }

    #diagnostics(messages: readonly ShownMessage[]): Diagnostic[] {
        const length = this.#source.state.doc.length;
        return messages
            .filter(({ line }) => line > 0)
            .map(({ severity, code, text, help, from, to }) => ({
                from: Math.min(from, length),
                to: Math.min(to, length),
                severity: severityOf[severity],
                source: code,
                message: help === '' ? text : `${text}\n${help}`,
                actions: code === '' ? [] : [{ name: 'Explain', apply: () => this.list.explain(code) }],
            }));
    }

    /** Mistakes begin with their place: rules:LINE:COLUMN: */
    #markMistakes(mistakes: string): void {
        const { doc } = this.#rules.state;
        const places = [...mistakes.matchAll(/^rules:(\d+):(\d+): (.*)$/gm)];
        const diagnostics = places.map(([, line, column, message]): Diagnostic => {
            const { from, to } = doc.line(Math.min(Number(line), doc.lines));
            const begin = from + Number(column) - 1;
            return { from: begin < to ? begin : from, to, severity: 'error', message: message! };
        });
        showDiagnostics(this.#rules, diagnostics);
    }

    #tellCounts({ text, counts, time, isLarge }: Translated): void {
        const told = (['error', 'gap', 'warning', 'note'] as const)
            .filter((severity) => counts[severity] > 0)
            .map((severity) => counted(counts[severity], severity));
        byId('counts').textContent = told.length > 0 ? told.join(', ') : 'none';
        const large = isLarge ? ', too large to join lines' : '';
        const fresh = `in ${Math.max(1, Math.round(time))} ms${large}`;
        byId('time').textContent = text === null ? 'not translated: this is the one before' : fresh;
        byId('host').classList.toggle('stale', text === null);
    }

    #go({ from, to }: ShownMessage): void {
        const { length } = this.#source.state.doc;
        const selection = { anchor: Math.min(from, length), head: Math.min(to, length) };
        this.#source.focus();
        this.#source.dispatch({
            selection,
            effects: EditorView.scrollIntoView(selection.anchor, { y: 'center' }),
        });
    }

    async #copy(): Promise<void> {
        const { doc } = this.#host.state;
        try {
            await navigator.clipboard.writeText(doc.toString());
            byId('copy').textContent = 'Copied';
        } catch {
            this.#host.focus();
            this.#host.dispatch({ selection: { anchor: 0, head: doc.length } });
            byId('copy').textContent = 'Selected';
        }
        setTimeout(() => (byId('copy').textContent = 'Copy'), 1500);
    }
}
