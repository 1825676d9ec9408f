/* Serves the page to this machine: node serve.mjs PORT */
import { readFile } from 'node:fs/promises';
import { createServer } from 'node:http';

const page = new URL('dist/index.html', import.meta.url);
const server = createServer(async ({ url = '' }, response) => {
    const isPage = /^\/(index\.html)?(\?.*)?$/.test(url);
    response.writeHead(isPage ? 200 : 404, { 'Content-Type': 'text/html; charset=utf-8' });
    response.end(isPage ? await readFile(page) : '');
});
server.on('error', (error) => {
    console.error(`scripts/page: ${error.message}`);
    process.exitCode = 1;
});
server.listen(Number(process.argv[2]), '127.0.0.1', () =>
    console.log(`http://127.0.0.1:${server.address().port}/ (until Ctrl-C)`),
);
