/* The instance of the module: its memory, calls and questions. */

/** What the module asks, in this order (ORDER QUESTIONS); each gets the question, and answers text,
 * null for a failure or undefined for none. */
export type Asked = ((question: never) => string | Uint8Array | null | undefined)[];

interface Exports {
    memory: WebAssembly.Memory;
    malloc(size: number): number;
    free(address: number): void;
    _initialize(): void;
    [name: string]: unknown;
}

export interface Output {
    json: unknown;
    bytes: Uint8Array;
}

/** The instance is lost: the stack or the memory was exhausted where that could not be told. */
export class LostInstance extends Error {
    override name = 'LostInstance';
}

const NOT_HERE = 52; // no such function: of files, which are none
const FAILED = 0xffffffff;
const PAGE = 65536;
/** An instance with more memory than that is given up: memory never shrinks. */
const MUCH_MEMORY = 256 << 20;

const encoder = new TextEncoder();
const decoder = new TextDecoder('utf-8', { ignoreBOM: true });

export const toBytes = (text: string | Uint8Array): Uint8Array =>
    typeof text === 'string' ? encoder.encode(text) : text;
export const toText = (bytes: Uint8Array): string => decoder.decode(bytes);

/** The module grows by a page of 64 KB at a time, each of which takes a while: a fifth more at once. */
function growOn(memory: WebAssembly.Memory): void {
    try {
        memory.grow(Math.ceil(memory.buffer.byteLength / PAGE / 5));
    } catch {
        // near the most that there is, page by page
    }
}

export class Module {
    /** How many instances there have been: what one has made is gone with it. */
    generation = 0;
    #exports: Exports | null = null;
    #asked: Asked = [];
    #trouble: { error: unknown } | null = null;

    constructor(readonly compiled: WebAssembly.Module) {}

    get isInCall(): boolean {
        return this.#asked.length > 0;
    }

    /** Begins anew with the next call. */
    forget(): void {
        this.#exports = null;
    }

    forgetLarge(): void {
        if (this.#exports && this.#exports.memory.buffer.byteLength > MUCH_MEMORY) this.forget();
    }

    /** What the exported function gives for a request and texts. Throws what a function of asked has
     * thrown, and LostInstance. */
    call(name: string, request?: unknown, texts: readonly Uint8Array[] = [], asked: Asked = []): Output {
        if (this.isInCall) throw new TypeError('the module is in a call');
        const exports = this.#instance();
        this.#asked = asked;
        this.#trouble = null;
        try {
            return this.#call(exports, name, request, texts);
        } catch (error) {
            this.forget();
            throw new LostInstance(String(error));
        } finally {
            this.#asked = [];
            this.#throwTrouble();
        }
    }

    /** Calls a function that takes an address and gives nothing. */
    give(name: string, address: number): void {
        (this.#instance()[name] as (address: number) => void)(address);
    }

    #throwTrouble(): void {
        const trouble = this.#trouble as { error: unknown } | null;
        this.#trouble = null;
        if (trouble) throw trouble.error;
    }

    #call(exports: Exports, name: string, request: unknown, texts: readonly Uint8Array[]): Output {
        const given = request === undefined ? [] : [toBytes(JSON.stringify(request))];
        const length = given.length > 0 ? given[0]!.length : 0;
        const address = this.#put(exports, [...given, ...texts]);
        try {
            const run = exports[name] as (...places: number[]) => number;
            return this.#output(exports, run(address, length, address + length));
        } finally {
            exports.free(address);
            (exports['module_release'] as () => void)();
        }
    }

    #output(exports: Exports, address: number): Output {
        const memory = exports.memory.buffer;
        const [json = 0, jsonLength = 0, text = 0, textLength = 0] = new Uint32Array(memory, address, 4);
        const written = toText(new Uint8Array(memory, json, jsonLength));
        return { json: JSON.parse(written), bytes: new Uint8Array(memory, text, textLength).slice() };
    }

    /** The parts one after the other, in memory of the module. */
    #put(exports: Exports, parts: readonly Uint8Array[]): number {
        const size = parts.reduce((sum, part) => sum + part.length, 0);
        const address = exports.malloc(Math.max(size, 1)) >>> 0;
        if (address === 0) throw new RangeError('the module gets no more memory');
        let at = address;
        for (const part of parts) {
            new Uint8Array(exports.memory.buffer).set(part, at);
            at += part.length;
        }
        return address;
    }

    #answer(exports: Exports, kind: number, address: number, length: number): number {
        if (this.#trouble) return 0;
        try {
            const json = toText(new Uint8Array(exports.memory.buffer, address >>> 0, length >>> 0));
            const answer = this.#asked[kind]?.(JSON.parse(json) as never);
            if (answer === undefined) return 0;
            const bytes = answer === null ? new Uint8Array() : toBytes(answer);
            const head = Uint32Array.of(answer === null ? FAILED : bytes.length);
            return this.#put(exports, [new Uint8Array(head.buffer), bytes]);
        } catch (error) {
            this.#trouble = { error };
            return 0;
        }
    }

    #instance(): Exports {
        if (this.#exports) return this.#exports;
        const imports = this.#imports(() => exports);
        const exports = new WebAssembly.Instance(this.compiled, imports).exports as unknown as Exports;
        exports._initialize();
        this.#exports = exports;
        ++this.generation;
        return exports;
    }

    #imports(exports: () => Exports): WebAssembly.Imports {
        let high = 0; // the upper half of a result of 64 bits
        const refuse = () => NOT_HERE;
        const refuseSystem = () => -NOT_HERE;
        const set = (address: number) => {
            new DataView(exports().memory.buffer).setUint32(address, 0, true);
            return 0;
        };
        return {
            mtranslate: {
                ask: (kind: number, address: number, length: number) =>
                    this.#answer(exports(), kind, address, length),
            },
            env: {
                setTempRet0: (value: number) => void (high = value),
                getTempRet0: () => high,
                emscripten_notify_memory_growth: () => growOn(exports().memory),
                __syscall_fstat64: refuseSystem,
                __syscall_stat64: refuseSystem,
                __syscall_fstatat64: refuseSystem,
                __syscall_lstat64: refuseSystem,
                __syscall_getcwd: refuseSystem,
                __syscall_getdents64: refuseSystem,
            },
            wasi_snapshot_preview1: {
                proc_exit: (code: number) => {
                    throw new Error(`the module ended with ${code}`);
                },
                fd_close: refuse,
                fd_read: refuse,
                fd_seek: refuse,
                fd_write: refuse,
                environ_sizes_get: (count: number, size: number) => set(count) || set(size),
                environ_get: () => 0,
            },
        };
    }
}
