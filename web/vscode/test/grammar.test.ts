/* What the grammars call the parts of a line. */
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { test } from 'node:test';
import { hostLinesOf, sourceLinesOf } from '../src/pieces.js';

const require = createRequire(`${process.env['MTRANSLATE_VSCODE'] ?? process.cwd()}/package.json`);
const { OnigScanner, OnigString, loadWASM } = require('vscode-oniguruma');
const { INITIAL, Registry, parseRawGrammar } = require('vscode-textmate');

await loadWASM(readFileSync(require.resolve('vscode-oniguruma/release/onig.wasm')).buffer);
const registry = new Registry({
    onigLib: {
        createOnigScanner: (sources: string[]) => new OnigScanner(sources),
        createOnigString: (text: string) => new OnigString(text),
    },
    loadGrammar: async (scope: string) => {
        const file = `syntaxes/${scope === 'source.matlab' ? 'matlab' : 'host'}.tmLanguage.json`;
        return parseRawGrammar(readFileSync(file, 'utf8'), file);
    },
});

test('scopes of tokens', async () => {
    const rows: [scope: string, lines: string, token: string, has: string][] = [
        ['source.matlab', "x = a' + 'text % no comment'; % one", 'text % no comment', 'string.quoted.single'],
        ['source.matlab', "x = a' + 'text % no comment'; % one", '% one', 'comment.line'],
        ['source.matlab', "x = a' + b'; y", "' ", 'keyword.operator.transpose'],
        ['source.matlab', 'function [a, b] = half(x)', 'half', 'entity.name.function'],
        ['source.matlab', 'y = x(end)', 'end', 'variable.language.end'],
        ['source.matlab', 'if x, s.end = 1; end', 'end', 'source.matlab'],
        ['source.matlab', 'if x, y = 1e-3; end', '1e-3', 'constant.numeric'],
        ['source.matlab', '%{\nfor x\n%}', 'for x', 'comment.block'],
        ['source.matlab', 'y = f(1, ... the rest', ' the rest', 'comment.line.continuation'],
        ['source.mtranslate-host', 'half := proc( x )', 'half', 'entity.name.function'],
        ['source.mtranslate-host', 'y := "a\\"b # c"; # d', '# d', 'comment.line'],
        ['source.mtranslate-host', 'y := copy(s:-alpha) +~ 1..2;', ':-', 'keyword.operator'],
    ];
    for (const [scope, text, token, has] of rows) {
        const grammar = await registry.loadGrammar(scope);
        let stack = INITIAL;
        const found: string[] = [];
        for (const line of text.split('\n')) {
            const tokens = grammar.tokenizeLine(line, stack);
            stack = tokens.ruleStack;
            for (const { startIndex, endIndex, scopes } of tokens.tokens)
                if (line.slice(startIndex, endIndex).trim() === token.trim()) found.push(scopes.join(' '));
        }
        assert.ok(
            found.some((scopes) => scopes.includes(has)),
            `${token} in ${text}: ${found}`,
        );
    }
});

test('lines that belong together', () => {
    const piece = (first: number, last: number, firstLine: number, lastLine: number) => ({
        range: { start: { line: first }, end: { line: last } },
        firstLine,
        lastLine,
    });
    const pieces = [piece(0, 0, 0, 2), piece(1, 5, 3, 9), piece(2, 2, 4, 5), piece(2, 2, 6, 6)];
    assert.deepEqual(hostLinesOf(pieces, 2), { first: 4, last: 6 });
    assert.deepEqual(hostLinesOf(pieces, 3), { first: 3, last: 9 });
    assert.deepEqual(sourceLinesOf(pieces, 1), { first: 0, last: 0 });
    assert.deepEqual([hostLinesOf(pieces, 8), sourceLinesOf([], 0)], [null, null]);
});
