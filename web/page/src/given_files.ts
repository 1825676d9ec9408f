/* Files that a user gives: dropped, or chosen. */
import type { NamedFile } from './protocol.js';

export interface Given {
    /** Of the folder or the zip. */
    name: string;
    files: NamedFile[];
}

const isWanted = (path: string): boolean => /\.(m|zip)$/i.test(path) && !/(^|\/)\./.test(path);

const given = (name: string, files: NamedFile[]): Given => ({
    name,
    files: files.filter(({ path }) => isWanted(path)),
});

export function chosenFiles(input: HTMLInputElement): Given {
    const files = [...(input.files ?? [])].map((content) => ({
        path: content.webkitRelativePath || content.name,
        content,
    }));
    const first = files[0]?.path ?? '';
    const name = first.includes('/') ? first.slice(0, first.indexOf('/')) : first;
    return given(files.length > 1 && !first.includes('/') ? `${files.length} files` : name, files);
}

const fileOf = (entry: FileSystemFileEntry): Promise<File> =>
    new Promise((resolve, reject) => entry.file(resolve, reject));

/** A part of a folder's entries; none after the last. */
const partOf = (reader: FileSystemDirectoryReader): Promise<FileSystemEntry[]> =>
    new Promise((resolve, reject) => reader.readEntries(resolve, reject));

async function collect(entry: FileSystemEntry, into: NamedFile[]): Promise<void> {
    const path = entry.fullPath.replace(/^\//, '');
    if (entry.isFile) {
        if (isWanted(path)) into.push({ path, content: await fileOf(entry as FileSystemFileEntry) });
        return;
    }
    const reader = (entry as FileSystemDirectoryEntry).createReader();
    for (let part = await partOf(reader); part.length > 0; part = await partOf(reader))
        for (const inner of part) await collect(inner, into);
}

/** Rejects where a folder cannot be read. */
export async function droppedFiles(data: DataTransfer): Promise<Given> {
    // The list is emptied when the event is over.
    const entries = [...data.items].map((item) => item.webkitGetAsEntry()).filter((entry) => entry !== null);
    const plain = [...data.files];
    const files: NamedFile[] = [];
    for (const entry of entries) await collect(entry!, files);
    if (entries.length === 0) files.push(...plain.map((content) => ({ path: content.name, content })));
    const name = (entries.length === 1 ? entries[0]!.name : undefined) ?? files[0]?.path ?? '';
    return given(entries.length > 1 || plain.length > 1 ? `${files.length} files` : name, files);
}

/** The text of a single source that an editor can hold; null for anything else. */
export async function editableText({ files }: Given): Promise<string | null> {
    const [file] = files;
    if (files.length !== 1 || !file || !file.path.endsWith('.m') || file.path.includes('/')) return null;
    try {
        const bytes = await file.content.arrayBuffer();
        const text = new TextDecoder('utf-8', { fatal: true }).decode(bytes);
        return text.includes('\0') ? null : text;
    } catch {
        return null;
    }
}
