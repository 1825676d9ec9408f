/* What can be folded: functions, statements that hold others, comments, and the sections of %%. */
import { FoldingRangeKind, type FoldingRange } from 'vscode-languageserver-types';
import type { Analysis } from '../analysis.js';
import type { Service } from '../service.js';

function* comments({ result, source }: Analysis): Iterable<FoldingRange> {
    const lines = result.comments
        .map(({ place }) => place.line - 1)
        .filter((line) => /^\s*[%#]/.test(source.line(line)));
    let startLine = -1;
    for (const [at, line] of lines.entries()) {
        if (startLine < 0) startLine = line;
        if (lines[at + 1] === line + 1) continue;
        if (line > startLine) yield { startLine, endLine: line, kind: FoldingRangeKind.Comment };
        startLine = -1;
    }
}

function* sections({ result, source }: Analysis): Iterable<FoldingRange> {
    const begins = result.comments
        .map(({ place }) => place.line - 1)
        .filter((line) => /^\s*%%(\s|$)/.test(source.line(line)));
    for (const [at, startLine] of begins.entries()) {
        const endLine = (begins[at + 1] ?? source.lineCount) - 1;
        if (endLine > startLine) yield { startLine, endLine, kind: FoldingRangeKind.Region };
    }
}

/** One for each first line. */
export function foldingRanges(service: Service, { path }: { path: string }): FoldingRange[] {
    const analysis = service.analysis(path);
    if (!analysis) return [];
    const { result } = analysis;
    const places = [...result.functions, ...result.statements].map(({ place }) => place);
    const ranges = places
        .filter(({ line, endLine }) => endLine > line)
        .map(({ line, endLine }): FoldingRange => ({ startLine: line - 1, endLine: endLine - 1 }));
    const all = [...ranges, ...comments(analysis), ...sections(analysis)];
    const first = new Map<number, FoldingRange>();
    for (const range of all) if (!first.has(range.startLine)) first.set(range.startLine, range);
    return [...first.values()].sort((a, b) => a.startLine - b.startLine);
}
