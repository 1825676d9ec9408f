/* What the functions of the package give and refuse. */
import assert from 'node:assert/strict';
import { statSync } from 'node:fs';
import { test } from 'node:test';
import { gzipSync } from 'node:zlib';
import { readFileSync } from 'node:fs';
import { load, RulesError, type Request, type TreeOptions } from 'mtranslate';

const translator = await load();
const bytesOf = (text: string): Uint8Array => new Uint8Array(Buffer.from(text, 'latin1'));
const RIGHT = 'x := LinearAlgebra:-HermitianTranspose(Vector[row]([1, 2]));\n';
const isRight = (): void => assert.equal(translator.translate({ text: "x = [1 2]'" }).text, RIGHT);

test("files in memory, folders and the host's answers", () => {
    const files = {
        './main.m': 'y = half(rate) + p.area(2);',
        'lib/half.m': 'function y = half(x)\ny = x/two;\n',
        'lib/+p/area.m': 'function a = area(r)\na = 3*r;\n',
    };
    const result = translator.translate({
        files,
        file: 'main.m',
        folders: ['lib'],
        answer: ({ kind, name }) => (kind === 'name' && name === 'rate' ? 'r' : undefined),
        rules: '[functions]\ntwo = "2"\n',
    });
    assert.match(result.text, /half := proc[^]*y := QXR\[mrdivide\]\(x,2\);[^]*half\(r\)/);
    assert.deepEqual(
        result.files.map(({ name }) => name),
        ['main.m', 'lib/half.m', 'lib/+p/area.m'],
    );
    assert.deepEqual(result.rules.used, [{ rule: 'rules:2: functions.two = "2"', count: 1 }]);
});

test('rules of several texts', () => {
    const texts = ['[functions]\nf = "a({1})"\ng = "b({1})"\n', '[functions]\ng = "c({1})"\n'];
    const rules = texts.map((text, at) => ({ name: `${at}.toml`, text }));
    assert.equal(
        translator.translate({ text: 'x = f(1); y = g(2);', rules }).text,
        'x := a(1);\ny := c(2);\n',
    );
    const wrong = [...rules, { name: 'wrong.toml', text: '[functions]\nh = 3\n' }];
    assert.throws(() => translator.translate({ text: 'x', rules: wrong }), {
        name: 'RulesError',
        message: /^wrong.toml:2:/,
    });
    isRight();
});

test('messages have their places in bytes, characters and UTF-16', () => {
    const { messages } = translator.translate({ text: "s = '\u{1d4b3}\u00e9'; [a, s(1)] = 1:2; x = (1" });
    const { severity, code, place } = messages.at(-1)!;
    assert.deepEqual([severity, code, place?.file], ['error', 'MT102', null]);
    assert.deepEqual(
        [place?.begin, place?.column, place?.columnCharacters, place?.columnUtf16],
        [place!.begin, place!.begin + 1, place!.begin - 3, place!.begin - 2],
    );
});

test('details of a source', () => {
    const text =
        'function r = f(x)\n% twice\nr = g(x);\nif r > 1, r = h(r); end\nend\nfunction y = g(x)\ny = 2*x;\nend\n';
    const { pieces, functions, statements, calls, names, comments, statistics } = translator.translate({
        text,
        details: true,
    });
    assert.deepEqual(
        functions.map(({ name, outer }) => [name, outer]),
        [
            ['f', -1],
            ['g', -1],
        ],
    );
    assert.deepEqual(
        calls.map(({ name, end }) => [name, end]),
        [
            ['g', 'own'],
            ['h', 'unknown'],
        ],
    );
    const r = names.find((name) => name.text === 'r');
    assert.deepEqual([r?.kind, r?.function, r?.uses.length, r?.definition?.line], ['output', 0, 5, 1]);
    assert.deepEqual([comments.length, comments[0]?.isKept], [1, true]);
    assert.equal(statements.filter(({ outer }) => outer >= 0).length, 1);
    assert.ok(pieces.some(({ kind, place }) => kind === 'head' && place.line === 4));
    assert.deepEqual([statistics?.lines, statistics?.statements], [8, statements.length]);
});

test('tokens', () => {
    const text = "hold on\ns.a = 'x'; % c";
    const { tokens } = translator.translate({ text, tokens: true, onlyRead: true });
    const read = tokens.map(({ kind, place }) => [kind, text.slice(place.begin, place.end)]);
    const expected = [
        'command hold on',
        'name s',
        'field .a',
        'operator =',
        "text 'x'",
        'separator ;',
        'comment % c',
    ];
    assert.deepEqual(
        read.map((pair) => pair.join(' ')),
        expected,
    );
});

test('results of find and resultKind', () => {
    const { text } = translator.translate({
        files: { 'a.m': 'setup\nk = count(2) + 1;', 'elsewhere/s.m': 'n = 3;' },
        file: 'a.m',
        find: ({ kind, name }) => (kind === 'file' && name === 'setup' ? 'elsewhere/s.m' : null),
        resultKind: (name) => (name === 'count' ? 'number' : undefined),
    });
    assert.equal(text, 'n := 3;\nk := count(2) + 1;\n');
});

