/* Which messages the user wants, by patterns and by comments in the source, as the tool decides it. */
import type { Message, MessageKind, Severity } from 'mtranslate';

const COMMENT = /[%#][ \t\r]*mtranslate:[ \t\r]*ignore[ \t\r]*([^%]*)/;

const isNamed = (list: string, { code, name }: Message): boolean =>
    list.split(/[ \t\r,;]+/).some((word) => word.toUpperCase() === code || word === name);

/** Whether a comment of the line names the message. */
function ignores(line: string, message: Message): boolean {
    for (let rest = line; ; ) {
        const found = COMMENT.exec(rest);
        if (!found) return false;
        if (isNamed(found[1]!, message)) return true;
        rest = rest.slice(found.index + 1);
    }
}

/** Of the comments in front of the first statement those that may name messages. */
function head(text: string): string[] {
    const lines: string[] = [];
    const pattern = /[ \t]*([^\r\n]*)(\r\n|\r|\n|$)/y;
    for (let at = 0; at < text.length; at = pattern.lastIndex) {
        pattern.lastIndex = at;
        const line = pattern.exec(text)?.[1] ?? '';
        if (line !== '' && !/^[%#]/.test(line)) break;
        if (line.includes('mtranslate:')) lines.push(line);
    }
    return lines;
}

/** Answers the messages that are wanted, as what they are to count. */
export class Policy {
    readonly #treatments = new Map<string, Severity | null>();

    /** Patterns that make no sense are passed over. */
    constructor(patterns: readonly string[], kinds: readonly MessageKind[]) {
        for (const pattern of patterns) this.#add(pattern, kinds);
    }

    #add(pattern: string, kinds: readonly MessageKind[]): void {
        if (pattern === 'error') {
            for (const { code, severity } of kinds)
                if ((this.#treatments.get(code) ?? severity) === 'warning')
                    this.#treatments.set(code, 'error');
            return;
        }
        const [, how, name] = /^(no-|error=)?(.*)$/s.exec(pattern)!;
        const kind = kinds.find(({ code, name: short }) => code === name?.toUpperCase() || short === name);
        if (!kind || (how === 'no-' && kind.severity === 'error')) return;
        this.#treatments.set(kind.code, how === 'no-' ? null : how ? 'error' : kind.severity);
    }

    /** text: of the message's file; null where it is not known. */
    wanted(messages: readonly Message[], textOf: (file: string | null) => string | null): Message[] {
        const heads = new Map<string | null, string[]>();
        const headOf = (file: string | null): string[] => {
            const lines = heads.get(file) ?? head(textOf(file) ?? '');
            heads.set(file, lines);
            return lines;
        };
        return messages.flatMap((message) => {
            const treatment = this.#treatments.get(message.code);
            if (treatment === null) return [];
            const severity = treatment ?? message.severity;
            if (message.severity === 'error' || !message.place) return [{ ...message, severity }];
            const lines = [message.sourceLine ?? '', ...headOf(message.place.file)];
            return lines.some((line) => ignores(line, message)) ? [] : [{ ...message, severity }];
        });
    }
}
