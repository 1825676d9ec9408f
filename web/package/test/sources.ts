/* What the tests find in the project, and the tool to compare with. */
import { execFileSync, spawnSync } from 'node:child_process';
import {
    existsSync,
    mkdirSync,
    mkdtempSync,
    readFileSync,
    readdirSync,
    rmSync,
    writeFileSync,
} from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';

export const PROJECT = process.env['MTRANSLATE_PROJECT'] ?? '.';
export const TOOL = process.env['MTRANSLATE_TOOL'] ?? join(PROJECT, 'build/release/bin/mtranslate');

/** The files *.m of a folder and of those in it, by their paths below it. */
export function filesOf(folder: string): Map<string, Uint8Array> {
    const files = new Map<string, Uint8Array>();
    const visit = (below: string): void => {
        for (const entry of readdirSync(join(folder, below), { withFileTypes: true })) {
            const path = below === '' ? entry.name : `${below}/${entry.name}`;
            if (entry.isDirectory()) visit(path);
            else if (entry.isFile() && path.endsWith('.m'))
                files.set(path, new Uint8Array(readFileSync(join(folder, path))));
        }
    };
    visit('');
    return files;
}

/** Every source of the tables in tests/cases as a file of its own. */
export function casesOf(): Map<string, Uint8Array> {
    const files = new Map<string, Uint8Array>();
    const folder = join(PROJECT, 'tests/cases');
    for (const table of readdirSync(folder).filter((name) => name.endsWith('.txt'))) {
        const lines = readFileSync(join(folder, table), 'latin1').split('\n');
        for (const [at, line] of lines.entries()) {
            if (line === '' || line.startsWith('#')) continue;
            const source = line.split(' => ')[0]!.replaceAll('\\n', '\n');
            const name = `${table.slice(0, -4)}/row_${at + 1}.m`;
            files.set(name, new Uint8Array(Buffer.from(source, 'latin1')));
        }
    }
    return files;
}

/** Runs work with a new folder that holds the files. */
export async function inFolder<Value>(
    files: ReadonlyMap<string, Uint8Array>,
    work: (folder: string) => Promise<Value>,
): Promise<Value> {
    const folder = mkdtempSync(join(tmpdir(), 'mtranslate-'));
    try {
        for (const [path, text] of files) {
            mkdirSync(dirname(join(folder, path)), { recursive: true });
            writeFileSync(join(folder, path), text);
        }
        return await work(folder);
    } finally {
        rmSync(folder, { recursive: true });
    }
}

/** The outputs of the tool for a folder, by their paths. One worker: classic counts on in it. */
export function outputsOfTool(folder: string, options: string[]): Map<string, Buffer> {
    const out = mkdtempSync(join(tmpdir(), 'mtranslate-'));
    try {
        const common = ['--no-config', '--no-gitignore', '--jobs', '1', '-O', out];
        const run = spawnSync(TOOL, [folder, ...common, ...options], { maxBuffer: 1 << 30 });
        if (run.error) throw run.error;
        const outputs = new Map<string, Buffer>();
        for (const path of execFileSync('find', ['.', '-type', 'f'], { cwd: out, maxBuffer: 1 << 28 })
            .toString()
            .split('\n')
            .filter((line) => line !== ''))
            outputs.set(path.slice(2), readFileSync(join(out, path)));
        return outputs;
    } finally {
        rmSync(out, { recursive: true });
    }
}

export const hasTool = existsSync(TOOL);
