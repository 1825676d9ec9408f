/* What goes in and what comes out. Offsets are in bytes from 0, lines and columns from 1; ends are not
 * included. docs/program-interface.md says what the fields mean. */

/** Of a source: a string, or its bytes where it may be no UTF-8. */
export type Text = string | Uint8Array;

/** Sources by their paths, with slashes: `{'main.m': ..., 'lib/@point/move.m': ...}`. */
export type Files = Readonly<Record<string, Text>> | ReadonlyMap<string, Text>;

export type Language = 'matlab' | 'octave' | 'classic';
export type Status = 'done' | 'stopped' | 'unreadable' | 'too-large' | 'no-memory' | 'invalid' | 'refused';
export type Severity = 'error' | 'gap' | 'warning' | 'note';
export type ResultKind = 'unknown' | 'number' | 'truth' | 'text' | 'cell' | 'record' | 'several';

/** What the host is asked for: its text for a name, or for a call or construct with arguments. */
export interface Question {
    kind: 'name' | 'call';
    name: string;
    /** Host texts. */
    arguments: string[];
    /** How many results are asked for; negative for what docs/host-interface.md says. */
    results: number;
}

/** A name whose file is looked for. */
export interface Search {
    kind: 'file' | 'method';
    /** With the dots of packages; of a method alone. */
    name: string;
    className: string | null;
    /** Path of the file that calls it; null for a text. */
    caller: string | null;
}

/** What one of these throws ends up at the caller of the translation, when the run has ended. They
 * answer at once, with no promise, and may not translate themselves. */
export interface Callbacks {
    /** The text of a file that is none of the files; null where it cannot be read, undefined where
     * there is none. */
    read?: (path: string) => Text | null | undefined;
    /** The host's text; undefined or null leaves the question to the rules. */
    answer?: (question: Question) => string | null | undefined;
    /** The path that a name means, for a caller that knows all files and translates each for
     * itself: functions stay calls then. Undefined or null for none. */
    find?: (search: Search) => string | null | undefined;
    /** What the first result is of a function that no file defines; undefined or null leaves it to
     * the rules. */
    resultKind?: (name: string) => ResultKind | null | undefined;
}

/** Rules with what messages about them call them. */
export interface RulesText {
    name: string;
    text: string;
}

export interface Options extends Callbacks {
    /** By default matlab. */
    language?: Language;
    /** Rules as TOML, as the tool's option --rules has them; those of a later text replace those of an
     * earlier one. */
    rules?: string | readonly RulesText[];
    /** What messages about rules in a string call them; by default "rules". */
    rulesName?: string;
    /** Where called functions are looked for, the first one first; by default beside the file, and
     * for a text nowhere. */
    folders?: readonly string[];
    /** Of a run, in MB; by default by the length of its sources. */
    maxMemory?: number;
    /** Whether calls are asked for and called files looked for; by default true. */
    translator?: boolean;
    /** Whether the host is asked how to display values, as it is where the rules have a form. */
    displays?: boolean;
    /** Pieces, outline and names. */
    details?: boolean;
    /** Which lines come from what. */
    pieces?: boolean;
    /** Functions, statements, calls, comments and statistics. */
    outline?: boolean;
    /** For colours: the tokens, of matlab and octave. */
    tokens?: boolean;
    tree?: boolean;
    values?: boolean;
    /** The texts of the files that the run opens. */
    texts?: boolean;
    /** The source is read and not translated: messages about that, and the tree. */
    onlyRead?: boolean;
    /** The text leaves out the functions of MATLAB's library that the translator brings along. */
    libraryApart?: boolean;
    /** The text holds all of these. */
    wholeLibrary?: boolean;
    /** Classic numbers its switch variables on from the run before. */
    countsOn?: boolean;
}

/** A text, or a file out of the files or of `read`. */
export interface Request extends Options {
    /** Statements or functions without a file; it may hold no NUL. */
    text?: Text;
    file?: string;
    files?: Files;
}

export interface Range {
    /** Null for the text of a request. */
    file: string | null;
    begin: number;
    end: number;
    line: number;
    /** In bytes. */
    column: number;
    columnUtf16: number;
    columnCharacters: number;
    endLine: number;
    endColumn: number;
    endColumnUtf16: number;
    endColumnCharacters: number;
}

export interface Message {
    severity: Severity;
    /** "MT201"; empty for what ended the run. */
    code: string;
    name: string;
    text: string;
    help: string;
    operands: string[];
    place: Range | null;
    sourceLine: string | null;
    calledFrom: string | null;
    calledFromLine: number;
}

