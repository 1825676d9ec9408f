/* Lines of source and translation that belong together. */
import { StateEffect, StateField } from '@codemirror/state';
import { Decoration, EditorView, type DecorationSet } from '@codemirror/view';

export type Side = 'source' | 'host';

/** For each piece first and last line in the source, and in the translation. */
export class Pieces {
    constructor(readonly numbers = new Uint32Array()) {}

    /** The lines on both sides of the pieces that a line has a part in, of those with the fewest lines. */
    linesAt(side: Side, line: number): Record<Side, Set<number>> {
        const shift = side === 'source' ? 0 : 2;
        const { numbers } = this;
        const lines = { source: new Set<number>(), host: new Set<number>() };
        let fewest = Infinity;
        for (let at = 0; at < numbers.length; at += 4) {
            const count = numbers[at + shift + 1]! - numbers[at + shift]!;
            if (holds(numbers, at + shift, line)) fewest = Math.min(fewest, count);
        }
        for (let at = 0; at < numbers.length; at += 4) {
            const count = numbers[at + shift + 1]! - numbers[at + shift]!;
            if (count !== fewest || !holds(numbers, at + shift, line)) continue;
            addLines(lines.source, numbers[at]!, numbers[at + 1]!);
            addLines(lines.host, numbers[at + 2]!, numbers[at + 3]!);
        }
        return lines;
    }
}

const holds = (numbers: Uint32Array, at: number, line: number): boolean =>
    numbers[at]! <= line && line <= numbers[at + 1]!;

function addLines(lines: Set<number>, first: number, last: number): void {
    for (let line = first; line <= last; line++) lines.add(line);
}

const setLines = StateEffect.define<Set<number>>();
const mark = Decoration.line({ class: 'cm-joined' });

export const joinedLines = StateField.define<DecorationSet>({
    create: () => Decoration.none,
    update(shown, { changes, effects, newDoc }) {
        let now = shown.map(changes);
        for (const effect of effects)
            if (effect.is(setLines)) {
                const lines = [...effect.value].filter((line) => line >= 1 && line <= newDoc.lines);
                lines.sort((a, b) => a - b);
                now = Decoration.set(lines.map((line) => mark.range(newDoc.line(line).from)));
            }
        return now;
    },
    provide: (field) => EditorView.decorations.from(field),
});

export function showLines(view: EditorView, lines: Set<number>): void {
    view.dispatch({ effects: setLines.of(lines) });
}

/** Brings the first of the lines into view. */
export function scrollTo(view: EditorView, lines: Set<number>): void {
    const first = Math.min(...lines);
    if (!(first <= view.state.doc.lines)) return;
    const { from } = view.state.doc.line(first);
    view.dispatch({ effects: EditorView.scrollIntoView(from, { y: 'nearest', yMargin: 60 }) });
}
