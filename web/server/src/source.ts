/* A source with the places in it: offsets in UTF-16, positions as the client counts them. */
import { TextDocument } from 'vscode-languageserver-textdocument';
import type { Position, Range } from 'vscode-languageserver-types';
import type { Range as Place } from 'mtranslate';

export type Encoding = 'utf-16' | 'utf-8';

/** Begin and end in UTF-16 units, the end not included. */
export interface Span {
    begin: number;
    end: number;
}

export const contains = ({ begin, end }: Span, offset: number): boolean => begin <= offset && offset <= end;

const bytesBefore = (line: string, units: number): number => Buffer.byteLength(line.slice(0, units), 'utf8');

/** How many UTF-16 units of the line so many bytes are; no more than it has. */
function unitsBefore(line: string, bytes: number): number {
    let units = 0;
    for (const character of line) {
        bytes -= Buffer.byteLength(character, 'utf8');
        if (bytes < 0) break;
        units += character.length;
    }
    return units;
}

export class Source {
    readonly #document: TextDocument;

    constructor(
        /** As the translator knows it, with slashes. */
        readonly path: string,
        readonly uri: string,
        readonly version: number | null,
        readonly text: string,
        readonly encoding: Encoding,
    ) {
        this.#document = TextDocument.create(uri, 'matlab', version ?? 0, text);
    }

    get lineCount(): number {
        return this.#document.lineCount;
    }

    /** Lines count from 0; without the line end. */
    line(number: number): string {
        const begin = this.#document.offsetAt({ line: number, character: 0 });
        const end = this.#document.offsetAt({ line: number + 1, character: 0 });
        return this.text.slice(begin, end).replace(/[\r\n]+$/, '');
    }

    offsetAt(position: Position): number {
        const { line, character } = position;
        const units = this.encoding === 'utf-8' ? unitsBefore(this.line(line), character) : character;
        return this.#document.offsetAt({ line, character: units });
    }

    positionAt(offset: number): Position {
        const { line, character } = this.#document.positionAt(offset);
        if (this.encoding === 'utf-16') return { line, character };
        return { line, character: bytesBefore(this.line(line), character) };
    }

    rangeAt({ begin, end }: Span): Range {
        return { start: this.positionAt(begin), end: this.positionAt(end) };
    }

    /** Of a place in this source. */
    span(place: Place): Span {
        const at = (line: number, column: number): number =>
            this.#document.offsetAt({ line: line - 1, character: column - 1 });
        return { begin: at(place.line, place.columnUtf16), end: at(place.endLine, place.endColumnUtf16) };
    }
}

/** A place of any source. */
export function rangeOf(place: Place, encoding: Encoding): Range {
    const wide = encoding === 'utf-16';
    return {
        start: { line: place.line - 1, character: (wide ? place.columnUtf16 : place.column) - 1 },
        end: { line: place.endLine - 1, character: (wide ? place.endColumnUtf16 : place.endColumn) - 1 },
    };
}

/** Applies the changes one after the other, with positions in the client's encoding. */
export function update(
    document: TextDocument,
    changes: readonly { range?: Range; text: string }[],
    version: number,
    encoding: Encoding,
): TextDocument {
    for (const change of changes) {
        const { range, text } = change;
        const source = new Source('', document.uri, version, document.getText(), encoding);
        const units = (position: Position): Position =>
            encoding === 'utf-16' ? position : document.positionAt(source.offsetAt(position));
        const wanted = range
            ? { range: { start: units(range.start), end: units(range.end) }, text }
            : { text };
        document = TextDocument.update(document, [wanted], version);
    }
    return document;
}
