/* A text, translated as one types: what the page shows of the result. */
import { RulesError, type Message, type Piece, type Range, type Result, type Translator } from 'mtranslate';
import { TOKEN_KINDS, type ShownMessage, type Translated, type Wanted } from './protocol.js';

const FILE = 'source.m';
/** Characters, above which lines are not joined; and above which nothing is coloured. */
const MOST_JOINED = 1 << 20;
const MOST_COLOURED = 1 << 19;
const MOST_MESSAGES = 1000;

/** From lines and columns to offsets. */
class Places {
    readonly #starts: number[] = [0];

    constructor(readonly text: string) {
        for (let at = text.indexOf('\n'); at >= 0; at = text.indexOf('\n', at + 1)) this.#starts.push(at + 1);
    }

    offset(line: number, column: number): number {
        return Math.min((this.#starts[line - 1] ?? this.text.length) + column - 1, this.text.length);
    }

    range(range: Range): { from: number; to: number } {
        const from = this.offset(range.line, range.columnUtf16);
        return { from, to: Math.max(this.offset(range.endLine, range.endColumnUtf16), from) };
    }
}

function shown(message: Message, places: Places): ShownMessage {
    const { severity, code, text, help, place } = message;
    const { from, to } = place ? places.range(place) : { from: 0, to: 0 };
    return { severity, code, text, help, from, to, line: place?.line ?? 0, column: place?.columnUtf16 ?? 0 };
}

function joined(pieces: Piece[]): Uint32Array {
    const own = pieces.filter(({ place }) => place.file === FILE);
    return Uint32Array.from(
        own.flatMap(({ place, firstLine, lastLine }) => [place.line, place.endLine, firstLine, lastLine]),
    );
}

function counted(messages: Message[]): Translated['counts'] {
    const counts = { error: 0, gap: 0, warning: 0, note: 0 };
    for (const { severity } of messages) ++counts[severity];
    return counts;
}

/** What ended a run and is no message of its own. */
function withFailure({ failure, messages }: Result): Message[] {
    if (failure === null || messages.some(({ code }) => code === '')) return messages;
    const last = { code: '', name: '', text: failure, help: '', operands: [], place: null };
    return [
        ...messages,
        { ...last, severity: 'error', sourceLine: null, calledFrom: null, calledFromLine: 0 },
    ];
}

export function translated(
    translator: Translator,
    turn: number,
    text: string,
    { language, rules }: Wanted,
): Translated {
    const since = performance.now();
    const pieces = text.length <= MOST_JOINED;
    const files = { [FILE]: text };
    let result: Result | null = null;
    let mistakes: string | null = null;
    try {
        result = translator.translate({ file: FILE, files, language, rules, pieces });
    } catch (error) {
        if (!(error instanceof RulesError)) throw error;
        mistakes = error.message;
    }
    const messages = result ? withFailure(result) : [];
    const places = new Places(text);
    return {
        kind: 'text',
        turn,
        text: result && result.status === 'done' ? result.text : null,
        messages: messages.slice(0, MOST_MESSAGES).map((message) => shown(message, places)),
        counts: counted(messages),
        pieces: joined(result?.pieces ?? []),
        mistakes,
        time: performance.now() - since,
        isLarge: !pieces,
    };
}

/** Classic has no tokens of its own. */
export function tokensOf(translator: Translator, text: string, { language }: Wanted): Uint32Array {
    if (text.length > MOST_COLOURED) return new Uint32Array();
    const { tokens } = translator.translate({
        file: FILE,
        files: { [FILE]: text },
        language: language === 'classic' ? 'matlab' : language,
        onlyRead: true,
        tokens: true,
    });
    const places = new Places(text);
    return Uint32Array.from(
        tokens.flatMap(({ kind, place }) => {
            const { from, to } = places.range(place);
            return [TOKEN_KINDS.indexOf(kind), from, to];
        }),
    );
}
