#!/usr/bin/env node
/* mtranslate-language-server: the protocol on standard input and output. */
import { existsSync, readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { fileURLToPath } from 'node:url';
import { StreamMessageWriter, createConnection, type MessageWriter } from 'vscode-languageserver/node.js';
import { CheckedReader } from './reader.js';
import { Server } from './server.js';

declare const VERSION: string;

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

const writer: MessageWriter = new StreamMessageWriter(process.stdout);
const send = (message: object): void => void writer.write(message as never).catch(() => {});
const reader = new CheckedReader(process.stdin, (id, code, message) =>
    send({ jsonrpc: '2.0', id, error: { code, message } }),
);
process.stdout.on('error', () => {}); // nobody reads on: the end of the input ends the server
process.on('uncaughtException', (error) => console.error(error));
process.on('unhandledRejection', (error) => console.error(error));

const connection = createConnection(reader, writer);
reader.onClose(() => process.exit(reader.isDown ? 0 : 1));
new Server(connection, await WebAssembly.compile(readFileSync(modulePath())));
connection.listen();
