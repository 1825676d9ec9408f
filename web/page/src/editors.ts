/* The three editors. Each is in a shadow root: there its styles need no rights of the page's policy. */
import { defaultKeymap, history, historyKeymap } from '@codemirror/commands';
import { bracketMatching, HighlightStyle, StreamLanguage, syntaxHighlighting } from '@codemirror/language';
import { toml } from '@codemirror/legacy-modes/mode/toml';
import { lintKeymap, setDiagnostics, type Diagnostic } from '@codemirror/lint';
import { highlightSelectionMatches, search, searchKeymap } from '@codemirror/search';
import { EditorState, type Extension } from '@codemirror/state';
import { drawSelection, EditorView, highlightActiveLine, keymap, lineNumbers } from '@codemirror/view';
import { tags } from '@lezer/highlight';
import { colours } from './colours.js';
import { hostLanguage } from './host_language.js';
import { joinedLines } from './joined_lines.js';

const look = EditorView.theme({
    '&': { height: '100%', fontSize: '13px', color: 'var(--ink)', backgroundColor: 'var(--paper)' },
    '&.cm-focused': { outline: 'none' },
    '.cm-scroller': { fontFamily: 'var(--code)', lineHeight: '1.55' },
    '.cm-content': { caretColor: 'var(--ink)' },
    '.cm-cursor': { borderLeftColor: 'var(--ink)' },
    '.cm-gutters': { backgroundColor: 'var(--paper)', color: 'var(--muted)', border: '0' },
    '.cm-activeLine': { backgroundColor: 'transparent' },
    '&.cm-focused .cm-activeLine': { boxShadow: 'inset 0 0 0 1px var(--line)' },
    '.cm-line.cm-joined': { backgroundColor: 'var(--accent-soft)', boxShadow: 'inset 3px 0 var(--accent)' },
    '&.cm-focused > .cm-scroller > .cm-selectionLayer .cm-selectionBackground, .cm-selectionBackground': {
        backgroundColor: 'var(--selection)',
    },
    '.cm-selectionMatch': { backgroundColor: 'var(--wait-soft)' },
    '.cm-matchingBracket, &.cm-focused .cm-matchingBracket': {
        backgroundColor: 'var(--accent-soft)',
        outline: '1px solid var(--accent)',
    },
    '.cm-lintRange': { backgroundImage: 'none !important', paddingBottom: '0' },
    '.cm-lintRange-error': {
        textDecoration: 'underline wavy var(--bar-bad) 1px',
        textUnderlineOffset: '3px',
    },
    '.cm-lintRange-warning': {
        textDecoration: 'underline wavy var(--bar-wait) 1px',
        textUnderlineOffset: '3px',
    },
    '.cm-lintRange-info': { textDecoration: 'underline wavy var(--accent) 1px', textUnderlineOffset: '3px' },
    '.cm-tooltip, .cm-panels': {
        color: 'var(--ink)',
        backgroundColor: 'var(--paper)',
        borderColor: 'var(--line-strong)',
        fontFamily: 'var(--text)',
    },
    '.cm-diagnostic': { maxWidth: '34rem', padding: '6px 10px' },
    '.cm-diagnosticAction': { color: 'var(--paper)', backgroundColor: 'var(--accent)', fontSize: '12px' },
    '.cm-textfield, .cm-button': {
        color: 'var(--ink)',
        background: 'var(--ground)',
        borderColor: 'var(--line-strong)',
    },
});

const style = HighlightStyle.define([
    { tag: tags.comment, color: 'var(--muted)', fontStyle: 'italic' },
    { tag: tags.string, color: 'var(--good)' },
    { tag: tags.number, color: 'var(--wait)' },
    { tag: tags.bool, color: 'var(--wait)' },
    { tag: tags.keyword, color: 'var(--accent)', fontWeight: '600' },
    { tag: [tags.propertyName, tags.atom], color: 'var(--accent)' },
]);

/** Chromium would keep the look of a replaced text in a style attribute, which the policy forbids. */
const replacing = EditorView.domEventHandlers({
    beforeinput({ inputType, data, isComposing }, view) {
        const { state } = view;
        if (inputType !== 'insertText' || data === null || isComposing) return false;
        if (state.readOnly || state.selection.main.empty) return false;
        view.dispatch(state.replaceSelection(data), { scrollIntoView: true, userEvent: 'input.type' });
        return true;
    },
});

const common = (label: string): Extension => [
    look,
    lineNumbers(),
    drawSelection(),
    highlightActiveLine(),
    highlightSelectionMatches(),
    bracketMatching(),
    syntaxHighlighting(style),
    search({ top: true }),
    keymap.of([...defaultKeymap, ...historyKeymap, ...searchKeymap, ...lintKeymap]),
    replacing,
    EditorView.contentAttributes.of({
        'aria-label': label,
        tabindex: '0',
        spellcheck: 'false',
        autocapitalize: 'off',
    }),
];

function editor(place: HTMLElement, extensions: Extension): EditorView {
    const root = place.attachShadow({ mode: 'open' });
    return new EditorView({ parent: root, root, state: EditorState.create({ extensions }) });
}

export const sourceEditor = (place: HTMLElement, more: Extension): EditorView =>
    editor(place, [common('MATLAB source'), history(), colours, joinedLines, more]);

export const hostEditor = (place: HTMLElement, more: Extension): EditorView =>
    editor(place, [
        common('Translation, read only'),
        EditorState.readOnly.of(true),
        hostLanguage,
        joinedLines,
        EditorView.lineWrapping,
        more,
    ]);

export const rulesEditor = (place: HTMLElement, more: Extension): EditorView =>
    editor(place, [common('Rules, TOML'), history(), StreamLanguage.define(toml), more]);

/** Puts a text in the place of what is there; what begins and ends it alike stays, and with it the
 * scrolled place. */
export function replaceText(view: EditorView, text: string): void {
    const before = view.state.doc.toString();
    const most = Math.min(before.length, text.length);
    let from = 0;
    while (from < most && before[from] === text[from]) from++;
    let same = 0;
    while (same < most - from && before[before.length - 1 - same] === text[text.length - 1 - same]) same++;
    if (from === before.length && from === text.length) return;
    view.dispatch({
        changes: { from, to: before.length - same, insert: text.slice(from, text.length - same) },
    });
}

export function showDiagnostics(view: EditorView, diagnostics: Diagnostic[]): void {
    view.dispatch(setDiagnostics(view.state, diagnostics));
}
