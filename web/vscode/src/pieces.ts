/* Which lines of a source and of its translation belong together. Lines count from 0. */

export interface Piece {
    range: { start: { line: number }; end: { line: number } };
    firstLine: number;
    lastLine: number;
}

export interface Lines {
    first: number;
    last: number;
}

/** Of what covers the line that which covers least. */
function least<Kind>(all: readonly Kind[], linesOf: (piece: Kind) => Lines, line: number): Kind[] {
    const around = all.filter((piece) => linesOf(piece).first <= line && line <= linesOf(piece).last);
    const length = (piece: Kind): number => linesOf(piece).last - linesOf(piece).first;
    const shortest = Math.min(...around.map(length));
    return around.filter((piece) => length(piece) === shortest);
}

const sourceLines = ({ range }: Piece): Lines => ({ first: range.start.line, last: range.end.line });
const hostLines = ({ firstLine, lastLine }: Piece): Lines => ({ first: firstLine, last: lastLine });

const around = (lines: Lines[]): Lines | null =>
    lines.length === 0
        ? null
        : {
              first: Math.min(...lines.map(({ first }) => first)),
              last: Math.max(...lines.map(({ last }) => last)),
          };

/** The lines of the translation that come from a line of the source. */
export const hostLinesOf = (pieces: readonly Piece[], line: number): Lines | null =>
    around(least(pieces, sourceLines, line).map(hostLines));

/** The lines of the source that a line of the translation comes from. */
export const sourceLinesOf = (pieces: readonly Piece[], line: number): Lines | null =>
    around(least(pieces, hostLines, line).map(sourceLines));
