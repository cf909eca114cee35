// SPDX-License-Identifier: Apache-2.0

// What the page looks like: for whom, on what, and on paper.

import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';
import { after, before, describe, it } from 'node:test';
import { documentOf, synthetic } from '../synthetic.mjs';
import { Browser, nextPicture, readExample } from './browser.mjs';

const AXE = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const A4_WIDTH = 688; // px between margins of 14 mm

const browser = new Browser();
before(() => browser.start());
after(() => browser.stop());

const report = readExample();

/// Everything that a click unfolds.
const unfold = async (page) => {
    await page.locator('#rows .opener').first().click();
    await page.evaluate(() => {
        document.querySelectorAll('details').forEach((one) => { one.open = true; });
        document.querySelectorAll('.more').forEach((one) => one.click());
    });
    await nextPicture(page);
};

describe('what is accessible', () => {
    const looks = [
        ['light', {}], ['dark', { colorScheme: 'dark' }],
        ['narrow', { viewport: { width: 360, height: 740 } }], ['wide, dark', { viewport: { width: 2560, height: 1400 }, colorScheme: 'dark' }],
        ['in colours of the reader', { forcedColors: 'active' }],
    ];
    for (const [name, options] of looks) {
        it(`${name}: no violation, nothing beside the page`, { timeout: 300000 }, async () => {
            const { page, heard, close } = await browser.open(report, options);
            await unfold(page);
            // axe-core is added by the browser's debugger, which the policy does not bind.
            await page.evaluate(AXE);
            const result = await page.evaluate(() => axe.run(document, { resultTypes: ['violations'] }));
            assert.deepEqual(result.violations.map((one) => `${one.id}: ${one.nodes.slice(0, 3).map((node) => node.html).join(' ')}`), []);
            assert.ok(result.passes.length > 20);
            const [inner, outer] = await page.evaluate(() => [document.documentElement.scrollWidth, innerWidth]);
            assert.ok(inner <= outer, `${inner} px in a window of ${outer} px`);
            assert.deepEqual(heard.errors, []);
            await close();
        });
    }

    it('has a header for each column and row of each table', async () => {
        const { page, close } = await browser.open(report);
        const bare = await page.evaluate(() => [...document.querySelectorAll('table.data')].filter((table) =>
            table.caption.textContent === '' || [...table.tHead.rows[0].cells].some((cell) => cell.localName !== 'th' || cell.scope !== 'col' || cell.textContent === '')
            || [...table.tBodies[0].rows].some((row) => row.cells[0].localName !== 'th' || row.cells[0].scope !== 'row')).length);
        assert.equal(bare, 0);
        const heads = await page.locator('#events-table > thead th').evaluateAll((cells) => cells.map((cell) => [cell.scope, cell.textContent]));
        assert.deepEqual(heads, ['Time', 'Severity', 'Log', 'Sensor', 'Event', 'Direction'].map((name) => ['col', name]));
        assert.equal(await page.locator('#rows th[scope=row]').count(), await page.locator('#rows tr').count());
        await close();
    });

    it('reaches everything that can be used by Tab', { timeout: 300000 }, async () => {
        const { page, close } = await browser.open(report);
        const wanted = await page.evaluate(() => {
            const seen = [...document.querySelectorAll('a[href], button, input, select, summary, [tabindex="0"]')]
                .filter((one) => one.tabIndex >= 0 && one.checkVisibility({ visibilityProperty: true }));
            seen.forEach((one, index) => { one.dataset.tab = index; });
            return seen.length;
        });
        const reached = new Set();
        for (let step = 0; step <= wanted + 1; step++) {
            await page.keyboard.press('Tab');
            reached.add(await page.evaluate(() => document.activeElement.dataset.tab));
        }
        reached.delete(undefined);
        assert.ok(wanted > 100);
        const missed = await page.evaluate((reached) => [...document.querySelectorAll('[data-tab]')].filter((one) => !reached.includes(one.dataset.tab))
            .map((one) => one.outerHTML.slice(0, 90)), [...reached]);
        assert.deepEqual(missed, []);
        await close();
    });

    it('moves nothing for a reader who wants no motion', async () => {
        const { page, close } = await browser.open(synthetic(100), { reducedMotion: 'reduce' });
        const moving = await page.evaluate(() => [...document.querySelectorAll('*')]
            .filter((one) => getComputedStyle(one).animationName !== 'none' || getComputedStyle(one).transitionDuration !== '0s').length);
        assert.equal(moving, 0);
        await close();
    });
});

