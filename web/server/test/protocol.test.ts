/* Bytes that are no messages, and messages that make no sense: errors of the protocol, and no end. */
import assert from 'node:assert/strict';
import { spawn, type ChildProcess } from 'node:child_process';
import { after, test } from 'node:test';
import { Client, SERVER, makeFolder, withClient } from './client.js';

const frame = (body: unknown): string => {
    const text = typeof body === 'string' ? body : JSON.stringify(body);
    return `Content-Length: ${Buffer.byteLength(text)}\r\n\r\n${text}`;
};
const request = (id: number, method: string, params: unknown = {}): object => ({
    jsonrpc: '2.0',
    id,
    method,
    params,
});
/** What makes no sense in it is passed over. */
const INITIALIZE = frame(
    request(1, 'initialize', {
        processId: null,
        capabilities: {},
        rootUri: null,
        workspaceFolders: [{}, { uri: 'untitled:a' }],
        initializationOptions: {
            rules: ['file://elsewhere/a.toml'],
            folders: [3],
            language: 'klingon',
            debounce: -1,
        },
    }),
);

const A = { textDocument: { uri: 'file:///a.m' } };

/** A server that is written to byte by byte. */
class Raw {
    readonly process: ChildProcess = spawn(process.execPath, [SERVER], { stdio: ['pipe', 'pipe', 'ignore'] });
    readonly answers: any[] = [];
    #rest = Buffer.alloc(0);
    #wake = (): void => {};

