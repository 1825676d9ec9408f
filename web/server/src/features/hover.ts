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

/** How texts stand in the answer: in Markdown, or as they are for a client that reads none. */
interface Form {
    fenced(language: string, text: string): string;
    quoted(name: string): string;
    between: string;
}

const MARKDOWN: Form = {
    fenced: (language, text) => {
        const fence = '`'.repeat(Math.max(3, ...[...text.matchAll(/`+/g)].map(([run]) => run.length + 1)));
        return `${fence}${language}\n${text}\n${fence}`;
    },
    quoted: (name) => `\`${name}\``,
    between: '\n\n---\n\n',
};
const PLAIN: Form = { fenced: (_language, text) => text, quoted: (name) => name, between: '\n\n' };

function variableText(form: Form, analysis: Analysis, { name }: Found & { kind: 'variable' }): string {
    const owner = analysis.result.functions[name.function]?.name;
    const where = owner === undefined ? 'the file' : `the function ${form.quoted(owner)}`;
    const many = name.uses.length === 1 ? 'used once' : `used ${name.uses.length} times`;
    return `${form.quoted(name.text)}: ${KINDS[name.kind]} of ${where}, ${many}`;
}

function functionText(
    form: Form,
    service: Service,
    analysis: Analysis,
    found: Found & { kind: 'function' },
): string {
    const definition = definitionOf(service, analysis, found);
    if (!definition) return `${form.quoted(found.name)}: ${ENDS[found.call?.end ?? 'unknown']}`;
    const { own, analysis: other } = definition;
    const help = other.help(own);
    const where = other === analysis ? 'function of this file' : form.quoted(shortPath(other.source.path));
    const what = own
        ? form.fenced('matlab', `function ${own.head.signature}`)
        : `${form.quoted(found.name)}: a script`;
    return [what, where, ...(help === null ? [] : [form.fenced('text', help)])].join('\n\n');
}

function hostText(form: Form, analysis: Analysis, offset: number): string | null {
    const statement = analysis.statementAt(offset);
    const head = statement ? null : headOf(analysis, offset);
    const lines = statement
        ? analysis.hostLines(statement)
        : head && analysis.hostLines(head, (kind) => kind === 'function');
    if (!lines) return null;
    const last = Math.min(lines.last, lines.first + LONGEST - 1);
    const rest = lines.last > last ? '\n...' : '';
    return form.fenced('mtranslate-host', analysis.hostText({ first: lines.first, last }) + rest);
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
    const { readsMarkdown } = service.client;
    const form = readsMarkdown ? MARKDOWN : PLAIN;
    const texts = [
        found &&
            (found.kind === 'variable'
                ? variableText(form, analysis, found)
                : functionText(form, service, analysis, found)),
        hostText(form, analysis, offset),
    ].filter((text): text is string => text !== null);
    if (texts.length === 0) return null;
    return {
        contents: { kind: readsMarkdown ? 'markdown' : 'plaintext', value: texts.join(form.between) },
        ...(found ? { range: analysis.source.rangeAt(found.span) } : {}),
    };
}
