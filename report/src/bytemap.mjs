// SPDX-License-Identifier: Apache-2.0

import { hexText } from './document.mjs';
import { count, element, plainText, svg } from './dom.mjs';

const SQUARE = 10;

// How the parts of a FRU image are hatched; "free" is empty.
const HATCHES = {
    header: 'non-recoverable', internal: 'unrated', chassis: 'monitor', board: 'informational', product: 'warning', multirecord: 'critical',
};

/// What each byte of a FRU image belongs to: [{name, part, from, to, value, damaged}], without
/// overlaps, `to` after the last byte. Areas come before the parts of the map, fields before areas.
export function piecesOf(fru, size) {
    const owner = new Array(size).fill(null);
    const paint = (offset, length, layer) => {
        owner.fill(layer, Math.max(0, offset), Math.max(0, offset + length));
    };
    const broken = (checksum) => checksum !== null && checksum !== undefined && checksum.right === false;
    for (const { name, offset, size: length } of fru.map) {
        paint(offset, length, { name, part: name, damaged: name === 'header' && broken(fru.header_checksum) });
    }
    for (const { name, offset, size: length } of fru.internal_use) {
        paint(offset, length, { name: `${name} use`, part: 'internal', damaged: false });
    }
    const fields = [];
    for (const area of [...fru.areas, ...fru.multirecords]) {
        const record = area.type !== undefined;
        const part = record ? 'multirecord' : area.name;
        const damaged = broken(area.checksum) || area.whole === false;
        paint(area.offset, area.size, { name: area.name, part, damaged });
        for (const field of area.fields) {
            // A typed field begins with the byte of its type and length.
            const length = field.length + (field.type_length === null || field.type_length === undefined ? 0 : 1);
            fields.push({ name: `${area.name} ${field.name}`, part, damaged, from: field.offset, to: field.offset + length,
                value: `${plainText(field.text ?? field.value)}${field.unit ? ` ${field.unit}` : ''}` });
        }
        if (!record && area.checksum && area.whole) {
            const at = area.offset + area.size - 1;
            fields.push({ name: `${area.name} checksum`, part, damaged, from: at, to: at + 1, value: checksumText(area.checksum) });
        }
    }
    if (fru.header_checksum) {
        fields.push({ name: 'header checksum', part: 'header', damaged: broken(fru.header_checksum), from: 7, to: 8, value: checksumText(fru.header_checksum) });
    }
    const inside = new Map();
    for (const field of fields) {
        for (let at = Math.max(0, field.from); at < Math.min(size, field.to); at++) {
            inside.set(at, [...(inside.get(at) ?? []), field]);
        }
    }
    const pieces = [];
    const same = (a, b) => a.length === b.length && a.every((one, index) => one === b[index]);
    for (let at = 0; at < size; at++) {
        const here = inside.get(at) ?? [owner[at]];
        const last = pieces.at(-1);
        if (last !== undefined && same(last.layers, here)) {
            last.to = at + 1;
        } else {
            pieces.push({ from: at, to: at + 1, layers: here });
        }
    }
    return pieces.map(({ from, to, layers: here }) => ({
        from, to, name: here.map((one) => one?.name ?? 'unknown bytes').join(', '), part: here[0]?.part ?? 'other bytes',
        value: here.filter((one) => one?.value).map((one) => (here.length > 1 ? `${one.name} ${one.value}` : one.value)).join(', '),
        damaged: here.some((one) => one?.damaged),
    }));
}

const checksumText = ({ stored, expected, right }) => {
    const hex = (value) => `${value.toString(16).toUpperCase().padStart(2, '0')}h`;
    return right ? hex(stored) : `${hex(stored)}, expected ${hex(expected)}`;
};

/// What a piece says: name, bytes, value.
export function pieceText(piece, bytes) {
    const length = piece.to - piece.from;
    const where = length === 1 ? `byte ${piece.from}` : `bytes ${piece.from} to ${piece.to - 1}`;
    const own = bytes.subarray(piece.from, piece.to);
    const shown = piece.value || (piece.part === 'free' ? `${count(length)} free` : `${hexText(own.subarray(0, 16))}${own.length > 16 ? ' …' : ''}`);
    return `${piece.name}, ${where}${piece.damaged ? ', damaged' : ''}: ${shown}`;
}

