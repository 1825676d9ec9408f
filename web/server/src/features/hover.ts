/* What a name is, and the host text of its statement. */
import type { Hover } from 'vscode-languageserver-types';
import type { Analysis, Found } from '../analysis.js';
import type { Service } from '../service.js';
import { definitionOf, shortPath, type At } from './lookup.js';

const KINDS: Record<string, string> = {
    variable: 'variable',
    parameter: 'parameter',
    output: 'output',
    global: 'global variable',
    persistent: 'persistent variable',
};
const ENDS: Record<string, string> = {
    host: 'a function that the rules have a form for',
    language: "a function of MATLAB's that the translator has a form for",
    class: 'a method: the class of its arguments decides which one',
    unknown: 'a function that is found nowhere: the host gets the call as it is',
    file: 'a function of another file',
    own: 'a function of this file',
};
const LONGEST = 30; // lines of host text

const fenced = (language: string, text: string): string => {
    const fence = '`'.repeat(Math.max(3, ...[...text.matchAll(/`+/g)].map(([run]) => run.length + 1)));
    return `${fence}${language}\n${text}\n${fence}`;
};

/** What is read as it stands: without fences, rules and the quotes of names. */
const withoutMarks = (markdown: string): string =>
    markdown
        .replace(/^(`{3,})\S*\n([^]*?)\n\1$/gm, '$2')
        .replace(/^---\n\n/gm, '')
        .replace(/`([^`\n]*)`/g, '$1');

function variableText(analysis: Analysis, { name }: Found & { kind: 'variable' }): string {
    const owner = analysis.result.functions[name.function]?.name;
    const where = owner === undefined ? 'the file' : `the function \`${owner}\``;
    const many = name.uses.length === 1 ? 'used once' : `used ${name.uses.length} times`;
    return `\`${name.text}\`: ${KINDS[name.kind]} of ${where}, ${many}`;
}

function functionText(service: Service, analysis: Analysis, found: Found & { kind: 'function' }): string {
    const definition = definitionOf(service, analysis, found);
    if (!definition) return `\`${found.name}\`: ${ENDS[found.call?.end ?? 'unknown']}`;
    const { own, analysis: other } = definition;
    const help = other.help(own);
    const where = other === analysis ? 'function of this file' : `\`${shortPath(other.source.path)}\``;
    const what = own ? fenced('matlab', `function ${own.head.signature}`) : `\`${found.name}\`: a script`;
    return [what, where, ...(help === null ? [] : [fenced('text', help)])].join('\n\n');
}

function hostText(analysis: Analysis, offset: number): string | null {
    const statement = analysis.statementAt(offset);
    const head = statement ? null : headOf(analysis, offset);
    const lines = statement
        ? analysis.hostLines(statement)
        : head && analysis.hostLines(head, (kind) => kind === 'function');
    if (!lines) return null;
    const last = Math.min(lines.last, lines.first + LONGEST - 1);
    const rest = lines.last > last ? '\n...' : '';
    return fenced('mtranslate-host', analysis.hostText({ first: lines.first, last }) + rest);
}

const headOf = (analysis: Analysis, offset: number): { begin: number; end: number } | null => {
    const own = analysis.functions.find(({ begin, head }) => begin <= offset && offset <= head.end);
    return own ? { begin: own.begin, end: own.head.end } : null;
};

export function hover(service: Service, { path, position }: At): Hover | null {
    const analysis = service.analysis(path);
    if (!analysis?.hasDetails) return null;
    const offset = analysis.source.offsetAt(position);
    const found = analysis.find(offset);
    const texts = [
        found &&
            (found.kind === 'variable'
                ? variableText(analysis, found)
                : functionText(service, analysis, found)),
        hostText(analysis, offset),
    ].filter((text): text is string => text !== null);
    if (texts.length === 0) return null;
    const markdown = texts.join('\n\n---\n\n');
    return {
        contents: service.client.readsMarkdown
            ? { kind: 'markdown', value: markdown }
            : { kind: 'plaintext', value: withoutMarks(markdown) },
        ...(found ? { range: analysis.source.rangeAt(found.span) } : {}),
    };
}
