/* The library's functions for JavaScript. */
import { checkedAnswer, checkOptions, checkRequest, isText } from './checks.js';
import { failedReport } from './failed_report.js';
import { LostInstance, Module, toBytes, toText, type Asked, type Output } from './module.js';
import {
    RulesError,
    type FileReport,
    type Files,
    type MessageKind,
    type Options,
    type Question,
    type ReportHead,
    type ReportOptions,
    type Request,
    type Result,
    type RulesText,
    type Search,
    type Status,
    type Text,
    type TreeOptions,
    type TreeOutput,
} from './types.js';

const WITHOUT_TRANSLATOR = 2;
const FLAGS = {
    displays: 4,
    details: 8,
    tree: 16,
    values: 32,
    texts: 64,
    pieces: 128,
    outline: 256,
    onlyRead: 512,
    libraryApart: 1024,
    wholeLibrary: 2048,
    countsOn: 4096,
    tokens: 8192,
} as const;
const RESULT_KINDS = ['unknown', 'number', 'truth', 'text', 'cell', 'record', 'several'];
const LONGEST_BLOCK = 16; // milliseconds that a tree takes from the page at a time

function flagsOf(options: Options): number {
    let flags = options.translator === false ? WITHOUT_TRANSLATOR : 0;
    for (const [name, flag] of Object.entries(FLAGS)) if (options[name as keyof typeof FLAGS]) flags |= flag;
    return flags;
}

/** "a/b.m" for "./a//c/../b.m". */
function shortest(path: string): string {
    const parts: string[] = [];
    for (const part of path.split('/')) {
        if (part === '' || part === '.') continue;
        if (part === '..' && parts.length > 0 && parts.at(-1) !== '..') parts.pop();
        else parts.push(part);
    }
    return (path.startsWith('/') ? '/' : '') + parts.join('/');
}

type FileMap = ReadonlyMap<string, Text>;

function mapOf(files: Files | undefined): FileMap {
    const all = files instanceof Map ? files : Object.entries((files ?? {}) as Record<string, Text>);
    const map = new Map([...all].map(([path, text]) => [shortest(path), text]));
    for (const [path, text] of map)
        if (!isText(text)) throw new TypeError(`the file '${path}' is neither a string nor a Uint8Array`);
    return map;
}

/** Whether the library has to see the file when it looks into folders, for which it asks nobody. */
const isInClassOrPackage = (path: string): boolean => /(^|\/)[@+]/.test(path);

const orNone = <Answer>(answer: Answer | null | undefined): Answer | undefined => answer ?? undefined;

function questionsOf(options: Options, files: FileMap): Asked {
    const { read, answer, find, resultKind } = options;
    const kindOf = (name: string): string | undefined => {
        const kind = checkedAnswer('resultKind', resultKind?.(name));
        const number = RESULT_KINDS.indexOf(kind ?? '');
        return number < 0 ? undefined : String(number);
    };
    // ORDER QUESTIONS
    return [
        (path: string) => files.get(path) ?? checkedAnswer('read', read?.(path)),
        (question: Question) => orNone(checkedAnswer('answer', answer?.(question))),
        (search: Search) => orNone(checkedAnswer('find', find?.(search))),
        kindOf,
    ] as Asked;
}

function rulesOf({ rules = '', rulesName = 'rules' }: Pick<Options, 'rules' | 'rulesName'>): RulesText[] {
    if (typeof rules === 'string') return [{ name: rulesName, text: rules }];
    return rules.map(({ name, text }) => ({ name, text }));
}

interface Program {
    text?: Text;
    file?: string;
    files: FileMap;
    options: Options;
    index?: number;
    /** Where the translation will be, for a report. */
    output?: string;
}

function requestOf(program: Program): { json: object; texts: Uint8Array[] } {
    const { options, files, file } = program;
    const names = [...files.keys()].filter(isInClassOrPackage);
    const sources = names.map((name) => toBytes(files.get(name)!));
    const command = program.text === undefined ? [] : [toBytes(program.text)];
    const json = {
        ...(file === undefined ? { commandLength: command[0]!.length } : { file: shortest(file) }),
        ...(program.index === undefined ? {} : { index: program.index }),
        ...(program.output === undefined ? {} : { output: program.output }),
        language: options.language ?? 'matlab',
        flags: flagsOf(options),
        folders: options.folders ?? [],
        looksInFolders: options.folders !== undefined && options.folders.length > 0,
        maxMemory: options.maxMemory ?? 0,
        rules: rulesOf(options),
        sources: names,
        lengths: sources.map((source) => source.length),
        asks: {
            read: files.size > 0 || options.read !== undefined,
            answer: options.answer !== undefined,
            find: options.find !== undefined,
            resultKind: options.resultKind !== undefined,
        },
    };
    return { json, texts: [...command, ...sources] };
}

function resultWithout(status: Status, failure: string): Result {
    return {
        status,
        failure,
        text: '',
        bytes: new Uint8Array(),
        messages: [],
        files: [],
        end: null,
        needsLibrary: false,
        pieces: [],
        functions: [],
        statements: [],
        calls: [],
        names: [],
        comments: [],
        tokens: [],
        statistics: null,
        tree: null,
        values: null,
        rules: { used: [], unanswered: [] },
        report: null,
    };
}

function resultOf(output: Output): Result {
    const json = output.json as Omit<Result, 'text' | 'bytes'> & { error?: string; message: string };
    if (json.error === 'rules') throw new RulesError(json.message);
    if (json.error === 'no-memory') return resultWithout('no-memory', json.message);
    if (json.error !== undefined) throw new TypeError(json.message);
    return { ...json, text: toText(output.bytes), bytes: output.bytes };
}

