/* Which files there are: those of the workspace's folders, and of others that are searched, looked for
 * anew where they may have changed. */
import { pathToFileURL } from 'node:url';
import { pathOf, type OpenDocument } from './documents.js';
import { folderOf } from './file_index.js';
import { callableFilesIn, filesIn } from './files.js';
import { Configurations, type Settings } from './settings.js';

/** Work waits for a scan, but no longer than so many milliseconds. */
const LONGEST_SCAN = 3000;
const BETWEEN_SCANS = 2000;

const withoutSlash = (path: string): string => path.replace(/\/$/, '');

export class Workspace {
    readonly configurations = new Configurations();
    #files: ReadonlySet<string> = new Set();
    #ready: Promise<void> = Promise.resolve();
    #scanning: Promise<void> | null = null;
    #scansAgain = false;
    #hasBegun = false;
    #lastScan = -Infinity;

    constructor(
        readonly open: ReadonlyMap<string, OpenDocument>,
        readonly whenChanged: () => void,
        readonly log: (text: string) => void,
    ) {}

    /** When the files are known, or their scan takes too long to be waited for. */
    get ready(): Promise<void> {
        return this.#ready;
    }

    /** The files that a name may mean. */
    get files(): string[] {
        return [...new Set([...this.#files, ...[...this.open.values()].map(({ path }) => path)])];
    }

    isFound(path: string): boolean {
        return this.#files.has(path);
    }

    #isInFolder(path: string): boolean {
        return this.configurations.folders.some((folder) => path.startsWith(`${folder}/`));
    }

    setFolders(uris: readonly string[]): void {
        this.configurations.folders = uris
            .filter((uri) => typeof uri === 'string' && uri.startsWith('file:'))
            .map((uri) => withoutSlash(pathOf(uri)));
    }

    changeFolders(added: readonly string[], removed: readonly string[]): void {
        const gone = new Set(removed.map((uri) => withoutSlash(pathOf(uri))));
        const kept = this.configurations.folders.filter((folder) => !gone.has(folder));
        this.setFolders([...kept.map((folder) => pathToFileURL(folder).href), ...added]);
    }

    /** The folder of a document outside of the workspace is one more to be known. */
    opened(path: string): void {
        if (!this.isFound(path) && !this.#isInFolder(path)) this.begin();
    }

    /** A scan that is waited for. */
    begin(): void {
        this.#hasBegun = true;
        const tooLong = new Promise<void>((resolve) => setTimeout(resolve, LONGEST_SCAN).unref());
        this.#ready = Promise.race([this.scan(), tooLong]);
    }

    setSettings(settings: Settings): void {
        const before = this.configurations.settings;
        this.configurations.settings = settings;
        const places = ({ folders, untrusted }: Settings): string => JSON.stringify([folders, untrusted]);
        if (this.#hasBegun && places(before) !== places(settings)) void this.scan();
    }

    /** Where the last one is some time ago. */
    scanAtTimes(): void {
        if (performance.now() - this.#lastScan > BETWEEN_SCANS) void this.scan();
    }

    async scan(): Promise<void> {
        this.#scansAgain = true;
        this.#scanning ??= this.#scanWhileWanted();
        await this.#scanning;
    }

    async #scanWhileWanted(): Promise<void> {
        while (this.#scansAgain) {
            this.#scansAgain = false;
            await this.#scanOnce().catch((error: Error) => this.log(error.message));
        }
        this.#scanning = null;
    }

    /** Folders of which only what other folders may call counts. */
    #othersThan(folders: readonly string[], included: readonly string[]): Set<string> {
        const outside = [...this.open.values()].filter(
            ({ path, uri }) => uri.startsWith('file:') && !this.#isInFolder(path),
        );
        const others = [
            ...this.configurations.settings.folders,
            ...included,
            ...outside.map(({ path }) => folderOf(path)),
        ];
        return new Set(others.filter((folder) => !folders.includes(folder)));
    }

    async #scanOnce(): Promise<void> {
        const { folders } = this.configurations;
        const own = folders.map((folder) => this.configurations.for(`${folder}/.m`));
        const others = this.#othersThan(
            folders,
            own.flatMap(({ include }) => include),
        );
        const found = await Promise.all([
            ...folders.map((folder, at) => filesIn(folder, own[at]!.exclude)),
            ...[...others].map(callableFilesIn),
        ]);
        this.#lastScan = performance.now();
        const files = new Set(found.flat());
        if (files.size === this.#files.size && [...files].every((file) => this.#files.has(file))) return;
        this.#files = files;
        this.whenChanged();
    }
}