    constructor() {
        after(() => this.process.kill());
        this.process.stdout!.on('data', (bytes: Buffer) => {
            this.#rest = Buffer.concat([this.#rest, bytes]);
            for (;;) {
                const head = /^Content-Length: (\d+)\r\n\r\n/.exec(this.#rest.toString('latin1', 0, 100));
                const end = head ? head[0].length + Number(head[1]) : Infinity;
                if (this.#rest.length < end) break;
                this.answers.push(JSON.parse(this.#rest.toString('utf8', head![0].length, end)));
                this.#rest = this.#rest.subarray(end);
            }
            this.#wake();
        });
    }

    write(text: string | Uint8Array): void {
        this.process.stdin!.write(text);
    }

    async answer(isRight: (answer: any) => boolean): Promise<any> {
        for (;;) {
            const found = this.answers.find(isRight);
            if (found) return found;
            assert.equal(this.process.exitCode, null, 'the server goes on');
            await new Promise<void>((resolve) => (this.#wake = resolve));
        }
    }

    exit(): Promise<number | null> {
        return new Promise((resolve) => this.process.on('close', resolve));
    }
}

test('what is no message, followed by one', async () => {
    const rows: [what: string, bytes: string | Uint8Array, code: number | null][] = [
        ['garbage', 'hello\r\n\r\n', -32700],
        ['bytes', Uint8Array.from({ length: 10000 }, (_, i) => (i * 7919) & 255), -32700],
        ['a header without a number', 'Content-Length: many\r\n\r\n', -32700],
        ['a negative length', 'Content-Length: -5\r\n\r\n', -32700],
        ['a huge length', 'Content-Length: 99999999999999999999\r\n\r\n', -32700],
        ['half a message', 'Content-Length: 100\r\n\r\n{"jsonrpc": "2.0", "id"', -32700],
        [
            'a huge message of which little comes',
            'Content-Length: 200000000\r\n\r\n{"jsonrpc": "2.0", "id"',
            -32700,
        ],
        ['no JSON', frame('{"jsonrpc": '), -32700],
        ['invalid UTF-8', Buffer.from('Content-Length: 4\r\n\r\n"\xff\xfe"', 'latin1'), -32600],
        ['an empty message', frame(''), -32700],
        ['a number', frame(5), -32600],
        ['null', frame('null'), -32600],
        ['a batch', frame([request(7, 'shutdown')]), -32600],
        ['no method', frame({ jsonrpc: '2.0', id: 8 }), -32600],
        ['a method that is no text', frame({ jsonrpc: '2.0', id: 9, method: 3 }), -32600],
        [
            'params that are none',
            frame({ jsonrpc: '2.0', id: 10, method: 'textDocument/hover', params: 3 }),
            -32602,
        ],
        ['a hover without a document', frame(request(11, 'textDocument/hover')), -32602],
        [
            'a position that is none',
            frame(
                request(12, 'textDocument/hover', {
                    textDocument: { uri: 'file:///a.m' },
                    position: { line: -1, character: 'x' },
                }),
            ),
            -32602,
        ],
        ['an unknown method', frame(request(13, 'textDocument/unheardOf')), -32601],
        ['a second initialize', INITIALIZE.replace('"id":1', '"id":2'), -32600],
        ['an unknown command', frame(request(14, 'workspace/executeCommand', { command: 'rm' })), -32602],
        [
            'a header in small letters',
            frame(request(16, 'mtranslate/unheardOf')).replace('Content', 'content'),
            -32601,
        ],
        ['a cancellation of nothing', frame({ jsonrpc: '2.0', method: '$/cancelRequest', params: {} }), null],
        ['a hover without a position', frame(request(17, 'textDocument/hover', A)), -32602],
        ['actions without a range', frame(request(18, 'textDocument/codeAction', A)), -32602],
        ['an answer to nothing', frame({ jsonrpc: '2.0', id: 99, result: null }), null],
        ['an unknown notification', frame({ jsonrpc: '2.0', method: 'unheardOf' }), null],
        [
            'a document that is none',
            frame({ jsonrpc: '2.0', method: 'textDocument/didOpen', params: { textDocument: {} } }),
            null,
        ],
        [
            'a change of what is not open',
            frame({
                jsonrpc: '2.0',
                method: 'textDocument/didChange',
                params: { textDocument: { uri: 'file:///b.m', version: 3 }, contentChanges: [{ text: '' }] },
            }),
            null,
        ],
        [
            'other fields of a header',
            `Content-Type: application/json\r\n${frame(request(15, 'mtranslate/unheardOf'))}`,
            -32601,
        ],
    ];
    const server = new Raw();
    server.write(frame(request(0, 'textDocument/hover')));
    assert.equal((await server.answer(({ id }) => id === 0)).error.code, -32002);
    server.write(INITIALIZE);
    assert.ok((await server.answer(({ id }) => id === 1)).result.capabilities.hoverProvider);
    let next = 1000;
    for (const [what, bytes, code] of rows) {
        const before = server.answers.length;
        server.write(bytes);
        server.write(frame(request(++next, 'workspace/symbol', { query: what })));
        assert.deepEqual((await server.answer(({ id }) => id === next)).result, [], what);
        const errors = server.answers.slice(before).filter(({ error }) => error);
        assert.deepEqual(
            errors.map(({ error }) => error.code),
            code === null ? [] : [code],
            what,
        );
    }
    // Byte by byte.
    for (const byte of Buffer.from(frame(request(++next, 'workspace/symbol', { query: 'bytes' }))))
        server.write(Uint8Array.of(byte));
    await server.answer(({ id }) => id === next);
    server.write(frame(request(++next, 'shutdown', null)));
    await server.answer(({ id }) => id === next);
    server.write(frame(request(++next, 'workspace/symbol', { query: '' })));
    assert.equal((await server.answer(({ id }) => id === next)).error.code, -32600);
    const ended = server.exit();
    server.write(frame({ jsonrpc: '2.0', method: 'exit' }));
    assert.equal(await ended, 0);
});

test('the end of the input, and an output that nobody reads', async () => {
    const asked = frame(request(2, 'workspace/symbol', { query: '' }));
    const rows: [input: string, code: number, answers: (number | string)[]][] = [
        ['', 1, []],
        ['garbage', 1, [-32700]],
        ['Content-Length: 2\r\n\r\n{}', 1, [-32600]],
        ['Content-Length: 30\r\n\r\n{"half', 1, [-32700]],
        [INITIALIZE + asked, 1, ['1', '2']],
        [INITIALIZE + frame(request(2, 'shutdown', null)), 0, ['1', '2']],
    ];
    for (const [input, code, answers] of rows) {
        const server = new Raw();
        const ended = server.exit();
        server.process.stdin!.end(input);
        assert.equal(await ended, code, input);
        const told = server.answers.filter(({ method }) => method === undefined);
        assert.deepEqual(
            told.map(({ id, error }) => error?.code ?? `${id}`),
            answers,
            input,
        );
    }
    const server = new Raw();
    server.write(INITIALIZE);
    await server.answer(({ id }) => id === 1);
    server.process.stdout!.destroy();
    for (let i = 2; i < 20; ++i) server.write(frame(request(i, 'workspace/symbol', { query: '' })));
    await new Promise((resolve) => setTimeout(resolve, 200));
    assert.equal(server.process.exitCode, null);
    const ended = server.exit();
    server.process.stdin!.end();
    assert.equal(await ended, 1);
});

test('files that are no texts as they should be', async () => {
    const bytes = (text: string): Uint8Array => Buffer.from(text, 'latin1');
    const files = {
        'invalid.m': bytes("function y = invalid(x)\n% \xff\xe9\ny = '\xff';\n"),
        'nul.m': bytes('function y = nul(x)\ny = 1;\0\0\n'),
        'cr.m': 'function y = cr(x)\r% Help of it.\ry = x;\r',
        'mark.m': '\ufefffunction y = mark(x)\ny = x;\n',
        'empty.m': '',
        'folder.m/inner.m': 'function inner\n',
    };
    const text = 'a = invalid(1) + nul(2) + cr(3) + mark(4);\nempty\nfolder(5);\n';
    await withClient(files, async (client) => {
        await client.open('a.m', text);
        await client.has('a.m', 'MT401');
        const lines = text.split('\n')[0]!;
        for (const [name, at] of [
            ['invalid', 13],
            ['nul', 13],
            ['cr', 13],
            ['mark', 13],
        ] as const) {
            const found = await client.ask('textDocument/definition', 'a.m', {
                position: { line: 0, character: lines.indexOf(name) },
            });
            assert.deepEqual(
                [found.uri, found.range.start],
                [client.uri(`${name}.m`), { line: 0, character: at }],
            );
        }
        const hover = await client.ask('textDocument/hover', 'a.m', {
            position: { line: 0, character: lines.indexOf('cr(') },
        });
        assert.match(hover.contents.value, /Help of it\./);
        const opened = 'x = 1;\rz = 2;\ry = nowhere(\u{10ffff}\0);\r\n\ufffd = (';
        await client.open('b.m', opened);
        const diagnostics = await client.messages('b.m');
        assert.ok(diagnostics.length > 0 && diagnostics.every(({ range }) => range.start.line >= 2));
        for (const method of ['documentSymbol', 'foldingRange', 'semanticTokens/full', 'codeLens'])
            await client.ask(`textDocument/${method}`, 'b.m');
        await client.ask('textDocument/hover', 'b.m', { position: { line: 1000, character: 1000 } });
        assert.equal(await client.ask('mtranslate/translation', 'absent.m'), null);
    });
});

test('a translation that needs too much memory', async () => {
    const client = new Client(makeFolder({}));
    await client.start({ options: { maxMemory: 4 } });
    await client.open('a.m', `x = [${'1 2 3;'.repeat(200000)}];`);
    assert.match((await client.messages('a.m'))[0]!.message, /memory/);
    await client.change('a.m', { text: 'y = nowhere(1);' });
    await client.has('a.m', 'MT401');
    await client.stop();
});
