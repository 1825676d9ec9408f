/* The entry for browsers, on a page or in a worker. */
import { Translator } from './translator.js';

export * from './types.js';
export { Translator } from './translator.js';

/** The module: by default mtranslate.wasm beside this file. */
export type Wasm = WebAssembly.Module | BufferSource | Response | URL | string;

async function compile(wasm: Wasm): Promise<WebAssembly.Module> {
    if (wasm instanceof WebAssembly.Module) return wasm;
    if (wasm instanceof ArrayBuffer || ArrayBuffer.isView(wasm)) return WebAssembly.compile(wasm);
    const response = wasm instanceof Response ? wasm : await fetch(wasm);
    if (!response.ok) throw new Error(`cannot load ${response.url}: ${response.status}`);
    return WebAssembly.compile(await response.arrayBuffer());
}

/** Makes a translator. Rejects where the module cannot be loaded. */
export async function load(wasm: Wasm = new URL('./mtranslate.wasm', import.meta.url)): Promise<Translator> {
    return new Translator(await compile(wasm));
}
