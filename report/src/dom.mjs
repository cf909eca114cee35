// SPDX-License-Identifier: Apache-2.0

/// A new element. `properties` are DOM properties, or attributes where the name contains a "-" or is
/// `role` or `colspan`; `children` are nodes, or texts, which never become markup.
export function element(tag, properties = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(properties)) {
        if (name.includes('-') || name === 'role' || name === 'colspan') {
            made.setAttribute(name, value);
        } else {
            made[name] = value;
        }
    }
    made.append(...children);
    return made;
}

export const byId = (id) => document.getElementById(id);

const grouped = new Intl.NumberFormat('en-GB');

export const count = (number) => grouped.format(number);

export const counted = (number, one, many = one + 's') => `${count(number)} ${number === 1 ? one : many}`;

/// "2026-11-14 02:15:20": a time in seconds since 1970 (UTC) in words that sort.
export const timeText = (seconds) => new Date(seconds * 1000).toISOString().slice(0, 19).replace('T', ' ');

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
