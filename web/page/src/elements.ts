/* Elements of the page, and making new ones: texts are only ever set as texts. */

/** The element with the id, which the page has. */
export const byId = <Kind extends HTMLElement = HTMLElement>(id: string): Kind =>
    document.getElementById(id) as Kind;

type Child = Node | string | null;

export function element<Name extends keyof HTMLElementTagNameMap>(
    name: Name,
    attributes: Record<string, string> = {},
    ...children: Child[]
): HTMLElementTagNameMap[Name] {
    const node = document.createElement(name);
    for (const [key, value] of Object.entries(attributes)) node.setAttribute(key, value);
    node.append(...children.filter((child): child is Node | string => child !== null));
    return node;
}

export function button(
    text: string,
    attributes: Record<string, string>,
    click: () => void,
): HTMLButtonElement {
    const node = element('button', { type: 'button', ...attributes }, text);
    node.addEventListener('click', click);
    return node;
}

export const grouped = (count: number): string => count.toLocaleString('en-US');
export const counted = (count: number, one: string, several = `${one}s`): string =>
    `${grouped(count)} ${count === 1 ? one : several}`;

/** Saves a file as the browser saves downloads. */
export function save(content: Blob, name: string): void {
    const url = URL.createObjectURL(content);
    element('a', { href: url, download: name }).click();
    setTimeout(() => URL.revokeObjectURL(url), 60_000);
}
