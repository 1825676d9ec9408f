/* A thread that is cancelled, or lost: what waits is answered, and the next job gets a new one. */
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { CancellationTokenSource } from 'vscode-languageserver-protocol/node.js';
import { TranslatorThread } from '../src/thread.js';
import { makeFolder } from './client.js';

/** Does with each job what the job says, and answers what it has been told before. */
const SCRIPT = `
import { parentPort } from 'node:worker_threads';
const told = [];
parentPort.on('message', ({ id, params, state }) => {
    told.push(state.forget ? 'forget' : state.files ? 'all' : 'nothing');
    if (params === 'throw') throw new Error('thrown');
    if (params === 'exit') process.exit(3);
    if (params === 'memory') for (const all = []; ; ) all.push(new Array(1e6).fill(told.length));
    if (params === 'late') for (;;);
    parentPort.postMessage({ id, result: told });
});
`;

test('threads that are lost, or given up', async () => {
    const script = pathToFileURL(join(makeFolder({}), 'worker.mjs'));
    writeFileSync(script, SCRIPT);
    const rows: [params: string, error: RegExp][] = [
        ['throw', /given up: thrown/],
        ['exit', /given up: exit 3/],
        ['memory', /given up: .*memory/],
        ['late', /cancelled/],
    ];
    const alive = setInterval(() => {}, 1000); // threads alone keep no process going
    for (const [params, error] of rows) {
        const options = {
            script,
            data: null,
            whole: () => ({ files: [] }),
            log: () => {},
            stopsCancelled: true,
        };
        const thread = new TranslatorThread(options, 64);
        const tokens = [new CancellationTokenSource(), new CancellationTokenSource()];
        const [bad, waiting, next] = [
            thread.ask('hover', params, tokens[0]!.token),
            thread.ask('hover', '', tokens[1]!.token),
            thread.ask('hover', ''),
        ].map((job) =>
            job.then(
                (told) => told as unknown,
                (refused: Error) => refused.message,
            ),
        );
        tokens[1]!.cancel();
        if (params === 'late') tokens[0]!.cancel();
        assert.match(String(await bad), error);
        assert.deepEqual([await waiting, await next], ['cancelled', ['all']], params);
        thread.tell({ forget: true });
        assert.deepEqual(await thread.ask('hover', ''), ['all', 'forget']);
        thread.stopRunning();
    }
    clearInterval(alive);
});
