/* The page of a report, as the tool writes it: the same page, with the report and the texts packed. */
import { deflateSync } from 'fflate';
import type { FileReport, ReportHead } from 'mtranslate';
import { toBase64 } from './packed.js';
import type { ReportPage } from './protocol.js';

export interface ReportedFile {
    report: FileReport;
    source: Uint8Array;
    /** Null where there is none. */
    translation: string | null;
}

/** Of packed sources and translations; a page with more would hardly open. */
const MOST_BYTES_OF_TEXTS = 64 << 20;
/** Of the texts in a pack: more are packed better, fewer are opened sooner. */
const LENGTH_OF_PACK = 1 << 19;

const packed = (text: string): string => toBase64(deflateSync(new TextEncoder().encode(text)));

/** Lines alone, of the file itself. */
const mapOf = ({ map }: FileReport): unknown[] =>
    map
        .filter(({ file }) => file === undefined)
        .map(({ line, endLine, first, last, kind }) => [line, endLine, first, last, kind]);

function textsOf({ report, source, translation }: ReportedFile): object {
    const texts = { source: new TextDecoder().decode(source) };
    return translation === null ? texts : { ...texts, translation, map: mapOf(report) };
}

/** The elements that hold the packs, and the place of each file in them: pack and number in it. */
function packsOf(files: readonly ReportedFile[]): { elements: string; places: ([number, number] | null)[] } {
    const elements: string[] = [];
    const places: ([number, number] | null)[] = [];
    let texts: string[] = [];
    let length = 0;
    let bytes = 0;
    const close = (): void => {
        const text = packed(`[${texts.join(',')}]`);
        elements.push(`<script type="text/plain" id="pack-${elements.length}">${text}</script>\n`);
        bytes += text.length;
        texts = [];
        length = 0;
    };
    for (const file of files) {
        const isLeftOut = bytes > MOST_BYTES_OF_TEXTS || file.report.state === 'failed';
        places.push(isLeftOut ? null : [elements.length, texts.length]);
        if (isLeftOut) continue;
        const text = JSON.stringify(textsOf(file));
        length += text.length;
        texts.push(text);
        if (length > LENGTH_OF_PACK) close();
    }
    if (texts.length > 0) close();
    return { elements: elements.join(''), places };
}

export function reportPage(page: ReportPage, head: ReportHead, files: readonly ReportedFile[]): Blob {
    const { elements, places } = packsOf(files);
    const told = files.map(({ report }, at) => {
        const { map: _, ...rest } = report;
        return places[at] ? { ...rest, texts: places[at] } : rest;
    });
    const report = packed(JSON.stringify({ ...head, files: told }));
    return new Blob([page.head, report, page.middle, elements, page.tail], { type: 'text/html' });
}
