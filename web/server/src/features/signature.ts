/* The signature of the function in whose call the cursor stands. */
import type { ParameterInformation, SignatureHelp } from 'vscode-languageserver-types';
import type { Head } from '../analysis.js';
import type { Service } from '../service.js';
import { definitionOfName, type At } from './lookup.js';

interface OpenCall {
    name: string;
    argument: number;
}

/** Without texts and comments, whose brackets and commas mean nothing; as long as before. */
const withoutTexts = (line: string): string =>
    line.replace(
        /(^|[^\w\])}.'])'(?:[^']|'')*'|"(?:[^"]|"")*"/g,
        (text, before?: string) => (before ?? '') + '_'.repeat(text.length - (before ?? '').length),
    );

/** The innermost call that is open at the end of the text. */
export function openCall(text: string): OpenCall | null {
    let depth = 0;
    let argument = 0;
    const plain = withoutTexts(text);
    for (let at = plain.length - 1; at >= 0; --at) {
        const character = plain[at]!;
        if (')]}'.includes(character)) ++depth;
        else if (',' === character && depth === 0) ++argument;
        else if ('[{'.includes(character) && --depth < 0) return null;
        else if (character === '(' && --depth < 0) {
            const name = /([A-Za-z][\w.]*)[ \t]*$/.exec(plain.slice(0, at))?.[1];
            if (name !== undefined) return { name, argument };
            depth = 0;
            argument = 0;
        }
    }
    return null;
}

/** A parameter may have the name of the function or of an output, so places are better than texts. */
function parametersOf(service: Service, { signature, parameters }: Head): ParameterInformation[] {
    if (!service.client.marksByOffset) return parameters.map((label) => ({ label }));
    let from = signature.lastIndexOf('(');
    return parameters.map((name) => {
        const begin = signature.indexOf(name, from);
        from = begin + name.length;
        return { label: [begin, from] };
    });
}

export function signatureHelp(service: Service, { path, position }: At): SignatureHelp | null {
    const analysis = service.analysis(path);
    if (!analysis) return null;
    const { source } = analysis;
    const offset = source.offsetAt(position);
    const begin = source.offsetAt({ line: position.line, character: 0 });
    const call = openCall(source.text.slice(begin, offset));
    const defined = call && definitionOfName(service, analysis, call.name, offset);
    if (!call || !defined?.own) return null;
    const { signature, parameters } = defined.own.head;
    const help = defined.analysis.help(defined.own);
    const last = Math.max(parameters.length - 1, 0);
    return {
        signatures: [
            {
                label: signature,
                parameters: parametersOf(service, defined.own.head),
                ...(help === null ? {} : { documentation: help }),
            },
        ],
        activeSignature: 0,
        activeParameter: parameters.at(-1) === 'varargin' ? Math.min(call.argument, last) : call.argument,
    };
}

/** How many arguments the call has whose name ends at the offset. */
export function argumentsAfter(text: string, end: number): number {
    const plain = withoutTexts(text.slice(end, end + 10000));
    if (!/^[ \t]*\(/.test(plain)) return 0;
    let depth = 0;
    let count = /^[ \t]*\(\s*\)/.test(plain) ? 0 : 1;
    for (const character of plain) {
        if ('([{'.includes(character)) ++depth;
        else if (')]}'.includes(character) && --depth === 0) break;
        else if (character === ',' && depth === 1) ++count;
    }
    return count;
}
