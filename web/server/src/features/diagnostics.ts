/* Messages as diagnostics, by the files that they are about. */
import {
    DiagnosticSeverity,
    type Diagnostic,
    type DiagnosticRelatedInformation,
    type Range,
} from 'vscode-languageserver-types';
import type { Message, Severity } from 'mtranslate';
import type { Analysis } from '../analysis.js';
import type { Service } from '../service.js';
import { rangeOf } from '../source.js';

const SEVERITIES: Record<Severity, DiagnosticSeverity> = {
    error: DiagnosticSeverity.Error,
    gap: DiagnosticSeverity.Error,
    warning: DiagnosticSeverity.Warning,
    note: DiagnosticSeverity.Information,
};

export interface Published {
    /** By addresses; that of the source is always there. */
    diagnostics: Record<string, Diagnostic[]>;
    /** Paths of the other files that the messages depend on. */
    reads: string[];
    rulesMistakes: string | null;
}

const lineOf = (line: number): Range => ({
    start: { line: Math.max(line - 1, 0), character: 0 },
    end: { line: Math.max(line, 1), character: 0 },
});

function pageOf(service: Service, { code, name, severity }: Message): { codeDescription?: { href: string } } {
    const page = service.client.messagesPage;
    if (page === null || code === '') return {};
    const kind = service.translator.explain(code)?.severity ?? severity;
    return { codeDescription: { href: `${page}#${code.toLowerCase()}-${name}-${kind}` } };
}

function relatedOf(service: Service, message: Message): DiagnosticRelatedInformation[] {
    if (message.calledFrom === null) return [];
    const location = { uri: service.uriOf(message.calledFrom), range: lineOf(message.calledFromLine) };
    return [{ location, message: 'called from here' }];
}

function diagnosticOf(service: Service, analysis: Analysis, message: Message): Diagnostic {
    const { place, severity, code, text, help, name, operands } = message;
    const related = relatedOf(service, message);
    return {
        range: place ? rangeOf(place, service.client.encoding) : lineOf(analysis.result.end?.line ?? 1),
        severity: SEVERITIES[severity],
        source: 'mtranslate',
        message: help === '' ? text : `${text}\n${help}`,
        ...(code === '' ? {} : { code }),
        ...pageOf(service, message),
        ...(related.length > 0 ? { relatedInformation: related } : {}),
        data: { name, operands },
    };
}

export function diagnosticsOf(service: Service, path: string): Published | null {
    const analysis = service.analysis(path);
    if (!analysis) return null;
    const diagnostics: Record<string, Diagnostic[]> = { [analysis.source.uri]: [] };
    for (const message of analysis.messages) {
        const uri = service.uriOf(message.place?.file ?? path);
        (diagnostics[uri] ??= []).push(diagnosticOf(service, analysis, message));
    }
    return { diagnostics, reads: [...analysis.reads], rulesMistakes: service.rulesMistakes };
}
