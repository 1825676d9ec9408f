/* Many files, many edits and a long file: how fast, and in how much memory. */
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { Client, makeFolder, type Files } from './client.js';

/** MB of the server. */
const memoryOf = ({ process: { pid } }: Client): number =>
    Number(/VmRSS:\s+(\d+)/.exec(readFileSync(`/proc/${pid}/status`, 'utf8'))?.[1]) / 1024;

function manyFiles(count: number): Files {
    const files: Files = {};
    for (let i = 0; i < count; ++i)
        files[`part_${i % 100}/f_${i}.m`] =
            `function y = f_${i}(x)\n% Function number ${i}.\ny = f_${(i + 1) % count}(x) + ${i};\nif y > 3, y = -y; end\nend\n`;
    return files;
}

test('10,000 files in a workspace', async (t) => {
    const client = new Client(makeFolder(manyFiles(10_000)));
    await client.start();
    let begin = performance.now();
    await client.open('main.m', 'y = f_17(1) + f_9999(2) + nowhere(3);\n');
    await client.has('main.m', 'MT401');
    const first = performance.now() - begin;
    begin = performance.now();
    const uses = await client.ask('textDocument/references', 'main.m', {
        position: { line: 0, character: 5 },
        context: { includeDeclaration: true },
    });
    const search = performance.now() - begin;
    assert.equal(uses.length, 3);
    begin = performance.now();
    const symbols: unknown[] = await client.connection.sendRequest('workspace/symbol', { query: 'f_777' });
    const symbolSearch = performance.now() - begin;
    assert.ok(symbols.length >= 11);
    t.diagnostic(
        `first messages after ${first.toFixed(0)} ms, references after ${search.toFixed(0)} ms, symbols after ${symbolSearch.toFixed(0)} ms, ${memoryOf(client).toFixed(0)} MB`,
    );
    assert.ok(first < 3000);
    await client.stop();
});

test('10,000 edits', async (t) => {
    const client = new Client(makeFolder({}));
    await client.start({ options: { debounce: 0 } });
    const lines = Array.from({ length: 50 }, (_, i) => `x${i} = ${i} + nowhere${i}(1);`);
    await client.open('a.m', `${lines.join('\n')}\n`);
    const edit = async (count: number): Promise<number> => {
        for (let i = 0; i < count; ++i) {
            const line = i % 50;
            const range = { start: { line, character: 0 }, end: { line, character: lines[line]!.length } };
            lines[line] = `x${line} = ${i} + nowhere${line}(${i});`;
            const version = await client.change('a.m', { range, text: lines[line] });
            if (i % 10 === 0)
                await client.ask('textDocument/hover', 'a.m', { position: { line, character: 0 } });
            if (i % 100 === 99)
                assert.equal(
                    (await client.messages('a.m', (params) => params.version === version)).length,
                    50,
                );
        }
        return memoryOf(client);
    };
    const before = await edit(3000);
    const after = await edit(7000);
    const { text } = await client.ask('mtranslate/translation', 'a.m');
    assert.equal(text.split('\n').length - 1, 50);
    t.diagnostic(`${before.toFixed(0)} MB after 3,000 edits, ${after.toFixed(0)} MB after 10,000`);
    assert.ok(after < before + 100);
    await client.stop();
});

test('a file of 10 MB', async (t) => {
    const client = new Client(makeFolder({}));
    await client.start();
    let begin = performance.now();
    await client.open('long.m', `${'x = 1 + 2;\n'.repeat(950_000)}y = nowhere(x);\n`);
    await client.open('short.m', 'y = nowhere(1);\n');
    // The protocol is answered meanwhile, and a newer text ends the translation of the older one.
    await client.connection.sendRequest('workspace/symbol', { query: 'nothing' });
    const free = performance.now() - begin;
    await new Promise((resolve) => setTimeout(resolve, 500));
    begin = performance.now();
    const version = await client.change('long.m', { text: 'z = nowhere(2);\n' });
    await client.messages('long.m', (params) => params.version === version);
    const changed = performance.now() - begin;
    await client.has('short.m', 'MT401');
    t.diagnostic(
        `another request after ${free.toFixed(0)} ms; messages of a newer text after ${changed.toFixed(0)} ms`,
    );
    begin = performance.now();
    const long = await client.change('long.m', {
        text: `${'x = 1 + 2;\n'.repeat(950_000)}y = nowhere(x);\n`,
    });
    const [message] = await client.messages('long.m', (params) => params.version === long);
    assert.deepEqual([message!.code, message!.range.start.line], ['MT401', 950_000]);
    assert.equal(
        await client.ask('textDocument/hover', 'long.m', { position: { line: 3, character: 0 } }),
        null,
    );
    t.diagnostic(
        `all of it after ${(performance.now() - begin).toFixed(0)} ms, ${memoryOf(client).toFixed(0)} MB`,
    );
    await client.stop();
});
