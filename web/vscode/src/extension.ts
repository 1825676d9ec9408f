/* The extension: the language server, and the translation at the side. */
import * as vscode from 'vscode';
import { LanguageClient, TransportKind, type ConfigurationParams } from 'vscode-languageclient/node';
import { Translations } from './translations.js';

const COMMAND = 'mtranslate.showTranslation';

/** What the server has to know besides the user's settings. */
const ours = (): object => ({ untrusted: !vscode.workspace.isTrusted, translationCommand: COMMAND });

function makeClient(context: vscode.ExtensionContext): LanguageClient {
    const module = context.asAbsolutePath('dist/server/main.js');
    return new LanguageClient(
        'mtranslate',
        'mtranslate',
        { module, transport: TransportKind.stdio },
        {
            documentSelector: [{ language: 'matlab' }],
            initializationOptions: ours(),
            middleware: {
                workspace: {
                    configuration: async (params: ConfigurationParams, token, next) => {
                        const answers = await next(params, token);
                        return Array.isArray(answers)
                            ? answers.map((answer) => ({ ...answer, ...ours() }))
                            : answers;
                    },
                },
            },
        },
    );
}

export async function activate(context: vscode.ExtensionContext): Promise<void> {
    const client = makeClient(context);
    const translations = new Translations(client);
    context.subscriptions.push(
        client,
        translations,
        vscode.commands.registerCommand(COMMAND, (uri?: string, position?: { line: number }) =>
            translations.show(uri, position?.line),
        ),
        vscode.commands.registerCommand('mtranslate.restart', () => client.restart()),
        vscode.workspace.onDidGrantWorkspaceTrust(() => client.restart()),
    );
    await client.start();
}
