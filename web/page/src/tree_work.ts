/* A folder, several files or a zip, translated as a whole, with a report. */
import { unzipSync, zipSync } from 'fflate';
import type { Result, Translator } from 'mtranslate';
import type { FromWorker, NamedFile, ReportPage, TreeDone, Wanted } from './protocol.js';
import { reportPage, type ReportedFile } from './report_page.js';

/** Of what is read, in bytes. */
const MOST_BYTES = 1 << 30;
const MOST_FILES = 100_000;
const TIME_BETWEEN_NEWS = 50;

type Tell = (news: FromWorker) => void;

/** A zip may hold paths that lead out of it. */
const isSource = (path: string): boolean =>
    path.endsWith('.m') && !path.startsWith('__MACOSX/') && !/(^|[\\/])\.\.[\\/]/.test(path);

function unzipped(zip: Uint8Array): Map<string, Uint8Array> {
    let bytes = 0;
    let count = 0;
    const entries = unzipSync(zip, {
        filter: ({ name, originalSize }) => {
            if (!isSource(name)) return false;
            bytes += originalSize;
            if (bytes > MOST_BYTES || ++count > MOST_FILES) throw new RangeError('it holds too much');
            return true;
        },
    });
    return new Map(Object.entries(entries).map(([name, text]) => [name.replaceAll('\\', '/'), text]));
}

async function sourcesOf(
    files: NamedFile[],
    signal: AbortSignal,
): Promise<{ sources: Map<string, Uint8Array>; unread: string[] }> {
    const sources = new Map<string, Uint8Array>();
    const unread: string[] = [];
    let bytes = 0;
    for (const { path, content } of files) {
        if (signal.aborted) break;
        bytes += content.size;
        if (bytes > MOST_BYTES) throw new RangeError('that is more than 1 GB');
        try {
            const read = new Uint8Array(await content.arrayBuffer());
            if (isSource(path)) sources.set(path, read);
            else for (const [name, text] of unzipped(read)) sources.set(name, text);
        } catch (error) {
            unread.push(`${path}: ${error instanceof Error ? error.message : String(error)}`);
        }
    }
    return { sources, unread };
}

export class TreeWork {
    readonly #outputs = new Map<string, Uint8Array>();
    readonly #files: ReportedFile[] = [];
    readonly #abort = new AbortController();
    #report = new Blob();
    #lastNews = 0;

    constructor(
        readonly translator: Translator,
        readonly tell: Tell,
    ) {}

    /** Between two files. */
    stop(): void {
        this.#abort.abort();
    }

    async run(files: NamedFile[], page: ReportPage, wanted: Wanted): Promise<TreeDone> {
        const { sources, unread } = await sourcesOf(files, this.#abort.signal);
        await this.#translate(sources, wanted);
        if (sources.size === 0 && unread.length > 0) throw new Error(unread.join('\n'));
        if (sources.size === 0) throw new Error('There is no MATLAB source (*.m) in it.');
        const isStopped = this.#abort.signal.aborted;
        this.#files.sort((a, b) => (a.report.path < b.report.path ? -1 : 1));
        const reports = this.#files.map(({ report }) => report);
        const head = this.translator.report(reports, { rules: wanted.rules, interrupted: isStopped });
        this.#report = reportPage(page, head, this.#files);
        return { kind: 'tree', report: this.#report, translated: this.#files.length, isStopped, unread };
    }

    async #translate(sources: Map<string, Uint8Array>, wanted: Wanted): Promise<void> {
        const options = { ...wanted, report: true };
        for await (const { file, output, result, done, count } of this.translator.translateTree(
            sources,
            options,
        )) {
            if (result.status === 'done') this.#outputs.set(output, result.bytes);
            if (file !== null) this.#add(sources.get(file)!, result);
            this.#tellProgress(done, count, file ?? output);
            if (this.#abort.signal.aborted) break;
        }
    }

    #add(source: Uint8Array, { report, status, text }: Result): void {
        this.#files.push({ report: report!, source, translation: status === 'done' ? text : null });
    }

    #tellProgress(done: number, count: number, file: string): void {
        const now = performance.now();
        if (done < count && now - this.#lastNews < TIME_BETWEEN_NEWS) return;
        this.#lastNews = now;
        this.tell({ kind: 'progress', done, count, file });
    }

    /** All outputs, and the report. */
    async zip(): Promise<Blob> {
        const report = new Uint8Array(await this.#report.arrayBuffer());
        const entries = [...this.#outputs, ['report.html', report] as const];
        return new Blob([zipSync(Object.fromEntries(entries))], { type: 'application/zip' });
    }
}