function run(module: Module, program: Program): Result {
    const { json, texts } = requestOf(program);
    const asked = questionsOf(program.options, program.files);
    try {
        return resultOf(module.call('module_translate', json, texts, asked));
    } catch (error) {
        if (!(error instanceof LostInstance)) throw error;
        return resultWithout('no-memory', `memory or stack exhausted: ${error.message}`);
    }
}

/** The files of a folder that are translated: *.m, but hidden ones. */
const isTranslated = (path: string): boolean => path.endsWith('.m') && !/(^|\/)\./.test(path);

const outputOf = (path: string, suffix: string): string => path.replace(/\.m$/, '') + suffix;

/** The files of a tree with the index of what their names mean. */
class Tree {
    readonly names: string[];
    readonly #module: Module;
    #index = 0;
    #generation = 0;

    constructor(
        compiled: WebAssembly.Module,
        readonly files: FileMap,
        readonly options: TreeOptions,
    ) {
        this.#module = new Module(compiled);
        this.names = this.#makeIndex();
    }

    #makeIndex(): string[] {
        const paths = [...this.files.keys()].filter(isTranslated);
        const { names, index } = this.#module.call('module_make_index', paths).json as {
            names: string[];
            index: number;
        };
        this.#index = index;
        this.#generation = this.#module.generation;
        return names;
    }

    translate(file: string, output: string): Result {
        const program = {
            file,
            files: this.files,
            options: this.#wanted,
            ...(this.options.report ? { output } : {}),
        };
        if (this.options.closure) return run(this.#module, program);
        if (this.#generation !== this.#module.generation) this.#makeIndex();
        const result = run(this.#module, {
            ...program,
            options: { ...this.#wanted, libraryApart: true },
            index: this.#index,
        });
        if (this.options.language !== 'classic') this.#module.forgetLarge();
        return result;
    }

    get #wanted(): Options {
        return { ...this.options, countsOn: true };
    }

    library(): Result {
        return run(this.#module, { text: '', files: new Map(), options: { wholeLibrary: true } });
    }
}

export class Translator {
    readonly #module: Module;
    #kinds: MessageKind[] | null = null;

    /** Instances of the module are made when they are needed. */
    constructor(compiled: WebAssembly.Module) {
        this.#module = new Module(compiled);
    }

    /** Whatever is wrong with a source is told in the result. Throws RulesError for mistakes in the
     * rules, TypeError for a request that makes no sense, and what a callback has thrown. */
    translate(request: Request): Result {
        checkRequest(request);
        const { text, file, files, ...options } = request;
        if (text !== undefined && toBytes(text).includes(0))
            throw new TypeError('a text holds no NUL: give it as a file');
        if (this.#module.isInCall) return resultWithout('refused', 'a translation is already running');
        const program: Program = { files: mapOf(files), options };
        if (text !== undefined) program.text = text;
        if (file !== undefined) program.file = file;
        const result = run(this.#module, program);
        if (!options.countsOn) this.#module.forgetLarge();
        return result;
    }

    /** Translates the files *.m, each for itself, as the tool does a folder; files are not read from
     * anywhere else but by `read`. Gives way to other work between files. */
    async *translateTree(files: Files, options: TreeOptions = {}): AsyncGenerator<TreeOutput, void> {
        checkOptions(options);
        const tree = new Tree(this.#module.compiled, mapOf(files), options);
        const { suffix = '.txt', signal } = options;
        const library = `qxrp_library${suffix}`;
        const owners = new Map<string, string>(options.closure ? [] : [[library, 'the library']]);
        const count = tree.names.length;
        let needsLibrary = false;
        let since = Date.now();
        for (const [at, file] of tree.names.entries()) {
            signal?.throwIfAborted();
            const output = outputOf(file, suffix);
            const owner = owners.get(output);
            owners.set(output, owner ?? file);
            const result = owner
                ? resultWithout('invalid', `its output '${output}' is that of '${owner}'`)
                : tree.translate(file, output);
            if (options.report) result.report ??= failedReport(file, result.failure ?? '');
            needsLibrary ||= result.needsLibrary;
            yield { file, output, result, done: at + 1, count };
            if (Date.now() - since < LONGEST_BLOCK) continue;
            await new Promise((resolve) => setTimeout(resolve));
            since = Date.now();
        }
        if (needsLibrary) yield { file: null, output: library, result: tree.library(), done: count, count };
    }

    /** The report of a tree but for its files. files: the reports of the results of translateTree. */
    report(files: readonly FileReport[], options: ReportOptions = {}): ReportHead {
        const { interrupted = false } = options;
        const output = this.#module.call('module_report', { files, rules: rulesOf(options), interrupted });
        const json = output.json as ReportHead & { error?: string; message: string };
        if (json.error === 'rules') throw new RulesError(json.message);
        if (json.error !== undefined) throw new TypeError(json.message);
        return json;
    }

    /** All kinds of messages, by their codes. */
    messageKinds(): readonly MessageKind[] {
        this.#kinds ??= this.#module.call('module_message_kinds').json as MessageKind[];
        return this.#kinds;
    }

    /** What a code ("MT201", in any case) or a name ("try-catch") means. */
    explain(codeOrName: string): MessageKind | undefined {
        return this.messageKinds().find(
            (kind) => kind.code === codeOrName.toUpperCase() || kind.name === codeOrName,
        );
    }

    /** Of the library. */
    get version(): string {
        return this.#module.call('module_version').json as string;
    }
}
