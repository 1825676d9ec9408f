/* What each request answers, in a workspace of a few files. */
import assert from 'node:assert/strict';
import { readFileSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { test } from 'node:test';
import { TextDocument } from 'vscode-languageserver-textdocument';
import { Client, makeFolder, marked, withClient } from './client.js';

const MAIN = `% Main of all.
function [a, b] = main(x, varargin)
%MAIN does it.
%  In two lines.
s.alpha = x; s.beta = half(x) + other(x, 2) + pk.area(x);
if x > 1
    a = s.alpha;
else
    a = unknown_one(2, [3, 4]);
end
b = secret(a); h = @half;
end

%% The rest
function y = half(x)
y = x/2;
end
`;
const FILES = {
    'main.m': MAIN,
    'other.m': '% Adds both.\nfunction y = other(x, n)\ny = x + n;\nend\n',
    'caller.m': "z = other(1, 2); % other\nw = 'other'; v = other(z, w);\n",
    'lib/setup.m': 'k = 1;\neval(k);\n',
    '+pk/area.m': 'function a = area(r)\na = r;\nend\n',
    'private/secret.m': 'function y = secret(x)\ny = x;\nend\n',
    'lib/private/secret.m': 'function y = secret(x)\ny = -x;\nend\n',
    '@point/norm.m': 'function n = norm(p)\nn = p.x;\nend\n',
    'skipped/gone.m': 'function gone\n',
    '.gitignore': 'skipped/\n',
    '.git/HEAD': '',
};

const at = (line: number, character: number) => ({ position: { line, character } });
const range = (line: number, from: number, to: number) => ({
    start: { line, character: from },
    end: { line, character: to },
});

/** The place in MAIN, or in another text, of the first of these words, so many characters in. */
function of(words: string, into = 0, text = MAIN): { position: { line: number; character: number } } {
    const lines = text.slice(0, text.indexOf(words) + into).split('\n');
    return at(lines.length - 1, lines.at(-1)!.length);
}

/** Places as "file:line:from-to", counted from 0. */
const places = (client: Client, locations: { uri: string; range: any }[]): string[] =>
    locations
        .map(
            ({ uri, range: { start, end } }) =>
                `${uri.slice(client.uri('').length + 1)}:${start.line}:${start.character}-${end.character}`,
        )
        .sort();

/** The texts of files after an edit, and new names of files as "from OLD". */
function applied(client: Client, { documentChanges, changes = {} }: any): Record<string, string> {
    const texts: Record<string, string> = {};
    const name = (uri: string): string => uri.slice(client.uri('').length + 1);
    const plain = Object.entries(changes).map(([uri, edits]) => ({ textDocument: { uri }, edits }));
    for (const { kind, oldUri, newUri, uri, textDocument, edits } of documentChanges ?? plain) {
        if (kind === 'rename') texts[name(newUri)] = `from ${name(oldUri)}`;
        if (kind === 'create') texts[name(uri)] ??= '';
        if (!textDocument) continue;
        const path = fileURLToPath(textDocument.uri);
        const before = texts[name(textDocument.uri)] ?? readFileSync(path, 'utf8');
        texts[name(textDocument.uri)] = TextDocument.applyEdits(
            TextDocument.create(textDocument.uri, 'matlab', 0, before),
            edits,
        );
    }
    return texts;
}

test('requests about one program', async (t) => {
    const client = new Client(makeFolder(FILES));
    const { legend } = ((await client.start({})) as any).capabilities.semanticTokensProvider;
    await client.open('main.m', MAIN);

    await t.test('diagnostics', async () => {
        const [message, ...others] = await client.messages('main.m');
        const { code, severity, source, codeDescription } = message!;
        assert.deepEqual([code, severity, source, others], ['MT401', 2, 'mtranslate', []]);
        assert.deepEqual(message!.range, range(8, 8, 19));
        const [page, anchor] = codeDescription!.href.split('#');
        assert.equal(anchor, 'mt401-unknown-function-warning');
        assert.match(readFileSync(new URL(page!), 'utf8'), /^### MT401: unknown-function \(warning\)$/m);
    });

    await t.test('hover', async () => {
        const texts: [{ position: object }, RegExp][] = [
            [of('x, varargin'), /`x`: parameter of the function `main`, used 6 times/],
            [of('half(x) +'), /function y = half\(x\)[^]*function of this file[^]*s:-beta := half\(x\) \+~/],
            [of('other(x'), /function y = other\(x, n\)[^]*`other\.m`[^]*Adds both\./],
            [of('secret(a)'), /`private\/secret\.m`/],
            [of('unknown_one'), /found nowhere[^]*a := unknown_one\(2,/],
            [of('else'), /^(?!.*undefined)/],
            [
                of('main(x'),
                /function \[a, b\] = main\(x, varargin\)[^]*MAIN does it\.\n In two lines\.[^]*main := proc/,
            ],
        ];
        for (const [position, text] of texts) {
            const hover = await client.ask('textDocument/hover', 'main.m', position);
            assert.match(hover?.contents.value ?? '', text);
        }
    });

    await t.test('definition', async () => {
        const definitions: [{ position: object }, string | null][] = [
            [of('half(x) +', 2), 'main.m:14:13-17'],
            [of('half;'), 'main.m:14:13-17'],
            [of('other(x', 5), 'other.m:1:13-18'],
            [of('pk.area', 4), '+pk/area.m:0:13-17'],
            [of('secret(a'), 'private/secret.m:0:13-19'],
            [of('s.alpha;'), 'main.m:4:0-1'],
            [of('x/2'), 'main.m:14:18-19'],
            [of('unknown_one'), null],
            [of('% Main', 3), null],
        ];
        for (const [position, place] of definitions) {
            const found = await client.ask('textDocument/definition', 'main.m', position);
            assert.deepEqual(found && places(client, [found])[0], place);
        }
    });

    await t.test('references', async () => {
        const ask = async (position: object, includeDeclaration = true): Promise<string[]> =>
            places(
                client,
                await client.ask('textDocument/references', 'main.m', {
                    ...position,
                    context: { includeDeclaration },
                }),
            );
        const calls = ['caller.m:0:4-9', 'caller.m:1:17-22', 'main.m:4:32-37'];
        assert.deepEqual(await ask(of('other(x')), [...calls, 'other.m:1:13-18']);
        assert.deepEqual(await ask(of('other(x'), false), calls);
        assert.deepEqual(await ask(of('half(x) +')), [
            'main.m:10:20-24',
            'main.m:14:13-17',
            'main.m:4:22-26',
        ]);
        assert.deepEqual(await ask(of('x/2')), ['main.m:14:18-19', 'main.m:15:4-5']);
        const marks = await client.ask('textDocument/documentHighlight', 'main.m', of('h = @'));
        assert.deepEqual(
            marks.map(({ range }: any) => range.start),
            [at(10, 15).position],
        );
    });

    await t.test('rename', async () => {
        const ask = (position: object, newName: unknown): Promise<object> =>
            client.ask('textDocument/rename', 'main.m', { ...position, newName });
        const variable = applied(client, await ask(of('s.alpha'), 'all'));
        assert.deepEqual(variable, {
            'main.m': MAIN.replaceAll('s.alpha', 'all.alpha').replace('s.beta', 'all.beta'),
        });
        assert.deepEqual(applied(client, await ask(of('other(x'), 'sum_of')), {
            'main.m': MAIN.replace('other(x', 'sum_of(x'),
            'caller.m': "z = sum_of(1, 2); % other\nw = 'other'; v = sum_of(z, w);\n",
            'other.m': FILES['other.m'].replace('other', 'sum_of'),
            'sum_of.m': 'from other.m',
        });
        assert.deepEqual(applied(client, await ask(of('pk.area', 4), 'size_of')), {
            'main.m': MAIN.replace('pk.area', 'pk.size_of'),
            '+pk/area.m': FILES['+pk/area.m'].replace('area', 'size_of'),
            '+pk/size_of.m': 'from +pk/area.m',
        });
        assert.deepEqual(Object.keys(applied(client, await ask(of('half(x) +'), 'third'))), ['main.m']);
        const prepared = await client.ask('textDocument/prepareRename', 'main.m', of('pk.area', 1));
        assert.deepEqual(prepared, { range: range(4, 49, 53), placeholder: 'area' });
        const refused: [{ position: object }, unknown][] = [
            [of('s.alpha'), '1x'],
            [of('s.alpha'), 'a b'],
            [of('s.alpha'), ''],
            [of('s.alpha'), 'end'],
            [of('s.alpha'), 'x'],
            [of('s.alpha'), 3],
            [of('s.alpha'), 'n'.repeat(64)],
            [of('half(x) +'), 'main'],
            [of('other(x'), 'caller'],
            [of('other(x'), 'eval'],
            [of('unknown_one'), 'known'],
            [of('% Main'), 'name'],
        ];
        for (const [position, name] of refused)
            await assert.rejects(
                ask(position, name),
                /name|keyword|characters|there already|defines/,
                String(name),
            );
    });

    await t.test('symbols', async () => {
        const symbols = await client.ask('textDocument/documentSymbol', 'main.m');
        assert.deepEqual(
            symbols.map(({ name, kind, range: { start, end } }: any) => [name, kind, start.line, end.line]),
            [
                ['main', 12, 1, 11],
                ['half', 12, 14, 16],
            ],
        );
        const query = async (query: string): Promise<string[]> =>
            (await client.connection.sendRequest<any[]>('workspace/symbol', { query }))
                .map(({ name, containerName = '' }) => `${containerName}:${name}`)
                .sort();
        assert.deepEqual(await query('are'), ['pk:area']);
        assert.deepEqual(await query('hlf'), [':half']);
        assert.deepEqual(await query('norm'), ['point:norm']);
        assert.deepEqual(await query('gone'), []);
        assert.ok((await query('')).length > 6);
    });

    await t.test('folding and tokens', async () => {
        const folds = await client.ask('textDocument/foldingRange', 'main.m');
        assert.deepEqual(
            folds.map(({ startLine, endLine, kind = '' }: any) => `${startLine}-${endLine}${kind}`),
            ['1-11', '2-3comment', '5-9', '13-17region', '14-16'],
        );
        const { data } = await client.ask('textDocument/semanticTokens/full', 'main.m');
        const tokens: string[] = [];
        for (let i = 0, line = 0, column = 0; i < data.length; i += 5) {
            column = data[i] > 0 ? data[i + 1] : column + data[i + 1];
            line += data[i];
            const text = MAIN.split('\n')[line]!.slice(column, column + data[i + 2]);
            tokens.push([text, legend.tokenTypes[data[i + 3]], data[i + 4]].join(' '));
        }
        const has = (...wanted: string[]): void =>
            assert.deepEqual(
                wanted.filter((token) => !tokens.includes(token)),
                [],
            );
        assert.equal(tokens[0], '% Main of all. comment 0');
        has(
            'function keyword 0',
            'main function 1',
            'x parameter 1',
            'x parameter 0',
            'a variable 1',
            'half function 0',
        );
        has(
            'unknown_one function 4',
            'pk.area function 0',
            '.alpha property 0',
            '2 number 0',
            'end keyword 0',
        );
    });

    await t.test('signatures', async () => {
        const help = (position: object) => client.ask('textDocument/signatureHelp', 'main.m', position);
        const other = await help(of('2) + pk'));
        assert.deepEqual([other.signatures[0].label, other.activeParameter], ['y = other(x, n)', 1]);
        assert.deepEqual(other.signatures[0].documentation, 'Adds both.');
        assert.equal(await help(of('if x')), null);
        assert.equal(await help(of('4]);')), null);
    });

    await t.test('the translation', async () => {
        const { text, pieces, status, version } = await client.ask('mtranslate/translation', 'main.m');
        assert.deepEqual([status, version], ['done', 1]);
        const lines = text.split('\n');
        const half = pieces.find(({ kind, range }: any) => kind === 'statement' && range.start.line === 15);
        assert.match(lines[half.firstLine], /y := .*x.*2/);
        assert.doesNotMatch(text, /other := proc/);
        const whole = await client.ask('mtranslate/translation', 'main.m', { whole: true });
        assert.match(whole.text, /main := proc[^]*other := proc/);
        const lenses = await client.ask('textDocument/codeLens', 'main.m');
        assert.deepEqual(
            lenses.map(({ range, command }: any) => `${range.start.line} ${command.title}`),
            ['1 translation', '14 translation'],
        );
        const run = await client.connection.sendRequest<any>('workspace/executeCommand', lenses[0].command);
        assert.equal(run.text, text);
    });
    assert.equal(await client.stop(), 0);
});

test('names that several functions and files share', async () => {
    const nested =
        'function outer(a)\nb = a;\n    function inner(c)\n    d = b + c;\n    end\ninner(b);\nend\n';
    const files = {
        'one.m': 'function one(x)\nglobal total\ntotal = x;\n',
        'two.m': 'function y = two\nglobal total\ny = total;\nend\nfunction total_of\ntotal = 1;\nend\n',
        'three.m': 'global sum\nsum = 1;\n',
        'nested.m': nested,
    };
    await withClient(files, async (client) => {
        const rename = async (path: string, line: number, character: number, newName: string) =>
            applied(
                client,
                await client.ask('textDocument/rename', path, { ...at(line, character), newName }),
            );
        assert.deepEqual(await rename('one.m', 2, 0, 'sum_of'), {
            'one.m': files['one.m'].replaceAll('total', 'sum_of'),
            'two.m': files['two.m'].replace('global total\ny = total', 'global sum_of\ny = sum_of'),
        });
        assert.deepEqual(await rename('nested.m', 1, 0, 'e'), {
            'nested.m': nested.replace('b = a', 'e = a').replace('b + c', 'e + c').replace('(b)', '(e)'),
        });
        for (const name of ['a', 'd', 'inner'])
            await assert.rejects(rename('nested.m', 1, 0, name), /already a name/);
        await assert.rejects(rename('one.m', 2, 0, 'sum'), /'sum' is a name in three.m already/);
    });
});

test('completion', async () => {
    const rows: [text: string, has: string[], hasNot: string[]][] = [
        [
            'function f(count)\nvalue = 1;\ny = @\nend\nfunction g\nelse_where = 2;\nend\n',
            ['count', 'value', 'g', 'f', 'other', 'while', 'pk', 'secret'],
            ['else_where', 'norm', 'gone'],
        ],
        ['s.one = 1; s.two.three = 2;\nt = s.@', ['one', 'two'], ['three', 's', 'while']],
        ['s(2).one = 1;\nt = s(1).@', ['one'], ['while']],
        ['t = pk.@', ['area'], ['while']],
        ['y = oth@', ['other'], ['secret']],
        ['% y = @', [], ['other']],
        ['y = 12@', [], ['other']],
    ];
    await withClient(FILES, async (client) => {
        for (const [source, has, hasNot] of rows) {
            const { text, position } = marked(source);
            await client.open('new.m', text);
            const { items } = await client.ask('textDocument/completion', 'new.m', { position });
            const labels: string[] = items.map(({ label }: any) => label);
            const wrong = [
                has.filter((label) => !labels.includes(label)),
                hasNot.filter((label) => labels.includes(label)),
            ];
            assert.deepEqual(wrong, [[], []], source);
            const other = items.find(({ label }: any) => label === 'other');
            const resolve = () => client.connection.sendRequest<any>('completionItem/resolve', other);
            if (other) assert.equal((await resolve()).documentation, 'Adds both.');
            await client.close('new.m');
        }
    });
});

test('quick fixes', async () => {
    // Of another file, all of it.
    const rows: [source: string, title: string, inserted: string, file?: string][] = [
        ["x = 1;\ny = x == 'abc';@\n", 'Leave MT302 out here', '  % mtranslate: ignore MT302'],
        ["y = nowhere(1) == 'a'; % mtranslate: ignore MT302@\n", 'Leave MT401 out here', ', MT401'],
        ['@y = nowhere(1);\n', 'Leave MT401 out in this file', '% mtranslate: ignore MT401\n'],
        ['syms a\nif 1\n@    x = a(1, :);\nend\n', "Declare 'a' as a variable", '    a = [];\n'],
        ['function [a, b] = new(x)\n% help\n@  a = x;\n', "Declare 'b' as a variable", '  b = [];\n'],
        [
            'y = nowhere(1);@\n',
            "Add a rule for 'nowhere'",
            '[names]\n[functions] # ours\nnowhere = "nowhere({args})"\na = "b"\n',
            'mtranslate.toml',
        ],
        [
            'y = nowhere(1, [2, 3]);@\n',
            "Declare 'nowhere' as a function in nowhere.m",
            'function y = nowhere(x1, x2)\n    y = [];\nend\n',
            'nowhere.m',
        ],
    ];
    const everywhere = { start: at(0, 0).position, end: at(9, 0).position };
    await withClient({ 'mtranslate.toml': '[names]\n[functions] # ours\na = "b"\n' }, async (client) => {
        const actionsIn = (range: object): Promise<any[]> =>
            client.ask('textDocument/codeAction', 'new.m', { range, context: { diagnostics: [] } });
        for (const [source, title, inserted, file] of rows) {
            const { text } = marked(source);
            writeFileSync(join(client.folder, 'new.m'), text);
            await client.open('new.m', text);
            const actions = await actionsIn(everywhere);
            const action = actions.find((action) => action.title === title);
            assert.ok(action, `${title} among ${actions.map(({ title }) => title)}`);
            const expected = file === undefined ? source.replace('@', inserted) : inserted;
            assert.equal(applied(client, action.edit)[file ?? 'new.m'], expected);
            assert.deepEqual(await actionsIn(range(9, 0, 1)), []);
            await client.close('new.m');
            rmSync(join(client.folder, 'new.m'));
        }
    });
});

test('the messages follow texts, files and settings', async () => {
    const files = {
        'a.m': 'y = f(1);\n',
        'b.m': 'setup\n',
        'setup.m': 'x = 1;\n',
        'host.toml': '[functions]\nf = "g({1})"\n',
    };
    await withClient(files, async (client) => {
        const configure = (settings: object): Promise<void> => {
            client.settings = settings;
            return client.connection.sendNotification('workspace/didChangeConfiguration', { settings: null });
        };
        const isCalledFromB = ({ relatedInformation: [{ location }] }: any): boolean =>
            location.uri === client.uri('b.m');
        const ignored = { range: range(0, 9, 9), text: ' % mtranslate: ignore MT401' };
        const steps: [
            does: () => Promise<unknown>,
            path: string,
            codes: string,
            is?: (first: any) => boolean,
        ][] = [
            [() => client.open('a.m', files['a.m']), 'a.m', 'MT401'],
            // A file appears, and goes.
            [() => client.write('f.m', 'function y = f(x)\ny = x;\n'), 'a.m', ''],
            [() => client.write('f.m', null), 'a.m', 'MT401'],
            // A rules file, one with a mistake, and patterns of messages.
            [() => configure({ rules: ['host.toml'] }), 'a.m', ''],
            [
                () => client.write('host.toml', '[functions]\nf = 3\n'),
                'host.toml',
                'none',
                ({ range }) => range.start.line === 1,
            ],
            [() => configure({ messages: ['no-MT401'], language: 'klingon', maxMemory: -1 }), 'a.m', ''],
            [async () => {}, 'host.toml', ''],
            [
                () => configure({ messages: ['error=MT401'] }),
                'a.m',
                'MT401',
                ({ severity }) => severity === 1,
            ],
            // The text of a called script, on the disk and in the editor, which then leaves it.
            [() => client.open('b.m', files['b.m']), 'b.m', ''],
            [() => client.write('setup.m', 'x = 1;\neval(s);\n'), 'setup.m', 'MT204,MT402', isCalledFromB],
            [() => client.open('setup.m', 'x = (1;\n'), 'setup.m', 'MT102'],
            [() => client.change('setup.m', { text: 'x = 2;\n' }), 'setup.m', ''],
            [() => client.close('setup.m'), 'setup.m', 'MT204,MT402', isCalledFromB],
            // Comments in the source, and another language.
            [() => client.change('a.m', ignored), 'a.m', ''],
            [() => client.change('a.m', { text: "y = 'text" }), 'a.m', 'MT103'],
            [
                () => configure({ language: 'classic' }),
                'a.m',
                'none',
                ({ message }) => /^syntax error/.test(message),
            ],
            [() => client.close('a.m'), 'a.m', ''],
        ];
        for (const [does, path, codes, is = () => true] of steps) {
            await does();
            const [first] = await client.has(path, codes);
            assert.ok(is(first), JSON.stringify(first));
        }
    });
});

test("a tree's own configuration decides what the tool lets it", async () => {
    const files = {
        'mtranslate.toml':
            '[options]\nrules = ["own.toml", "../outside.toml"]\nlanguage = "octave"\nmessages = ["no-MT302"]\ninclude = ["lib"]\nexclude = ["skip_*"]\n\n[functions]\ng = "h({1})"\n',
        'own.toml': '[functions]\nf = "k({1})"\n',
        'lib/here.m': 'function y = here(x)\ny = x;\n',
        'skip_me.m': 'function y = skip_me(x)\ny = x;\n',
        'a.m': "x = f(1) + g(2) + here(3) + skip_me(4);\ny = x == 'abc';\n",
    };
    for (const [untrusted, codes] of [
        [false, 'MT401'],
        [true, 'MT401,MT401,MT302'],
    ] as const) {
        await withClient(
            files,
            async (client) => {
                await client.open('a.m', files['a.m']);
                await client.has('a.m', codes);
            },
            { options: { untrusted } },
        );
    }
});

test('positions in UTF-16 and in UTF-8', async () => {
    const text = "s = '\u{1d4b3}\u00e9'; y = nowhere(s);\n";
    for (const [encoding, from] of [
        ['utf-16', 15],
        ['utf-8', 18],
    ] as const) {
        await withClient(
            {},
            async (client) => {
                await client.open('a.m', text);
                assert.deepEqual((await client.messages('a.m'))[0]!.range, range(0, from, from + 7));
                const hover = await client.ask('textDocument/hover', 'a.m', at(0, from + 1));
                assert.deepEqual(hover.range, range(0, from, from + 7));
                const version = await client.change(
                    'a.m',
                    { range: range(0, from, from), text: '1 + ' },
                    { range: range(0, 0, 0), text: '%\u00e9\n' },
                );
                const [message] = await client.messages('a.m', (params) => params.version === version);
                assert.deepEqual(message!.range, range(1, from + 4, from + 11));
            },
            { capabilities: { general: { positionEncodings: [encoding, 'utf-16'] } } },
        );
    }
});

test('answers have the forms that the client reads', async () => {
    const offsets = { parameterInformation: { labelOffsetSupport: true } };
    const rows: [capabilities: object, method: string, pick: (answer: any) => unknown, expected: unknown][] =
        [
            [
                { hover: { contentFormat: ['plaintext'] } },
                'hover',
                ({ contents: { kind, value } }) =>
                    kind === 'plaintext' && /^x: parameter of the function f, .*\n\n *x := .*`<`/.test(value),
                true,
            ],
            [{ hover: {} }, 'hover', ({ contents }) => contents.kind, 'markdown'],
            [
                { signatureHelp: { signatureInformation: offsets } },
                'signatureHelp',
                ({ signatures: [{ parameters }] }) => parameters.map(({ label }: any) => label.join('-')),
                ['11-12', '14-15'],
            ],
            [{}, 'signatureHelp', ({ signatures: [{ parameters }] }) => parameters[0].label, 'f'],
            [{ documentSymbol: {} }, 'documentSymbol', ([symbol]) => symbol.location.range.end.line, 1],
            [{}, 'documentSymbol', ([symbol]) => symbol.selectionRange.start.character, 18],
        ];
    for (const [textDocument, method, pick, expected] of rows) {
        const work = async (client: Client): Promise<void> => {
            await client.open('f.m', 'function [x, f] = f(f, x)\nx = f(x(x < 2), 2);');
            assert.deepEqual(pick(await client.ask(`textDocument/${method}`, 'f.m', at(1, 6))), expected);
        };
        await withClient({}, work, { capabilities: { textDocument } });
    }
});
