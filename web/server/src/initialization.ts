/* What client and server tell each other of themselves at the beginning. */
import { existsSync } from 'node:fs';
import { fileURLToPath, pathToFileURL } from 'node:url';
import {
    CodeActionKind,
    TextDocumentSyncKind,
    type ClientCapabilities,
    type ServerCapabilities,
} from 'vscode-languageserver/node.js';
import { LEGEND } from './features/tokens.js';
import type { Client } from './service.js';
import type { Encoding } from './source.js';

export const TRANSLATION_COMMAND = 'mtranslate.translation';

function encodingOf({ general }: ClientCapabilities): Encoding {
    const isKnown = (encoding: string): encoding is Encoding => encoding === 'utf-8' || encoding === 'utf-16';
    return general?.positionEncodings?.find(isKnown) ?? 'utf-16';
}

/** The page about messages: that of an installed tool, or the one beside the server. */
function messagesPage(): string | null {
    const installed = [
        '/usr/share/doc/mtranslate/messages.md',
        '/usr/local/share/doc/mtranslate/messages.md',
    ];
    const own = fileURLToPath(new URL('./messages.md', import.meta.url));
    const page = [...installed, own].find((path) => existsSync(path));
    return page === undefined ? null : pathToFileURL(page).href;
}

/** What a client says nothing of, it is taken to understand. */
export function clientOf(capabilities: ClientCapabilities): Client {
    const { textDocument, workspace } = capabilities;
    const { documentChanges, resourceOperations = [] } = workspace?.workspaceEdit ?? {};
    const { documentSymbol } = textDocument ?? {};
    return {
        encoding: encodingOf(capabilities),
        canRenameFiles: documentChanges === true && resourceOperations.includes('rename'),
        canCreateFiles: documentChanges === true && resourceOperations.includes('create'),
        readsMarkdown: textDocument?.hover?.contentFormat?.includes('markdown') ?? true,
        nestsSymbols:
            documentSymbol === undefined || documentSymbol.hierarchicalDocumentSymbolSupport === true,
        marksByOffset:
            textDocument?.signatureHelp?.signatureInformation?.parameterInformation?.labelOffsetSupport ===
            true,
        messagesPage: messagesPage(),
    };
}

export const serverCapabilities = ({ encoding }: Client): ServerCapabilities => ({
    positionEncoding: encoding,
    textDocumentSync: { openClose: true, change: TextDocumentSyncKind.Incremental, save: true },
    hoverProvider: true,
    definitionProvider: true,
    referencesProvider: true,
    documentHighlightProvider: true,
    renameProvider: { prepareProvider: true },
    documentSymbolProvider: true,
    workspaceSymbolProvider: true,
    foldingRangeProvider: true,
    semanticTokensProvider: { legend: LEGEND, full: true },
    signatureHelpProvider: { triggerCharacters: ['(', ','] },
    completionProvider: { triggerCharacters: ['.'], resolveProvider: true },
    codeActionProvider: { codeActionKinds: [CodeActionKind.QuickFix] },
    codeLensProvider: {},
    executeCommandProvider: { commands: [TRANSLATION_COMMAND] },
    workspace: { workspaceFolders: { supported: true, changeNotifications: true } },
});
