/* The editors: what is typed, what is said of it, and links. */
import assert from 'node:assert/strict';
import { test } from 'node:test';
import {
    addresses,
    paste,
    skip,
    sourceOf,
    useBrowser,
    waitForText,
    watchPauses,
    withPage,
} from './browser.js';

useBrowser();

for (const [from, address] of Object.entries(addresses))
    test(`what is typed is translated, ${from}`, { skip }, () =>
        withPage(async (page) => {
            await sourceOf(page).click();
            await page.keyboard.press('Control+a');
            await page.keyboard.type(
                "total = 0;\nfor k = 1:3\ntotal = total + k; % one\nend\ns = 'ü😀'; y = eval(s);",
            );
            await waitForText(page, '#host .cm-line', 'for k from 1 to 3 do');
            await waitForText(page, '#host .cm-line', '# one');
            await waitForText(page, '#messages li', 'MT204');
            assert.match((await page.textContent('#counts'))!, /1 gap/);
            assert.equal(await page.locator('#source .cm-lintRange').textContent(), 'eval');
            await page.locator('#source .cm-token-keyword', { hasText: 'for' }).waitFor();
            assert.equal(await page.locator('#source .cm-token-comment').textContent(), '% one');
        }, address()),
    );

test('messages lead to their places and are explained', { skip }, () =>
    withPage(async (page) => {
        await paste(page, 'source', 'x = 1;\n\ny = eval(x);\n');
        await waitForText(page, '#messages li', 'MT204');
        await page.getByRole('button', { name: 'go to line 3, column 5' }).click();
        await page.keyboard.type('half');
        await waitForText(page, '#host .cm-line', 'y := half(x');
        await page.keyboard.press('Control+z');
        await waitForText(page, '#messages li', 'MT204');
        await page.getByRole('button', { name: 'Explain MT204' }).click();
        const dialog = page.getByRole('dialog', { name: 'MT204 eval' });
        assert.match((await dialog.textContent())!, /What to do:/);
        await page.keyboard.press('Escape');
        await dialog.waitFor({ state: 'hidden' });
    }),
);

test('lines that belong together light up on both sides', { skip }, () =>
    withPage(async (page) => {
        await paste(page, 'source', 'x = 1;\nif x > 0\n  y = [1 2 ...\n 3];\nend\n');
        await waitForText(page, '#host .cm-line', 'end if');
        const lit = async (side: string) =>
            (await page.locator(`#${side} .cm-joined`).allTextContents()).map((line) => line.trim());
        const rows: [side: string, line: string, source: string[], host: string[]][] = [
            ['source', 'if x', ['if x > 0'], ['if x > 0 then']],
            ['source', '3];', ['y = [1 2 ...', '3];'], ['y := Vector[row]([1, 2, 3]);']],
            ['host', 'end if', ['end'], ['end if;']],
        ];
        for (const [side, line, source, host] of rows) {
            await page.locator(`#${side} .cm-line`, { hasText: line }).first().click();
            await page.waitForTimeout(50);
            assert.deepEqual(await lit('source'), source, line);
            assert.deepEqual(await lit('host'), host, line);
        }
    }),
);

test('language and rules are heeded, and mistakes in rules told', { skip }, () =>
    withPage(async (page) => {
        await paste(page, 'source', 'y = half(rate);\n');
        await page.getByRole('button', { name: 'Rules' }).click();
        await paste(page, 'rules', '[names]\nrate = "r"\n');
        await waitForText(page, '#host .cm-line', 'half(r)');
        await paste(page, 'rules', '[names]\nrate = \n');
        await waitForText(page, '#messages li', /rules:2:/);
        await page.locator('#rules .cm-lintRange-error').first().waitFor();
        await paste(page, 'rules', '');
        await paste(page, 'source', 's = "a\\tb";\n');
        await waitForText(page, '#host .cm-line', 'a\\\\tb');
        await page.selectOption('#language', 'octave');
        await waitForText(page, '#host .cm-line', /a\s+b/);
        await page.selectOption('#language', 'classic');
        await waitForText(page, '#counts', '1 error');
        await waitForText(page, '#time', 'not translated');
    }),
);

