// SPDX-License-Identifier: Apache-2.0

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

const UNKNOWN = { shape: (path, x, y) => path.rect(x - 4, y - 1.5, 8, 3), empty: [[0, 1, 6, 4]] };

const lookOf = (name) => LOOKS[name] ?? UNKNOWN;

/// The colour of a severity in the current colour scheme, from the style sheet.
export function severityColour(name) {
    const known = Object.hasOwn(LOOKS, name) ? name : 'none';
    return getComputedStyle(document.documentElement).getPropertyValue(`--severity-${known}`).trim();
}

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
    const made = document.createElementNS('http://www.w3.org/2000/svg', 'svg');
    made.setAttribute('viewBox', '-7 -7 14 14');
    made.setAttribute('aria-hidden', 'true');
    made.setAttribute('class', `mark severity-${Object.hasOwn(LOOKS, name) ? name : 'none'}`);
    const steps = [];
    const at = (x, y) => `${x} ${y}`;
    lookOf(name).shape({
        moveTo: (x, y) => steps.push('M' + at(x, y)),
        lineTo: (x, y) => steps.push('L' + at(x, y)),
        closePath: () => steps.push('Z'),
        rect: (x, y, w, h) => steps.push(`M${at(x, y)}h${w}v${h}h${-w}Z`),
        arc: (x, y, r) => steps.push(`M${at(x + r, y)}A${r} ${r} 0 1 0 ${at(x - r, y)}A${r} ${r} 0 1 0 ${at(x + r, y)}Z`),
    }, 0, 0);
    const path = document.createElementNS('http://www.w3.org/2000/svg', 'path');
    path.setAttribute('d', steps.join(''));
    path.setAttribute('fill-rule', 'evenodd');
    made.append(path);
    return made;
}
