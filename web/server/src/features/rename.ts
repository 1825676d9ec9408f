/* New names for variables and functions, with the files of these. */
import type { Range, RenameFile, TextDocumentEdit, WorkspaceEdit } from 'vscode-languageserver-types';
import type { Name } from 'mtranslate';
import type { Analysis, Found } from '../analysis.js';
import { stampOf } from '../disk.js';
import { folderOf, packageOf, stemOf } from '../file_index.js';
import { INVALID_REQUEST, Refusal } from '../refusal.js';
import type { Service } from '../service.js';
import { definitionOf, findAt, isMethodFile, type At, type Definition } from './lookup.js';
import { filesWith, usesOf, type Use } from './references.js';
import { KEYWORDS } from './words.js';

const LONGEST_NAME = 63;

const refuse = (text: string): never => {
    throw new Refusal(INVALID_REQUEST, text);
};

function checkName(name: unknown): string {
    if (typeof name !== 'string' || !/^[A-Za-z]\w*$/.test(name))
        return refuse(`'${String(name)}' is no name in MATLAB`);
    if (KEYWORDS.has(name)) return refuse(`'${name}' is a keyword`);
    if (name.length > LONGEST_NAME) return refuse(`a name has at most ${LONGEST_NAME} characters`);
    return name;
}

/** The definition of a function that can have another name. */
function renamable(service: Service, analysis: Analysis, found: Found & { kind: 'function' }): Definition {
    const defined = definitionOf(service, analysis, found);
    if (!defined) return refuse(`no file of the workspace defines '${found.name}'`);
    if (isMethodFile(defined.analysis.source.path))
        return refuse('a method is not renamed: which one a call means is not known');
    return defined;
}

const isMain = ({ analysis, own }: Definition): boolean => own === null || own === analysis.main;

export function prepareRename(service: Service, at: At): { range: Range; placeholder: string } | null {
    const here = findAt(service, at);
    if (!here) return null;
    const { analysis, found } = here;
    if (found.kind === 'function') renamable(service, analysis, found);
    const { begin, end } = found.span;
    const text = analysis.source.text.slice(begin, end);
    const last = text.slice(text.lastIndexOf('.') + 1);
    return { range: analysis.source.rangeAt({ begin: end - last.length, end }), placeholder: last };
}

/** Whether a file knows the name already, in a function or anywhere. */
function knows(file: Analysis, name: string, within: number | null): boolean {
    if (file.functions.some(({ head }) => head.name === name)) return true;
    const clashes = (other: Name): boolean =>
        within === null || other.kind === 'function' || file.scopes(other.function).includes(within);
    return file.result.names.some((other) => other.text === name && clashes(other));
}

function checkFree(
    service: Service,
    uses: readonly Use[],
    found: Found,
    name: string,
    target: string | null,
): void {
    const within = found.kind === 'variable' && found.name.kind !== 'global' ? found.name.function : null;
    for (const file of new Set(uses.map(({ analysis }) => analysis)))
        if (knows(file, name, within)) refuse(`'${name}' is already a name in ${stemOf(file.source.path)}.m`);
    if (target !== null && service.text(target) !== null) refuse(`the file '${target}' is there already`);
    const isShared = target !== null || (found.kind === 'variable' && found.name.kind === 'global');
    if (isShared) checkElsewhere(service, name, target);
}

/** A file that has the name would mean the renamed function, or the renamed global variable, with it. */
function checkElsewhere(service: Service, name: string, target: string | null): void {
    const full = target === null ? name : packageOf(folderOf(target)) + name;
    for (const { source, result } of filesWith(service, name, '')) {
        const means =
            target === null
                ? result.names.some(({ kind, text }) => kind === 'global' && text === name)
                : result.calls.some((call) => call.end !== 'own' && call.name === full);
        if (means) refuse(`'${full}' is a name in ${stemOf(source.path)}.m already`);
    }
}

function editOf(
    service: Service,
    uses: readonly Use[],
    name: string,
    moved: RenameFile | null,
): WorkspaceEdit {
    const byFile = new Map<Analysis, Use[]>();
    for (const use of uses) byFile.set(use.analysis, [...(byFile.get(use.analysis) ?? []), use]);
    const edits = [...byFile].map(([{ source }, of]): TextDocumentEdit => {
        const begins = [...new Map(of.map(({ span }) => [span.begin, span])).values()];
        return {
            textDocument: { uri: source.uri, version: source.version },
            edits: begins.map((span) => ({ range: source.rangeAt(span), newText: name })),
        };
    });
    if (service.client.canRenameFiles) return { documentChanges: [...edits, ...(moved ? [moved] : [])] };
    return {
        changes: Object.fromEntries(
            edits.map(({ textDocument, edits }) => [textDocument.uri, edits as never]),
        ),
    };
}

export function rename(service: Service, at: At & { newName: string }): WorkspaceEdit | null {
    const name = checkName(at.newName);
    const here = findAt(service, at);
    if (!here) return refuse('there is no name here that could be changed');
    const { analysis, found } = here;
    let target: string | null = null;
    let moved: RenameFile | null = null;
    if (found.kind === 'function') {
        const defined = renamable(service, analysis, found);
        const { path, uri } = defined.analysis.source;
        if (isMain(defined) && stampOf(path) !== '') {
            target = `${folderOf(path)}/${name}.m`;
            if (!service.client.canRenameFiles)
                refuse('the function has the name of its file, and this editor does not rename files');
            moved = { kind: 'rename', oldUri: uri, newUri: uri.replace(/[^/]*$/, `${name}.m`) };
        }
    }
    const uses = usesOf(service, analysis, found) ?? [];
    checkFree(service, uses, found, name, target);
    return editOf(service, uses, name, moved);
}
