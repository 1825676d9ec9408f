/* The messages below the editors, and what they mean. */
import type { MessageKind } from 'mtranslate';
import { button, byId, element, grouped } from './elements.js';
import type { ShownMessage } from './protocol.js';

const MOST_SHOWN = 200;

export class MessageList {
    kinds = new Map<string, MessageKind>();
    readonly #list = byId('messages');

    /** go: leads to the place of a message. all: how many there are. */
    show(messages: readonly ShownMessage[], all: number, go: (message: ShownMessage) => void): void {
        const shown = messages.slice(0, MOST_SHOWN).map((message) => this.#item(message, go));
        const rest = all - shown.length;
        const more = rest > 0 ? [element('li', { class: 'empty' }, `and ${grouped(rest)} more`)] : [];
        const none = element('li', { class: 'empty' }, 'No messages: everything is translated.');
        this.#list.replaceChildren(...(all === 0 ? [none] : [...shown, ...more]));
    }

    showMistakes(mistakes: string): void {
        const items = mistakes
            .split('\n')
            .filter((line) => line !== '')
            .map((line) =>
                element(
                    'li',
                    {},
                    element('span', { class: 'badge error' }, 'rules'),
                    ' ',
                    element('span', {}, line),
                ),
            );
        this.#list.replaceChildren(...items);
    }

    explain(code: string): void {
        const kind = this.kinds.get(code);
        if (!kind) return;
        const dialog = byId<HTMLDialogElement>('explanation');
        byId('explanation-title').textContent = `${kind.code} ${kind.name}`;
        byId('explanation-text').replaceChildren(
            element(
                'p',
                {},
                element('span', { class: `badge ${kind.severity}` }, kind.severity),
                ' ',
                kind.form.replaceAll('%s', '…'),
            ),
            element('p', {}, kind.explanation),
            ...(kind.example === null ? [] : [element('pre', { tabindex: '0' }, kind.example)]),
            element('p', {}, element('b', {}, 'What to do: '), kind.help),
        );
        dialog.showModal();
    }

    #item(message: ShownMessage, go: (message: ShownMessage) => void): HTMLLIElement {
        const { severity, line, column, text, code } = message;
        const place =
            line > 0
                ? button(
                      `${line}:${column}`,
                      {
                          class: 'place',
                          'aria-label': `${line}:${column}, go to line ${line}, column ${column}`,
                      },
                      () => go(message),
                  )
                : null;
        const more = this.kinds.has(code)
            ? button(code, { class: 'code', 'aria-label': `Explain ${code}` }, () => this.explain(code))
            : null;
        const badge = element('span', { class: `badge ${severity}` }, severity);
        return element('li', {}, place, badge, element('span', { class: 'said' }, text), more);
    }
}