/// The outline of the cells `from` to `to` in lines of `across` cells.
function outline(from, to, across) {
    const [x1, y1] = [from % across * SQUARE, Math.floor(from / across) * SQUARE];
    const [x2, y2] = [((to - 1) % across + 1) * SQUARE, Math.floor((to - 1) / across) * SQUARE];
    const wide = across * SQUARE;
    if (y1 === y2) {
        return `M${x1} ${y1}H${x2}V${y1 + SQUARE}H${x1}Z`;
    }
    return `M${x1} ${y1}H${wide}V${y2}H${x2}V${y2 + SQUARE}H0V${y1 + SQUARE}H${x1}Z`;
}

/// The map of an image's bytes: a cell for each byte, the pieces told apart by hatching, those that
/// are damaged crossed out. The arrow keys go from piece to piece; a line below says what it is.
export function byteMap(fru, bytes) {
    const pieces = piecesOf(fru, Math.max(bytes.length, ...fru.map.map((part) => part.offset + part.size)));
    const size = pieces.at(-1)?.to ?? 0;
    const across = size <= 1024 ? 32 : size <= 4096 ? 64 : 128;
    const readout = element('p', { className: 'readout', role: 'status' });
    const shapes = pieces.map((piece, index) => {
        const d = outline(piece.from, piece.to, across);
        const label = pieceText(piece, bytes);
        const shape = svg('g', { class: 'piece', role: 'img', 'aria-label': label, tabindex: index === 0 ? 0 : -1 },
            svg('path', { d, class: 'piece-back' }),
            svg('path', { d, class: 'piece-fill', fill: Object.hasOwn(HATCHES, piece.part) ? `url(#hatch-${HATCHES[piece.part]})` : 'none' }),
            svg('path', { d, class: 'piece-halo' }), svg('path', { d, class: 'piece-line' }));
        if (piece.damaged) {
            shape.append(svg('path', { class: 'piece-damaged', d: crosses(piece, across) }));
        }
        const say = () => { readout.textContent = label; };
        shape.addEventListener('pointerenter', say);
        shape.addEventListener('focus', say);
        return shape;
    });
    const drawing = svg('svg', { viewBox: `-1 -1 ${across * SQUARE + 2} ${Math.ceil(size / across) * SQUARE + 2}`, class: 'bytemap', role: 'group',
        'aria-label': `Bytes of ${fru.file}, ${across} in a line; arrow keys go from field to field` }, ...shapes);
    drawing.addEventListener('keydown', (event) => {
        const steps = { ArrowRight: 1, ArrowDown: 1, ArrowLeft: -1, ArrowUp: -1, Home: -Infinity, End: Infinity };
        const at = shapes.indexOf(document.activeElement);
        if (at >= 0 && Object.hasOwn(steps, event.key) && !event.ctrlKey && !event.altKey && !event.metaKey) {
            event.preventDefault();
            const next = Math.max(0, Math.min(shapes.length - 1, at + steps[event.key]));
            shapes[at].setAttribute('tabindex', -1);
            shapes[next].setAttribute('tabindex', 0);
            shapes[next].focus();
        }
    });
    const parts = [...new Set(pieces.map((piece) => piece.part))];
    const key = element('ul', { className: 'marks' }, ...parts.map((part) => element('li', {},
        svg('svg', { viewBox: '0 0 18 12', class: 'swatch', 'aria-hidden': 'true' },
            svg('rect', { x: 0.5, y: 0.5, width: 17, height: 11, class: 'swatch-line', fill: Object.hasOwn(HATCHES, part) ? `url(#hatch-${HATCHES[part]})` : 'none' })),
        part)), ...(pieces.some((piece) => piece.damaged) ? [element('li', {},
        svg('svg', { viewBox: '0 0 18 12', class: 'swatch', 'aria-hidden': 'true' }, svg('path', { d: 'M3 1l10 10M13 1l-10 10', class: 'piece-damaged' })), 'damaged')] : []));
    return [drawing, readout, key];
}

/// A cross in each cell of a piece, at most in its first 32.
function crosses(piece, across) {
    const cells = [];
    for (let at = piece.from; at < Math.min(piece.to, piece.from + 32); at++) {
        const [x, y] = [at % across * SQUARE, Math.floor(at / across) * SQUARE];
        cells.push(`M${x + 2} ${y + 2}l6 6M${x + 8} ${y + 2}l-6 6`);
    }
    return cells.join('');
}
