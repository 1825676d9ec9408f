/* Makes a picture of the page: node picture.mjs FILE */
import { statSync } from 'node:fs';
import { chromium } from 'playwright-core';

const [, , file] = process.argv;
const source = `% Heat that is left in a rod, step by step.
function u = cool(n, steps)
    u = zeros(1, n);
    u(round(n/2)) = 1;        % the middle is hot
    for k = 1:steps
        u(2:end-1) = u(2:end-1) + 0.2*diff(u, 2);
    end
    if max(u) < threshold('low')
        warning('nothing is left');
    end
end
`;
const executablePath = process.env.CHROMIUM ?? '/usr/bin/chromium';
const browser = await chromium.launch({ executablePath, args: ['--no-sandbox'] });
const page = await browser.newPage({ viewport: { width: 1280, height: 720 } });
await page.goto(new URL('dist/index.html', import.meta.url).href);
await page.locator('#host .cm-line', { hasText: ':=' }).first().waitFor();
await page.locator('#source .cm-content').click();
await page.keyboard.press('Control+a');
await page.keyboard.insertText(source);
await page.locator('#host .cm-line', { hasText: 'cool' }).first().waitFor();
await page.locator('#source .cm-token-comment').first().waitFor();
await page.keyboard.press('Control+Home');
await page.waitForTimeout(300);
await page.locator('#source .cm-line', { hasText: 'for k' }).click();
await page.waitForTimeout(300);
await page.screenshot({ path: file });
await browser.close();
if (statSync(file).size >= 200_000) throw new Error(`${file} has 200 KB or more`);
