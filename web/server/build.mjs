/* Makes dist: the server and its thread, each in one file, with the module and the page about messages.
 * An argument names another folder. */
import { build } from 'esbuild';
import { copyFileSync, readFileSync, writeFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { noticesOf } from '../notices.mjs';

const { resolve } = createRequire(import.meta.url);
const { version } = JSON.parse(readFileSync('package.json', 'utf8'));
const outdir = process.argv[2] ?? 'dist';
const { metafile } = await build({
    entryPoints: ['src/main.ts', 'src/worker.ts'],
    outdir,
    bundle: true,
    platform: 'node',
    format: 'esm',
    target: 'node18',
    // What is no ES module requires those of node.
    banner: {
        js: "import { createRequire as bundled } from 'node:module'; const require = bundled(import.meta.url);",
    },
    metafile: true,
    define: { VERSION: JSON.stringify(version) },
    logLevel: 'warning',
});
for (const [from, to] of [
    [resolve('mtranslate/mtranslate.wasm'), 'mtranslate.wasm'],
    ['../../docs/messages.md', 'messages.md'],
    ['../../LICENSE', 'LICENSE'],
])
    copyFileSync(from, `${outdir}/${to}`);
writeFileSync(`${outdir}/THIRD_PARTY_NOTICES`, noticesOf(process.cwd(), Object.keys(metafile.inputs)));
