/* Links that carry a text in their fragment, which no browser sends anywhere. */
import type { Language } from 'mtranslate';
import { deflated, fromBase64, inflated, toBase64 } from './packed.js';

export interface Linked {
    text: string;
    language: Language;
    rules: string;
}

/** Characters of a link; browsers and programs that pass them on take no more. */
const MOST_IN_LINK = 1 << 20;
/** Bytes of what a link holds: a short one can hold much. */
const MOST_IN_TEXT = 16 << 20;
const LANGUAGES: readonly string[] = ['matlab', 'octave', 'classic'];

const inAddress = (bytes: Uint8Array): string =>
    toBase64(bytes).replaceAll('+', '-').replaceAll('/', '_').replaceAll('=', '');
const fromAddress = (text: string): Uint8Array => fromBase64(text.replaceAll('-', '+').replaceAll('_', '/'));

/** The fragment, with its #. Throws RangeError where that would be too long. */
export async function fragmentOf(linked: Linked): Promise<string> {
    const bytes = new TextEncoder().encode(JSON.stringify(linked));
    const packs = typeof CompressionStream !== 'undefined';
    const fragment = packs ? `#code=${inAddress(await deflated(bytes))}` : `#plain=${inAddress(bytes)}`;
    if (fragment.length > MOST_IN_LINK) throw new RangeError('The text is too long for a link.');
    return fragment;
}

/** Null for a fragment of another kind. Rejects where it is damaged. */
export async function linkedIn(fragment: string): Promise<Linked | null> {
    const [, form, packed] = /^#(code|plain)=(.*)$/.exec(fragment) ?? [];
    if (packed === undefined) return null;
    const bytes = fromAddress(packed);
    const json = form === 'code' ? await inflated(bytes, MOST_IN_TEXT) : bytes;
    const { text, language, rules } = JSON.parse(new TextDecoder().decode(json)) as Partial<Linked>;
    if (typeof text !== 'string') throw new TypeError('it holds no text');
    return {
        text,
        language: LANGUAGES.includes(language ?? '') ? language! : 'matlab',
        rules: typeof rules === 'string' ? rules : '',
    };
}
