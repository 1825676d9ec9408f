/* A client of the protocol, and workspaces for it. */
import { spawn, type ChildProcess } from 'node:child_process';
import { existsSync, mkdirSync, mkdtempSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { after } from 'node:test';
import { pathToFileURL } from 'node:url';
import {
    StreamMessageReader,
    StreamMessageWriter,
    createProtocolConnection,
    type Diagnostic,
    type ProtocolConnection,
    type PublishDiagnosticsParams,
} from 'vscode-languageserver-protocol/node.js';

export const SERVER = process.env['MTRANSLATE_SERVER'] ?? join(process.cwd(), 'dist/main.js');

const LONGEST_WAIT = 20_000;

export type Files = Record<string, string | Uint8Array>;

/** A new folder with the files. */
export function makeFolder(files: Files): string {
    const folder = mkdtempSync(join(tmpdir(), 'mtranslate-'));
    for (const [path, text] of Object.entries(files)) {
        mkdirSync(dirname(join(folder, path)), { recursive: true });
        writeFileSync(join(folder, path), text);
    }
    return folder;
}

/** Where the first mark @ stands, and the text without it. */
export function marked(text: string): { text: string; position: { line: number; character: number } } {
    const at = text.indexOf('@');
    const lines = text.slice(0, at).split('\n');
    const position = { line: lines.length - 1, character: lines.at(-1)!.length };
    return { text: text.slice(0, at) + text.slice(at + 1), position };
}

export const CAN_EVERYTHING = {
    workspace: {
        configuration: true,
        didChangeWatchedFiles: { dynamicRegistration: true },
        workspaceEdit: { documentChanges: true, resourceOperations: ['create', 'rename', 'delete'] },
    },
};

interface Wanted {
    capabilities?: object;
    options?: object;
    /** Answers of workspace/configuration. */
    settings?: object | null;
}

export class Client {
    readonly process: ChildProcess;
    readonly connection: ProtocolConnection;
    /** Of each address, the last ones. */
    readonly diagnostics = new Map<string, PublishDiagnosticsParams>();
    settings: object | null = null;
    #waiting: (() => void)[] = [];
    #versions = new Map<string, number>();

    constructor(readonly folder: string) {
        this.process = spawn(process.execPath, [SERVER], { stdio: ['pipe', 'pipe', 'inherit'] });
        after(() => this.process.kill());
        this.connection = createProtocolConnection(
            new StreamMessageReader(this.process.stdout!),
            new StreamMessageWriter(this.process.stdin!),
        );
        this.connection.onNotification(
            'textDocument/publishDiagnostics',
            (params: PublishDiagnosticsParams) => {
                this.diagnostics.set(params.uri, params);
                this.#waiting.splice(0).forEach((wake) => wake());
            },
        );
        this.connection.onRequest('workspace/configuration', () => [this.settings]);
        this.connection.onRequest('client/registerCapability', () => null);
        this.connection.listen();
    }

    async start({ capabilities = CAN_EVERYTHING, options, settings = null }: Wanted = {}): Promise<unknown> {
        this.settings = settings;
        const answer = await this.connection.sendRequest('initialize', {
            processId: process.pid,
            capabilities,
            rootUri: pathToFileURL(this.folder).href,
            initializationOptions: options,
        });
        await this.connection.sendNotification('initialized', {});
        return answer;
    }

    uri(path: string): string {
        return pathToFileURL(join(this.folder, path)).href;
    }

    async open(path: string, text: string): Promise<void> {
        const uri = this.uri(path);
        this.#versions.set(path, 1);
        await this.connection.sendNotification('textDocument/didOpen', {
            textDocument: { uri, languageId: 'matlab', version: 1, text },
        });
    }

    async change(path: string, ...contentChanges: object[]): Promise<number> {
        const version = this.#versions.get(path)! + 1;
        this.#versions.set(path, version);
        await this.connection.sendNotification('textDocument/didChange', {
            textDocument: { uri: this.uri(path), version },
            contentChanges,
        });
        return version;
    }

    async close(path: string): Promise<void> {
        await this.connection.sendNotification('textDocument/didClose', {
            textDocument: { uri: this.uri(path) },
        });
    }

    /** Those that the test is true for, as soon as there are such. */
    async messages(
        path: string,
        isRight: (params: PublishDiagnosticsParams) => boolean = () => true,
    ): Promise<Diagnostic[]> {
        for (;;) {
            const params = this.diagnostics.get(this.uri(path));
            if (params && isRight(params)) return params.diagnostics;
            await new Promise<void>((resolve, reject) => {
                const late = () =>
                    reject(new Error(`the last messages of ${path}: ${JSON.stringify(params)}`));
                const timer = setTimeout(late, LONGEST_WAIT);
                this.#waiting.push(() => (clearTimeout(timer), resolve()));
            });
        }
    }

    /** As soon as these are their codes, with commas between them; "none" for one without. */
    has(path: string, codes: string): Promise<Diagnostic[]> {
        return this.messages(
            path,
            ({ diagnostics }) => diagnostics.map(({ code = 'none' }) => code).join(',') === codes,
        );
    }

    /** Another program writes the file, or removes it, and the editor tells. */
    async write(path: string, text: string | null): Promise<void> {
        const file = join(this.folder, path);
        const type = text === null ? 3 : existsSync(file) ? 2 : 1;
        if (text === null) rmSync(file);
        else writeFileSync(file, text);
        const changes = [{ uri: this.uri(path), type }];
        await this.connection.sendNotification('workspace/didChangeWatchedFiles', { changes });
    }

    ask<Answer = any>(method: string, path: string, params: object = {}): Promise<Answer> {
        return this.connection.sendRequest(method, { textDocument: { uri: this.uri(path) }, ...params });
    }

    /** Ends the server; answers its exit code. */
    async stop(): Promise<number | null> {
        const ended = new Promise<number | null>((resolve) => this.process.on('exit', resolve));
        await this.connection.sendRequest('shutdown');
        await this.connection.sendNotification('exit');
        const code = await ended;
        this.connection.dispose();
        rmSync(this.folder, { recursive: true, force: true });
        return code;
    }
}

export async function withClient(
    files: Files,
    work: (client: Client) => Promise<void>,
    wanted: Wanted = {},
): Promise<void> {
    const client = new Client(makeFolder(files));
    try {
        await client.start(wanted);
        await work(client);
        await client.stop();
    } finally {
        client.process.kill();
    }
}
