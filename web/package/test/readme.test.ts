/* The examples of README.md run as they stand there, and print what it says. */
import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { readFileSync, writeFileSync } from 'node:fs';
import { test } from 'node:test';

test('README.md', () => {
    const readme = readFileSync(new URL('../node_modules/mtranslate/README.md', import.meta.url), 'utf8');
    const examples = [...readme.matchAll(/```js\n([^]*?)```\n```text\n([^]*?)```/g)];
    assert.ok(examples.length >= 2);
    for (const [, script, printed] of examples) {
        const file = new URL('../example.js', import.meta.url);
        writeFileSync(file, script!);
        assert.equal(execFileSync(process.execPath, [file.pathname], { encoding: 'utf8' }), printed);
    }
});
