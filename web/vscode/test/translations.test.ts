/* The translation at the side, in an editor that is a stand-in. */
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { Translations } from '../src/translations.js';
import { user, window } from './stand_in.js';

const piece = (line: number, firstLine: number, lastLine: number) => ({
    range: { start: { line }, end: { line } },
    firstLine,
    lastLine,
});

test('each side follows the text and the cursor of the other', async () => {
    let answer: object | null = {
        text: 'x := 1;\ny := 2;\n',
        failure: null,
        pieces: [piece(0, 0, 0), piece(1, 1, 1)],
    };
    const asked: unknown[] = [];
    const client = {
        code2ProtocolConverter: { asUri: String },
        sendRequest: async (method: string, { textDocument }: { textDocument: object }) => {
            asked.push([method, textDocument]);
            return answer;
        },
    };
    const translations = new Translations(client as never);
    const source = user.opens('file:/a/b.m');
    await translations.show();
    const [, beside] = window.visibleTextEditors;
    assert.deepEqual(asked, [['mtranslate/translation', { uri: 'file:/a/b.m?' }]]);
    assert.deepEqual(
        [beside!.document.languageId, beside!.document.text],
        ['mtranslate-host', 'x := 1;\ny := 2;\n'],
    );
    assert.deepEqual(beside!.marked, ['0-0']);
    user.goesTo(source, 1);
    assert.deepEqual(beside!.marked, ['1-1']);
    user.goesTo(beside!, 0);
    assert.deepEqual([source.marked, beside!.marked], [['0-0'], []]);
    user.goesTo(source, 1);
    // Typing: the text and the marks are those of the new translation.
    answer = { text: 'x := 1;\n\n\ny := 2;\n', failure: null, pieces: [piece(0, 0, 0), piece(1, 2, 3)] };
    user.types(source);
    await new Promise((resolve) => setTimeout(resolve, 250));
    assert.deepEqual([beside!.document.text.length, beside!.marked], [18, ['2-3']]);
    answer = { text: '', failure: 'memory exhausted', pieces: [] };
    user.types(source);
    await new Promise((resolve) => setTimeout(resolve, 250));
    assert.deepEqual([beside!.document.text, beside!.marked], ['# memory exhausted\n', []]);
    translations.dispose();
});
