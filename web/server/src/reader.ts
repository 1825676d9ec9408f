/* Messages from a stream of bytes of which nothing is certain. What is no message is answered by an
 * error of the protocol, and reading goes on at the next header. */
import {
    AbstractMessageReader,
    ErrorCodes,
    type DataCallback,
    type Disposable,
    type Message,
    type MessageReader,
} from 'vscode-languageserver/node.js';
import type { Readable } from 'node:stream';

/** Bytes of a message. */
const LONGEST = 256 << 20;
const LONGEST_HEADER = 4096;

const HEADER = /Content-Length:[ \t]*(\d+)[ \t]*\r\n/i;
const NAME = /Content-Length:/i;
const NAME_LENGTH = 'Content-Length:'.length;

/** Who hears of what is read. */
export interface Hearer {
    refuse(id: number | string | null, code: number, message: string): void;
    /** Of each message that is handed on. */
    taken(message: Message): void;
    /** At the end of the input, once. The connection is not told: what it has taken may still be answered. */
    ended(): void;
}

type Fields = Record<string, unknown>;

const isId = (value: unknown): value is number | string =>
    typeof value === 'number' || typeof value === 'string';

export class CheckedReader extends AbstractMessageReader implements MessageReader {
    #parts: Buffer[] = [];
    #length = 0;
    /** Of the message whose header has been read; -1 where a header is expected. */
    #wanted = -1;
    #told = false;
    #isInitialized = false;
    #isDown = false;
    #hasEnded = false;
    #callback: DataCallback = () => {};

    constructor(
        readonly stream: Readable,
        readonly hearer: Hearer,
    ) {
        super();
    }

    /** Whether a shutdown has been read, after which the end is expected. */
    get isDown(): boolean {
        return this.#isDown;
    }

