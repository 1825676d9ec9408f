/* The threads that translate: one for open documents, one for searches in all files. */
import { TranslatorThread } from './thread.js';
import type { State } from './worker.js';

export class Threads {
    readonly front: TranslatorThread;
    readonly search: TranslatorThread;

    /** whole: all that a new thread has to know. */
    constructor(wasm: WebAssembly.Module, whole: () => State, log: (text: string) => void) {
        const script = new URL('./worker.js', import.meta.url);
        const make = (stopsCancelled: boolean): TranslatorThread =>
            new TranslatorThread({ script, data: { wasm }, whole, log, stopsCancelled });
        this.front = make(false);
        this.search = make(true);
    }

    /** What has changed; it goes along with the next job of each. */
    tell(state: State): void {
        this.front.tell(state);
        this.search.tell(state);
    }

    /** So that the next translation is fast; it gets along with it what has changed. */
    warmUp(): void {
        void this.front.ask('warmUp', {}).catch(() => {});
    }
}
