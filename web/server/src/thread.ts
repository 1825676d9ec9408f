/* A thread that translates, seen from the loop of the protocol: one job at a time, the others wait.
 * A thread that is lost, or stopped, is made anew with all that it has to know. */
import { Worker } from 'node:worker_threads';
import { ResponseError, type CancellationToken } from 'vscode-languageserver/node.js';
import { CANCELLED, INTERNAL_ERROR } from './refusal.js';
import type { Done, JobName, Jobs, State } from './worker.js';

/** MB of the thread's heap; what the translator takes is beside it. */
const MOST_MEMORY = 2048;

interface Waiting {
    id: number;
    name: JobName;
    params: unknown;
    begun: number;
    settle: (done: Done) => void;
}

const GIVEN_UP = { code: CANCELLED, message: 'cancelled' };

/** A job that is cancelled while it runs has so many milliseconds to end by itself. */
const LONGEST_CANCELLED = 300;

export interface ThreadOptions {
    /** What the thread runs, and what it gets. */
    script: URL;
    data: unknown;
    /** All that a new thread has to know. */
    whole: () => State;
    log: (text: string) => void;
    /** Whether the thread is given up for a job that nobody waits for, and with it what it knows. */
    stopsCancelled: boolean;
}

export class TranslatorThread {
    #worker: Worker | null = null;
    #running: Waiting | null = null;
    #waiting: Waiting[] = [];
    #count = 0;
    #pending: State = {};

    constructor(
        readonly options: ThreadOptions,
        readonly mostMemory = MOST_MEMORY,
    ) {}

    /** What has changed; it goes along with the next job. */
    tell(state: State): void {
        if (!this.#worker) return;
        const { opened = [], closed = [] } = this.#pending;
        const again = new Set([...(state.opened ?? []).map(({ path }) => path), ...(state.closed ?? [])]);
        this.#pending = { ...this.#pending, ...state };
        this.#pending.opened = [...opened.filter(({ path }) => !again.has(path)), ...(state.opened ?? [])];
        const left = [...closed.filter((path) => !again.has(path)), ...(state.closed ?? [])];
        if (left.length > 0) this.#pending.closed = left;
        else delete this.#pending.closed;
    }

    /** Rejects with a ResponseError. */
    ask<Name extends JobName>(
        name: Name,
        params: unknown,
        token?: CancellationToken,
    ): Promise<ReturnType<Jobs[Name]>> {
        return new Promise((resolve, reject) => {
            const settle = ({ result, error }: Done): void => {
                cancelling?.dispose();
                if (error) reject(new ResponseError(error.code, error.message));
                else resolve(result as ReturnType<Jobs[Name]>);
            };
            const job = { id: ++this.#count, name, params, begun: 0, settle };
            const cancelling = token?.onCancellationRequested(() => this.#cancel(job));
            this.#waiting.push(job);
            this.#next();
        });
    }

    /** Since when the job runs, in milliseconds; null if it does not. */
    runningFor(name: JobName, isMeant: (params: unknown) => boolean): number | null {
        const job = this.#running;
        return job?.name === name && isMeant(job.params) ? performance.now() - job.begun : null;
    }

    #cancel(job: Waiting): void {
        const at = this.#waiting.indexOf(job);
        if (at >= 0) {
            this.#waiting.splice(at, 1);
            job.settle({ id: job.id, error: GIVEN_UP });
        } else if (this.options.stopsCancelled) {
            const stop = (): void => void (this.#running === job && this.stopRunning());
            setTimeout(stop, job.begun + LONGEST_CANCELLED - performance.now()).unref();
        }
    }

    /** Gives up the job under way. */
    stopRunning(): void {
        const worker = this.#worker;
        this.#worker = null;
        worker?.removeAllListeners();
        void worker?.terminate();
        this.#finish({ id: this.#running?.id ?? 0, error: GIVEN_UP });
    }

    #next(): void {
        if (this.#running || this.#waiting.length === 0) return;
        const job = this.#waiting.shift()!;
        this.#running = job;
        const isNew = this.#worker === null;
        this.#worker ??= this.#make();
        const state = isNew ? this.options.whole() : this.#pending;
        this.#pending = {};
        job.begun = performance.now();
        this.#worker.postMessage({ id: job.id, name: job.name, params: job.params, state });
    }

    #finish(done: Done): void {
        const job = this.#running;
        this.#running = null;
        if (job) job.settle(done);
        this.#next();
    }

    #make(): Worker {
        const worker = new Worker(this.options.script, {
            workerData: this.options.data,
            resourceLimits: { maxOldGenerationSizeMb: this.mostMemory },
        });
        worker.unref();
        worker.on('message', (done: Done) => {
            if (done.id === this.#running?.id) this.#finish(done);
        });
        worker.on('error', (error) => this.#lose(worker, error.message));
        worker.on('exit', (code) => this.#lose(worker, `exit ${code}`));
        return worker;
    }

    #lose(worker: Worker, reason: string): void {
        if (this.#worker !== worker) return;
        this.#worker = null;
        this.options.log(`the thread that translates is lost: ${reason}`);
        this.#finish({
            id: this.#running?.id ?? 0,
            error: { code: INTERNAL_ERROR, message: `the translation was given up: ${reason}` },
        });
    }
}
