/* Writes messages, and knows what is still owed when the input ends: answers to what has been read. */
import { StreamMessageWriter, type Message } from 'vscode-languageserver/node.js';

interface Fields extends Message {
    id?: number | string | null;
    method?: string;
}

export class OwingWriter extends StreamMessageWriter {
    readonly #owed = new Set<number | string>();
    #writing = 0;
    #settle = (): void => {};

    /** Of a message that has been read. */
    owe({ id, method }: Fields): void {
        if (method !== undefined && id !== undefined && id !== null) this.#owed.add(id);
    }

    override async write(message: Fields): Promise<void> {
        const { id, method } = message;
        ++this.#writing;
        if (method === undefined && id !== undefined && id !== null) this.#owed.delete(id);
        try {
            await super.write(message);
        } finally {
            --this.#writing;
            this.#check();
        }
    }

    /** When nothing is owed any more, or after so many milliseconds. */
    settled(longest: number): Promise<void> {
        return new Promise((resolve) => {
            this.#settle = resolve;
            setTimeout(resolve, longest);
            this.#check();
        });
    }

    #check(): void {
        if (this.#writing === 0 && this.#owed.size === 0) this.#settle();
    }
}