test('texts and files that are no UTF-8, hold NULs, or end their lines otherwise', () => {
    const invalid = translator.translate({ text: bytesOf("x = '\xff\xe9';") });
    assert.deepEqual(Buffer.from(invalid.bytes).toString('latin1'), 'x := "\xff\xe9";\n');
    assert.equal(invalid.text, 'x := "\ufffd\ufffd";\n');
    assert.equal(translator.translate({ text: 'x = 1;\r\ny = 2;\r' }).text, 'x := 1;\ny := 2;\n');
    const withNul = translator.translate({ files: { 'a.m': 'x = 1;\0 y = 2;' }, file: 'a.m' });
    assert.deepEqual([withNul.status, withNul.messages[0]?.severity], ['done', 'error']);
    assert.equal(translator.translate({ text: '\ud800 = 1' }).status, 'done');
    isRight();
});

test('requests that make no sense', () => {
    const promise = (): never => Promise.resolve('x = 1') as never;
    const requests: [request: unknown, says: RegExp | typeof RulesError][] = [
        [undefined, /a request is an object/],
        [{}, /either a text or a file/],
        [{ text: 'x', file: 'x.m' }, /either a text or a file/],
        [{ text: 5 }, /text is a string/],
        [{ file: 5 }, /file is a string/],
        [{ text: 'x\0' }, /NUL/],
        [{ text: 'x', language: 3 }, /language is a string/],
        [{ text: 'x', folders: 'lib' }, /folders is a list/],
        [{ text: 'x', maxMemory: 1.5 }, /maxMemory is a whole number/],
        [{ text: 'x', answer: 'y' }, /answer is a function/],
        [{ text: 'x', rules: [5] }, /rules is a string, or a list/],
        [{ file: 'a.m', files: { 'a.m': null } }, /'a.m' is neither/],
        [{ file: 'a.m', read: promise }, /read has to answer a text at once, not a promise/],
        [{ text: 'x = f(1)', answer: () => 7 }, /answer has to answer a text$/],
        [{ text: 'x = f(1)', find: promise }, /find has to answer/],
        [{ text: 'x = f(1)', resultKind: promise }, /resultKind has to answer/],
        [{ text: 'x', rules: '[functions]\nf = 3\n' }, RulesError],
        [{ text: 'x', rules: '[names' }, RulesError],
    ];
    for (const [request, says] of requests) {
        const error = says instanceof RegExp ? { name: 'TypeError', message: says } : says;
        assert.throws(() => translator.translate(request as Request), error, JSON.stringify(request));
        isRight();
    }
    const results: [Request, string][] = [
        [{ text: 'x', language: 'french' as 'matlab' }, 'invalid'],
        [{ text: 'x', maxMemory: -1 }, 'invalid'],
        [{ file: 'absent.m', files: {} }, 'unreadable'],
        [{ file: 'broken.m', read: () => null }, 'unreadable'],
    ];
    for (const [request, status] of results) assert.equal(translator.translate(request).status, status);
    isRight();
});

test('what a callback throws arrives, and the next run is right', () => {
    const fail = (): never => {
        throw new RangeError('mine');
    };
    const text = 'y = f(x)';
    const requests: Request[] = [
        { file: 'a.m', read: fail },
        { text, answer: fail },
        { text, find: fail },
        { text, resultKind: fail },
        { text, answer: () => translator.translate({ text }).text, find: fail },
    ];
    for (const request of requests) {
        assert.throws(() => translator.translate(request), { name: 'RangeError', message: 'mine' });
        isRight();
    }
    let inner = '';
    translator.translate({ text, answer: () => void (inner = translator.translate({ text }).status) });
    assert.equal(inner, 'refused');
});

test('runs that take too much end as results', () => {
    const long = `x = [${'1 2 3;'.repeat(300000)}];`;
    assert.equal(translator.translate({ text: long, maxMemory: 8 }).status, 'too-large');
    isRight();
    const deep = `x = ${'('.repeat(100000)}1${')'.repeat(100000)};`;
    assert.equal(translator.translate({ text: deep }).messages[0]?.severity, 'error');
    const nested = `x = ${'{'.repeat(399)}1${'}'.repeat(399)};`;
    assert.deepEqual(translator.translate({ text: nested, details: true }).messages, []);
    isRight();
});

test('an instance that gets no more memory is left for a new one', async () => {
    const { Translator } = await import('mtranslate');
    const wasm = new URL('mtranslate.wasm', import.meta.resolve?.('mtranslate') ?? 'file:///');
    const small = new Translator(await WebAssembly.compile(limited(readFileSync(wasm), 512)));
    const text = `x = [${'1 2 3;'.repeat(2000000)}];`;
    for (let i = 0; i < 3; ++i) {
        assert.equal(small.translate({ text, maxMemory: 100000 }).status, 'no-memory');
        assert.equal(small.translate({ text: 'x = 1;' }).text, 'x := 1;\n');
    }
});

