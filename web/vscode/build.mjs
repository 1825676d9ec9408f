/* Makes dist: the extension, and the language server as it is built in ../server. */
import { build } from 'esbuild';
import { copyFileSync, cpSync, rmSync, writeFileSync } from 'node:fs';

rmSync('dist', { recursive: true, force: true });
await build({
    entryPoints: ['src/extension.ts'],
    outdir: 'dist',
    bundle: true,
    platform: 'node',
    format: 'cjs',
    target: 'node18',
    external: ['vscode'],
    minify: true,
    logLevel: 'warning',
});
cpSync('../server/dist', 'dist/server', { recursive: true });
writeFileSync('dist/server/package.json', '{"type": "module"}\n');
copyFileSync('../../LICENSE', 'LICENSE');
