/* Bytes as text: base64 of a raw deflate stream. */

export function toBase64(bytes: Uint8Array): string {
    const parts: string[] = [];
    for (let at = 0; at < bytes.length; at += 0x8000)
        parts.push(String.fromCharCode(...bytes.subarray(at, at + 0x8000)));
    return btoa(parts.join(''));
}

/** Throws where it is no base64. */
export function fromBase64(text: string): Uint8Array {
    return Uint8Array.from(atob(text), (character) => character.charCodeAt(0));
}

/** All that a stream gives, but no more than most bytes. */
export async function bytesOf(stream: ReadableStream<Uint8Array>, most = Infinity): Promise<Uint8Array> {
    const parts: Uint8Array[] = [];
    let length = 0;
    const reader = stream.getReader();
    for (;;) {
        const { done, value } = await reader.read();
        if (done) break;
        length += value.length;
        if (length > most) {
            await reader.cancel();
            throw new RangeError('it is too large');
        }
        parts.push(value);
    }
    return new Uint8Array(await new Blob(parts).arrayBuffer());
}

/** Rejects where the bytes are no such stream. */
export const inflated = (bytes: Uint8Array, most?: number): Promise<Uint8Array> =>
    bytesOf(new Blob([bytes]).stream().pipeThrough(new DecompressionStream('deflate-raw')), most);

export const deflated = (bytes: Uint8Array): Promise<Uint8Array> =>
    bytesOf(new Blob([bytes]).stream().pipeThrough(new CompressionStream('deflate-raw')));
