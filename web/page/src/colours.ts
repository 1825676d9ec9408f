/* The colours of the source: tokens of the library's scanner, which come after each change. */
import { RangeSetBuilder, StateEffect, StateField } from '@codemirror/state';
import { Decoration, EditorView, type DecorationSet } from '@codemirror/view';
import { TOKEN_KINDS } from './protocol.js';

/** For each token its kind, begin and end. */
export const setTokens = StateEffect.define<Uint32Array>();

const COLOURED = new Set(['number', 'text', 'keyword', 'comment', 'field', 'command', 'bad']);
const marks = TOKEN_KINDS.map((kind) =>
    COLOURED.has(kind) ? Decoration.mark({ class: `cm-token-${kind}` }) : null,
);

function decorations(tokens: Uint32Array, length: number): DecorationSet {
    const builder = new RangeSetBuilder<Decoration>();
    for (let at = 0; at + 2 < tokens.length; at += 3) {
        const mark = marks[tokens[at]!];
        const [from, to] = [tokens[at + 1]!, tokens[at + 2]!];
        if (mark && from < to && to <= length) builder.add(from, to, mark);
    }
    return builder.finish();
}

const field = StateField.define<DecorationSet>({
    create: () => Decoration.none,
    update(shown, { changes, effects, newDoc }) {
        let now = shown.map(changes);
        for (const effect of effects)
            if (effect.is(setTokens)) now = decorations(effect.value, newDoc.length);
        return now;
    },
    provide: (own) => EditorView.decorations.from(own),
});

export const colours = [
    field,
    EditorView.theme({
        '.cm-token-comment': { color: 'var(--muted)', fontStyle: 'italic' },
        '.cm-token-text, .cm-token-command': { color: 'var(--good)' },
        '.cm-token-number': { color: 'var(--wait)' },
        '.cm-token-keyword': { color: 'var(--accent)', fontWeight: '600' },
        '.cm-token-bad': { color: 'var(--bad)' },
    }),
];
