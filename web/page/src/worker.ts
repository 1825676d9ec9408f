/* The worker: hears what the page wants, and answers. */
import { load, type Translator } from 'mtranslate';
import type { FromWorker, ToWorker } from './protocol.js';
import { tokensOf, translated } from './text_work.js';
import { TreeWork } from './tree_work.js';

const tell = (news: FromWorker, transfer: Transferable[] = []): void =>
    (self as unknown as Worker).postMessage(news, transfer);

let translator: Promise<Translator>;
let tree: TreeWork | undefined;

async function start(module: ArrayBuffer): Promise<void> {
    translator = load(module);
    const { version } = await translator;
    tell({ kind: 'ready', version, kinds: (await translator).messageKinds() });
}

async function answerText(wanted: Extract<ToWorker, { kind: 'text' }>): Promise<void> {
    const { turn, text } = wanted;
    const answer = translated(await translator, turn, text, wanted);
    tell(answer, [answer.pieces.buffer]);
    const tokens = tokensOf(await translator, text, wanted);
    tell({ kind: 'tokens', turn, tokens }, [tokens.buffer]);
}

async function answerTree({ files, page, ...wanted }: Extract<ToWorker, { kind: 'tree' }>): Promise<void> {
    tree = new TreeWork(await translator, tell);
    try {
        tell(await tree.run(files, page, wanted));
    } catch (error) {
        tell({ kind: 'failed', text: error instanceof Error ? error.message : String(error) });
    }
}

async function answer(message: ToWorker): Promise<void> {
    if (message.kind === 'start') await start(message.module);
    else if (message.kind === 'text') await answerText(message);
    else if (message.kind === 'tree') await answerTree(message);
    else if (message.kind === 'stop') tree?.stop();
    else if (tree) tell({ kind: 'zip', zip: await tree.zip() });
}

self.onmessage = ({ data }: MessageEvent<ToWorker>) => {
    // Thrown outside of the promise, so that the page hears of it.
    answer(data).catch((error: unknown) =>
        setTimeout(() => {
            throw error;
        }),
    );
};
