// SPDX-License-Identifier: Apache-2.0

import { element, svg } from './dom.mjs';

// Each severity differs from the others in colour, in shape (marks) and in hatching (bars), so that
// the pictures are readable without colour. The shapes are drawn around 0, 0 in a square of 10 x 10;
// a hatching is a tile of 6 x 6 in which the rectangles stay empty.

const LOOKS = {
    'non-recoverable': {
        shape: (path, x, y) => {
            path.moveTo(x - 5, y - 2); path.lineTo(x - 2, y - 5); path.lineTo(x, y - 3); path.lineTo(x + 2, y - 5);
            path.lineTo(x + 5, y - 2); path.lineTo(x + 3, y); path.lineTo(x + 5, y + 2); path.lineTo(x + 2, y + 5);
            path.lineTo(x, y + 3); path.lineTo(x - 2, y + 5); path.lineTo(x - 5, y + 2); path.lineTo(x - 3, y);
            path.closePath();
        },
        empty: [],
    },
    critical: {
        shape: (path, x, y) => {
            path.moveTo(x, y - 6); path.lineTo(x + 5, y); path.lineTo(x, y + 6); path.lineTo(x - 5, y);
            path.closePath();
        },
        empty: [[0, 0, 2, 2], [3, 3, 2, 2]],
    },
    warning: {
        shape: (path, x, y) => {
            path.moveTo(x, y - 5); path.lineTo(x + 5, y + 4); path.lineTo(x - 5, y + 4);
            path.closePath();
        },
        empty: [[0, 4, 6, 2]],
    },
    monitor: { shape: (path, x, y) => path.rect(x - 4, y - 4, 8, 8), empty: [[4, 0, 2, 6]] },
    informational: {
        shape: (path, x, y) => { path.moveTo(x + 4, y); path.arc(x, y, 4, 0, 7); },
        empty: [[0, 0, 3, 3], [3, 3, 3, 3]],
    },
    unrated: {
        shape: (path, x, y) => {
            path.moveTo(x + 4, y); path.arc(x, y, 4, 0, 7); path.moveTo(x + 2, y); path.arc(x, y, 2, 0, 7, true);
        },
        empty: [[1, 1, 4, 4]],
    },
};

const GOOD = {
    shape: (path, x, y) => {
        path.moveTo(x - 6, y); path.lineTo(x - 4, y - 2); path.lineTo(x - 2, y + 1); path.lineTo(x + 4, y - 6);
        path.lineTo(x + 6, y - 4); path.lineTo(x - 2, y + 5);
        path.closePath();
    },
    empty: [],
};
const UNKNOWN = { shape: (path, x, y) => path.rect(x - 4, y - 1.5, 8, 3), empty: [[0, 1, 6, 4]] };

const lookOf = (name) => (name === 'good' ? GOOD : Object.hasOwn(LOOKS, name) ? LOOKS[name] : UNKNOWN);

let probe = null;

/// A colour of the style sheet, as the current colour scheme and the reader's own colours make it.
export function colourOf(name) {
    if (probe === null) {
        probe = element('span', { className: 'probe', 'aria-hidden': 'true' });
        document.body.append(probe);
    }
    probe.style.color = `var(--${name})`;
    return getComputedStyle(probe).color;
}

/// The part of a class or variable that names a severity's look.
const lookName = (name) => (name === 'good' || Object.hasOwn(LOOKS, name) ? name : 'none');

export const severityColour = (name) => colourOf(`severity-${lookName(name)}`);

export const MARK_SIZE = 14;

/// The mark of a severity as a picture, which is drawn again much faster than a path.
export function severityTile(name, density) {
    const tile = document.createElement('canvas');
    tile.width = tile.height = Math.ceil(MARK_SIZE * density);
    const drawn = tile.getContext('2d');
    drawn.scale(density, density);
    drawn.fillStyle = severityColour(name);
    drawn.beginPath();
    lookOf(name).shape(drawn, MARK_SIZE / 2, MARK_SIZE / 2);
    drawn.fill();
    return tile;
}

/// The hatching of a severity's bars.
export function severityPattern(context, name) {
    const tile = document.createElement('canvas');
    tile.width = tile.height = 6;
    const drawn = tile.getContext('2d');
    drawn.fillStyle = severityColour(name);
    drawn.fillRect(0, 0, 6, 6);
    lookOf(name).empty.forEach((hole) => drawn.clearRect(...hole));
    return context.createPattern(tile, 'repeat');
}

/// The mark of a severity for use beside its name.
export function severityMark(name) {
    const steps = [];
    const at = (x, y) => `${x} ${y}`;
    lookOf(name).shape({
        moveTo: (x, y) => steps.push('M' + at(x, y)),
        lineTo: (x, y) => steps.push('L' + at(x, y)),
        closePath: () => steps.push('Z'),
        rect: (x, y, w, h) => steps.push(`M${at(x, y)}h${w}v${h}h${-w}Z`),
        arc: (x, y, r) => steps.push(`M${at(x + r, y)}A${r} ${r} 0 1 0 ${at(x - r, y)}A${r} ${r} 0 1 0 ${at(x + r, y)}Z`),
    }, 0, 0);
    return svg('svg', { viewBox: '-7 -7 14 14', 'aria-hidden': 'true', class: `mark severity-${lookName(name)}` },
        svg('path', { d: steps.join(''), 'fill-rule': 'evenodd' }));
}

/// A mark and the name of a severity.
export const severityLabel = (name) => element('span', { className: 'nobreak' }, severityMark(name), name ?? 'none');

/// Adds the hatchings to the page for drawings in SVG: fill "url(#hatch-NAME)".
export function addHatchings() {
    const hatch = (name, look) => svg('pattern', { id: `hatch-${name}`, width: 6, height: 6, patternUnits: 'userSpaceOnUse', class: `severity-${name}` },
        svg('path', { 'fill-rule': 'evenodd', d: `M0 0h6v6h-6Z${look.empty.map(([x, y, w, h]) => `M${x} ${y}h${w}v${h}h${-w}Z`).join('')}` }));
    document.body.append(svg('svg', { class: 'hatchings', 'aria-hidden': 'true', width: 0, height: 0 },
        svg('defs', {}, ...Object.entries(LOOKS).map(([name, look]) => hatch(name, look)))));
}
