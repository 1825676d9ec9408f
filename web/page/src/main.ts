/* The page. */
import { byId } from './elements.js';
import { chosenFiles, droppedFiles, editableText, type Given } from './given_files.js';
import { fragmentOf, linkedIn, type Linked } from './link.js';
import { moduleBytes, packedParts, type Example } from './parts.js';
import { TextView } from './text_view.js';
import { TreeView } from './tree_view.js';

const FIRST_EXAMPLE = 'quicksort';

function tell(text: string): void {
    byId('notice').textContent = text;
    byId('notice').hidden = text === '';
}

const reasonOf = (error: unknown): string => (error instanceof Error ? error.message : String(error));

class Page {
    readonly text: TextView;
    readonly tree: TreeView;

    constructor(
        parts: ConstructorParameters<typeof TextView>[0],
        report: ConstructorParameters<typeof TreeView>[1],
        readonly examples: Example[],
    ) {
        this.text = new TextView(parts);
        this.tree = new TreeView(parts, report, () => this.text.focus());
    }

    async open(given: Given): Promise<void> {
        tell('');
        const text = await editableText(given);
        if (text !== null) this.edit({ ...this.text.linked, text });
        else if (given.files.length > 0) this.tree.open(given, this.text.linked);
        else tell('There is no MATLAB source (*.m) and no zip in it.');
    }

    edit(linked: Linked): void {
        this.tree.leave();
        this.text.load(linked);
    }

    showExample(name: string): void {
        const example = this.examples.find((candidate) => candidate.name === name);
        if (!example) return;
        const texts = Object.entries(example.files);
        const { language, rules: own } = this.text.linked;
        const rules = example.rules ?? own;
        if (texts.length === 1) {
            this.edit({ text: texts[0]![1], language, rules });
            return;
        }
        const files = texts.map(([path, text]) => ({ path, content: new Blob([text]) }));
        this.tree.open({ name, files }, { language, rules });
    }

    async copyLink(): Promise<void> {
        try {
            history.replaceState(null, '', await fragmentOf(this.text.linked));
        } catch (error) {
            tell(reasonOf(error));
            return;
        }
        try {
            await navigator.clipboard.writeText(location.href);
            tell('The link is copied. It holds the text itself; nobody else has it.');
        } catch {
            tell('The link is in the address bar. It holds the text itself; nobody else has it.');
        }
    }

    /** Whether the address has a text. */
    async followLink(): Promise<boolean> {
        try {
            const linked = await linkedIn(location.hash);
            if (linked) this.edit(linked);
            return linked !== null;
        } catch (error) {
            tell(`The link is damaged: ${reasonOf(error)}`);
            return false;
        }
    }
}

function listen(page: Page): void {
    const examples = byId<HTMLSelectElement>('examples');
    for (const { name, files } of page.examples) {
        const count = Object.keys(files).length;
        examples.append(
            new Option(`${name.replaceAll('_', ' ')}${count > 1 ? ` (${count} files)` : ''}`, name),
        );
    }
    examples.addEventListener('change', () => {
        page.showExample(examples.value);
        examples.value = '';
    });
    for (const id of ['files', 'folder']) {
        const input = byId<HTMLInputElement>(id);
        byId(`open-${id}`).addEventListener('click', () => input.click());
        input.addEventListener('change', () => {
            void page.open(chosenFiles(input));
            input.value = '';
        });
    }
    byId('skip').addEventListener('click', (event) => {
        event.preventDefault();
        if (page.tree.isShown) byId('tree-title').focus();
        else page.text.focus();
    });
    byId('link-button').addEventListener('click', () => void page.copyLink());
    page.text.language.addEventListener('change', () => page.tree.again(page.text.linked.language));
    window.addEventListener('hashchange', () => void page.followLink());
}

/** Files may be dropped anywhere, also before the page has begun; texts go where editors put them. */
function listenToDrops(page: Promise<Page>): void {
    const hasFiles = (event: DragEvent): boolean => event.dataTransfer?.types.includes('Files') ?? false;
    const sign = byId('drop');
    document.addEventListener(
        'dragover',
        (event) => {
            if (!hasFiles(event)) return;
            event.preventDefault();
            sign.hidden = false;
        },
        true,
    );
    document.addEventListener('dragleave', (event) => {
        if (event.relatedTarget === null) sign.hidden = true;
    });
    document.addEventListener(
        'drop',
        (event) => {
            if (!hasFiles(event)) return;
            event.preventDefault();
            event.stopPropagation();
            sign.hidden = true;
            Promise.all([page, droppedFiles(event.dataTransfer!)]).then(
                ([page, given]) => page.open(given),
                (error: unknown) => tell(`That cannot be read: ${reasonOf(error)}`),
            );
        },
        true,
    );
}

async function begin(): Promise<Page> {
    const [module, parts] = await Promise.all([moduleBytes(), packedParts()]);
    const page = new Page({ script: parts.worker, module }, parts.report, parts.examples);
    listen(page);
    if (!(await page.followLink())) page.showExample(FIRST_EXAMPLE);
    return page;
}

const begun = begin();
listenToDrops(begun);
begun.catch((error: unknown) =>
    tell(`This browser cannot run the page (${reasonOf(error)}); one of 2023 or later can.`),
);
