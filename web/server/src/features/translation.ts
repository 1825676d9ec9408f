/* The translation of a document, for a view at its side. */
import type { CodeLens, Range } from 'vscode-languageserver-types';
import type { Piece, Status } from 'mtranslate';
import type { Service } from '../service.js';
import { rangeOf } from '../source.js';

export interface TranslationPiece {
    kind: Piece['kind'];
    /** Of the source. */
    range: Range;
    /** Of the host text, from 0; the last one is included. */
    firstLine: number;
    lastLine: number;
}

export interface Translation {
    uri: string;
    version: number | null;
    status: Status;
    /** What ended the translation; null where it is done. */
    failure: string | null;
    text: string;
    pieces: TranslationPiece[];
    /** Whether the text calls functions that `mtranslate library` writes. */
    needsLibrary: boolean;
}

export interface TranslationParams {
    path: string;
    /** With all that the file calls, as the tool prints a single file. */
    whole?: boolean;
}

export function translation(service: Service, { path, whole }: TranslationParams): Translation | null {
    const analysis = service.analysis(path);
    const result = whole ? service.whole(path) : analysis?.result;
    if (!analysis || !result) return null;
    const { uri, version } = analysis.source;
    const pieces = result.pieces
        .filter(({ place }) => place.file === path)
        .map(({ kind, place, firstLine, lastLine }) => ({
            kind,
            range: rangeOf(place, service.client.encoding),
            firstLine: firstLine - 1,
            lastLine: lastLine - 1,
        }));
    const { status, failure, text, needsLibrary } = result;
    return { uri, version, status, failure, text, pieces, needsLibrary };
}

export function codeLenses(service: Service, { path }: { path: string }): CodeLens[] {
    const analysis = service.analysis(path);
    if (!analysis) return [];
    const { source } = analysis;
    const begins = analysis.functions.filter(({ outer }) => outer < 0).map(({ begin }) => begin);
    return (analysis.main ? begins : [0, ...begins]).map((begin) => {
        const range = source.rangeAt({ begin, end: begin });
        const command = service.configurations.settings.translationCommand;
        return { range, command: { title: 'translation', command, arguments: [source.uri, range.start] } };
    });
}
