/* The page in headless Chromium, from the disk and from a server. What it asks for is listened to. */
import assert from 'node:assert/strict';
import { existsSync } from 'node:fs';
import { readFile } from 'node:fs/promises';
import { createServer, type Server } from 'node:http';
import type { AddressInfo } from 'node:net';
import { after, before } from 'node:test';
import { fileURLToPath, pathToFileURL } from 'node:url';
import { chromium, type Browser, type BrowserContextOptions, type Page } from 'playwright-core';

export const PROJECT = fileURLToPath(new URL('../../../..', import.meta.url));
const FILE = fileURLToPath(new URL('../index.html', import.meta.url));
const CHROMIUM = process.env['CHROMIUM'] ?? '/usr/bin/chromium';

/** Why the tests are left out, or false. */
export const skip = existsSync(CHROMIUM) ? false : 'there is no chromium';

let browser: Browser;
let server: Server;

async function start(): Promise<void> {
    browser = await chromium.launch({ executablePath: CHROMIUM, args: ['--no-sandbox'] });
    server = createServer((request, response) => {
        const isPage = request.url === '/' || request.url === '/index.html';
        response.writeHead(isPage ? 200 : 404, { 'Content-Type': 'text/html; charset=utf-8' });
        void readFile(FILE).then((page) => response.end(isPage ? page : ''));
    });
    await new Promise<void>((resolve) => server.listen(0, '127.0.0.1', resolve));
}

async function stop(): Promise<void> {
    await browser.close();
    server.close();
}

/** Begins the browser before the tests of a file, and ends it after them. */
export function useBrowser(): void {
    if (skip !== false) return;
    before(start);
    after(stop);
}

export const addresses = {
    disk: (): string => pathToFileURL(FILE).href,
    server: (): string => `http://127.0.0.1:${(server.address() as AddressInfo).port}/`,
};

/** Runs work with the page. It may ask for nothing but itself, and complain of nothing else. */
export async function withPage(
    work: (page: Page) => Promise<void>,
    address = addresses.disk(),
    options: BrowserContextOptions = {},
    complaints = /^$/,
    /** Runs in the page before it begins. */
    first = (): void => {},
): Promise<void> {
    const context = await browser.newContext({ viewport: { width: 1280, height: 860 }, ...options });
    const page = await context.newPage();
    await page.addInitScript(first);
    const asked: string[] = [];
    const said: string[] = [];
    context.on('request', (request) => asked.push(request.url()));
    page.on('console', (message) => said.push(message.text()));
    page.on('pageerror', (error) => said.push(error.message));
    try {
        await page.goto(address);
        await page.locator('#examples option').nth(1).waitFor({ state: 'attached' });
        await work(page);
        const own = address.replace(/#.*/, '');
        const others = asked.filter((url) => url.replace(/#.*/, '') !== own && !/^(blob|data):/.test(url));
        assert.deepEqual(others, []);
        assert.deepEqual(
            said.filter((text) => !complaints.test(text)),
            [],
        );
    } finally {
        await context.close();
    }
}

export const sourceOf = (page: Page) => page.locator('#source .cm-content');
export const hostOf = (page: Page) => page.locator('#host .cm-content');

/** Puts a text in the place of what an editor has, as pasting does. */
export async function paste(page: Page, pane: 'source' | 'rules', text: string): Promise<void> {
    const editor = page.locator(`#${pane} .cm-content`);
    await editor.focus();
    await page.keyboard.press('Control+a');
    await editor.evaluate((element, pasted) => {
        const clipboardData = new DataTransfer();
        clipboardData.setData('text/plain', pasted);
        element.dispatchEvent(
            new ClipboardEvent('paste', { clipboardData, bubbles: true, cancelable: true }),
        );
    }, text);
}

/** Waits until an element holds the text. */
export async function waitForText(
    page: Page,
    selector: string,
    text: string | RegExp,
    timeout = 20_000,
): Promise<void> {
    await page.locator(selector).filter({ hasText: text }).first().waitFor({ timeout });
}

/** Begins to measure how long the page did nothing else; the longest such time, in milliseconds. */
export async function watchPauses(page: Page): Promise<() => Promise<number>> {
    await page.evaluate(() => {
        const watch = { last: performance.now(), longest: 0 };
        Object.assign(window, { watch });
        setInterval(() => {
            const now = performance.now();
            watch.longest = Math.max(watch.longest, now - watch.last);
            watch.last = now;
        }, 10);
    });
    return () => page.evaluate(() => (window as unknown as { watch: { longest: number } }).watch.longest);
}
