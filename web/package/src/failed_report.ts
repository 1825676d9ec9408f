/* What a report says of a file that the module has told nothing about. */
import type { FileReport } from './types.js';

export function failedReport(path: string, failure: string): FileReport {
    return {
        path,
        state: 'failed',
        lines: 0,
        bytes: 0,
        functions: [],
        statements: { all: 0, withoutMessage: 0 },
        waiting: [],
        comments: { all: 0, kept: 0 },
        calls: [],
        map: [],
        messageCounts: { error: 1, gap: 0, warning: 0, note: 0 },
        messages: [{ severity: 'error', message: failure }],
        rules: {},
    };
}
