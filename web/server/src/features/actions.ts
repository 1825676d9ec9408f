/* What can be done about a message: leave it out, give a function a rule, declare a name. */
import { existsSync } from 'node:fs';
import { join } from 'node:path';
import { pathToFileURL } from 'node:url';
import {
    CodeActionKind,
    type CodeAction,
    type Position,
    type Range,
    type TextDocumentEdit,
    type TextEdit,
    type WorkspaceEdit,
} from 'vscode-languageserver-types';
import type { Message } from 'mtranslate';
import type { Analysis } from '../analysis.js';
import { folderOf } from '../file_index.js';
import type { Service } from '../service.js';
import { CONFIGURATION } from '../settings.js';
import { Source, rangeOf } from '../source.js';
import { argumentsAfter } from './signature.js';

interface Params {
    path: string;
    range: Range;
    context?: { only?: string[] };
}

const insert = (position: Position, newText: string): TextEdit => ({
    range: { start: position, end: position },
    newText,
});

const isBefore = (a: Position, b: Position): boolean =>
    a.line < b.line || (a.line === b.line && a.character < b.character);
const overlap = (a: Range, b: Range): boolean => !isBefore(a.end, b.start) && !isBefore(b.end, a.start);

class Actions {
    readonly actions: CodeAction[] = [];

    constructor(
        readonly service: Service,
        readonly analysis: Analysis,
    ) {}

    #offer(title: string, edit: WorkspaceEdit): void {
        if (!this.actions.some((action) => action.title === title))
            this.actions.push({ title, kind: CodeActionKind.QuickFix, edit });
    }

    #here(...edits: TextEdit[]): WorkspaceEdit {
        return { changes: { [this.analysis.source.uri]: edits } };
    }

    leaveOut({ code, severity, place }: Message): void {
        if (code === '' || !place || this.service.translator.explain(code)?.severity === 'error') return;
        if (severity === 'error') return;
        const { source } = this.analysis;
        const line = place.line - 1;
        const text = source.line(line);
        const end = source.positionAt(source.offsetAt({ line, character: 0 }) + text.length);
        const more = /[%#]\s*mtranslate:\s*ignore\b/.test(text)
            ? `, ${code}`
            : `  % mtranslate: ignore ${code}`;
        this.#offer(`Leave ${code} out here`, this.#here(insert(end, more)));
        const top = `% mtranslate: ignore ${code}\n`;
        this.#offer(`Leave ${code} out in this file`, this.#here(insert({ line: 0, character: 0 }, top)));
    }

    addRule({ code, operands: [name] }: Message): void {
        if (code !== 'MT401' || name === undefined) return;
        const { settings } = this.service.configurations;
        const own = this.service.configurations.fileFor(this.analysis.source.path);
        const root = this.service.configurations.folders[0];
        const file =
            settings.rules.at(-1) ??
            own ??
            (root === undefined || settings.untrusted ? null : join(root, CONFIGURATION));
        if (file === null) return;
        const rule = `${/^\w+$/.test(name) ? name : JSON.stringify(name)} = "${name}({args})"\n`;
        const edit = this.#ruleEdit(file, rule);
        if (edit) this.#offer(`Add a rule for '${name}'`, edit);
    }

    #ruleEdit(file: string, rule: string): WorkspaceEdit | null {
        const uri = this.service.uriOf(file);
        const text = this.service.text(file);
        const change = (edit: TextEdit): TextDocumentEdit => ({
            textDocument: { uri, version: null },
            edits: [edit],
        });
        if (text === null) {
            if (!this.service.client.canCreateFiles || existsSync(file)) return null;
            const first = change(insert({ line: 0, character: 0 }, `[functions]\n${rule}`));
            return { documentChanges: [{ kind: 'create', uri, options: { ignoreIfExists: true } }, first] };
        }
        const source = new Source(file, uri, null, text, this.service.client.encoding);
        const table = /^[ \t]*\[functions\][ \t]*(#[^\n]*)?\r?(\n|$)/m.exec(text);
        const at = source.positionAt(table ? table.index + table[0].length : text.length);
        const gap = text === '' || text.endsWith('\n') ? '' : '\n';
        const before = text === '' ? '' : `${gap}\n`;
        const edit = insert(
            at,
            table ? gap.slice(0, table[2] === '' ? 1 : 0) + rule : `${before}[functions]\n${rule}`,
        );
        return this.service.client.canCreateFiles
            ? { documentChanges: [change(edit)] }
            : { changes: { [uri]: [edit] } };
    }

    declare(message: Message): void {
        const { code, operands, place } = message;
        const name = operands[0];
        if (name === undefined || !place || !/^[A-Za-z]\w*$/.test(name)) return;
        if (code === 'MT402') this.#declareBefore(name, this.analysis.source.span(place).begin);
        if (code === 'MT403') this.#declareFirst(name, this.analysis.source.span(place).begin);
        if (code === 'MT401') this.#declareFunction(name, this.analysis.source.span(place).end);
    }

    #declareBefore(name: string, offset: number): void {
        const { source } = this.analysis;
        const statement = this.analysis.statementAt(offset);
        const { line } = source.positionAt(statement?.begin ?? offset);
        const indent = /^\s*/.exec(source.line(line))![0];
        this.#offer(
            `Declare '${name}' as a variable`,
            this.#here(insert({ line, character: 0 }, `${indent}${name} = [];\n`)),
        );
    }

    #declareFirst(name: string, offset: number): void {
        const { source } = this.analysis;
        const own = this.analysis.functions[this.analysis.functionAt(offset)];
        if (!own) return;
        const first = this.analysis.result.statements.find(
            ({ place }) => source.span(place).begin > own.head.end,
        );
        const line = first ? first.place.line - 1 : source.positionAt(own.head.end).line + 1;
        const indent = first ? /^\s*/.exec(source.line(line))![0] : '    ';
        this.#offer(
            `Declare '${name}' as a variable`,
            this.#here(insert({ line, character: 0 }, `${indent}${name} = [];\n`)),
        );
    }

    /** As many parameters as the call has arguments. */
    #declareFunction(name: string, end: number): void {
        const { source } = this.analysis;
        if (!this.service.client.canCreateFiles || !source.uri.startsWith('file:')) return;
        const uri = pathToFileURL(join(folderOf(source.path), `${name}.m`)).href;
        const count = argumentsAfter(source.text, end);
        const names = Array.from({ length: count }, (_, at) => `x${at + 1}`).join(', ');
        const text = `function y = ${name}(${names})\n    y = [];\nend\n`;
        this.#offer(`Declare '${name}' as a function in ${name}.m`, {
            documentChanges: [
                { kind: 'create', uri, options: { ignoreIfExists: true } },
                { textDocument: { uri, version: null }, edits: [insert({ line: 0, character: 0 }, text)] },
            ],
        });
    }
}

export function codeActions(service: Service, { path, range, context }: Params): CodeAction[] {
    const analysis = service.analysis(path);
    const isWanted = context?.only?.some((kind) => CodeActionKind.QuickFix.startsWith(kind)) ?? true;
    if (!analysis || !isWanted) return [];
    const actions = new Actions(service, analysis);
    for (const message of analysis.messages) {
        if (!message.place || !analysis.isHere(message.place)) continue;
        if (!overlap(rangeOf(message.place, service.client.encoding), range)) continue;
        actions.leaveOut(message);
        actions.addRule(message);
        actions.declare(message);
    }
    return actions.actions;
}
