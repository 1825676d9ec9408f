/* The entry for node. */
import { readFile } from 'node:fs/promises';
import { load as loadAny, type Wasm } from './browser.js';
import type { Translator } from './translator.js';

export * from './types.js';
export { Translator } from './translator.js';
export type { Wasm } from './browser.js';

/** Makes a translator. wasm: by default mtranslate.wasm beside this file. Rejects where the module
 * cannot be loaded. */
export async function load(wasm: Wasm = new URL('./mtranslate.wasm', import.meta.url)): Promise<Translator> {
    const isFile = wasm instanceof URL && wasm.protocol === 'file:';
    return loadAny(isFile ? await readFile(wasm) : wasm);
}
