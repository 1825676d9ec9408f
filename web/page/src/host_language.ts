/* Colours of the host's language, which need no more than its words. */
import { StreamLanguage } from '@codemirror/language';

const KEYWORDS = new Set(
    (
        'proc local global option return end if then elif else fi for from by to in while do od break next try ' +
        'catch finally error not and or xor mod use module export'
    ).split(' '),
);

export const hostLanguage = StreamLanguage.define({
    token(stream) {
        if (stream.match('#')) {
            stream.skipToEnd();
            return 'comment';
        }
        if (stream.match(/^"(?:[^"\\]|\\.)*"?/)) return 'string';
        if (stream.match(/^\d+(?:\.(?!\.)\d*)?(?:e[+-]?\d+)?/i)) return 'number';
        const word = stream.match(/^[A-Za-z_]\w*/) as RegExpMatchArray | null;
        if (word) return KEYWORDS.has(word[0]) ? 'keyword' : null;
        stream.next();
        return null;
    },
});
