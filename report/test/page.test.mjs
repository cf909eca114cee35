// SPDX-License-Identifier: Apache-2.0

import assert from 'node:assert/strict';
import { after, before, describe, it } from 'node:test';
import { encodeEvents } from '../encode.mjs';
import { documentOf, synthetic, syntheticList } from '../synthetic.mjs';
import { Browser, nextPicture } from './browser.mjs';

const FEW = 2000;

const browser = new Browser();
before(() => browser.start());
after(() => browser.stop());

/// The number at the beginning of the line over the table: how many events are listed.
const listed = async (page) => Number((await page.locator('#found').textContent()).split(' ')[0].replaceAll(',', ''));

const periodOf = async (page) => (await page.locator('#period').textContent()).split(' UTC')[0]
    .split(' to ').map((text) => Date.parse(text.replace(' ', 'T') + 'Z') / 1000);

const event = (more = {}) => ({ ...syntheticList(1, 5)[0], time: 'dated', timestamp: 1763000000, pre_init: false, ...more });

describe('a report of few events', () => {
    const list = syntheticList(FEW);
    let opened;
    let page;
    before(async () => {
        opened = await browser.open(synthetic(FEW));
        page = opened.page;
    });
    after(() => opened.close());

    const reset = async () => {
        await page.locator('#reset-all').click();
        await nextPicture(page);
    };

    it('loads nothing but itself and reports no error', () => {
        assert.deepEqual(opened.heard.requests, [opened.heard.url]);
        assert.deepEqual(opened.heard.errors, []);
    });

    it('says the verdict and goes to its event', async () => {
        assert.match(await page.locator('#verdict').innerText(), /Critical: 1 state still asserted/);
        const last = list.findLast((one) => one.severity === 'critical');
        assert.ok((await page.locator('#reasons li').innerText()).includes(last.event));
        await page.locator('#reasons a').click();
        const focused = page.locator('.opener:focus');
        assert.equal(await focused.getAttribute('aria-expanded'), 'true');
        assert.ok((await page.locator('tr:has(.opener:focus)').innerText()).includes(last.sensor_name));
        await reset();
    });

    it('has only the rows that are seen', async () => {
        assert.equal(await page.locator('#events-table').getAttribute('aria-rowcount'), String(FEW + 1));
        const rows = await page.locator('#rows tr').count();
        assert.ok(rows > 10 && rows < 60, `${rows} rows`);
        await page.locator('#events-scroller').evaluate((box) => { box.scrollTop = box.scrollHeight; });
        await page.locator(`tr[aria-rowindex="${FEW + 1}"]`).waitFor();
        await reset();
    });

    it('filters by text, severity, sensor and direction', async () => {
        const expect = async (which) => {
            await nextPicture(page);
            assert.equal(await listed(page), list.filter(which).length);
            await reset();
            assert.equal(await listed(page), FEW);
        };
        await page.locator('#text').fill('uncorrectable');
        await expect((one) => one.event.toLowerCase().includes('uncorrectable'));
        await page.locator('#text').fill('SB26A00003');
        await expect((one) => one.serial_number === 'SB26A00003');
        await page.locator('#text').fill('unit 3');
        await expect((one) => one.cause === 'unit 3');
        await page.getByLabel(/^warning/).uncheck();
        await expect((one) => one.severity !== 'warning');
        const sensor = list[0].sensor_name;
        const option = page.locator('#sensor option').filter({ hasText: new RegExp(`^${sensor} \\(`) });
        await page.locator('#sensor').selectOption(await option.getAttribute('value'));
        await expect((one) => one.sensor_name === sensor);
        await page.locator('#direction').selectOption({ label: 'deasserted' });
        await expect((one) => one.direction === 'deasserted');
        await page.locator('#still').check();
        await expect((one) => one === list.findLast((other) => other.severity === 'critical'));
        await page.locator('#text').fill('no event says this');
        await expect(() => false);
    });

    it('zooms by dragging; histogram and table follow', async () => {
        const whole = await periodOf(page);
        const plot = page.locator('#plot');
        await plot.scrollIntoViewIfNeeded();
        const box = await plot.boundingBox();
        await page.mouse.move(box.x + box.width * 0.5, box.y + 40);
        await page.mouse.down();
        await page.mouse.move(box.x + box.width * 0.6, box.y + 40, { steps: 3 });
        assert.equal(await page.locator('#band').isVisible(), true);
        await page.mouse.up();
        await nextPicture(page);
        assert.equal(await page.locator('#band').isVisible(), false);
        const [from, to] = await periodOf(page);
        const part = (to - from) / (whole[1] - whole[0]);
        assert.ok(part > 0.1 && part < 0.15, `the period is ${part} of the whole`);
        assert.ok(from > whole[0] && to < whole[1]);
        const inside = list.filter((one) => one.time !== null && one.timestamp >= from && one.timestamp <= to).length;
        const undated = list.filter((one) => one.time === null).length;
        const shown = await listed(page);
        assert.ok(Math.abs(shown - inside) <= undated + 2, `${shown} listed, ${inside} in the period`);
        assert.ok((await page.locator('#period').textContent()).includes(`: ${shown} events`));
        await page.locator('#follow').uncheck();
        assert.equal(await listed(page), FEW);
        await page.locator('#follow').check();
        await plot.dblclick({ position: { x: box.width * 0.5, y: 40 } });
        await nextPicture(page);
        assert.deepEqual(await periodOf(page), whole);
        assert.equal(await listed(page), FEW);
    });

    it('zooms, moves and chooses a lane by keyboard', async () => {
        const whole = await periodOf(page);
        await page.locator('#plot').focus();
        const press = async (key) => {
            await page.keyboard.press(key);
            await nextPicture(page);
            return periodOf(page);
        };
        const half = await press('+');
        assert.ok(Math.abs((half[1] - half[0]) / (whole[1] - whole[0]) - 0.5) < 0.001);
        const earlier = await press('ArrowLeft');
        assert.ok(earlier[0] < half[0] && earlier[1] < half[1]);
        assert.equal((await press('Home'))[0], whole[0]);
        assert.equal((await press('End'))[1], whole[1]);
        assert.deepEqual(await press('0'), whole);
        await press('ArrowDown');
        const said = await page.locator('#readout').textContent();
        await press('Enter');
        const sensor = said.split(/ · |:/)[0];
        assert.equal(await listed(page), list.filter((one) => one.sensor_name === sensor).length);
        await reset();
    });

    it('opens a row with fields and bytes', async () => {
        const first = page.locator('#rows .opener').first();
        await first.click();
        const newest = list.at(-1);
        const details = await page.locator('.details').innerText();
        const bytes = newest.record.match(/../g).join(' ');
        assert.equal((await page.locator('.bytes tbody tr').nth(1).locator('td').allTextContents()).join(' '), bytes);
        assert.deepEqual(await page.locator('.bytes thead th').allTextContents(), [
            'record_id', 'record_type', 'timestamp', 'generator_id_1', 'generator_id_2', 'evm_revision', 'sensor_type', 'sensor_number',
            'deassertion, event_type', 'event_data_1', 'event_data_2', 'event_data_3']);
        assert.match(details, new RegExp(`event_data_2\\s+${newest.record.slice(28, 30).toUpperCase()}h`));
        assert.match(details, new RegExp(`sensor_type\\s+0${newest.sensor_type.toString(16).toUpperCase()}h ${newest.sensor_type_name}`));
        assert.match(details, new RegExp(`stored in\\s+sel${newest.file}, slot ${newest.slot}`));
        await first.click();
        assert.equal(await page.locator('.details').count(), 0);
    });

    it('keeps an opened row in place while the table is scrolled', async () => {
        await page.locator('#rows .opener').first().click();
        const scroller = page.locator('#events-scroller');
        await scroller.evaluate((box) => { box.scrollTop = 20000; });
        await page.waitForFunction(() => !document.querySelector('.details'));
        const height = await scroller.evaluate((box) => box.scrollHeight);
        await scroller.evaluate((box) => { box.scrollTop = 0; });
        await page.locator('.details').waitFor();
        assert.equal(await scroller.evaluate((box) => box.scrollHeight), height);
        await reset();
    });

    it('is used with the keyboard only', async () => {
        const { page, heard, close } = await browser.open(synthetic(FEW));
        const seen = new Set();
        for (let step = 0; step < 60; step++) {
            await page.keyboard.press('Tab');
            const at = await page.evaluate(() => document.activeElement.id || document.activeElement.className
                || (document.activeElement.dataset.by ? `by ${document.activeElement.dataset.by}` : document.activeElement.name));
            seen.add(at);
            if (at === 'opener') {
                break;
            }
        }
        for (const part of ['skip', 'text', 'sensor', 'direction', 'severity', 'plot', 'zoom-in', 'lanes', 'events-scroller', 'by time', 'by severity', 'by direction', 'opener']) {
            assert.ok(seen.has(part), `${part} is not reached by Tab`);
        }
        const index = () => page.evaluate(() => Number(document.activeElement.closest('tr').getAttribute('aria-rowindex')));
        assert.equal(await index(), 2);
        await page.keyboard.press('ArrowDown');
        assert.equal(await index(), 3);
        await page.keyboard.press('End');
        assert.equal(await index(), FEW + 1);
        await page.keyboard.press('Enter');
        assert.equal(await page.locator('.opener:focus').getAttribute('aria-expanded'), 'true');
        await page.keyboard.press('PageUp');
        assert.ok(await index() < FEW - 3);
        await page.keyboard.press('Home');
        assert.equal(await index(), 2);
        await page.locator('[data-by=time]').press('Enter');
        assert.ok((await page.locator('#rows .text').first().innerText()).startsWith(list[0].event));
        assert.deepEqual(heard.errors, []);
        await close();
    });

    it('reported no error meanwhile', () => {
        assert.deepEqual(opened.heard.requests, [opened.heard.url]);
        assert.deepEqual(opened.heard.errors, []);
    });
});

