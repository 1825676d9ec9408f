/* Makes dist: the extension, and the language server as it is built in ../server. */
import { build } from 'esbuild';
import { copyFileSync, cpSync, rmSync, writeFileSync } from 'node:fs';
import { noticesOf } from '../notices.mjs';

rmSync('dist', { recursive: true, force: true });
const { metafile } = await build({
    entryPoints: ['src/extension.ts'],
    outdir: 'dist',
    bundle: true,
    platform: 'node',
    format: 'cjs',
    target: 'node18',
    external: ['vscode'],
    minify: true,
    metafile: true,
    logLevel: 'warning',
});
cpSync('../server/dist', 'dist/server', { recursive: true });
writeFileSync('dist/server/package.json', '{"type": "module"}\n');
copyFileSync('../../LICENSE', 'LICENSE');
writeFileSync('dist/THIRD_PARTY_NOTICES', noticesOf(process.cwd(), Object.keys(metafile.inputs)));