describe('colours', () => {
    /// The colours of the style sheet, also those of canvases and drawings, as red, green and blue.
    const coloursOf = (page) => page.evaluate(() => {
        const names = [...document.styleSheets[0].cssRules].find((rule) => rule.selectorText === ':root').style;
        const probe = document.createElement('canvas').getContext('2d');
        return Object.fromEntries([...names].filter((name) => name.startsWith('--')).map((name) => {
            probe.fillStyle = getComputedStyle(document.documentElement).getPropertyValue(name);
            probe.fillRect(0, 0, 1, 1);
            return [name.slice(2), [...probe.getImageData(0, 0, 1, 1).data].slice(0, 3)];
        }));
    });

    // WCAG 2.2: relative luminance and contrast ratio.
    const luminance = (colour) => colour.map((value) => value / 255).map((part) => (part <= 0.04045 ? part / 12.92 : ((part + 0.055) / 1.055) ** 2.4))
        .reduce((sum, part, index) => sum + part * [0.2126, 0.7152, 0.0722][index], 0);
    const contrast = (a, b) => {
        const [low, high] = [luminance(a), luminance(b)].sort((x, y) => x - y);
        return (high + 0.05) / (low + 0.05);
    };

    for (const colorScheme of ['light', 'dark']) {
        it(`${colorScheme}: texts differ by 4.5, marks and lines by 3 from what is below them`, async () => {
            const { page, close } = await browser.open(documentOf([]), { colorScheme });
            const colours = await coloursOf(page);
            const severities = Object.keys(colours).filter((name) => name.startsWith('severity-'));
            assert.equal(severities.length, 8);
            for (const below of ['page', 'panel', 'stripe']) {
                for (const [least, names] of [[4.5, ['text', 'quiet', 'accent']], [3, ['line', ...severities]]]) {
                    for (const name of names) {
                        const found = contrast(colours[name], colours[below]);
                        assert.ok(found >= least, `${name} on ${below}: ${found.toFixed(2)}`);
                    }
                }
            }
            await close();
        });
    }

    it('are not needed: each severity has a shape and a hatching of its own', async () => {
        const { page, close } = await browser.open(documentOf([]));
        const [shapes, hatches] = await page.evaluate(() => ['#legend path', 'pattern path'].map((paths) =>
            [...document.querySelectorAll(paths)].map((path) => path.getAttribute('d'))));
        assert.equal(shapes.length, 7);
        assert.equal(new Set(shapes).size, 7);
        assert.equal(hatches.length, 6);
        assert.equal(new Set(hatches).size, 6);
        await close();
    });

    it('of the reader are those of the timeline', async () => {
        const { page, close } = await browser.open(report, { forcedColors: 'active', colorScheme: 'dark' });
        const own = await page.evaluate(() => [...[...document.styleSheets[0].cssRules].find((rule) => rule.selectorText === ':root').style]
            .filter((name) => name.startsWith('--') && !/^(Canvas|CanvasText|LinkText)$/.test(getComputedStyle(document.documentElement).getPropertyValue(name))));
        assert.deepEqual(own, []);
        const [used, wanted] = await page.evaluate(() => {
            const canvas = document.getElementById('canvas');
            const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
            const used = new Map();
            for (let at = 0; at < data.length; at += 4) {
                if (data[at + 3] === 255) {
                    const colour = `rgb(${data[at]}, ${data[at + 1]}, ${data[at + 2]})`;
                    used.set(colour, (used.get(colour) ?? 0) + 1);
                }
            }
            return [[...used].sort((a, b) => b[1] - a[1]).slice(0, 2).map(([colour]) => colour), [getComputedStyle(document.body).color, getComputedStyle(document.body).backgroundColor]];
        });
        assert.deepEqual(used.sort(), wanted.sort());
        await close();
    });
});

describe('on paper', () => {
    it('no table is wider than the sheet, what only works on a screen is left out, the filters are printed', async () => {
        const { page, close } = await browser.open(report, { viewport: { width: A4_WIDTH, height: 971 } });
        await unfold(page);
        await page.locator('#text').fill('Fan');
        await page.getByLabel(/^informational/).uncheck();
        await page.locator('#zoom-in').click();
        await page.locator('#rows .opener').first().click();
        await page.emulateMedia({ media: 'print' });
        await page.evaluate(() => dispatchEvent(new Event('beforeprint')));
        const cut = await page.evaluate((width) => [...document.querySelectorAll('main *')]
            .filter((one) => one.checkVisibility() && one.getBoundingClientRect().right > width + 1)
            .map((one) => `${one.localName}.${one.getAttribute('class')} ${one.getBoundingClientRect().right} ${one.textContent.slice(0, 60)}`), A4_WIDTH);
        assert.deepEqual(cut.slice(0, 5), []);
        const hidden = await page.evaluate(() => [...document.querySelectorAll('.wide, .dump, #events-scroller')]
            .filter((one) => one.checkVisibility() && one.scrollWidth > one.clientWidth + 1).map((one) => one.getAttribute('aria-label')));
        assert.deepEqual(hidden, []);
        for (const control of ['#filters', '.tools', '#contents', '#keys']) {
            assert.equal(await page.locator(control).first().isVisible(), false, control);
        }
        assert.match(await page.locator('#active-filters').innerText(), /^Filters: text "Fan"; without severity informational; period 2026-11-\d\d .* UTC\.$/);
        assert.equal(await page.locator('#active-filters').isVisible(), true);
        await close();
    });

    it('has rows beyond those on the screen, black on white', async () => {
        const { page, close } = await browser.open(synthetic(500), { colorScheme: 'dark' });
        assert.equal(await page.locator('#active-filters').textContent(), '');
        await page.evaluate(() => dispatchEvent(new Event('beforeprint')));
        assert.equal(await page.locator('#rows tr').count(), 200);
        assert.match(await page.locator('#printed').textContent(), /first 200/);
        const grey = await page.evaluate(() => {
            const canvas = document.getElementById('canvas');
            const { data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, canvas.height);
            for (let at = 0; at < data.length; at += 4) {
                if (data[at] !== data[at + 1] || data[at] !== data[at + 2]) {
                    return false;
                }
            }
            return true;
        });
        assert.equal(grey, true);
        await page.evaluate(() => dispatchEvent(new Event('afterprint')));
        await nextPicture(page);
        assert.ok(await page.locator('#rows tr').count() < 60);
        await close();
    });

    it('has few sheets', async () => {
        const { page, close } = await browser.open(report);
        const paper = (await page.pdf({ format: 'A4' })).toString('latin1');
        const sheets = paper.match(/\/Type\s*\/Page\b/g).length;
        assert.ok(sheets > 6 && sheets < 30, `${sheets} sheets`);
        await close();
    });
});