    override listen(callback: DataCallback): Disposable {
        this.#callback = callback;
        this.stream.on('data', (bytes: Buffer) => this.#take(bytes));
        this.stream.on('error', (error) => this.fireError(error));
        this.stream.on('end', () => this.#end());
        this.stream.on('close', () => this.#end());
        return { dispose: () => void this.stream.removeAllListeners() };
    }

    #end(): void {
        if (this.#hasEnded) return;
        this.#hasEnded = true;
        if (this.#wanted >= 0 || this.#length > 0) this.#complain('the input ends within a message');
        this.hearer.ended();
    }

    #take(bytes: Buffer): void {
        this.#parts.push(bytes);
        this.#length += bytes.length;
        // A body grows by parts; it is put together when it is whole, or a header shows that it never
        // will be: JSON holds no line ends in strings.
        const last =
            this.#parts.length > 1 ? Buffer.concat([this.#parts.at(-2)!.subarray(-64), bytes]) : bytes;
        if (this.#wanted >= 0 && this.#length < this.#wanted && !HEADER.test(last.toString('latin1'))) return;
        let rest: Buffer | null = Buffer.concat(this.#parts);
        while (rest) {
            this.#parts = [rest];
            this.#length = rest.length;
            rest = this.#wanted < 0 ? this.#header(rest) : this.#body(rest);
        }
    }

    /** What is after the part that is done with; null where more is needed. */
    #header(bytes: Buffer): Buffer | null {
        const end = bytes.indexOf('\r\n\r\n');
        const at = bytes.toString('latin1').search(NAME);
        if (at < 0 && (end >= 0 || bytes.length > LONGEST_HEADER))
            return this.#skip(bytes, this.#restOf(bytes, end));
        if (at < 0 || end < 0)
            return bytes.length > LONGEST_HEADER && at < 0
                ? this.#skip(bytes, bytes.length)
                : this.#awaitHeader(bytes, at);
        if (end < at) return this.#skip(bytes, at);
        const length = HEADER.exec(bytes.toString('latin1', at, end + 2))?.[1];
        if (length === undefined) return this.#skip(bytes, end + 4);
        if (Number(length) > LONGEST) {
            this.#complain(`a message of ${length} bytes is too long`);
            return bytes.subarray(end + 4);
        }
        // Only other fields of the header may stand before it.
        if (at > 0 && !/^([\w-]+:[^\r\n]*\r\n)*$/.test(bytes.toString('latin1', 0, at)))
            this.#complain('no header of a message');
        this.#wanted = Number(length);
        this.#told = false;
        return bytes.subarray(end + 4);
    }

    #awaitHeader(bytes: Buffer, at: number): Buffer | null {
        if (at > 0 && !/^[\w-]+:/.test(bytes.toString('latin1', 0, at))) return this.#skip(bytes, at);
        return at >= 0 && bytes.length - at > LONGEST_HEADER ? this.#skip(bytes, at + NAME_LENGTH) : null;
    }

    /** The last bytes may be the beginning of a header. */
    #restOf(bytes: Buffer, end: number): number {
        return end >= 0 ? end + 4 : Math.max(bytes.length - NAME_LENGTH, 0);
    }

    #skip(bytes: Buffer, count: number): Buffer | null {
        this.#complain('no header of a message');
        return count > 0 ? bytes.subarray(count) : null;
    }

    /** Once for all that is skipped in a row. */
    #complain(text: string): void {
        if (!this.#told) this.hearer.refuse(null, ErrorCodes.ParseError, text);
        this.#told = true;
    }

    #body(bytes: Buffer): Buffer | null {
        const broken = HEADER.exec(bytes.toString('latin1', 0, Math.min(bytes.length, this.#wanted)));
        if (broken) {
            this.#wanted = -1;
            this.#complain('a message ends before its length');
            return bytes.subarray(broken.index);
        }
        if (bytes.length < this.#wanted) return null;
        const body = bytes.subarray(0, this.#wanted);
        const rest = bytes.subarray(this.#wanted);
        this.#wanted = -1;
        this.#parse(body);
        return rest;
    }

    #parse(body: Buffer): void {
        let value: unknown;
        try {
            value = JSON.parse(body.toString('utf8'));
        } catch (error) {
            this.hearer.refuse(null, ErrorCodes.ParseError, `no JSON: ${(error as Error).message}`);
            return;
        }
        const trouble = this.#troubleOf(value);
        if (!trouble) this.#hand(value as Message);
        else if (trouble.text !== '') this.hearer.refuse(trouble.id, trouble.code, trouble.text);
    }

    /** What the connection cannot take may not end what is read after it. */
    #hand(message: Message): void {
        this.hearer.taken(message);
        try {
            this.#callback(message);
        } catch (error) {
            this.fireError(error as Error);
        }
    }

    #troubleOf(value: unknown): { id: number | string | null; code: number; text: string } | null {
        const fields = (typeof value === 'object' && value !== null ? value : {}) as Fields;
        const given = fields['id'];
        const id = isId(given) ? given : null;
        const refused = (text: string, code: number = ErrorCodes.InvalidRequest) => ({ id, code, text });
        if (Array.isArray(value)) return refused('batches are not taken');
        const { method, params } = fields;
        if (method === undefined && id !== null && ('result' in fields || 'error' in fields)) return null;
        if (typeof method !== 'string') return refused('neither a request nor an answer');
        if (method === '$/cancelRequest' && !isId((params as Fields | null | undefined)?.['id']))
            return refused('');
        if (params !== undefined && (typeof params !== 'object' || params === null) && params !== null)
            return given === undefined
                ? refused('')
                : refused('params are an object or a list', ErrorCodes.InvalidParams);
        return this.#outOfTurn(method, given !== undefined, refused);
    }

    #outOfTurn<Trouble>(
        method: string,
        isRequest: boolean,
        refused: (text: string, code?: number) => Trouble,
    ): Trouble | null {
        if (method === 'exit') return null;
        if (method === 'initialize' && this.#isInitialized) return refused('initialize is for the beginning');
        if (method !== 'initialize' && !this.#isInitialized)
            return isRequest ? refused('not initialized yet', ErrorCodes.ServerNotInitialized) : refused('');
        if (this.#isDown) return isRequest ? refused('shut down already') : refused('');
        this.#isInitialized = true;
        this.#isDown = method === 'shutdown';
        return null;
    }
}
