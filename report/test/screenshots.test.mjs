// SPDX-License-Identifier: Apache-2.0

// Five states of the page, and its picture in the README, compared with pictures that are kept.
// REPORT_SCREENSHOTS=write writes them again; other fonts than those they were made with differ in more
// than the tolerance.

import assert from 'node:assert/strict';
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, describe, it } from 'node:test';
import { fileURLToPath } from 'node:url';
import { Browser, nextPicture, readExample } from './browser.mjs';

const KEPT = fileURLToPath(new URL('screenshots/', import.meta.url));
const WRITE = process.env.REPORT_SCREENSHOTS === 'write';
const OPTIONS = { viewport: { width: 1000, height: 760 }, deviceScaleFactor: 1, reducedMotion: 'reduce' };
// A pixel differs by this much in a colour; so many of all pixels may.
const DIFFERENCE = 48;
const TOLERANCE = 0.01;
const MOST_BYTES = 300e3;

const browser = new Browser();
before(() => browser.start());
after(() => browser.stop());

const report = readExample();

/// The share of pixels that differ between two pictures, found by the browser itself.
async function difference(a, b) {
    const page = await browser.browser.newPage();
    const share = await page.evaluate(async ([pictures, least]) => {
        const [one, other] = await Promise.all(pictures.map(async (data) => {
            const picture = new Image();
            picture.src = `data:image/png;base64,${data}`;
            await picture.decode();
            const canvas = new OffscreenCanvas(picture.width, picture.height);
            const context = canvas.getContext('2d');
            context.drawImage(picture, 0, 0);
            return context.getImageData(0, 0, picture.width, picture.height);
        }));
        if (one.width !== other.width || one.height !== other.height) {
            return `${one.width} x ${one.height} instead of ${other.width} x ${other.height}`;
        }
        let differing = 0;
        for (let at = 0; at < one.data.length; at += 4) {
            differing += [0, 1, 2].some((colour) => Math.abs(one.data[at + colour] - other.data[at + colour]) > least) ? 1 : 0;
        }
        return differing / (one.data.length / 4);
    }, [[a.toString('base64'), b.toString('base64')], DIFFERENCE]);
    await page.close();
    return share;
}

async function compare(name, picture, folder = KEPT) {
    const file = join(folder, `${name}.png`);
    if (WRITE) {
        mkdirSync(folder, { recursive: true });
        assert.ok(picture.length < MOST_BYTES, `${picture.length} bytes`);
        writeFileSync(file, picture);
        return;
    }
    const share = await difference(picture, readFileSync(file));
    if (typeof share === 'string' || share > TOLERANCE) {
        const seen = join(tmpdir(), `recordkit-${name}.png`);
        writeFileSync(seen, picture);
        assert.fail(`${name}: ${typeof share === 'string' ? share : `${(share * 100).toFixed(2)} % of the pixels differ`}; see ${seen}`);
    }
}

/// A picture of `height` px from the top of an element.
const from = async (page, selector, height) => {
    const top = await page.locator(selector).first().evaluate((one) => one.getBoundingClientRect().top + scrollY);
    return page.screenshot({ fullPage: true, clip: { x: 0, y: Math.floor(top), width: OPTIONS.viewport.width, height } });
};

const state = (name, options, take, document = report) => it(name, async () => {
    const { page, close } = await browser.open(document, { ...OPTIONS, ...options });
    await compare(name.replaceAll(' ', '-'), await take(page));
    await close();
});

describe('a picture of', () => {
    state('the verdict', {}, (page) => page.screenshot());

    state('the zoomed timeline', {}, async (page) => {
        const plot = page.locator('#plot');
        for (const key of ['+', '+', 'ArrowRight', 'ArrowRight', 'ArrowRight', 'ArrowDown', 'ArrowDown']) {
            await plot.press(key);
        }
        await nextPicture(page);
        return from(page, '#timeline', 760);
    });

    state('an expanded event', { hash: `#event-${report.asserted[0].row}` }, async (page) => {
        await page.locator('.opener:focus').waitFor();
        return from(page, '#events', 700);
    });

    state('a FRU map', {}, async (page) => {
        await page.locator('#inventory article').nth(3).locator('.piece').nth(6).focus();
        return page.locator('#inventory article').nth(3).screenshot();
    });

    const dark = structuredClone(report);
    dark.sensors = dark.sensors.filter((sensor) => sensor.readings.length > 0).slice(0, 3);
    dark.logs.forEach((log) => Object.assign(log, { files: [], status: null }));
    dark.settings = [];
    state('sensors and EFI backup in the dark', { colorScheme: 'dark' }, (page) => from(page, '#sensors', 760), dark);
});

describe('the picture in the README', () => {
    it('is what the page shows', async () => {
        const { page, close } = await browser.open(report, { ...OPTIONS, viewport: { width: 1200, height: 1560 } });
        await compare('report', await page.screenshot(), fileURLToPath(new URL('../../docs/', import.meta.url)));
        await close();
    });
});

describe('the comparison', () => {
    it('finds what is different', async () => {
        const { page, close } = await browser.open(report, OPTIONS);
        const one = await page.screenshot();
        assert.equal(await difference(one, one), 0);
        await page.locator('#verdict').evaluate((verdict) => { verdict.style.background = '#c00'; });
        assert.ok(await difference(one, await page.screenshot()) > 10 * TOLERANCE);
        assert.match(await difference(one, await page.locator('#verdict').screenshot()), / instead of /);
        await close();
    });
});