test('a link carries text, language and rules', { skip }, () =>
    withPage(async (page) => {
        await page.selectOption('#language', 'octave');
        await paste(page, 'source', "a = 'ü \u2028';\n");
        await page.getByRole('button', { name: 'Rules' }).click();
        await paste(page, 'rules', '# none\n');
        await page.getByRole('button', { name: 'Copy link' }).click();
        await waitForText(page, '#notice', 'link');
        const link = page.url();
        assert.match(link, /#code=[\w-]+$/);
        await page.goto('about:blank');
        await page.goto(link);
        await waitForText(page, '#source .cm-line', "a = 'ü");
        assert.equal(await page.inputValue('#language'), 'octave');
        assert.equal((await page.textContent('#rules .cm-content'))!.trim(), '# none');
        for (const damaged of ['#code=AAAA', '#code=%%', '#plain=e30']) {
            await page.goto(link.replace(/#.*/, damaged));
            await waitForText(page, '#notice', 'damaged');
        }
        await page.goto(
            link.replace(/#.*/, `#plain=${Buffer.from('{"text":"b = 2;"}').toString('base64url')}`),
        );
        await waitForText(page, '#host .cm-line', 'b := 2;');
    }),
);

test('a pasted text of 10 MB leaves the page usable', { skip }, () =>
    withPage(async (page) => {
        const line = 'value = value + 12345; % a line of some length\n';
        await paste(page, 'source', line.repeat(Math.ceil(1e7 / line.length)));
        const longest = await watchPauses(page);
        await page.waitForTimeout(1500);
        await page.keyboard.type('% typed at once');
        assert.ok((await longest()) < 2000, `the page did nothing else for ${await longest()} ms`);
        await paste(page, 'source', 'after = 1;\n');
        await waitForText(page, '#host .cm-line', 'after := 1;', 60_000);
    }),
);

test('NUL, CR and deep nesting are told or translated', { skip }, () =>
    withPage(async (page) => {
        await paste(page, 'source', 'a = 1;\rb = 2;\r\nc = 3;');
        await waitForText(page, '#host .cm-line', 'c := 3;');
        assert.equal(await page.locator('#host .cm-line', { hasText: ':=' }).count(), 3);
        await paste(page, 'source', 'd = 4;\0');
        await waitForText(page, '#counts', 'error');
        await paste(page, 'source', `e = ${'('.repeat(1e5)}1${')'.repeat(1e5)};`);
        await waitForText(page, '#counts', 'error');
        await paste(page, 'source', 'f = 5;');
        await waitForText(page, '#host .cm-line', 'f := 5;');
        assert.equal(await page.textContent('#counts'), 'none');
    }),
);

test('neither the page nor its worker can connect, even to its own server', { skip }, () =>
    withPage(
        async (page) => {
            await waitForText(page, '#time', 'ms');
            const connect = (url: string): Promise<string> =>
                fetch(url, { mode: 'no-cors' }).then(
                    () => 'connected',
                    () => 'refused',
                );
            assert.equal(await page.evaluate(connect, addresses.server()), 'refused');
            assert.equal(await page.workers()[0]!.evaluate(connect, addresses.server()), 'refused');
        },
        addresses.server(),
        {},
        /Content Security Policy/,
    ),
);

test('a worker that is lost is told, and the next one translates', { skip }, () =>
    withPage(async (page) => {
        await waitForText(page, '#time', 'ms');
        await page.workers()[0]!.evaluate(
            () =>
                void setTimeout(() => {
                    throw new Error('no memory');
                }),
        );
        await waitForText(page, '#messages li', 'begins anew');
        await paste(page, 'source', 'g = 6;');
        await waitForText(page, '#host .cm-line', 'g := 6;');
    }),
);

test('a browser in which no worker can begin is told so once', { skip }, () =>
    withPage(
        async (page) => {
            await waitForText(page, '#messages li', 'was lost');
            await page.waitForTimeout(300);
            assert.ok((await page.evaluate(() => (window as unknown as { begun: number }).begun)) <= 3);
        },
        addresses.disk(),
        {},
        /^$/,
        () => {
            const { Worker } = window;
            let begun = 0;
            window.Worker = class extends Worker {
                constructor() {
                    super(URL.createObjectURL(new Blob(["throw new Error('no WebAssembly')"])));
                    Object.assign(window, { begun: ++begun });
                }
            };
        },
    ),
);

test('a thousand lines are translated while one types', { skip }, (context) =>
    withPage(async (page) => {
        const block = 'for k = 1:n\n  x(k) = a*k^2 + b; % sum\nend\nif x(1) > 2, y = [1 2 3]; end\n';
        await paste(page, 'source', block.repeat(250));
        await waitForText(page, '#time', 'ms');
        const times: number[] = [];
        for (let i = 0; i < 8; i++) {
            await page.keyboard.type('%');
            await page.waitForTimeout(150);
            times.push(Number(/\d+/.exec((await page.textContent('#time'))!)![0]));
        }
        context.diagnostic(`1,000 lines in ${times.join(', ')} ms`);
        assert.ok(Math.min(...times) < 100, times.join(' '));
    }),
);
