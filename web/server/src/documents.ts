/* Open documents and what is published about them. */
import { fileURLToPath } from 'node:url';
import type { Diagnostic } from 'vscode-languageserver-types';

/** As the translator knows the document: that of a file, or one of its own for an unsaved text. */
export function pathOf(uri: string): string {
    try {
        if (uri.startsWith('file:')) return fileURLToPath(uri);
    } catch {
        // no path of this machine: as any other address
    }
    const base = uri.slice(Math.max(uri.lastIndexOf('/'), uri.lastIndexOf(':')) + 1).replace(/\.m$/, '');
    return `/${encodeURIComponent(uri)}/${base.replace(/[^\w.+@-]/g, '_')}.m`;
}

export interface OpenDocument {
    uri: string;
    path: string;
    timer: NodeJS.Timeout | null;
    /** Paths of other files that its messages depend on. */
    reads: ReadonlySet<string>;
    /** What its translation tells, by addresses; null before the first. */
    diagnostics: Readonly<Record<string, Diagnostic[]>> | null;
}

const keyOf = (diagnostic: Diagnostic): string => JSON.stringify([diagnostic.range, diagnostic.message]);

/** Diagnostics of open documents are their own; those of other files come from all that read them. */
export class Published {
    readonly #shown = new Set<string>();

    constructor(
        readonly open: ReadonlyMap<string, OpenDocument>,
        readonly send: (uri: string, diagnostics: Diagnostic[]) => void,
    ) {}

    #about(uri: string): Diagnostic[] {
        const own = this.open.get(uri);
        if (own) return own.diagnostics?.[uri] ?? [];
        const all = [...this.open.values()].flatMap(({ diagnostics }) => diagnostics?.[uri] ?? []);
        return [...new Map(all.map((diagnostic) => [keyOf(diagnostic), diagnostic])).values()];
    }

    /** After a change in what the document tells; before: what it told. */
    update(uris: Iterable<string>): void {
        for (const uri of new Set(uris)) {
            const diagnostics = this.#about(uri);
            if (diagnostics.length === 0 && !this.open.has(uri) && !this.#shown.has(uri)) continue;
            if (diagnostics.length > 0) this.#shown.add(uri);
            else this.#shown.delete(uri);
            this.send(uri, diagnostics);
        }
    }
}
