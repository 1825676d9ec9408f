/* What a bundle has to tell of the parts in it that others have made: of the module, and of packages. */
import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

const OF_MODULE = fileURLToPath(new URL('../THIRD_PARTY_NOTICES', import.meta.url));

/** The folders of the npm packages that files are from. */
function packagesOf(files) {
    const folders = files.map((file) => /^.*node_modules\/(?:@[^/]+\/)?[^/]+/.exec(file)?.[0]);
    return [...new Set(folders.filter((folder) => folder !== undefined))].sort();
}

/** folder: that the paths of the files are from. Throws for a package without its license. */
export function noticesOf(folder, files) {
    const notices = packagesOf(files).map((path) => {
        const license = readdirSync(join(folder, path)).find((name) => /^licen[cs]e/i.test(name));
        if (license === undefined) throw new Error(`${path} has no license`);
        const name = path.slice(path.lastIndexOf('node_modules/') + 'node_modules/'.length);
        return `${name}\n\n${readFileSync(join(folder, path, license), 'utf8')}`;
    });
    return [readFileSync(OF_MODULE, 'utf8'), ...notices].join('\n\n');
}
