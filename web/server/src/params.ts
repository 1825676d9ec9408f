/* What requests bring along: an error of the protocol for what makes no sense. */
import { ErrorCodes, ResponseError } from 'vscode-languageserver/node.js';
import { pathOf } from './documents.js';

/** What a request has to have besides its document. */
export type Needs = 'position' | 'range' | null;

export interface HasDocument {
    textDocument: { uri: string };
}

type Fields = Record<string, unknown> | null | undefined;

const isCount = (value: unknown): boolean =>
    typeof value === 'number' && Number.isInteger(value) && value >= 0;

const isPosition = (value: unknown): boolean =>
    isCount((value as Fields)?.['line']) && isCount((value as Fields)?.['character']);

const isRange = (value: unknown): boolean =>
    isPosition((value as Fields)?.['start']) && isPosition((value as Fields)?.['end']);

export const invalidParams = (text: string): ResponseError<void> =>
    new ResponseError(ErrorCodes.InvalidParams, text);

/** With the path of the document. Throws a ResponseError. */
export function withPath<Params extends HasDocument>(
    params: Params,
    needs: Needs,
): Params & { path: string } {
    const fields = params as unknown as Fields;
    const uri = params?.textDocument?.uri;
    if (typeof uri !== 'string') throw invalidParams('a document is expected: textDocument with its uri');
    if (needs === 'position' && !isPosition(fields?.['position']))
        throw invalidParams('a position is expected: line and character, from 0');
    if (needs === 'range' && !isRange(fields?.['range']))
        throw invalidParams('a range is expected: start and end, each with line and character');
    return { ...params, path: pathOf(uri) };
}
