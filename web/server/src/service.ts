/* The sources and their analyses, in the thread that translates. */
import { pathToFileURL } from 'node:url';
import { RulesError, type Result, type RulesText, type Token, type Translator } from 'mtranslate';
import { Analysis } from './analysis.js';
import { stampOf, textOf } from './disk.js';
import { FileIndex, folderOf } from './file_index.js';
import { Policy } from './policy.js';
import { Configurations, type Configuration } from './settings.js';
import { Source, type Encoding } from './source.js';

const MANY = 64; // analyses that are kept of files that are not open
/** Names, statements and pieces of longer sources would take too much memory. */
const LONGEST_WITH_DETAILS = 1 << 20;

export interface OpenText {
    path: string;
    uri: string;
    version: number;
    text: string;
}

export interface Client {
    encoding: Encoding;
    canRenameFiles: boolean;
    canCreateFiles: boolean;
    readsMarkdown: boolean;
    nestsSymbols: boolean;
    /** Parameters of signatures are marked by offsets, not by their texts. */
    marksByOffset: boolean;
    /** Of the page about messages. */
    messagesPage: string | null;
}

interface Kept {
    stamp: string;
    analysis: Analysis;
}

export class Service {
    readonly configurations = new Configurations();
    readonly open = new Map<string, OpenText>();
    index = new FileIndex([]);
    client: Client = {
        encoding: 'utf-16',
        canRenameFiles: false,
        canCreateFiles: false,
        readsMarkdown: true,
        nestsSymbols: true,
        marksByOffset: false,
        messagesPage: null,
    };
    /** Mistakes in rules of the last translation. */
    rulesMistakes: string | null = null;
    readonly #kept = new Map<string, Kept>();
    readonly #rules = new Map<string, RulesText[]>();
    #generation = 0;

    constructor(readonly translator: Translator) {}

    /** After changes of files, settings or rules nothing that is known holds. */
    forget(): void {
        ++this.#generation;
        this.#kept.clear();
    }

    /** What is known of files that read it holds no more. */
    changed({ path }: OpenText): void {
        for (const [other, { analysis }] of this.#kept)
            if (analysis.reads.has(path)) this.#kept.delete(other);
    }

    uriOf(path: string): string {
        return this.open.get(path)?.uri ?? pathToFileURL(path).href;
    }

    /** The text that the editor has, or else that of the disk; null where there is none. */
    text(path: string): string | null {
        return this.#read(path) ?? null;
    }

    /** The same; null where the file cannot be read, undefined where there is none. */
    #read(path: string): string | null | undefined {
        const open = this.open.get(path);
        if (open) return open.text;
        return textOf(path);
    }

    #stampOf(path: string): string {
        const open = this.open.get(path);
        if (open) return `open ${open.version} ${this.#generation}`;
        return `${stampOf(path)} ${this.#generation}`;
    }

    /** Null where there is no such file. Those that another thread has changed are read anew. */
    analysis(path: string): Analysis | null {
        const stamp = this.#stampOf(path);
        const kept = this.#kept.get(path);
        this.#kept.delete(path);
        // A document that is opened again counts its versions anew.
        const text = this.open.get(path)?.text ?? kept?.analysis.source.text;
        const isKept = kept?.stamp === stamp && kept.analysis.source.text === text;
        const analysis = isKept ? kept.analysis : this.#analyse(path);
        if (!analysis) return null;
        this.#kept.set(path, { stamp, analysis });
        this.#forgetOldest();
        return analysis;
    }

    #forgetOldest(): void {
        for (const path of this.#kept.keys()) {
            if (this.#kept.size <= MANY + this.open.size) return;
            if (!this.open.has(path)) this.#kept.delete(path);
        }
    }

    #analyse(path: string): Analysis | null {
        const text = this.text(path);
        if (text === null) return null;
        const { uri, version } = this.open.get(path) ?? { uri: this.uriOf(path), version: null };
        const source = new Source(path, uri, version, text, this.client.encoding);
        const configuration = this.configurations.for(path);
        const details = text.length <= LONGEST_WITH_DETAILS && configuration.language !== 'classic';
        const reads = new Set<string>();
        const result = this.#translate(path, text, configuration, { details, libraryApart: true }, reads);
        const policy = new Policy(configuration.messages, this.translator.messageKinds());
        const messages = policy.wanted(result.messages, (file) =>
            file === path ? text : this.text(file ?? path),
        );
        return new Analysis(source, result, messages, details, reads);
    }

    #translate(
        path: string,
        text: string,
        configuration: Configuration,
        options: { details?: boolean; libraryApart?: boolean; closure?: boolean },
        reads = new Set<string>(),
    ): Result {
        const { closure, ...flags } = options;
        const classic = configuration.language === 'classic';
        const read = (name: string): string | null | undefined => {
            if (name === path) return text;
            const other = this.#read(name);
            if (other !== undefined) reads.add(name);
            return other;
        };
        const others = [...this.configurations.settings.folders, ...configuration.include];
        const request = {
            file: path,
            read,
            ...(others.length > 0 ? { folders: [folderOf(path), ...others] } : {}),
            language: configuration.language,
            ...(configuration.maxMemory > 0 ? { maxMemory: configuration.maxMemory } : {}),
            ...(classic ? {} : flags),
            ...(closure || classic ? {} : { find: this.index.answer.bind(this.index) }),
        };
        const run = (rules: RulesText[]): Result => this.translator.translate({ ...request, rules });
        const key = JSON.stringify(configuration.rules.map(({ name }) => name));
        try {
            const result = run(configuration.rules);
            this.#rules.set(key, configuration.rules);
            this.rulesMistakes = null;
            return result;
        } catch (error) {
            if (!(error instanceof RulesError)) throw error;
            this.rulesMistakes = error.message;
            return run(this.#rules.get(key) ?? []); // those before the mistake
        }
    }

    /** For colours. */
    tokens({ path, text }: Source): Token[] {
        const { language } = this.configurations.for(path);
        if (language === 'classic' || text.length > LONGEST_WITH_DETAILS) return [];
        return this.translator.translate({
            files: { [path]: text },
            file: path,
            language,
            tokens: true,
            onlyRead: true,
        }).tokens;
    }

    /** As the tool prints it for a single file: with all that it calls. */
    whole(path: string): Result | null {
        const text = this.text(path);
        if (text === null) return null;
        return this.#translate(path, text, this.configurations.for(path), { closure: true, details: true });
    }
}
