/* What the translator tells of a source, with what is read from its text besides. */
import type { Call, FunctionPlace, Message, Name, Piece, Range as Place, Result } from 'mtranslate';
import { baseOf, stemOf } from './file_index.js';
import { contains, type Source, type Span } from './source.js';

/** The head of a function. */
export interface Head {
    name: string;
    nameSpan: Span;
    /** On one line: "[a, b] = f(x, y)". */
    signature: string;
    parameters: string[];
    outputs: string[];
    /** After the closing parenthesis. */
    end: number;
}

const HEAD = /function\b[ \t]*(?:((?:\[[^\]]*\])|[\w.]+)\s*=\s*)?([A-Za-z][\w.]*)[ \t]*(\([^)]*\))?/dy;

const withoutBreaks = (text: string): string =>
    text
        .replace(/\.\.\.[^\r\n]*/g, ' ')
        .replace(/%[^\r\n]*/g, ' ')
        .replace(/\s+/g, ' ')
        .trim();
const listOf = (text: string | undefined): string[] =>
    withoutBreaks(text ?? '')
        .replace(/[()[\]]/g, ' ')
        .split(/[\s,]+/)
        .filter((name) => name !== '');

/** Null where the text has none there. */
export function headAt(text: string, begin: number): Head | null {
    HEAD.lastIndex = begin;
    const found = HEAD.exec(text);
    if (!found) return null;
    const [whole, outputs, name, parameters] = found;
    const [nameBegin, nameEnd] = found.indices![2]!;
    return {
        name: name!,
        nameSpan: { begin: nameBegin, end: nameEnd },
        signature: withoutBreaks(whole.replace(/^function/, '')),
        parameters: listOf(parameters),
        outputs: listOf(outputs),
        end: found.index + whole.length,
    };
}

export interface OwnFunction extends Span {
    at: number;
    outer: number;
    head: Head;
}

/** What stands at a place: a variable of a function, or a function. */
export type Found =
    | { kind: 'variable'; name: Name; span: Span }
    | { kind: 'function'; name: string; span: Span; own: OwnFunction | null; call: Call | null };

export class Analysis {
    #functions: OwnFunction[] | null = null;

    constructor(
        readonly source: Source,
        readonly result: Result,
        /** Those that are wanted. */
        readonly messages: Message[],
        /** Whether names, statements and pieces are told. */
        readonly hasDetails: boolean,
        /** Paths of other files that have been looked at. */
        readonly reads: ReadonlySet<string>,
    ) {}

    isHere(place: Place): boolean {
        return place.file === this.source.path;
    }

    get functions(): OwnFunction[] {
        this.#functions ??= this.result.functions.flatMap((place, at) => this.#function(place, at) ?? []);
        return this.#functions;
    }