export interface MessageKind {
    severity: Severity;
    code: string;
    name: string;
    /** The text of a message, with a %s for each operand. */
    form: string;
    operandCount: number;
    explanation: string;
    example: string | null;
    help: string;
}

export interface OpenedFile {
    name: string | null;
    path: string | null;
    kind: 'given' | 'regular' | 'pipe' | 'device' | 'other';
    text: string | null;
}

export interface Piece {
    kind: 'statement' | 'head' | 'end' | 'comment' | 'function' | 'prelude' | 'result' | 'gap';
    place: Range;
    /** Of the host text; the last one is included. */
    firstLine: number;
    lastLine: number;
}

/** `outer`, `function` and `statement` are places in the lists, or -1. */
export interface FunctionPlace {
    name: string;
    outer: number;
    place: Range;
}

export interface StatementPlace {
    outer: number;
    isRead: boolean;
    hasMessage: boolean;
    place: Range;
}

export interface Call {
    name: string;
    end: 'own' | 'file' | 'host' | 'language' | 'class' | 'unknown';
    target: string | null;
    function: number;
    statement: number;
    place: Range;
}

export interface Name {
    text: string;
    kind: 'function' | 'variable' | 'parameter' | 'output' | 'global' | 'persistent';
    function: number;
    definition: Range | null;
    uses: Range[];
}

export interface Comment {
    isKept: boolean;
    place: Range;
}

export interface Token {
    kind:
        | 'name'
        | 'number'
        | 'text'
        | 'keyword'
        | 'operator'
        | 'bracket'
        | 'separator'
        | 'comment'
        | 'field'
        | 'command'
        | 'bad';
    place: Range;
}

export interface Statistics {
    lines: number;
    bytes: number;
    statements: number;
    withoutMessage: number;
    comments: number;
    commentsKept: number;
}

/** What the rules did: how often each answered, and which calls none answers. */
export interface RulesUse {
    used: { rule: string; count: number }[];
    unanswered: { name: string; handles: number; calls: { arguments: number; count: number }[] }[];
}

export interface Result {
    status: Status;
    /** What ended the run; null where it is done. */
    failure: string | null;
    /** The host text; bytes that are no UTF-8 are U+FFFD. Empty where the run is not done. */
    text: string;
    /** The host text as it is. */
    bytes: Uint8Array;
    messages: Message[];
    files: OpenedFile[];
    /** How far a run came that is not done. */
    end: { path: string | null; line: number; offset: number } | null;
    needsLibrary: boolean;
    pieces: Piece[];
    functions: FunctionPlace[];
    statements: StatementPlace[];
    calls: Call[];
    names: Name[];
    comments: Comment[];
    tokens: Token[];
    statistics: Statistics | null;
    tree: string | null;
    values: string | null;
    rules: RulesUse;
    /** Where the option `report` of translateTree asks for it. */
    report: FileReport | null;
}

/** A file as the tool's report in JSON has it: docs/report.schema.json. */
export interface FileReport {
    path: string;
    output?: string;
    state: 'translated' | 'gaps' | 'errors' | 'failed';
    lines: number;
    bytes: number;
    messages: { severity: Severity; code?: string; message: string; file?: string; line?: number }[];
    map: { kind: string; file?: string; line: number; endLine: number; first: number; last: number }[];
    [field: string]: unknown;
}

export interface ReportOptions {
    rules?: string | readonly RulesText[];
    rulesName?: string;
    /** Whether files are missing that were asked for. */
    interrupted?: boolean;
}

/** A report but for its files, with what its page shows besides: what to do first, and the
 * explanations of the messages. */
export interface ReportHead {
    format: 'mtranslate report';
    [field: string]: unknown;
}

export interface TreeOptions extends Omit<Options, 'find' | 'libraryApart' | 'wholeLibrary'> {
    /** Of the outputs' names; by default ".txt". */
    suffix?: string;
    /** Whether results have what a report says of their files. */
    report?: boolean;
    /** Whether each output holds the functions that its file calls. */
    closure?: boolean;
    /** Stops between two files: the generator throws the signal's reason. */
    signal?: AbortSignal;
}

export interface TreeOutput {
    /** Null for the library, which comes last where an output calls it. */
    file: string | null;
    /** As the tool would write it below its output folder. */
    output: string;
    result: Result;
    /** How many files are done, and how many there are. */
    done: number;
    count: number;
}

/** Mistakes in the rules; the message has a line for each, with its place. */
export class RulesError extends Error {
    override name = 'RulesError';
}
