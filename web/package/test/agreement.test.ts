/* The package translates as the tool does, to the byte. MTRANSLATE_FOLDERS names further folders, with
 * colons between them. */
import assert from 'node:assert/strict';
import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { load, type Language, type TreeOptions } from 'mtranslate';
import { PROJECT, casesOf, filesOf, hasTool, inFolder, outputsOfTool } from './sources.js';

const translator = await load();
const given = (process.env['MTRANSLATE_FOLDERS'] ?? '').split(':').filter((folder) => folder !== '');
const rules = join(PROJECT, 'examples/rules/neutral.toml');

type Sources = ReadonlyMap<string, Uint8Array>;

async function compare(
    folder: string,
    files: Sources,
    options: TreeOptions,
    arguments_: string[],
): Promise<string> {
    const expected = outputsOfTool(folder, arguments_);
    const different: string[] = [];
    let compared = 0;
    for await (const { output, result } of translator.translateTree(files, options)) {
        const bytes = expected.get(output);
        const isSame = result.status === 'done' ? bytes?.equals(result.bytes) : bytes === undefined;
        if (!isSame) different.push(`${output} (${result.status})`);
        ++compared;
        expected.delete(output);
    }
    assert.deepEqual({ different, missing: [...expected.keys()] }, { different: [], missing: [] });
    return `${compared} outputs`;
}

type At = (work: (folder: string) => Promise<void>) => Promise<void>;

function compareAll(name: string, files: Sources, at: At, closures = [false, true]): void {
    for (const language of ['matlab', 'octave', 'classic'] as Language[])
        for (const closure of closures)
            test(
                `${name} in ${language}${closure ? ', each file with what it calls' : ''}`,
                { skip: !hasTool },
                (t) =>
                    at(async (folder) => {
                        const arguments_ = ['--language', language, ...(closure ? ['--closure'] : [])];
                        t.diagnostic(await compare(folder, files, { language, closure }, arguments_));
                    }),
            );
}

const folders = ['examples', 'tests/classic'].map((name) => join(PROJECT, name));
for (const folder of [...folders, ...given]) compareAll(folder, filesOf(folder), (work) => work(folder));
const cases = casesOf();
compareAll('rows of tests/cases', cases, (work) => inFolder(cases, work), [false]);

test('a tree with rules', { skip: !hasTool }, async () => {
    const folder = join(PROJECT, 'examples');
    const options: TreeOptions = { rules: readFileSync(rules, 'utf8'), suffix: '.host' };
    await compare(folder, filesOf(folder), options, ['--rules', rules, '--suffix', '.host']);
});

test('files of the examples are translated as they stand there', () => {
    for (const name of readdirSync(join(PROJECT, 'examples')).filter((file) => file.endsWith('.out'))) {
        const base = name.slice(0, -4);
        const folder = readdirSync(join(PROJECT, 'examples')).includes(base) ? base : '';
        const files = filesOf(join(PROJECT, 'examples', folder));
        const { text } = translator.translate({ files, file: folder ? 'main.m' : `${base}.m` });
        assert.equal(text, readFileSync(join(PROJECT, 'examples', name), 'utf8'), name);
    }
});
