/* By keyboard and screen reader, in light and dark, on a telephone. */
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import type { AxeResults } from 'axe-core';
import type { Page } from 'playwright-core';
import { paste, skip, useBrowser, waitForText, withPage } from './browser.js';

const axe = readFileSync(new URL('../../node_modules/axe-core/axe.min.js', import.meta.url), 'utf8');

useBrowser();

/** The findings that keep people out, with their elements. */
async function findings(page: Page): Promise<string[]> {
    const found: string[] = [];
    for (const frame of page.frames()) {
        await frame.evaluate(axe);
        const { violations } = await frame.evaluate(() =>
            (window as unknown as { axe: { run(options: object): Promise<AxeResults> } }).axe.run({
                iframes: false,
            }),
        );
        for (const { id, impact, nodes } of violations)
            if (impact === 'serious' || impact === 'critical')
                found.push(
                    `${id}: ${nodes.map((node) => `${node.target.join(' ')} ${node.failureSummary}`).join(', ')}`,
                );
    }
    return found;
}

const GAPS =
    "function y = f(x)\n% a comment\nhold on\ny = eval(x) + missing(x, 'a');\nend\nif s == 'abc', y = 1; end\n";

for (const colorScheme of ['light', 'dark'] as const)
    test(`axe has no serious findings, ${colorScheme}`, { skip }, () =>
        withPage(
            async (page) => {
                await page.getByRole('button', { name: 'Rules' }).click();
                await paste(page, 'rules', '[names]\nrate = "r" # a rate\n');
                await paste(page, 'source', GAPS);
                await waitForText(page, '#messages li', 'MT204');
                await page.locator('#source .cm-token-comment').first().waitFor();
                assert.deepEqual(await findings(page), []);
                await page.getByRole('button', { name: 'Explain MT204' }).click();
                assert.deepEqual(await findings(page), []);
                await page.keyboard.press('Escape');
                await page.selectOption('#examples', 'newton');
                await page.frameLocator('#report iframe').getByRole('heading', { name: '5 files' }).waitFor();
                assert.deepEqual(await findings(page), []);
            },
            undefined,
            { colorScheme },
        ),
    );

test('the page is used by keyboard alone', { skip }, () =>
    withPage(async (page) => {
        await paste(page, 'source', 'a = 1;\nb = eval(x);\n');
        await waitForText(page, '#messages li', 'MT204');
        const focused = () =>
            page.evaluate(() => {
                const active = document.activeElement;
                const inner = active?.shadowRoot?.activeElement ?? active;
                return inner?.getAttribute('aria-label') ?? inner?.id ?? '';
            });
        const tabs = async (count: number): Promise<string[]> => {
            const reached: string[] = [];
            for (let i = 0; i < count; i++) {
                await page.keyboard.press('Tab');
                reached.push(await focused());
            }
            return reached;
        };
        await page.locator('#skip').focus();
        assert.deepEqual(await tabs(13), [
            ...['language', 'examples', 'rules-button', 'open-files', 'open-folder', 'link-button'],
            ...['MATLAB source', 'copy', 'save', 'Translation, read only', 'messages'],
            ...['2:5, go to line 2, column 5', 'Explain MT204'],
        ]);
        await page.keyboard.press('Enter');
        await page.getByRole('dialog', { name: 'MT204 eval' }).waitFor();
        await page.keyboard.press('Escape');
        assert.equal(await focused(), 'Explain MT204');
        await page.locator('#skip').focus();
        await page.keyboard.press('Enter');
        assert.equal(await focused(), 'MATLAB source');
        await page.keyboard.press('F8');
        await page
            .locator('#source .cm-tooltip', { hasText: 'MT204' })
            .or(page.locator('#source .cm-joined', { hasText: 'eval' }))
            .first()
            .waitFor();
    }),
);

test('a narrow screen shows all without scrolling sideways', { skip }, () =>
    withPage(
        async (page) => {
            await paste(page, 'source', GAPS);
            await waitForText(page, '#messages li', 'MT204');
            const wide = () => page.evaluate(() => document.documentElement.scrollWidth - innerWidth);
            assert.ok((await wide()) <= 0);
            await page.selectOption('#examples', 'newton');
            await page.frameLocator('#report iframe').getByRole('heading', { name: '5 files' }).waitFor();
            assert.ok((await wide()) <= 0);
        },
        undefined,
        { viewport: { width: 390, height: 844 }, isMobile: true, hasTouch: true },
    ),
);
