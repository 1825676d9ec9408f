#!/usr/bin/env node
/* mtranslate-language-server: the protocol on standard input and output. */
import { existsSync, readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { fileURLToPath } from 'node:url';
import { createConnection } from 'vscode-languageserver/node.js';
import { CheckedReader } from './reader.js';
import { Server } from './server.js';
import { OwingWriter } from './writer.js';

declare const VERSION: string;

/** What has been read is answered after the end of the input, for so many milliseconds. */
const LONGEST_END = 2000;

if (process.argv.includes('--version')) {
    console.log(VERSION);
    process.exit(0);
}

function modulePath(): string {
    const beside = fileURLToPath(new URL('./mtranslate.wasm', import.meta.url));
    return existsSync(beside) ? beside : createRequire(import.meta.url).resolve('mtranslate/mtranslate.wasm');
}

// Nothing but messages goes to standard output.
console.log = console.info = console.debug = console.error;

const writer = new OwingWriter(process.stdout);
const reader = new CheckedReader(process.stdin, {
    refuse: (id, code, message) => {
        const refusal = { jsonrpc: '2.0', id, error: { code, message } };
        writer.write(refusal).catch(() => {});
    },
    taken: (message) => writer.owe(message),
    ended: () => void writer.settled(LONGEST_END).then(() => process.exit(reader.isDown ? 0 : 1)),
});
process.stdout.on('error', () => {}); // nobody reads on: the end of the input ends the server
process.on('uncaughtException', (error) => console.error(error));
process.on('unhandledRejection', (error) => console.error(error));

const connection = createConnection(reader, writer);
new Server(connection, await WebAssembly.compile(readFileSync(modulePath())));
connection.listen();
