/* Makes dist/index.html: the page with all that it needs in it. */
import { createHash } from 'node:crypto';
import { mkdirSync, readFileSync, readdirSync, statSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { deflateRawSync } from 'node:zlib';
import { build } from 'esbuild';
import { noticesOf } from '../notices.mjs';

const here = import.meta.dirname ?? new URL('.', import.meta.url).pathname;
const project = join(here, '../..');
const read = (...path) => readFileSync(join(project, ...path), 'utf8');
const packed = (bytes) => deflateRawSync(bytes, { level: 9 }).toString('base64');
const hashOf = (text) => `'sha256-${createHash('sha256').update(text).digest('base64')}'`;

/** Paths of all that is in the scripts, from the working folder on. */
const bundled = new Set();

async function script(file) {
    const { outputFiles, metafile } = await build({
        entryPoints: [join(here, 'src', file)],
        bundle: true,
        minify: !process.env.PLAIN,
        format: 'iife',
        target: 'es2022',
        write: false,
        metafile: true,
        // The page gives the module; nothing is looked for beside the script.
        define: { 'import.meta.url': '"about:blank"' },
        legalComments: 'none',
        charset: 'utf8',
    });
    for (const input of Object.keys(metafile.inputs)) bundled.add(input);
    return outputFiles[0].text.replaceAll('</script', '<\\/script');
}

/** A text with its marks (@NAME@) replaced. */
const filled = (text, values) => text.replace(/@([A-Z]+)@/g, (mark, name) => values[name] ?? mark);

/** The page of a report, as cli/report/forms/report_page.cc fills it. */
function reportPage() {
    const part = (name) => read('cli/report/page', name);
    const names = ['elements', 'tables', 'places', 'call_graph', 'source_view', 'files', 'views'];
    const page = filled(part('page.html'), {
        STYLE: part('palette.css') + part('page.css'),
        UNPACK: part('unpack.js'),
        SCRIPTS: names.map((name) => `${part(`${name}.js`)}\n`).join(''),
    });
    const [head, rest] = page.split('@REPORT@');
    const [middle, tail] = rest.split('@TEXTS@');
    return { head, middle, tail };
}

/** The scripts and styles of a page that a browser runs. */
function inlined(page) {
    const all = (pattern) => [...page.matchAll(pattern)].map(([, text]) => hashOf(text)).join(' ');
    return { scripts: all(/<script>([^]*?)<\/script>/g), styles: all(/<style>([^]*?)<\/style>/g) };
}

function sourcesIn(folder) {
    const files = {};
    for (const name of readdirSync(join(project, folder), { recursive: true }).sort())
        if (name.endsWith('.m')) files[name] = read(folder, name);
    return files;
}

function examples() {
    const found = [];
    for (const name of readdirSync(join(project, 'examples')).sort()) {
        const path = join('examples', name);
        if (name.endsWith('.m')) found.push({ name: name.slice(0, -2), files: { [name]: read(path) } });
        else if (statSync(join(project, path)).isDirectory()) found.push({ name, files: sourcesIn(path) });
    }
    const migration = found.find(({ name }) => name === 'migration');
    migration.rules = read('examples/migration/host.toml');
    return found.filter(({ files }) => Object.keys(files).length > 0);
}

const report = reportPage();
const parts = JSON.stringify({ worker: await script('worker.ts'), report, examples: examples() });
const template = read('web/page/src/page.html');
const values = {
    STYLE: read('cli/report/page/palette.css') + read('web/page/src/page.css'),
    MODULE: packed(readFileSync(join(project, 'web/package/dist/mtranslate.wasm'))),
    PARTS: packed(Buffer.from(parts)),
    SCRIPT: await script('main.ts'),
};
values.LICENSES = noticesOf(process.cwd(), [...bundled]);
const own = inlined(filled(template, { STYLE: values.STYLE, SCRIPT: values.SCRIPT }));
const framed = inlined(report.head + report.middle + report.tail);
const policy = [
    "default-src 'none'",
    `script-src ${own.scripts} ${framed.scripts} 'wasm-unsafe-eval'`,
    `style-src ${own.styles} ${framed.styles}`,
    'worker-src blob:',
    'img-src data:',
    "connect-src 'none'",
    "base-uri 'none'",
    "form-action 'none'",
].join('; ');
mkdirSync(join(here, 'dist'), { recursive: true });
writeFileSync(join(here, 'dist/index.html'), filled(template, { ...values, POLICY: policy }));