/** The module with fewer pages as the most of its memory. */
function limited(wasm: Uint8Array, pages: number): Uint8Array {
    const number = (at: number): [value: number, end: number] => {
        let value = 0;
        for (let shift = 0; ; shift += 7) {
            const byte = wasm[at++]!;
            value += (byte & 127) * 2 ** shift;
            if (byte < 128) return [value, at];
        }
    };
    for (let at = 8; at < wasm.length; ) {
        const [size, begin] = number(at + 1);
        if (wasm[at] === 5) {
            const [least, end] = number(begin + 2);
            const memory = [1, 1, ...leb(least), ...leb(Math.max(pages, least))];
            assert.ok(end < begin + size);
            const section = [5, ...leb(memory.length), ...memory];
            return Buffer.concat([
                wasm.subarray(0, at),
                Uint8Array.from(section),
                wasm.subarray(begin + size),
            ]);
        }
        at = begin + size;
    }
    throw new Error('no memory');
}

function leb(value: number): number[] {
    return value < 128 ? [value] : [(value & 127) | 128, ...leb(value >>> 7)];
}

test('a file of 10 MB', () => {
    const file = 'x = 1 + 2;\n'.repeat(10_000_000 / 11);
    const result = translator.translate({ files: { 'a.m': file }, file: 'a.m' });
    assert.equal(result.status, 'done');
    assert.ok(result.text.length > 10_000_000);
    isRight();
});

test('10,000 requests leave no more memory in use than 1,000', () => {
    const request: Request = {
        text: 'x = f(a); for k = 1:3, y(k) = x + "s"; end',
        details: true,
        rules: '[functions]\nf = "g({1})"\n',
    };
    const run = (count: number): number => {
        for (let i = 0; i < count; ++i) translator.translate(i % 7 ? request : { text: 'x = (' });
        return process.memoryUsage().arrayBuffers + process.memoryUsage().external;
    };
    const before = run(1000);
    assert.ok(run(9000) <= before + (16 << 20));
});

test('1,000 lines with details take less than 50 ms', (t) => {
    const block = [
        'total = 0;',
        'for k = 1:numel(values)',
        '    if values(k) > limit && k < 10',
        '        total = total + values(k)^2; % squares',
        '    else',
        "        names{k} = ['n' num2str(k)];",
        '    end',
        'end',
        'result = sum(values(:)) * total;',
        "fprintf('%d\\n', result);",
    ].join('\n');
    const text = `${block}\n`.repeat(100);
    const times = Array.from({ length: 15 }, () => {
        const begin = process.cpuUsage(); // whatever else the machine does
        assert.equal(translator.translate({ text, details: true }).statistics?.lines, 1000);
        const { user, system } = process.cpuUsage(begin);
        return (user + system) / 1000;
    });
    const median = times.sort((a, b) => a - b)[7]!;
    t.diagnostic(`median ${median.toFixed(1)} ms, least ${times[0]!.toFixed(1)} ms`);
    assert.ok(times[0]! < 50);
});

test('a tree tells how far it is, keeps its outputs apart and stops', async () => {
    const files = {
        'b.m': 'y = sum([1 2; 3 4](:)) + f(x);',
        'a/f.m': 'function y = f(x)\ny = x(x > 0); y(1:end-1) = [];',
        'qxrp_library.m': 'x = 1',
        '.hidden.m': 'x',
        'notes.txt': '',
    };
    const outputs = async (options: TreeOptions): Promise<(string | number | null)[][]> => {
        const all = [];
        for await (const { file, output, done, count, result } of translator.translateTree(files, options))
            all.push([file, output, done, count, result.status]);
        return all;
    };
    assert.deepEqual(await outputs({}), [
        ['a/f.m', 'a/f.txt', 1, 3, 'done'],
        ['b.m', 'b.txt', 2, 3, 'done'],
        ['qxrp_library.m', 'qxrp_library.txt', 3, 3, 'invalid'],
        [null, 'qxrp_library.txt', 3, 3, 'done'],
    ]);
    await assert.rejects(outputs({ signal: AbortSignal.abort() }), { name: 'AbortError' });
    await assert.rejects(outputs({ rules: '[names' }), RulesError);
});

test('kinds of messages', () => {
    const kind = translator.explain('mt203');
    assert.deepEqual([kind?.code, kind?.name, kind?.severity], ['MT203', 'deletion', 'gap']);
    assert.equal(translator.explain('deletion'), kind);
    assert.equal(translator.explain('nothing'), undefined);
    assert.ok(translator.messageKinds().length > 40);
    assert.match(translator.version, /^\d+\.\d+\.\d+$/);
});

test('the pack stays below 1 MB', () => {
    const pack = process.env['MTRANSLATE_PACK'];
    assert.ok(pack && statSync(pack).size < 1 << 20);
    assert.ok(gzipSync(readFileSync(pack)).length > 1000);
});
