// SPDX-License-Identifier: Apache-2.0

// Measures a page with many events, by its own performance marks: prints numbers, and fails beyond the limits.
//
//   node bench.mjs PAGE.html

import { statSync } from 'node:fs';
import { Browser } from './test/browser.mjs';

const LIMITS = { bytes: 12e6, picture: 1500, filter: 100 };
const FILTERS = [
    ['text', 'critical'], ['text', 'e'], ['text', 'no event says this'], ['text', ''], ['direction', '1'], ['direction', '-1'],
    ['sensor', 'sensor-3'], ['sensor', '-1'], ['log', '0'], ['log', '-1'], ['severity', false], ['severity', true], ['still', true], ['still', false],
];

const file = process.argv[2];
if (file === undefined) {
    console.error('usage: node bench.mjs PAGE.html');
    process.exit(2);
}
let failed = false;
const say = (what, value, unit, limit) => {
    const beyond = limit !== undefined && value > limit;
    failed ||= beyond;
    console.log(`${what.padEnd(36)} ${String(Math.round(value)).padStart(9)} ${unit}${beyond ? `, beyond ${limit}` : ''}`);
};

const browser = new Browser();
await browser.start();
try {
    say('page', statSync(file).size, 'bytes', LIMITS.bytes);
    const { page, heard } = await browser.openFile(file);
    say('events', Number((await page.locator('#found').textContent()).match(/of ([\d,]+)/)[1].replaceAll(',', '')), '');
    const mark = (name) => page.evaluate((name) => performance.getEntriesByName(name).at(-1).startTime, name);
    say('first picture', await mark('first-picture'), 'ms', LIMITS.picture);
    say('all sections', await mark('complete'), 'ms');
    for (const [id, value] of FILTERS) {
        // From the user's input to the end of the picture that shows its effect.
        const took = await page.evaluate(([id, value]) => new Promise((done) => {
            const control = id === 'severity' ? document.querySelector('[name=severity]') : document.getElementById(id);
            control[typeof value === 'boolean' ? 'checked' : 'value'] = value;
            const begin = performance.now();
            document.getElementById('filters').dispatchEvent(new Event('input'));
            requestAnimationFrame(() => setTimeout(() => done(performance.now() - begin)));
        }), [id, value]);
        say(`filter ${id} ${JSON.stringify(value)}`, took, 'ms', LIMITS.filter);
    }
    for (const column of ['severity', 'sensor', 'text', 'time']) {
        const took = await page.evaluate((column) => new Promise((done) => {
            const begin = performance.now();
            document.querySelector(`[data-by=${column}]`).click();
            requestAnimationFrame(() => setTimeout(() => done(performance.now() - begin)));
        }), column);
        say(`sort by ${column}`, took, 'ms');
    }
    if (heard.errors.length > 0 || heard.requests.length !== 1) {
        console.log(...heard.errors, ...heard.requests);
        failed = true;
    }
} finally {
    await browser.stop();
}
process.exit(failed ? 1 : 0);
