/* Texts of the disk. */
import { readFileSync, statSync } from 'node:fs';

/** Changes when the file does; empty where there is none, or no regular one. */
export function stampOf(path: string): string {
    try {
        const status = statSync(path, { throwIfNoEntry: false, bigint: true });
        return status?.isFile() ? `${status.mtimeNs} ${status.size}` : '';
    } catch {
        return 'unreadable';
    }
}

/** Null where the file cannot be read, undefined where there is none. Bytes that are no UTF-8 are U+FFFD. */
export function textOf(path: string): string | null | undefined {
    if (stampOf(path) === '') return undefined;
    try {
        return new TextDecoder().decode(readFileSync(path));
    } catch {
        return null;
    }
}
