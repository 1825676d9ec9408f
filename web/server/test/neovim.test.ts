/* Neovim with the settings of README.md. */
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { chmodSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { test } from 'node:test';
import { SERVER, makeFolder } from './client.js';

const hasNeovim = spawnSync('nvim', ['--version']).status === 0;

const ASK = `
vim.bo.filetype = 'matlab'
vim.wait(10000, function() return #vim.diagnostic.get(0) > 0 end, 10)
for _, found in ipairs(vim.diagnostic.get(0)) do
    print('message', found.lnum, found.col, found.code, found.message)
end
vim.api.nvim_win_set_cursor(0, { 1, 4 })
local params = vim.lsp.util.make_position_params()
for _, answer in pairs(vim.lsp.buf_request_sync(0, 'textDocument/definition', params, 10000)) do
    print('definition', answer.result.uri, answer.result.range.start.line)
end
vim.cmd('Translation')
vim.wait(10000, function() return vim.bo.buftype == 'nofile' end, 10)
print('translation', vim.api.nvim_buf_get_lines(0, 0, 1, false)[1])
vim.cmd('qall!')
`;

test(
    'messages, a definition and the translation in Neovim',
    { skip: hasNeovim ? false : 'nvim is not installed' },
    () => {
        const readme = readFileSync(new URL('../../../web/server/README.md', import.meta.url), 'utf8');
        const settings = /```lua\n([^]*?)```/.exec(readme)![1]!;
        const folder = makeFolder({
            'a.m': 'y = half(rate) + nowhere(1);\n',
            'half.m': '% Half of it.\nfunction y = half(x)\ny = x/2;\nend\n',
            'host.toml': '[names]\nrate = "r"\n',
            'init.lua': settings,
            'ask.lua': ASK,
        });
        try {
            const command = join(folder, 'mtranslate-language-server');
            writeFileSync(command, `#!/bin/sh\nexec '${process.execPath}' '${SERVER}' "$@"\n`);
            chmodSync(command, 0o755);
            const run = spawnSync(
                'nvim',
                ['--headless', '-n', '-i', 'NONE', '-u', 'init.lua', 'a.m', '-c', 'luafile ask.lua'],
                {
                    cwd: folder,
                    encoding: 'utf8',
                    env: { ...process.env, PATH: `${folder}:${process.env['PATH']}`, HOME: folder },
                    timeout: 60_000,
                },
            );
            const lines = run.stderr.split('\n').map((line) => line.trim());
            const has = (pattern: RegExp): void =>
                assert.ok(
                    lines.some((line) => pattern.test(line)),
                    `${pattern}: ${run.stderr}`,
                );
            has(/^message 0 17 MT401 the function 'nowhere' is found nowhere/);
            has(/^definition file:\/\/.*\/half\.m 1$/);
            has(/^translation y := half\(r\) \+~ nowhere\(1\);$/);
        } finally {
            rmSync(folder, { recursive: true });
        }
    },
);
