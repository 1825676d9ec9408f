/* The worker of the page: one that translates what is typed, and one for each tree. */
import type { FromWorker, NamedFile, ReportPage, ToWorker, Translated, Wanted } from './protocol.js';

/** Milliseconds after which a run that nobody waits for is given up, and after which one that does not
 * stop is. */
const LONGEST_STALE = 2000;
const LONGEST_STOP = 3000;

export interface Parts {
    /** The worker's script, and the module. */
    script: string;
    module: Uint8Array;
}

function started(parts: Parts): Worker {
    const url = URL.createObjectURL(new Blob([parts.script], { type: 'text/javascript' }));
    const worker = new Worker(url);
    URL.revokeObjectURL(url);
    tell(worker, { kind: 'start', module: parts.module.slice().buffer as ArrayBuffer });
    return worker;
}

const tell = (worker: Worker, message: ToWorker): void => worker.postMessage(message);

export interface TextListener {
    ready(news: Extract<FromWorker, { kind: 'ready' }>): void;
    translated(news: Translated): void;
    coloured(tokens: Uint32Array): void;
    /** The worker was lost: its memory did not do. */
    lost(why: string): void;
}

/** Translates the newest text; what is under way for an older one is dropped. */
export class TextWork {
    #worker: Worker | null = null;
    #turn = 0;
    #running: { turn: number; since: number } | null = null;
    #next: ({ turn: number; text: string } & Wanted) | null = null;
    #patience: ReturnType<typeof setTimeout> | undefined;

    constructor(
        readonly parts: Parts,
        readonly listener: TextListener,
    ) {
        this.#worker = this.#started();
    }

    translate(text: string, wanted: Wanted): void {
        this.#next = { turn: ++this.#turn, text, ...wanted };
        if (!this.#running) this.#send();
        else this.#hurry(this.#running.since);
    }

    #started(): Worker {
        const worker = started(this.parts);
        worker.onmessage = ({ data }: MessageEvent<FromWorker>) => this.#hear(data);
        worker.onerror = (event) => {
            event.preventDefault();
            this.#lose(event.message);
        };
        return worker;
    }

    #send(): void {
        if (!this.#next) return;
        const { turn } = this.#next;
        this.#running = { turn, since: performance.now() };
        this.#worker ??= this.#started();
        tell(this.#worker, { kind: 'text', ...this.#next });
        this.#next = null;
    }

    #hear(news: FromWorker): void {
        if (news.kind === 'ready') this.listener.ready(news);
        if (news.kind === 'tokens' && news.turn === this.#turn) this.listener.coloured(news.tokens);
        if (news.kind !== 'text') return;
        clearTimeout(this.#patience);
        this.#patience = undefined;
        this.#running = null;
        if (news.turn === this.#turn) this.listener.translated(news);
        else this.#send();
    }

    #hurry(since: number): void {
        this.#patience ??= setTimeout(() => this.#restart(), since + LONGEST_STALE - performance.now());
    }

    #end(): void {
        clearTimeout(this.#patience);
        this.#patience = undefined;
        this.#worker?.terminate();
        this.#worker = null;
        this.#running = null;
    }

    #restart(): void {
        this.#end();
        this.#send();
    }

    /** The next worker begins with the next text: one that cannot begin here would be lost for ever. */
    #lose(why: string): void {
        const isStale = this.#next !== null;
        this.#end();
        if (isStale) this.#send();
        else this.listener.lost(why);
    }
}

export interface TreeListener {
    heard(news: FromWorker): void;
}

/** Translates the files of one tree. */
export class TreeJob {
    readonly #worker: Worker;
    readonly #listener: TreeListener;

    constructor(parts: Parts, listener: TreeListener, files: NamedFile[], page: ReportPage, wanted: Wanted) {
        this.#worker = started(parts);
        this.#listener = listener;
        this.#worker.onmessage = ({ data }: MessageEvent<FromWorker>) => {
            if (data.kind === 'tree' || data.kind === 'failed') this.#isDone = true;
            listener.heard(data);
        };
        this.#worker.onerror = (event) => {
            event.preventDefault();
            this.#fail(event.message);
        };
        tell(this.#worker, { kind: 'tree', files, page, ...wanted });
    }

    #isDone = false;

    /** What is done is reported; a file that takes too long ends it all. */
    stop(): void {
        tell(this.#worker, { kind: 'stop' });
        setTimeout(() => {
            if (!this.#isDone) this.#fail('It was stopped within a file that takes long.');
        }, LONGEST_STOP);
    }

    zip(): void {
        tell(this.#worker, { kind: 'zip' });
    }

    end(): void {
        this.#isDone = true;
        this.#worker.terminate();
    }

    #fail(text: string): void {
        this.end();
        this.#listener.heard({ kind: 'failed', text });
    }
}
