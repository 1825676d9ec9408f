/* What the page holds packed, in elements of its own. */
import { byId } from './elements.js';
import { fromBase64, inflated } from './packed.js';
import type { ReportPage } from './protocol.js';

export interface Example {
    name: string;
    files: Record<string, string>;
    rules?: string;
}

export interface PackedParts {
    worker: string;
    report: ReportPage;
    examples: Example[];
}

const unpacked = (id: string): Promise<Uint8Array> => inflated(fromBase64(byId(id).textContent!));

export const moduleBytes = (): Promise<Uint8Array> => unpacked('module');
export const packedParts = async (): Promise<PackedParts> =>
    JSON.parse(new TextDecoder().decode(await unpacked('parts'))) as PackedParts;