    #function({ place, outer }: FunctionPlace, at: number): OwnFunction | null {
        const span = this.source.span(place);
        const head = headAt(this.source.text, span.begin);
        return head && { ...span, at, outer, head };
    }

    /** That other files call by the file's name; null for a script. */
    get main(): OwnFunction | null {
        const first = this.functions[0];
        return first && this.result.statements.every(({ place }) => this.#isInFunction(place)) ? first : null;
    }

    #isInFunction(place: Place): boolean {
        const { begin } = this.source.span(place);
        return this.functions.some((own) => own.begin <= begin && begin <= own.end);
    }

    /** The innermost around the offset, -1 for none, as names and calls tell it. */
    functionAt(offset: number): number {
        let found = -1;
        for (const own of this.functions) if (contains(own, offset)) found = own.at;
        return found;
    }

    /** Functions around one, from itself outwards, and -1 for the statements of the file. */
    scopes(at: number): number[] {
        const scopes = [at];
        for (let own = this.result.functions[at]; own; own = this.result.functions[own.outer])
            scopes.push(own.outer);
        return scopes;
    }

    /** The function of this file that a name means within another. */
    ownFunction(name: string, within: number): OwnFunction | null {
        const named = this.functions.filter(({ head }) => head.name === name);
        for (const scope of this.scopes(within)) {
            const own = named.find(({ outer, at }) => outer === scope || at === scope);
            if (own) return own;
        }
        return named[0] ?? null;
    }

    /** The function that a call in this file means, where that is one of it. */
    calledHere(call: Call): OwnFunction | null {
        return call.end === 'own' ? this.ownFunction(call.name, call.function) : null;
    }

    find(offset: number): Found | null {
        return this.#variableAt(offset) ?? this.#callAt(offset) ?? this.#headAt(offset);
    }

    #variableAt(offset: number): Found | null {
        for (const name of this.result.names) {
            if (name.kind === 'function') continue;
            for (const use of name.uses) {
                if (!this.isHere(use)) continue;
                const span = this.source.span(use);
                if (contains(span, offset)) return { kind: 'variable', name, span };
            }
        }
        return null;
    }

    #callAt(offset: number): Found | null {
        for (const call of this.result.calls) {
            const span = this.source.span(call.place);
            if (contains(span, offset))
                return { kind: 'function', name: call.name, span, own: this.calledHere(call), call };
        }
        return null;
    }

    #headAt(offset: number): Found | null {
        const own = this.functions.find(({ head }) => contains(head.nameSpan, offset));
        return own
            ? { kind: 'function', name: own.head.name, span: own.head.nameSpan, own, call: null }
            : null;
    }

    /** The help comment of a function: after its head or, without one, in front of it; null for none.
     * own null: of the script. */
    help(own: OwnFunction | null): string | null {
        const lines = new Map(this.result.comments.map(({ place }) => [place.line - 1, place]));
        const block = (line: number, step: 1 | -1): string[] => {
            const texts: string[] = [];
            for (; this.#isCommentLine(line, lines); line += step) texts.push(this.#comment(line));
            return step > 0 ? texts : texts.reverse();
        };
        if (!own) return block(0, 1).join('\n') || null;
        const at = (offset: number): number => this.source.positionAt(offset).line;
        const after = block(at(own.head.end) + 1, 1);
        return (after.length > 0 ? after : block(at(own.begin) - 1, -1)).join('\n') || null;
    }

    #isCommentLine(line: number, comments: ReadonlyMap<number, Place>): boolean {
        return comments.has(line) && /^\s*[%#](?!%(\s|$))/.test(this.source.line(line));
    }

    #comment(line: number): string {
        return this.source
            .line(line)
            .replace(/^\s*[%#]+[{}]?[ \t]?/, '')
            .trimEnd();
    }

    /** The innermost statement around the offset. */
    statementAt(offset: number): Span | null {
        let found: Span | null = null;
        for (const { place } of this.result.statements) {
            const span = this.source.span(place);
            if (contains(span, offset)) found = span;
        }
        return found;
    }

    /** Lines of the host text, from 1, that come from the part of the source. */
    hostLines(
        { begin, end }: Span,
        isMeant = (_kind: Piece['kind']) => true,
    ): { first: number; last: number } | null {
        let first = Infinity;
        let last = -1;
        for (const { kind, place, firstLine, lastLine } of this.result.pieces) {
            if (!this.isHere(place) || !isMeant(kind)) continue;
            const span = this.source.span(place);
            if (span.begin < begin || span.end > end || span.begin === span.end) continue;
            first = Math.min(first, firstLine);
            last = Math.max(last, lastLine);
        }
        return last < 0 ? null : { first, last };
    }

    hostText(lines: { first: number; last: number }): string {
        return this.result.text
            .split('\n')
            .slice(lines.first - 1, lines.last)
            .join('\n');
    }

    get stem(): string {
        return stemOf(this.source.path);
    }

    get isMethod(): boolean {
        return baseOf(this.source.path.slice(0, this.source.path.lastIndexOf('/'))).startsWith('@');
    }
}