describe('what the pictures show', () => {
    /// Where the mark of an event at a part of the period is, in px of the plot.
    const placeOf = async (page, part, lane) => {
        const { width } = await page.locator('#plot').boundingBox();
        const left = Math.min(220, Math.max(104, Math.round(width * 0.2)));
        const columns = Math.floor((width - 12 - left) / 5);
        return { x: left + (Math.floor(part * columns) + 0.5) * (width - 12 - left) / columns, y: 128 + (lane + 0.5) * 18 };
    };

    /// The colour of the timeline at a place, and the colour of a severity.
    const look = (page, place, severity) => page.evaluate(([{ x, y }, severity]) => {
        const canvas = document.getElementById('canvas');
        const scale = canvas.width / canvas.clientWidth;
        const found = canvas.getContext('2d').getImageData(x * scale, y * scale, 1, 1).data;
        const probe = document.createElement('canvas').getContext('2d');
        probe.fillStyle = getComputedStyle(document.documentElement).getPropertyValue(`--severity-${severity}`);
        probe.fillRect(0, 0, 1, 1);
        return [[...found].join(), [...probe.getImageData(0, 0, 1, 1).data].join()];
    }, [place, severity]);

    it('marks are in their lane, at their time, in their colour; undated events are in a lane of their own', async () => {
        const at = 1763000000;
        const { page, close } = await browser.open(documentOf([
            event({ log: 1, severity: 'informational', timestamp: at, sensor_name: 'First' }),
            event({ log: 2, severity: 'critical', timestamp: at + 5000, sensor_name: 'Second' }),
            event({ log: 3, severity: 'informational', timestamp: at + 5001, sensor_name: 'Second' }),
            event({ log: 3, severity: 'warning', timestamp: 7, time: null, pre_init: true, sensor_name: 'First' }),
            event({ log: 4, severity: 'informational', timestamp: at + 10000, sensor_name: 'First' }),
        ]));
        const part = 5060 / 10120;
        for (const [lane, severity] of [[0, 'critical'], [2, 'warning']]) {
            const [found, expected] = await look(page, await placeOf(page, part, lane), severity);
            assert.equal(found, expected, severity);
        }
        await page.locator('#plot').hover({ position: await placeOf(page, part, 0) });
        assert.match(await page.locator('#readout').textContent(), /^Second, 2025-11-13 0\d:\d\d:\d\d: 2 events, the worst critical$/);
        const lanes = [];
        for (let lane = 0; lane < 3; lane++) {
            await page.locator('#plot').press('ArrowDown');
            lanes.push(await page.locator('#readout').textContent());
        }
        assert.deepEqual(lanes, ['Second: 2 events', 'First: 2 events', 'without a date: 1 event']);
        // In the lane of its sensor there is nothing at the place of an undated event.
        await page.locator('#plot').hover({ position: await placeOf(page, part, 1) });
        assert.equal(await page.locator('#readout').textContent(), '');
        await page.getByLabel(/^critical/).uncheck();
        await nextPicture(page);
        const [found, hidden] = await look(page, await placeOf(page, part, 0), 'critical');
        assert.notEqual(found, hidden);
        await close();
    });

    it('lanes of sensors that several logs have are named with the log', async () => {
        const { page, close } = await browser.open(documentOf([0, 1].flatMap((board) => [
            event({ board, log: 1, sensor_name: 'Fan' }), event({ board, log: 2, sensor_name: `Own ${board}`, severity: 'unrated' })])));
        const lanes = [];
        for (let lane = 0; lane < 4; lane++) {
            await page.locator('#plot').press('ArrowDown');
            lanes.push(await page.locator('#readout').textContent());
        }
        assert.deepEqual(lanes.sort(), ['Fan · board 0: 1 event', 'Fan · board 1: 1 event', 'Own 0: 1 event', 'Own 1: 1 event']);
        await close();
    });

    it('bars of the histogram are where their events are', async () => {
        const at = 1763000000;
        const list = [event({ log: 1, severity: 'critical', timestamp: at }), event({ log: 2, severity: 'warning', timestamp: at + 10000 })];
        const { page, close } = await browser.open(documentOf(list));
        const colours = await page.evaluate(() => {
            const canvas = document.getElementById('canvas');
            const { width, data } = canvas.getContext('2d').getImageData(0, 0, canvas.width, 104);
            const probe = document.createElement('canvas').getContext('2d');
            const where = (severity) => {
                probe.fillStyle = getComputedStyle(document.documentElement).getPropertyValue(`--severity-${severity}`);
                probe.fillRect(0, 0, 1, 1);
                const [red, green, blue] = probe.getImageData(0, 0, 1, 1).data;
                const found = [];
                for (let pixel = 0; pixel < data.length / 4; pixel++) {
                    if (data[pixel * 4] === red && data[pixel * 4 + 1] === green && data[pixel * 4 + 2] === blue && data[pixel * 4 + 3] === 255) {
                        found.push(pixel % width / width);
                    }
                }
                return { number: found.length, least: Math.min(...found), most: Math.max(...found) };
            };
            return [where('critical'), where('warning')];
        });
        assert.ok(colours[0].number > 100 && colours[0].most < 0.3, JSON.stringify(colours));
        assert.ok(colours[1].number > 100 && colours[1].least > 0.9, JSON.stringify(colours));
        await close();
    });

    it('rotations, gaps, clears and set clocks are marked differently in the lanes of their log', async () => {
        const at = 1763000000;
        const list = [0, 1].flatMap((board) => [event({ board, log: 1, timestamp: at }), event({ board, log: 2, timestamp: at + 10000 })]);
        const events = encodeEvents(list, new Set(), []);
        const strips = async (traces) => {
            const { page, close } = await browser.open(documentOf(list, { events: { ...events, traces } }));
            const found = await page.evaluate(() => [0, 1].map((lane) => {
                const canvas = document.getElementById('canvas');
                return canvas.getContext('2d').getImageData(0, 128 + lane * 18, canvas.width, 18).data.join();
            }));
            await close();
            return found;
        };
        const without = await strips([]);
        const seen = new Set([without[1]]);
        for (const kind of ['rotation', 'gap', 'cleared', 'clock']) {
            const trace = { kind, log: 1, from: at + 3000, to: at + 4000, missing: 2 };
            const found = await strips([trace]);
            assert.equal(found[0], without[0], `${trace.kind} in the lane of another log`);
            assert.ok(!seen.has(found[1]), `${kind} is not seen in its lane, or looks like another mark`);
            seen.add(found[1]);
        }
    });
});

describe('an empty log', () => {
    it('has a page', async () => {
        const { page, heard, close } = await browser.open(documentOf([]));
        assert.equal(await listed(page), 0);
        await page.locator('#plot').press('+');
        assert.deepEqual(heard.errors, []);
        await close();
    });

    it('of events without a date has one as well', async () => {
        const { page, heard, close } = await browser.open(documentOf([event({ time: null, pre_init: true })]));
        assert.equal(await listed(page), 1);
        assert.ok((await page.locator('#rows .opener').innerText()).includes('before the clock was set'));
        assert.deepEqual(heard.errors, []);
        await close();
    });
});

describe('a damaged document', () => {
    it('is reported as such', async () => {
        const damaged = synthetic(10);
        damaged.events.columns.time.data = '';
        const { page, heard, close } = await browser.open(damaged, {}, '#verdict-word:not(:empty)');
        assert.match(await page.locator('#verdict').innerText(), /cannot be shown: column time does not have 10 values/);
        assert.equal(heard.errors.length, 1);
        await close();
    });
});
