/* Functions and variables of a file, and functions of the workspace. */
import { SymbolKind, type DocumentSymbol, type SymbolInformation } from 'vscode-languageserver-types';
import type { Analysis, OwnFunction } from '../analysis.js';
import { packageOf, folderOf, classOf } from '../file_index.js';
import type { Service } from '../service.js';
import { locationAt } from './lookup.js';

const MOST = 500;
const CLASS = /^[ \t]*classdef\b[ \t]*(?:\([^)]*\))?[ \t]*([A-Za-z]\w*)/m;

function functionSymbol(analysis: Analysis, own: OwnFunction): DocumentSymbol {
    const { source, functions } = analysis;
    return {
        name: own.head.name,
        detail: own.head.signature,
        kind: SymbolKind.Function,
        range: source.rangeAt(own),
        selectionRange: source.rangeAt(own.head.nameSpan),
        children: functions
            .filter(({ outer }) => outer === own.at)
            .map((inner) => functionSymbol(analysis, inner)),
    };
}

function variableSymbols({ result, source }: Analysis): DocumentSymbol[] {
    return result.names
        .filter(({ kind, function: owner, definition }) => kind !== 'function' && owner < 0 && definition)
        .map(({ text, definition }) => {
            const range = source.rangeAt(source.span(definition!));
            return { name: text, kind: SymbolKind.Variable, range, selectionRange: range };
        });
}

/** A class definition is not read: its name and its extent are all that is known. */
function classSymbol({ source }: Analysis): DocumentSymbol | null {
    const found = CLASS.exec(source.text);
    if (!found) return null;
    const begin = found.index + found[0].length - found[1]!.length;
    return {
        name: found[1]!,
        kind: SymbolKind.Class,
        range: source.rangeAt({ begin: found.index, end: source.text.trimEnd().length }),
        selectionRange: source.rangeAt({ begin, end: begin + found[1]!.length }),
    };
}

/** For clients that know no symbols in symbols. */
const flat = (uri: string, symbols: DocumentSymbol[], containerName = ''): SymbolInformation[] =>
    symbols.flatMap(({ name, kind, range, children = [] }) => [
        { name, kind, location: { uri, range }, ...(containerName === '' ? {} : { containerName }) },
        ...flat(uri, children, name),
    ]);

export function documentSymbols(
    service: Service,
    { path }: { path: string },
): DocumentSymbol[] | SymbolInformation[] {
    const analysis = service.analysis(path);
    if (!analysis) return [];
    const ofClass = classSymbol(analysis);
    const functions = analysis.functions.filter(({ outer }) => outer < 0);
    const symbols = [
        ...(ofClass ? [ofClass] : []),
        ...functions.map((own) => functionSymbol(analysis, own)),
        ...variableSymbols(analysis),
    ];
    return service.client.nestsSymbols ? symbols : flat(analysis.source.uri, symbols);
}

/** Whether the characters of the query come in the name, in their order. */
function fits(name: string, query: string): boolean {
    let at = -1;
    for (const character of query.toLowerCase()) {
        at = name.toLowerCase().indexOf(character, at + 1);
        if (at < 0) return false;
    }
    return true;
}

const HEAD_NAMES = /(?:^|[\r\n;])[ \t]*(?:function|classdef)\b[^\r\n%]*/g;

function symbolsOfFile(analysis: Analysis, query: string): SymbolInformation[] {
    const { path } = analysis.source;
    const containerName = classOf(folderOf(path)) || packageOf(folderOf(path)).slice(0, -1);
    const symbol = (
        name: string,
        kind: SymbolKind,
        span: { begin: number; end: number },
    ): SymbolInformation => ({
        name,
        kind,
        location: locationAt(analysis, span),
        ...(containerName === '' ? {} : { containerName }),
    });
    const functions = analysis.functions.map(({ head }) =>
        symbol(head.name, SymbolKind.Function, head.nameSpan),
    );
    const isNamed = analysis.main !== null && analysis.main.head.name === analysis.stem;
    const kind = CLASS.test(analysis.source.text) ? SymbolKind.Class : SymbolKind.File;
    const file = isNamed ? [] : [symbol(analysis.stem, kind, { begin: 0, end: 0 })];
    return [...file, ...functions].filter(({ name }) => fits(name, query));
}

/** At most the first 500. */
export function workspaceSymbols(service: Service, { query }: { query: string }): SymbolInformation[] {
    const symbols: SymbolInformation[] = [];
    for (const path of service.index.paths) {
        if (symbols.length >= MOST) break;
        const text = service.text(path);
        if (text === null) continue;
        const stem = path.slice(path.lastIndexOf('/') + 1, -2);
        const heads = text.match(HEAD_NAMES) ?? [];
        if (!fits(stem, query) && !heads.some((head) => fits(head, query))) continue;
        const analysis = service.analysis(path);
        if (analysis) symbols.push(...symbolsOfFile(analysis, query));
    }
    return symbols.slice(0, MOST);
}
