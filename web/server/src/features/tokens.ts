/* Semantic tokens: what each name is, and what the scanner tells of the rest. */
import type { SemanticTokens, SemanticTokensLegend } from 'vscode-languageserver-types';
import type { Token as ScannedToken } from 'mtranslate';
import type { Analysis } from '../analysis.js';
import type { Service } from '../service.js';
import type { Span } from '../source.js';

const TYPES = [
    'variable',
    'parameter',
    'function',
    'property',
    'keyword',
    'number',
    'string',
    'operator',
    'comment',
] as const;
type Type = (typeof TYPES)[number];

export const LEGEND: SemanticTokensLegend = {
    tokenTypes: [...TYPES],
    tokenModifiers: ['declaration', 'static', 'defaultLibrary'],
};
const DECLARATION = 1;
const STATIC = 2; // global and persistent
const DEFAULT_LIBRARY = 4; // not of the workspace

/** Of the scanner's tokens; what names are, the analysis tells. */
const SCANNED: Partial<Record<ScannedToken['kind'], Type>> = {
    number: 'number',
    text: 'string',
    keyword: 'keyword',
    operator: 'operator',
    comment: 'comment',
    field: 'property',
    command: 'function',
};

interface Token extends Span {
    type: Type;
    modifiers: number;
}

function* names({ result, source, isHere }: Analysis): Iterable<Token> {
    for (const { kind, uses, definition } of result.names) {
        if (kind === 'function') continue;
        const isStatic = kind === 'global' || kind === 'persistent';
        for (const use of uses) {
            if (!isHere.call({ source }, use)) continue;
            const isDefinition = definition?.begin === use.begin && definition.end === use.end;
            yield {
                ...source.span(use),
                type: kind === 'parameter' ? 'parameter' : 'variable',
                modifiers: (isStatic ? STATIC : 0) | (isDefinition ? DECLARATION : 0),
            };
        }
    }
}

function* functions({ result, source, functions: own }: Analysis): Iterable<Token> {
    for (const { end, place } of result.calls) {
        const isOurs = end === 'own' || end === 'file' || end === 'class';
        yield { ...source.span(place), type: 'function', modifiers: isOurs ? 0 : DEFAULT_LIBRARY };
    }
    for (const { head } of own) yield { ...head.nameSpan, type: 'function', modifiers: DECLARATION };
}

function* scanned(service: Service, { source }: Analysis): Iterable<Token> {
    for (const { kind, place } of service.tokens(source)) {
        const type = SCANNED[kind];
        if (type) yield { ...source.span(place), type, modifiers: 0 };
    }
}

/** Tokens do not overlap and end with their lines. */
export function semanticTokens(service: Service, { path }: { path: string }): SemanticTokens {
    const analysis = service.analysis(path);
    if (!analysis) return { data: [] };
    const data: number[] = [];
    const { source } = analysis;
    const tokens = [...names(analysis), ...functions(analysis), ...scanned(service, analysis)];
    tokens.sort((a, b) => a.begin - b.begin || b.end - a.end);
    let free = 0;
    let last = { line: 0, character: 0 };
    for (const { begin, end, type, modifiers } of tokens) {
        if (begin < free) continue;
        const from = source.positionAt(begin);
        const to = source.positionAt(end);
        if (from.line !== to.line || from.character === to.character) continue;
        const before = from.line === last.line ? last.character : 0;
        data.push(
            from.line - last.line,
            from.character - before,
            to.character - from.character,
            TYPES.indexOf(type),
            modifiers,
        );
        last = from;
        free = end;
    }
    return { data };
}
