/* Which file of the workspace a name means, as for the files that the tool translates together. */
import type { Search } from 'mtranslate';

interface IndexedFile {
    path: string;
    /** That may call it, where that is one alone (private). */
    folder: string | null;
}

interface Folder {
    className: string;
    packageName: string;
    /** The folder whose files alone may call those of this one; null for any. */
    callers: string | null;
}

export const folderOf = (path: string): string => path.slice(0, Math.max(path.lastIndexOf('/'), 0));
export const baseOf = (path: string): string => path.slice(path.lastIndexOf('/') + 1);
export const stemOf = (path: string): string =>
    path.slice(path.lastIndexOf('/') + 1, path.endsWith('.m') ? -2 : undefined);

/** "a.b." for a folder +a/+b, also for a class in it. */
export function packageOf(folder: string): string {
    const name = baseOf(folder);
    if (name.startsWith('@')) return packageOf(folderOf(folder));
    return name.startsWith('+') ? `${packageOf(folderOf(folder))}${name.slice(1)}.` : '';
}

/** "a.b" for a folder +a/@b, "" for one of no class. */
export function classOf(folder: string): string {
    const name = baseOf(folder);
    return /^@./.test(name) ? packageOf(folderOf(folder)) + name.slice(1) : '';
}

const inPackage = (name: string): string => name.slice(name.lastIndexOf('.') + 1);

/** The order of the tool's files: folder by folder. */
function isBefore(a: string, b: string): boolean {
    return a.replaceAll('/', '\0') < b.replaceAll('/', '\0');
}

export class FileIndex {
    readonly paths: readonly string[];
    readonly #files = new Map<string, IndexedFile[]>();
    readonly #folders = new Map<string, Folder>();
    readonly #methods = new Map<string, Map<string, string>>();

    constructor(paths: Iterable<string>) {
        this.paths = [...new Set(paths)];
        for (const path of this.paths) this.#add(path);
    }

    #folder(path: string): Folder {
        const known = this.#folders.get(path);
        if (known) return known;
        const callers = baseOf(path) === 'private' ? folderOf(path) : null;
        const folder = { className: classOf(path), packageName: packageOf(path), callers };
        this.#folders.set(path, folder);
        return folder;
    }

    #add(path: string): void {
        const { className: name, packageName, callers } = this.#folder(folderOf(path));
        if (name !== '') {
            const classes = this.#methods.get(stemOf(path)) ?? new Map<string, string>();
            const other = classes.get(name);
            if (other === undefined || isBefore(path, other)) classes.set(name, path);
            this.#methods.set(stemOf(path), classes);
            return;
        }
        const key = packageName + stemOf(path);
        const files = this.#files.get(key) ?? [];
        const at = files.findIndex((file) => isBefore(path, file.path));
        files.splice(at < 0 ? files.length : at, 0, { path, folder: callers });
        this.#files.set(key, files);
    }

    #callable(files: IndexedFile[], caller: string): string | null {
        const folder = folderOf(caller);
        const from = baseOf(folder) === 'private' ? folderOf(folder) : folder;
        const own = files.find((file) => file.folder === from);
        return (own ?? files.find((file) => file.folder === null))?.path ?? null;
    }

    /** The file of a function or script; null for none. */
    find(name: string, caller: string): string | null {
        const files = this.#files.get(name);
        return files ? this.#callable(files, caller) : null;
    }

    #findMethod(className: string | null, name: string): string | null {
        const classes = this.#methods.get(name);
        if (!classes) return null;
        if (className !== null) return classes.get(className) ?? null;
        const owner = [...classes.keys()].sort().find((owner) => inPackage(owner) !== name);
        return owner === undefined ? null : classes.get(owner)!;
    }

    answer({ kind, name, className, caller }: Search): string | null {
        return kind === 'method' ? this.#findMethod(className, name) : this.find(name, caller ?? '');
    }

    /** All names that a file may call, with the files that they mean. */
    *callable(caller: string): Iterable<[name: string, path: string]> {
        for (const [name, files] of this.#files) {
            const path = this.#callable(files, caller);
            if (path !== null) yield [name, path];
        }
    }
}
