/* test/build.mjs TESTS FOLDER: makes the tests, each in one file, in FOLDER. */
import { readdirSync } from 'node:fs';
import { fileURLToPath } from 'node:url';
import { build } from 'esbuild';

const [tests, outdir] = process.argv.slice(2);
await build({
    entryPoints: readdirSync(tests)
        .filter((name) => name.endsWith('.test.ts'))
        .map((name) => `${tests}/${name}`),
    outdir,
    bundle: true,
    platform: 'node',
    format: 'esm',
    target: 'node18',
    outExtension: { '.js': '.mjs' },
    banner: {
        js: "import { createRequire as bundled } from 'node:module'; const require = bundled(import.meta.url);",
    },
    // What the editor brings along.
    alias: { vscode: fileURLToPath(new URL('../../vscode/test/stand_in.ts', import.meta.url)) },
    logLevel: 'warning',
});
