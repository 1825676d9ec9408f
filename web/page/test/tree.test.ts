/* Folders and zips: progress, report and outputs. */
import assert from 'node:assert/strict';
import { mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { after, before, test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { unzipSync, zipSync } from 'fflate';
import type { Page } from 'playwright-core';
import {
    addresses,
    paste,
    PROJECT,
    skip,
    useBrowser,
    waitForText,
    watchPauses,
    withPage,
} from './browser.js';

const bytes = (text: string): Uint8Array => new Uint8Array(Buffer.from(text, 'latin1'));

const FILES: Record<string, Uint8Array> = {
    'src/main.m': bytes('x = area(2);\ny = missing(x);\nz = eval(y);\n'),
    'src/area.m': bytes('function a = area(r)\n% of a circle\na = pi*r^2;\nend\n'),
    'src/lib/latin.m': bytes("s = 'caf\xE9';\nif s == 'a', t = 1; end\n"),
    'src/lib/nul.m': bytes('a = 1;\0 b = 2;\n'),
    'src/lib/mac.m': bytes('a = 1;\rb = 2;\r'),
    'src/lib/empty.m': bytes(''),
    'src/notes.txt': bytes('no source'),
};

let work: string;
useBrowser();
before(() => {
    work = mkdtempSync(join(tmpdir(), 'mtranslate-'));
    for (const [path, content] of Object.entries(FILES)) {
        mkdirSync(dirname(join(work, path)), { recursive: true });
        writeFileSync(join(work, path), content);
    }
});
after(() => rmSync(work, { recursive: true }));

/** What the package gives for the tree. */
async function expectedOutputs(): Promise<Map<string, string>> {
    const entry = pathToFileURL(join(PROJECT, 'web/package/dist/node.js')).href;
    const { load } = (await import(entry)) as typeof import('../../package/dist/node.js');
    const sources = Object.entries(FILES).filter(([path]) => path.endsWith('.m'));
    const outputs = new Map<string, string>();
    for await (const { output, result } of (await load()).translateTree(Object.fromEntries(sources)))
        if (result.status === 'done') outputs.set(output, Buffer.from(result.bytes).toString('latin1'));
    return outputs;
}

async function downloaded(page: Page): Promise<Map<string, string>> {
    const [download] = await Promise.all([
        page.waitForEvent('download'),
        page.getByRole('button', { name: 'Download all' }).click(),
    ]);
    const entries = Object.entries(unzipSync(new Uint8Array(readFileSync(await download.path()))));
    return new Map(entries.map(([name, content]) => [name, Buffer.from(content).toString('latin1')]));
}

const report = (page: Page) => page.frameLocator('#report iframe');

/** Drops a file on the page. */
const drop = (page: Page, name: string, content: Uint8Array): Promise<void> =>
    page.evaluate(
        ([name, content]) => {
            const dataTransfer = new DataTransfer();
            dataTransfer.items.add(
                new File([Uint8Array.from(atob(content!), (c) => c.charCodeAt(0))], name!),
            );
            for (const type of ['dragover', 'drop'])
                document.body.dispatchEvent(
                    new DragEvent(type, { dataTransfer, bubbles: true, cancelable: true }),
                );
        },
        [name, Buffer.from(content).toString('base64')],
    );

for (const [from, address] of Object.entries(addresses))
    test(`a folder gets outputs and the tool's report, ${from}`, { skip }, () =>
        withPage(async (page) => {
            await page.setInputFiles('#folder', join(work, 'src'));
            const shown = report(page);
            await shown.getByRole('heading', { name: '6 files' }).waitFor();
            assert.match((await shown.locator('#unresolved').textContent())!, /missing/);
            await shown.getByRole('link', { name: 'Files', exact: false }).first().click();
            await shown.getByRole('link', { name: 'src/main.m', exact: true }).click();
            await shown.locator('.source td', { hasText: 'x := area(2);' }).waitFor();
            assert.equal(await shown.locator('.source mark').last().textContent(), 'eval');
            await page.keyboard.press('n');
            await shown.locator('tr.target').waitFor();
            const outputs = await downloaded(page);
            assert.match(outputs.get('report.html')!, /^<!doctype html>/);
            outputs.delete('report.html');
            assert.deepEqual(outputs, await expectedOutputs());
            await page.getByRole('button', { name: 'Back to the editor' }).click();
            await paste(page, 'source', 'b = 1;');
            await waitForText(page, '#host .cm-line', 'b := 1;');
        }, address()),
    );

test('a zip of 3,000 files does not hold up the page', { skip }, (context) =>
    withPage(async (page) => {
        const source = readFileSync(join(PROJECT, 'examples/statistics.m'));
        const entries = Array.from(
            { length: 3000 },
            (_, at) => [`t/f${at}.m`, new Uint8Array(source)] as const,
        );
        const longest = await watchPauses(page);
        const since = Date.now();
        await drop(page, 'many.zip', zipSync(Object.fromEntries(entries)));
        await waitForText(page, '#progress-text', /^\d[\d,]* of 3,000/);
        await report(page).getByRole('heading', { name: '3,000 files' }).waitFor({ timeout: 60_000 });
        context.diagnostic(
            `3,000 files in ${Date.now() - since} ms; at most ${Math.round(await longest())} ms at once`,
        );
        assert.ok((await longest()) < 1500, `${await longest()} ms`);
        assert.equal((await downloaded(page)).size, 3001 + 1);
    }),
);

test('what is done when a run is stopped is reported', { skip }, () =>
    withPage(async (page) => {
        const source = bytes('x = [1 2 3]*y + f(z);\n'.repeat(300));
        const entries = Array.from({ length: 2000 }, (_, at) => [`f${at}.m`, source] as const);
        await drop(page, 'many.zip', zipSync(Object.fromEntries(entries)));
        await waitForText(page, '#progress-text', 'of 2,000');
        await page.getByRole('button', { name: 'Stop' }).click();
        await report(page).getByText('The run was interrupted').waitFor({ timeout: 30_000 });
        await waitForText(page, '#progress-text', 'then stopped');
    }),
);

test('a dropped source opens in the editor, and what is none is told', { skip }, () =>
    withPage(async (page) => {
        await drop(page, 'one.m', bytes('one = 1;\n'));
        await waitForText(page, '#host .cm-line', 'one := 1;');
        await drop(page, 'two.zip', bytes('PK\x03\x04 damaged'));
        await waitForText(page, '#tree-status', 'Not translated: two.zip');
        await drop(page, 'none.zip', zipSync({ 'a.txt': bytes('a'), '../out.m': bytes('a') }));
        await waitForText(page, '#tree-status', 'no MATLAB source');
        await drop(page, 'one.m', bytes('two = 2;\n'));
        await waitForText(page, '#host .cm-line', 'two := 2;');
        await drop(page, 'bad.m', FILES['src/lib/latin.m']!);
        await report(page).getByRole('heading', { name: '1 file' }).waitFor();
        await drop(page, 'a.txt', bytes('a'));
        await waitForText(page, '#notice', 'no MATLAB source');
    }),
);

test('examples of several files are translated with their rules', { skip }, () =>
    withPage(async (page) => {
        await page.selectOption('#examples', 'migration');
        await report(page)
            .getByRole('link', { name: /Functions and rules/ })
            .click();
        await report(page).locator('#rules').waitFor();
        await page.selectOption('#language', 'octave');
        await report(page)
            .getByRole('link', { name: /Functions and rules/ })
            .click();
        await report(page).locator('#rules').waitFor();
        await page.selectOption('#examples', 'loops');
        await waitForText(page, '#host .cm-line', 'for ');
    }),
);
