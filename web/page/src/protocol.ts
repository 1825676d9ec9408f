/* What the page and its worker tell each other. */
import type { Language, MessageKind, Severity } from 'mtranslate';

/** The page of a report, in the pieces between which the report and the texts of its files go. */
export interface ReportPage {
    head: string;
    middle: string;
    tail: string;
}

export interface Wanted {
    language: Language;
    /** TOML. */
    rules: string;
}

export interface NamedFile {
    /** With slashes. */
    path: string;
    content: Blob;
}

export type ToWorker =
    | { kind: 'start'; module: ArrayBuffer }
    | ({ kind: 'text'; turn: number; text: string } & Wanted)
    | ({ kind: 'tree'; files: NamedFile[]; page: ReportPage } & Wanted)
    | { kind: 'stop' }
    | { kind: 'zip' };

/** Places are offsets in the text in units of UTF-16; lines count from 1, columns from 1. */
export interface ShownMessage {
    severity: Severity;
    /** Empty for what ended the run. */
    code: string;
    text: string;
    help: string;
    from: number;
    to: number;
    line: number;
    column: number;
}

export interface Translated {
    kind: 'text';
    turn: number;
    /** Null where there is none. */
    text: string | null;
    /** The first of them, and how many there are of each severity. */
    messages: ShownMessage[];
    counts: Record<Severity, number>;
    /** For each piece its first and last line in the source, and in the translation; none for a large
     * text. */
    pieces: Uint32Array;
    /** Mistakes in the rules, a line each, with their places; null for none. */
    mistakes: string | null;
    /** In milliseconds. */
    time: number;
    isLarge: boolean;
}

export interface TreeDone {
    kind: 'tree';
    /** The report's page. */
    report: Blob;
    translated: number;
    isStopped: boolean;
    /** Files that could not be read. */
    unread: string[];
}

export type FromWorker =
    | { kind: 'ready'; version: string; kinds: readonly MessageKind[] }
    | Translated
    /** For each token its kind, as a place in TOKEN_KINDS, begin and end. */
    | { kind: 'tokens'; turn: number; tokens: Uint32Array }
    | { kind: 'progress'; done: number; count: number; file: string }
    | TreeDone
    | { kind: 'zip'; zip: Blob }
    /** Nothing came of the tree. */
    | { kind: 'failed'; text: string };

export const TOKEN_KINDS = [
    'name',
    'number',
    'text',
    'keyword',
    'operator',
    'bracket',
    'separator',
    'comment',
    'field',
    'command',
    'bad',
] as const;
