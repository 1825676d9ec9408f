/* The report of a tree is the tool's. */
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { basename, dirname, join } from 'node:path';
import { test } from 'node:test';
import { load, type FileReport, type TreeOptions } from 'mtranslate';
import { PROJECT, TOOL, filesOf, hasTool } from './sources.js';

const translator = await load();
const rules = join(PROJECT, 'examples/rules/neutral.toml');

function reportOfTool(folder: string, options: string[]): Record<string, unknown> & { files: FileReport[] } {
    const out = mkdtempSync(join(tmpdir(), 'mtranslate-'));
    try {
        const report = join(out, 'report.json');
        const common = ['--no-config', '--no-gitignore', '-O', out, '--report', report];
        const run = spawnSync(TOOL, [basename(folder), ...common, ...options], { cwd: dirname(folder) });
        if (run.error) throw run.error;
        return JSON.parse(readFileSync(report, 'utf8')) as ReturnType<typeof reportOfTool>;
    } finally {
        rmSync(out, { recursive: true });
    }
}

const withoutOutput = ({ output: _, ...file }: FileReport): object => file;

const rows: [folder: string, options: TreeOptions, arguments_: string[]][] = [
    ['tests/report/src', {}, []],
    ['examples', { rules: readFileSync(rules, 'utf8'), rulesName: rules }, ['--rules', rules]],
    ['tests/classic', { language: 'octave' }, ['--language', 'octave']],
];
for (const [folder, options, arguments_] of rows)
    test(`the report on ${folder}`, { skip: !hasTool }, async () => {
        const below = [...filesOf(join(PROJECT, folder))];
        const sources = new Map(below.map(([path, text]) => [`${basename(folder)}/${path}`, text]));
        const reports: FileReport[] = [];
        for await (const { result } of translator.translateTree(sources, { ...options, report: true }))
            if (result.report) reports.push(result.report);
        const { advice, explanations, sources: _, ...head } = translator.report(reports, options);
        const { files, ...expected } = reportOfTool(join(PROJECT, folder), arguments_);
        assert.deepEqual(head, expected);
        assert.deepEqual(
            new Map(reports.map((file) => [file.path, withoutOutput(file)])),
            new Map(files.map((file) => [file.path, withoutOutput(file)])),
        );
        assert.ok(Array.isArray(advice) && typeof explanations === 'object');
    });
