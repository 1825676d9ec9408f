/* What callers give: a TypeError says what is wrong with it. Types are not enough where a caller is
 * JavaScript, or answers a promise. */
import type { Options, Request, Text } from './types.js';

export const isText = (value: unknown): value is Text =>
    typeof value === 'string' || value instanceof Uint8Array;

const isString = (value: unknown): value is string => typeof value === 'string';
const isCount = (value: unknown): boolean => Number.isInteger(value);
const isCallback = (value: unknown): boolean => typeof value === 'function';
const areStrings = (value: unknown): boolean => Array.isArray(value) && value.every(isString);
const areRules = (value: unknown): boolean =>
    isString(value) ||
    (Array.isArray(value) && value.every((rules) => isString(rules?.name) && isString(rules?.text)));

type Check = [isRight: (value: unknown) => boolean, expected: string];

const OPTIONS: Partial<Record<keyof Options, Check>> = {
    language: [isString, 'a string'],
    rules: [areRules, 'a string, or a list of { name, text }'],
    rulesName: [isString, 'a string'],
    folders: [areStrings, 'a list of strings'],
    maxMemory: [isCount, 'a whole number of megabytes'],
    read: [isCallback, 'a function'],
    answer: [isCallback, 'a function'],
    find: [isCallback, 'a function'],
    resultKind: [isCallback, 'a function'],
};

export function checkOptions(options: Options): void {
    for (const [name, [isRight, expected]] of Object.entries(OPTIONS)) {
        const value = options[name as keyof Options];
        if (value !== undefined && !isRight(value)) throw new TypeError(`${name} is ${expected}`);
    }
}

export function checkRequest(request: Request): void {
    if (typeof request !== 'object' || request === null)
        throw new TypeError('a request is an object, with a text or a file');
    const { text, file, ...options } = request;
    if ((text === undefined) === (file === undefined))
        throw new TypeError('either a text or a file is translated');
    if (text !== undefined && !isText(text)) throw new TypeError('text is a string or a Uint8Array');
    if (file !== undefined && !isString(file)) throw new TypeError('file is a string');
    checkOptions(options);
}

/** The answer of a callback, or none for undefined, and for null where that is none too. */
export function checkedAnswer<Answer extends Text>(
    name: string,
    answer: Answer | null | undefined,
): Answer | null | undefined {
    if (answer === null || answer === undefined || isText(answer)) return answer;
    const isLate = typeof (answer as { then?: unknown }).then === 'function';
    throw new TypeError(`${name} has to answer a text${isLate ? ' at once, not a promise' : ''}`);
}
