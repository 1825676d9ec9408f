/* What the user sets, and what a tree's own mtranslate.toml does to it. */
import { isAbsolute, join, normalize, relative } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parse } from 'smol-toml';
import type { Language, RulesText } from 'mtranslate';
import { stampOf, textOf } from './disk.js';
import { folderOf } from './file_index.js';

export interface Settings {
    language: Language | null;
    /** Files with rules, the later ones before the earlier. */
    rules: string[];
    /** Folders besides those of the workspace in which functions are looked for. */
    folders: string[];
    /** Of a translation, in MB; 0: by the length of its source. */
    maxMemory: number;
    /** Patterns of messages, as the tool's -W has them. */
    messages: string[];
    /** No file mtranslate.toml is read. */
    untrusted: boolean;
    /** The client's command that a code lens runs. */
    translationCommand: string;
    debounce: number;
}

export const DEFAULTS: Settings = {
    language: null,
    rules: [],
    folders: [],
    maxMemory: 0,
    messages: [],
    untrusted: false,
    translationCommand: 'mtranslate.translation',
    debounce: 150,
};

export const CONFIGURATION = 'mtranslate.toml';
const LANGUAGES = ['matlab', 'octave', 'classic'];

export const isLanguage = (value: unknown): value is Language =>
    typeof value === 'string' && LANGUAGES.includes(value);
const textsOf = (value: unknown): string[] | null =>
    Array.isArray(value) && value.every((text) => typeof text === 'string') ? value : null;
const sizeOf = (value: unknown): number | null =>
    typeof value === 'number' && Number.isInteger(value) && value >= 0 && value <= 1048576 ? value : null;

/** A path as a setting has it: absolute, from the workspace folder, or an address. */
export function resolvePath(path: string, folder: string | null): string {
    if (path.startsWith('file://')) return fileURLToPath(path);
    return normalize(isAbsolute(path) || folder === null ? path : join(folder, path));
}

/** What of the value makes sense, over what there is; tells of what makes none. */
export function mergeSettings(
    to: Settings,
    value: unknown,
    folder: string | null,
    complain: (text: string) => void,
): Settings {
    if (typeof value !== 'object' || value === null) return to;
    const given = value as Record<string, unknown>;
    const merged = { ...to };
    const take = <Key extends keyof Settings>(
        key: Key,
        read: (value: unknown) => Settings[Key] | null,
    ): void => {
        if (given[key] === undefined || given[key] === null) return;
        const taken = read(given[key]);
        if (taken === null) complain(`the setting '${key}' makes no sense: ${JSON.stringify(given[key])}`);
        else merged[key] = taken;
    };
    const paths = (value: unknown): string[] | null => {
        try {
            return textsOf(value)?.map((path) => resolvePath(path, folder)) ?? null;
        } catch {
            return null; // an address that is none of this machine
        }
    };
    take('language', (value) => (isLanguage(value) ? value : null));
    take('rules', paths);
    take('folders', paths);
    take('maxMemory', sizeOf);
    take('messages', textsOf);
    take('untrusted', (value) => (typeof value === 'boolean' ? value : null));
    take('translationCommand', (value) => (typeof value === 'string' ? value : null));
    take('debounce', sizeOf);
    return merged;
}

/** What a source is translated with. */
export interface Configuration {
    language: Language;
    rules: RulesText[];
    messages: string[];
    maxMemory: number;
    /** Of the tree's own file. */
    include: string[];
    exclude: string[];
}

/** What a mtranslate.toml says of it. */
interface OwnOptions {
    language?: Language;
    rules?: string[];
    messages?: string[];
    include?: string[];
    exclude?: string[];
}

interface Read {
    stamp: string;
    text: string | null;
}

/** Texts of the disk, read again when they have changed. */
class Files {
    readonly #known = new Map<string, Read>();

    /** Null where there is none that can be read. */
    text(path: string): string | null {
        const stamp = stampOf(path);
        const known = this.#known.get(path);
        if (known?.stamp === stamp) return known.text;
        const read = { stamp, text: textOf(path) ?? null };
        this.#known.set(path, read);
        return read.text;
    }
}

/** The text without its table of options, which stand in no rules; lines stay where they are. */
function withoutOptions(text: string): string {
    let inOptions = false;
    return text
        .split('\n')
        .map((line) => {
            if (/^\s*\[/.test(line) && !/^\s*\[[^\]=]*,/.test(line))
                inOptions = /^\s*\[\s*options\b/.test(line);
            return inOptions ? '' : line;
        })
        .join('\n');
}

const isWithin = (folder: string, path: string): boolean => {
    const below = relative(folder, path);
    return below !== '' && !below.startsWith('..') && !isAbsolute(below);
};

export class Configurations {
    readonly #files = new Files();
    /** Of workspaces; a configuration around them is none of theirs. */
    folders: string[] = [];
    settings: Settings = DEFAULTS;

    /** The nearest mtranslate.toml of a source, in its folder or around it. */
    fileFor(path: string): string | null {
        if (this.settings.untrusted) return null;
        const root = this.folders.find((folder) => isWithin(folder, path));
        if (root === undefined) return null;
        for (let folder = folderOf(path); ; folder = folderOf(folder)) {
            const file = join(folder, CONFIGURATION);
            if (this.#files.text(file) !== null) return file;
            if (folder === root || folder === '') return null;
        }
    }

    for(path: string): Configuration {
        const file = this.fileFor(path);
        const own: OwnOptions = file === null ? {} : this.#options(file);
        const names = [...(own.rules ?? []), ...(file === null ? [] : [file]), ...this.settings.rules];
        const rules: RulesText[] = [];
        for (const name of new Set(names)) {
            const text = this.#files.text(name);
            if (text !== null) rules.push({ name, text: name === file ? withoutOptions(text) : text });
        }
        return {
            language: this.settings.language ?? own.language ?? 'matlab',
            rules,
            messages: [...(own.messages ?? []), ...this.settings.messages],
            maxMemory: this.settings.maxMemory,
            include: own.include ?? [],
            exclude: own.exclude ?? [],
        };
    }

    /** Those that the tool lets a tree decide, and that mean something here. */
    #options(file: string): OwnOptions {
        let options: Record<string, unknown>;
        try {
            options = (parse(this.#files.text(file) ?? '')['options'] ?? {}) as Record<string, unknown>;
        } catch {
            return {}; // what is wrong with it, its rules tell
        }
        const folder = folderOf(file);
        const paths = (value: unknown): string[] =>
            (textsOf(value) ?? []).map((path) => normalize(join(folder, path)));
        return {
            ...(isLanguage(options['language']) ? { language: options['language'] } : {}),
            rules: paths(options['rules']).filter((path) => isWithin(folder, path)),
            messages: textsOf(options['messages']) ?? [],
            include: paths(options['include']),
            exclude: textsOf(options['exclude']) ?? [],
        };
    }
}
