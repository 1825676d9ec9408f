/* From positions to what stands there, and to the functions of other files. */
import type { Location, Position } from 'vscode-languageserver-types';
import type { Call } from 'mtranslate';
import type { Analysis, Found, OwnFunction } from '../analysis.js';
import { baseOf, classOf, folderOf } from '../file_index.js';
import type { Service } from '../service.js';
import type { Span } from '../source.js';

/** Of a request that has come with its path. */
export interface At {
    path: string;
    position: Position;
}

/** A function and the file that defines it; own null where the file is a script or a class. */
export interface Definition {
    analysis: Analysis;
    own: OwnFunction | null;
}

export function findAt(
    service: Service,
    { path, position }: At,
): { analysis: Analysis; found: Found } | null {
    const analysis = service.analysis(path);
    const found = analysis?.find(analysis.source.offsetAt(position));
    return analysis && found ? { analysis, found } : null;
}

function definitionOfCall(service: Service, analysis: Analysis, call: Call): Definition | null {
    const own = analysis.calledHere(call);
    if (own) return { analysis, own };
    const target = call.target ?? service.index.find(call.name, analysis.source.path);
    const other = target === null ? null : service.analysis(target);
    return other && { analysis: other, own: other.main };
}

/** Null where no file defines it. */
export function definitionOf(
    service: Service,
    analysis: Analysis,
    found: Found & { kind: 'function' },
): Definition | null {
    if (found.own) return { analysis, own: found.own };
    return found.call && definitionOfCall(service, analysis, found.call);
}

/** By its name alone, as a call of it in the source would mean it. */
export function definitionOfName(
    service: Service,
    analysis: Analysis,
    name: string,
    offset: number,
): Definition | null {
    const own = analysis.ownFunction(name, analysis.functionAt(offset));
    if (own) return { analysis, own };
    const target = service.index.find(name, analysis.source.path);
    const other = target === null ? null : service.analysis(target);
    return other && { analysis: other, own: other.main };
}

export const locationAt = ({ source }: Analysis, span: Span): Location => ({
    uri: source.uri,
    range: source.rangeAt(span),
});

export const locationOf = ({ analysis, own }: Definition): Location =>
    locationAt(analysis, own?.head.nameSpan ?? { begin: 0, end: 0 });

export const isMethodFile = (path: string): boolean => classOf(folderOf(path)) !== '';

/** As a person would name it. */
export const shortPath = (path: string): string => {
    const folder = baseOf(folderOf(path));
    return /^[@+]|^private$/.test(folder) ? `${folder}/${baseOf(path)}` : baseOf(path);
};
