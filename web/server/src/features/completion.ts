/* Names that could stand at the cursor. */
import { CompletionItemKind, type CompletionItem, type CompletionList } from 'vscode-languageserver-types';
import type { Analysis } from '../analysis.js';
import type { Service } from '../service.js';
import { shortPath, type At } from './lookup.js';
import { KEYWORDS } from './words.js';

const MOST = 200; // functions of the workspace in one answer

const KINDS = {
    variable: CompletionItemKind.Variable,
    parameter: CompletionItemKind.Variable,
    output: CompletionItemKind.Variable,
    global: CompletionItemKind.Variable,
    persistent: CompletionItemKind.Variable,
    function: CompletionItemKind.Function,
} as const;

/** Fields that the text has after the variable, or after any where it has none. */
function fieldsOf(text: string, variable: string): CompletionItem[] {
    const seen = (before: string): Set<string> =>
        new Set([...text.matchAll(new RegExp(`${before}\\.([A-Za-z]\\w*)`, 'g'))].map(([, field]) => field!));
    const own = seen(`(?<![\\w.])${variable}(?:\\([^()\\n]*\\))?`);
    const all = own.size > 0 ? own : seen('(?<=[A-Za-z_]\\w*|\\))');
    return [...all].map((label) => ({ label, kind: CompletionItemKind.Field }));
}

function membersOf(service: Service, path: string, name: string): CompletionItem[] {
    const members: CompletionItem[] = [];
    for (const [full, file] of service.index.callable(path))
        if (full.startsWith(`${name}.`))
            members.push({
                label: full.slice(name.length + 1),
                kind: CompletionItemKind.Function,
                detail: shortPath(file),
            });
    return members;
}

function variables({ result }: Analysis, within: number): CompletionItem[] {
    return result.names
        .filter(
            ({ kind, function: owner, definition }) => kind !== 'function' && owner === within && definition,
        )
        .map(({ text, kind }) => ({ label: text, kind: KINDS[kind], detail: kind, sortText: `0${text}` }));
}

const ownFunctions = ({ functions }: Analysis): CompletionItem[] =>
    functions.map(({ head }) => ({
        label: head.name,
        kind: CompletionItemKind.Function,
        detail: head.signature,
        sortText: `1${head.name}`,
    }));

function* workspaceFunctions(service: Service, path: string, prefix: string): Iterable<CompletionItem> {
    const begin = prefix.toLowerCase();
    for (const [name, file] of service.index.callable(path)) {
        const [label] = name.split('.') as [string];
        if (!label.toLowerCase().startsWith(begin)) continue;
        const kind = label === name ? CompletionItemKind.Function : CompletionItemKind.Module;
        yield {
            label,
            kind,
            detail: shortPath(file),
            sortText: `2${label}`,
            data: label === name ? file : null,
        };
    }
}

const keywords = (): CompletionItem[] =>
    [...KEYWORDS].map((label) => ({ label, kind: CompletionItemKind.Keyword, sortText: `3${label}` }));

const isInComment = ({ result, source }: Analysis, offset: number): boolean =>
    result.comments.some(({ place }) => {
        const { begin, end } = source.span(place);
        return begin < offset && offset <= end;
    });

export function completion(service: Service, { path, position }: At): CompletionList {
    const none = { isIncomplete: false, items: [] };
    const analysis = service.analysis(path);
    if (!analysis) return none;
    const { source } = analysis;
    const offset = source.offsetAt(position);
    if (isInComment(analysis, offset)) return none;
    const before = source.text.slice(source.offsetAt({ line: position.line, character: 0 }), offset);
    const dotted = /([A-Za-z]\w*(?:\.[A-Za-z]\w*)*)(?:\([^()]*\))?\.\w*$/.exec(before);
    if (dotted) {
        const members = membersOf(service, path, dotted[1]!);
        const last = dotted[1]!.slice(dotted[1]!.lastIndexOf('.') + 1);
        const elsewhere =
            source.text.slice(0, offset - /\w*$/.exec(before)![0].length) + source.text.slice(offset);
        return { isIncomplete: false, items: members.length > 0 ? members : fieldsOf(elsewhere, last) };
    }
    if (/(^|[^\w.])\d\w*$/.test(before)) return none;
    const prefix = /\w*$/.exec(before)![0];
    const items = new Map<string, CompletionItem>();
    const offer = (item: CompletionItem): void => void (items.has(item.label) || items.set(item.label, item));
    variables(analysis, analysis.functionAt(offset)).forEach(offer);
    ownFunctions(analysis).forEach(offer);
    keywords().forEach(offer);
    const most = items.size + MOST;
    let isIncomplete = false;
    for (const item of workspaceFunctions(service, path, prefix)) {
        if ((isIncomplete = items.size >= most)) break;
        offer(item);
    }
    return { isIncomplete, items: [...items.values()] };
}

/** The signature and help of a function of another file. */
export function completionResolve(service: Service, item: CompletionItem): CompletionItem {
    const analysis = typeof item.data === 'string' ? service.analysis(item.data) : null;
    if (!analysis) return item;
    const help = analysis.help(analysis.main);
    return {
        ...item,
        detail: analysis.main?.head.signature ?? item.detail ?? '',
        ...(help === null ? {} : { documentation: help }),
    };
}
