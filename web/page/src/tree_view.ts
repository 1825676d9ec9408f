/* A tree: how far its translation is, and then its report. */
import type { Language } from 'mtranslate';
import { byId, counted, element, grouped, save } from './elements.js';
import type { Given } from './given_files.js';
import type { FromWorker, ReportPage, TreeDone, Wanted } from './protocol.js';
import { TreeJob, type Parts } from './work.js';

/** In a frame that is written: it has the page's own address then, and links within it work, which
 * those of a blob do not in a page from a disk. The page's policy holds in it too. */
function showPage(html: string): void {
    const frame = element('iframe', { title: 'Report' });
    byId('report').replaceChildren(frame);
    const page = frame.contentDocument!;
    page.open();
    page.write(html);
    page.close();
}

export class TreeView {
    #job: TreeJob | null = null;
    #given: { tree: Given; wanted: Wanted } | null = null;
    readonly #stop = byId<HTMLButtonElement>('stop');
    readonly #zip = byId<HTMLButtonElement>('zip');

    constructor(
        readonly parts: Parts,
        readonly page: ReportPage,
        readonly whenLeft: () => void,
    ) {
        this.#stop.addEventListener('click', () => this.#job?.stop());
        this.#zip.addEventListener('click', () => this.#askZip());
        byId('back').addEventListener('click', () => {
            this.leave();
            this.whenLeft();
        });
    }

    get isShown(): boolean {
        return this.#given !== null;
    }

    open(tree: Given, wanted: Wanted): void {
        const { name, files } = tree;
        this.#end();
        this.#given = { tree, wanted };
        document.body.classList.add('tree');
        byId('text-view').hidden = true;
        byId('tree-view').hidden = false;
        byId('tree-title').textContent = name;
        byId('tree-title').focus();
        byId('tree-status').textContent = '';
        this.#stop.hidden = byId('progress').hidden = false;
        this.#showProgress(0, 0, `reading ${counted(files.length, 'file')}`);
        this.#job = new TreeJob(this.parts, { heard: (news) => this.#hear(news) }, files, this.page, wanted);
    }

    #hear(news: FromWorker): void {
        if (news.kind === 'progress') this.#showProgress(news.done, news.count, news.file);
        if (news.kind === 'tree') void this.#show(news);
        if (news.kind === 'failed') this.#fail(news.text);
        if (news.kind === 'zip') this.#save(news.zip);
    }

    #showProgress(done: number, count: number, what: string): void {
        const bar = byId<HTMLProgressElement>('progress');
        bar.max = Math.max(count, 1);
        bar.value = done;
        const part = count > 0 ? `${grouped(done)} of ${grouped(count)}: ` : '';
        byId('progress-text').textContent = part + what;
    }

    async #show({ report, translated, isStopped, unread }: TreeDone): Promise<void> {
        this.#stop.hidden = byId('progress').hidden = true;
        this.#zip.disabled = false;
        byId('progress-text').textContent =
            `${counted(translated, 'file')}${isStopped ? ', then stopped' : ''}`;
        byId('tree-status').textContent = unread.length > 0 ? `Not read:\n${unread.join('\n')}` : '';
        showPage(await report.text());
    }

    #fail(text: string): void {
        this.#stop.hidden = byId('progress').hidden = true;
        byId('progress-text').textContent = '';
        byId('tree-status').textContent = `Not translated: ${text}`;
    }

    #askZip(): void {
        this.#zip.disabled = true;
        this.#job?.zip();
    }

    #save(zip: Blob): void {
        this.#zip.disabled = false;
        save(zip, `${this.#given!.tree.name.replace(/\.zip$/i, '')}-translated.zip`);
    }

    #end(): void {
        this.#job?.end();
        this.#job = null;
        byId('report').replaceChildren();
        this.#zip.disabled = true;
    }

    /** The tree that is shown is translated again. */
    again(language: Language): void {
        if (this.#given) this.open(this.#given.tree, { ...this.#given.wanted, language });
    }

    leave(): void {
        this.#end();
        this.#given = null;
        document.body.classList.remove('tree');
        byId('tree-view').hidden = true;
        byId('text-view').hidden = false;
    }
}
