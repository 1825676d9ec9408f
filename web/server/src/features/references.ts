/* Where names are defined and used, in one file and across files. */
import type { DocumentHighlight, Location } from 'vscode-languageserver-types';
import type { Name } from 'mtranslate';
import type { Analysis, Found, OwnFunction } from '../analysis.js';
import { stemOf } from '../file_index.js';
import type { Service } from '../service.js';
import type { Span } from '../source.js';
import { definitionOf, findAt, locationAt, locationOf, type At } from './lookup.js';

export interface Use {
    analysis: Analysis;
    span: Span;
    isDefinition: boolean;
}

export function definition(service: Service, at: At): Location | null {
    const here = findAt(service, at);
    if (!here) return null;
    const { analysis, found } = here;
    if (found.kind === 'variable') {
        const place = found.name.definition;
        return place && locationAt(analysis, analysis.source.span(place));
    }
    const defined = definitionOf(service, analysis, found);
    return defined && locationOf(defined);
}

const isSame = (a: Span, b: Span): boolean => a.begin === b.begin && a.end === b.end;

function usesOfName(analysis: Analysis, name: Name): Use[] {
    const definition = name.definition && analysis.source.span(name.definition);
    return name.uses
        .filter((use) => analysis.isHere(use))
        .map((use) => {
            const span = analysis.source.span(use);
            return { analysis, span, isDefinition: definition !== null && isSame(span, definition) };
        });
}

/** The last part of a name with dots. */
const lastPart = (name: string, { end }: Span): Span => ({
    begin: end - (name.length - name.lastIndexOf('.') - 1),
    end,
});

function usesOfOwn(analysis: Analysis, own: OwnFunction): Use[] {
    const calls = analysis.result.calls
        .filter((call) => call.name === own.head.name && analysis.calledHere(call) === own)
        .map(({ name, place }) => lastPart(name, analysis.source.span(place)));
    return [
        { analysis, span: own.head.nameSpan, isDefinition: true },
        ...calls.map((span) => ({ analysis, span, isDefinition: false })),
    ];
}

function usesOfFile(analysis: Analysis, path: string): Use[] {
    return analysis.result.calls
        .filter(({ end, target }) => end !== 'own' && target === path)
        .map(({ name, place }) => ({
            analysis,
            span: lastPart(name, analysis.source.span(place)),
            isDefinition: false,
        }));
}

/** The other files whose text has the word. */
export function* filesWith(service: Service, word: string, but: string): Iterable<Analysis> {
    const pattern = new RegExp(`(?<![A-Za-z0-9_])${word}(?![A-Za-z0-9_])`);
    for (const path of new Set([...service.index.paths, ...service.open.keys()])) {
        if (path === but) continue;
        const text = service.text(path);
        if (text === null || !text.includes(word) || !pattern.test(text)) continue;
        const analysis = service.analysis(path);
        if (analysis) yield analysis;
    }
}

function usesOfGlobal(service: Service, analysis: Analysis, text: string): Use[] {
    const inFile = (file: Analysis): Use[] =>
        file.result.names
            .filter((name) => name.kind === 'global' && name.text === text)
            .flatMap((name) => usesOfName(file, name));
    const uses = inFile(analysis);
    for (const other of filesWith(service, text, analysis.source.path)) uses.push(...inFile(other));
    return uses;
}

/** All of what stands at a place, with its own definition first; null where no file defines it. */
export function usesOf(service: Service, analysis: Analysis, found: Found): Use[] | null {
    if (found.kind === 'variable')
        return found.name.kind === 'global'
            ? usesOfGlobal(service, analysis, found.name.text)
            : usesOfName(analysis, found.name);
    const defined = definitionOf(service, analysis, found);
    if (!defined) return null;
    const { analysis: home, own } = defined;
    const uses = own ? usesOfOwn(home, own) : [];
    if (own && own !== home.main) return uses;
    uses.push(...usesOfFile(home, home.source.path));
    for (const other of filesWith(service, stemOf(home.source.path), home.source.path))
        uses.push(...usesOfFile(other, home.source.path));
    return uses;
}

/** Of a function that no file defines: in this file. */
function callsHere(analysis: Analysis, name: string): Use[] {
    return analysis.result.calls
        .filter((call) => call.name === name)
        .map(({ place }) => ({ analysis, span: analysis.source.span(place), isDefinition: false }));
}

export function references(
    service: Service,
    at: At & { context: { includeDeclaration: boolean } },
): Location[] {
    const here = findAt(service, at);
    if (!here) return [];
    const { analysis, found } = here;
    const uses =
        usesOf(service, analysis, found) ?? callsHere(analysis, found.kind === 'function' ? found.name : '');
    return uses
        .filter(({ isDefinition }) => at.context?.includeDeclaration !== false || !isDefinition)
        .map((use) => locationAt(use.analysis, use.span));
}

export function highlights(service: Service, at: At): DocumentHighlight[] {
    const here = findAt(service, at);
    if (!here) return [];
    const { analysis, found } = here;
    const own = found.kind === 'function' ? found.own : null;
    const uses =
        found.kind === 'variable'
            ? usesOfName(analysis, found.name)
            : own
              ? usesOfOwn(analysis, own)
              : callsHere(analysis, found.name);
    return uses.map(({ span }) => ({ range: analysis.source.rangeAt(span) }));
}
