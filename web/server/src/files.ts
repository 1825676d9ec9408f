/* Which files *.m there are in the folders of the workspace, as the tool finds those of a tree. */
import { readFile, readdir, realpath, stat } from 'node:fs/promises';
import { existsSync } from 'node:fs';
import { dirname, join, relative } from 'node:path';
import ignoreModule, { type Ignore } from 'ignore';

const ignore = ignoreModule as unknown as typeof ignoreModule.default;

/** A scan of more files takes too long. */
const MOST_FILES = 200_000;

interface Ignored {
    folder: string;
    rules: Ignore;
}

const isIgnored = (all: readonly Ignored[], path: string, isFolder: boolean): boolean => {
    let ignored = false;
    for (const { folder, rules } of all) {
        const test = rules.test(relative(folder, path) + (isFolder ? '/' : ''));
        ignored = test.ignored || (ignored && !test.unignored);
    }
    return ignored;
};

async function withRulesOf(folder: string, outer: readonly Ignored[]): Promise<readonly Ignored[]> {
    try {
        const text = await readFile(join(folder, '.gitignore'), 'utf8');
        return [...outer, { folder, rules: ignore({ ignorecase: false }).add(text) }];
    } catch {
        return outer;
    }
}

/** Those of the folders around, in the same work tree. */
async function rulesAround(folder: string): Promise<readonly Ignored[]> {
    const around: string[] = [];
    for (let at = folder; !existsSync(join(at, '.git')); ) {
        const outer = dirname(at);
        if (outer === at) return [];
        at = outer;
        around.unshift(at);
    }
    let rules: readonly Ignored[] = [];
    for (const at of around) rules = await withRulesOf(at, rules);
    return rules;
}

class Scan {
    readonly found: string[] = [];
    readonly #entered = new Set<string>();

    async folder(folder: string, outer: readonly Ignored[]): Promise<void> {
        if (this.found.length >= MOST_FILES) return;
        const entries = await readdir(folder, { withFileTypes: true }).catch(() => []);
        const rules = entries.some(({ name }) => name === '.gitignore')
            ? await withRulesOf(folder, outer)
            : outer;
        const inner: Promise<void>[] = [];
        for (const entry of entries) {
            if (entry.name.startsWith('.')) continue;
            const path = `${folder}/${entry.name}`;
            const kind = entry.isSymbolicLink() ? await stat(path).catch(() => null) : entry;
            if (kind?.isDirectory()) {
                if (entry.isSymbolicLink() && !(await this.#isNew(path))) continue;
                if (!isIgnored(rules, path, true)) inner.push(this.folder(path, rules));
            } else if (kind?.isFile() && entry.name.endsWith('.m') && !isIgnored(rules, path, false))
                this.found.push(path);
        }
        await Promise.all(inner);
    }

    /** A folder behind a link is entered once. */
    async #isNew(path: string): Promise<boolean> {
        const real = await realpath(path).catch(() => path);
        if (this.#entered.has(real) || path.startsWith(`${real}/`)) return false;
        this.#entered.add(real);
        return true;
    }
}

/** All files in the folder, but hidden and ignored ones. exclude: patterns as those of the tool. */
export async function filesIn(folder: string, exclude: readonly string[]): Promise<string[]> {
    const scan = new Scan();
    const excluded = { folder, rules: ignore({ ignorecase: false }).add([...exclude]) };
    await scan.folder(folder, [...(await rulesAround(folder)), ...(exclude.length > 0 ? [excluded] : [])]);
    return scan.found;
}

/** Those that files of other folders may call: in the folder itself, and in classes and packages. */
export async function callableFilesIn(folder: string): Promise<string[]> {
    const entries = await readdir(folder, { withFileTypes: true }).catch(() => []);
    const files = entries.filter((entry) => entry.isFile() && /^[^.].*\.m$/.test(entry.name));
    const inner = entries.filter((entry) => entry.isDirectory() && /^(@|\+|private$)/.test(entry.name));
    const below = await Promise.all(inner.map(({ name }) => callableFilesIn(join(folder, name))));
    return [...files.map(({ name }) => join(folder, name)), ...below.flat()];
}
