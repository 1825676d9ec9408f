/* The thread that translates: takes what has changed, and one job after another. */
import { parentPort, workerData } from 'node:worker_threads';
import { Translator } from 'mtranslate';
import { FileIndex } from './file_index.js';
import { codeActions } from './features/actions.js';
import { completion, completionResolve } from './features/completion.js';
import { diagnosticsOf } from './features/diagnostics.js';
import { foldingRanges } from './features/folding.js';
import { hover } from './features/hover.js';
import { definition, highlights, references } from './features/references.js';
import { prepareRename, rename } from './features/rename.js';
import { signatureHelp } from './features/signature.js';
import { documentSymbols, workspaceSymbols } from './features/symbols.js';
import { semanticTokens } from './features/tokens.js';
import { codeLenses, translation } from './features/translation.js';
import { INTERNAL_ERROR, Refusal } from './refusal.js';
import { Service, type Client, type OpenText } from './service.js';
import type { Settings } from './settings.js';

const JOBS = {
    diagnostics: (service: Service, { path }: { path: string }) => diagnosticsOf(service, path),
    codeActions,
    codeLenses,
    completion,
    completionResolve,
    definition,
    documentSymbols,
    foldingRanges,
    highlights,
    hover,
    prepareRename,
    references,
    rename,
    semanticTokens,
    signatureHelp,
    translation,
    /** Makes the next translation as fast as those after it. */
    warmUp: ({ translator }: Service) => void translator.translate({ text: 'x = f(1)', details: true }),
    workspaceSymbols,
} as const;

export type Jobs = typeof JOBS;
export type JobName = keyof Jobs;

/** What a thread has to know before the next job; only what has changed. */
export interface State {
    opened?: OpenText[];
    closed?: string[];
    files?: string[];
    folders?: string[];
    settings?: Settings;
    client?: Client;
    /** Files of the disk have changed. */
    forget?: boolean;
}

export interface Job {
    id: number;
    name: JobName;
    params: unknown;
    state: State;
}

export interface Done {
    id: number;
    result?: unknown;
    error?: { code: number; message: string };
}

export interface WorkerData {
    wasm: WebAssembly.Module;
}

function take(service: Service, state: State): void {
    for (const path of state.closed ?? []) service.open.delete(path);
    for (const open of state.opened ?? []) {
        service.open.set(open.path, open);
        service.changed(open);
    }
    if (state.files) service.index = new FileIndex(state.files);
    if (state.folders) service.configurations.folders = state.folders;
    if (state.settings) service.configurations.settings = state.settings;
    if (state.client) service.client = state.client;
    if (state.forget || state.closed || state.files || state.folders || state.settings) service.forget();
}

function errorOf(error: unknown): NonNullable<Done['error']> {
    const code = error instanceof Refusal ? error.code : INTERNAL_ERROR;
    return { code, message: error instanceof Error ? error.message : String(error) };
}

const service = new Service(new Translator((workerData as WorkerData).wasm));

parentPort!.on('message', ({ id, name, params, state }: Job) => {
    let done: Done;
    try {
        take(service, state);
        const job = JOBS[name] as (service: Service, params: never) => unknown;
        done = { id, result: job(service, params as never) };
    } catch (error) {
        done = { id, error: errorOf(error) };
    }
    parentPort!.postMessage(done);
});
