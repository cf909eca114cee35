// SPDX-License-Identifier: Apache-2.0

const SVG = 'http://www.w3.org/2000/svg';

/// A new element. `properties` are DOM properties, or attributes where the name contains a "-" or is
/// one of those below; `children` are nodes, or texts, which never become markup.
export function element(tag, properties = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(properties)) {
        if (name.includes('-') || name === 'role' || name === 'colspan' || name === 'scope') {
            made.setAttribute(name, value);
        } else {
            made[name] = value;
        }
    }
    made.append(...children);
    return made;
}

/// The same for SVG, where everything is an attribute.
export function svg(tag, attributes = {}, ...children) {
    const made = document.createElementNS(SVG, tag);
    Object.entries(attributes).forEach(([name, value]) => made.setAttribute(name, value));
    made.append(...children);
    return made;
}

export const byId = (id) => document.getElementById(id);

const grouped = new Intl.NumberFormat('en-GB');

export const count = (number) => grouped.format(number);

export const counted = (number, one, many = one + 's') => `${count(number)} ${number === 1 ? one : many}`;

/// "2026-11-14 02:15:20": a time in seconds since 1970 (UTC) in words that sort.
export const timeText = (seconds) => isoText(new Date(seconds * 1000).toISOString());

/// The same of an ISO 8601 time in UTC, or "-".
export const isoText = (time) => (time ? time.slice(0, 19).replace('T', ' ') : '-');

/// Calls `work` once before the next picture, however often it is asked to.
export function beforeNextPicture(work) {
    let asked = false;
    return () => {
        if (!asked) {
            asked = true;
            requestAnimationFrame(() => {
                asked = false;
                work();
            });
        }
    };
}

/// A box that scrolls sideways by itself where its contents are wider than the window.
export function wideBox(label, ...children) {
    return element('div', { className: 'wide', tabIndex: 0, role: 'region', 'aria-label': label }, ...children);
}

/// A table in a box. `columns` are {name, cell: a function of a row that returns a text or node,
/// number: whether its cells are numbers, broad: whether they are long}; the first column names the row. More rows than `most` are
/// added by a button.
export function dataTable(caption, columns, rows, most = 20) {
    const body = element('tbody', {});
    const add = (some) => body.append(...some.map((row) => element('tr', {}, ...columns.map(({ cell, number, broad }, index) => {
        const shown = cell(row) ?? '';
        const properties = number || broad ? { className: number ? 'number' : 'broad' } : {};
        return index === 0 ? element('th', { scope: 'row', ...properties }, shown) : element('td', properties, shown);
    }))));
    const head = columns.map(({ name, number }) => element('th', { scope: 'col', ...(number ? { className: 'number' } : {}) }, name));
    const table = element('table', { className: 'data' }, element('caption', {}, caption), element('thead', {}, element('tr', {}, ...head)), body);
    const box = element('div', {}, wideBox(caption, table));
    add(rows.slice(0, most));
    if (rows.length > most) {
        const more = element('button', { type: 'button', className: 'more' }, `Show all ${count(rows.length)} rows of "${caption}"`);
        more.addEventListener('click', () => {
            add(rows.slice(most));
            body.rows[most].tabIndex = -1;
            body.rows[most].focus();
            more.remove();
        });
        box.append(more, element('p', { className: 'paper' }, `Only the first ${most} rows are printed.`));
        more.addEventListener('click', () => box.lastChild.remove());
    }
    return box;
}

/// A list of names and values; those without a value are left out.
export function valueList(values) {
    const has = (value) => value !== null && value !== undefined && value !== '' && !(Array.isArray(value) && value.length === 0);
    return element('dl', { className: 'values' }, ...values.filter(([, value]) => has(value)).map(([name, value]) =>
        element('div', {}, element('dt', {}, name), element('dd', {}, value instanceof Node ? value : plainText(value)))));
}

/// A number without the noise of binary fractions.
export const numberText = (number) => String(Number(number.toPrecision(12)));

/// What a value of a document is in words.
export function plainText(value) {
    if (Array.isArray(value)) {
        return value.map(plainText).join(', ');
    }
    if (value === null || value === undefined) {
        return '';
    }
    if (typeof value === 'number') {
        return numberText(value);
    }
    return typeof value === 'boolean' ? (value ? 'yes' : 'no') : typeof value === 'object' ? JSON.stringify(value) : String(value);
}

/// Something that is seen after a click only.
export function folded(summary, ...children) {
    return element('details', {}, element('summary', {}, summary), ...children);
}

/// A list of texts that say what is wrong, or nothing.
export function problemList(problems) {
    return problems.length === 0 ? '' : element('ul', { className: 'problems' }, ...problems.map((one) => element('li', {}, one)));
}

/// A horizontal bar that fills `part` (0 to 1) of its length.
export function fillBar(part, label) {
    const made = svg('svg', { viewBox: '0 0 100 12', class: 'bar', role: 'img', 'aria-label': label, preserveAspectRatio: 'none' },
        svg('rect', { x: 0.5, y: 0.5, width: 99, height: 11, class: 'bar-frame' }),
        svg('rect', { x: 0.5, y: 0.5, width: Math.max(0, Math.min(1, part || 0)) * 99, height: 11, class: 'bar-fill' }));
    return made;
}

/// What text in a folder's or file's name sorts by: "dimm10" after "dimm9".
export const naturally = new Intl.Collator('en', { numeric: true }).compare;
