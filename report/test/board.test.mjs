// SPDX-License-Identifier: Apache-2.0

// The page of the example board, section by section.

import assert from 'node:assert/strict';
import { after, before, describe, it } from 'node:test';
import { piecesOf, pieceText } from '../src/bytemap.mjs';
import { isoText } from '../src/dom.mjs';
import { documentOf } from '../synthetic.mjs';
import { Browser, nextPicture, readExample } from './browser.mjs';

const browser = new Browser();
before(() => browser.start());
after(() => browser.stop());

const report = readExample();
// Names are those in the root, of which there is one.
const ROOT = `${report.fru[0].root}/`;
const inRoot = (path) => (path.startsWith(ROOT) ? path.slice(ROOT.length) : path);
const change = (make) => {
    const copy = structuredClone(report);
    make(copy);
    return copy;
};

/// What a document says of its events, without the page's own reading of it.
const column = (name) => {
    const { type, data } = report.events.columns[name];
    const bytes = Buffer.from(data, 'base64');
    const width = { u8: 1, u16: 2, u32: 4 }[type];
    return Array.from({ length: report.events.count }, (_, row) => bytes.readUIntLE(row * width, width));
};
const eventsOf = (has) => column('sensor').filter((sensor) => has(report.events.sensors[sensor], sensor)).length;

const grouped = (number) => new Intl.NumberFormat('en-GB').format(number);
const found = async (page) => (await page.locator('#found').textContent()).split(' of ')[0];

/// The cells of a table, by its caption: a list for each row.
const tableOf = (page, caption) => page.locator('table.data').filter({ has: page.locator('caption', { hasText: new RegExp(`^${caption}$`) }) })
    .evaluate((table) => [...table.tBodies[0].rows].map((row) => [...row.cells].map((cell) => cell.textContent)));

const sectionsOf = (page) => page.locator('#contents a').allTextContents();

describe('the example board', () => {
    let opened;
    let page;
    before(async () => {
        opened = await browser.open(report);
        page = opened.page;
    });
    after(() => opened.close());

    const reset = async () => {
        await page.locator('#reset-all').click();
        await nextPicture(page);
    };

    it('has every section, and reports no error', async () => {
        assert.deepEqual(await sectionsOf(page), ['Verdict', 'Logs', 'Timeline', 'Events', 'What failed', 'Inventory', 'Sensors', 'Stores', 'Inputs']);
        assert.deepEqual(opened.heard.requests, [opened.heard.url]);
        assert.deepEqual(opened.heard.errors, []);
    });

    it('says its verdict with the reasons', async () => {
        assert.equal(await page.locator('#verdict').getAttribute('data-level'), report.verdict.level);
        assert.equal(await page.locator('#verdict-word').textContent(), `Critical: ${report.verdict.text}`);
        const { events, undated, other_records: others, first, last } = report.summary;
        assert.equal(await page.locator('#summary').textContent(),
            `${grouped(events)} events from ${isoText(first)} to ${isoText(last)}, ${undated} without a date, ${others} other records.`);
        const reasons = await page.locator('#reasons > li').allTextContents();
        assert.equal(reasons.length, report.verdict.reasons.length);
        report.verdict.reasons.forEach((reason, index) => {
            const state = report.asserted[reason.state];
            for (const part of [state.sensor_name, state.event, state.severity, isoText(state.since), report.logs[state.log].name]) {
                assert.ok(reasons[index].includes(part), `${reasons[index]}: ${part}`);
            }
        });
    });

    it('has a card for each log, whose link shows this log only', async () => {
        const cards = page.locator('#overview-cards > li');
        assert.equal(await cards.count(), report.logs.length);
        for (const [index, log] of report.logs.entries()) {
            const text = await cards.nth(index).textContent();
            assert.ok(text.includes(`${grouped(log.events)} events, ${log.still_asserted} still asserted`), text);
            for (const { severity, events } of log.severities.filter((one) => one.events > 0)) {
                assert.ok(text.includes(`${grouped(events)} ${severity}`), `${severity}: ${text}`);
            }
            await cards.nth(index).getByRole('link').click();
            await page.waitForFunction((index) => document.getElementById('log').value === String(index), index);
            await nextPicture(page);
            assert.equal(await found(page), grouped(log.events));
            assert.match(await page.locator('#period').textContent(), new RegExp(`: ${grouped(log.events)} events`));
            assert.equal(await page.evaluate(() => document.activeElement.id), 'timeline-heading');
        }
        // The same link again, after the filter was changed.
        await reset();
        await cards.last().getByRole('link').click();
        await page.waitForFunction((index) => document.getElementById('log').value === String(index), report.logs.length - 1);
        await reset();
    });

    it('lists the marks of the logs', async () => {
        const rows = await tableOf(page, 'Marks of the logs');
        assert.deepEqual(rows.map((row) => row[1]), report.events.traces.map(({ kind }) => ({ rotation: 'rotated', gap: 'gap', cleared: 'cleared', clock: 'clock set' })[kind]));
        assert.deepEqual(rows.map((row) => row[0]), report.events.traces.map(({ log }) => report.logs[log].name));
    });

    it('links to an event', async () => {
        const { row, event } = report.asserted[0];
        const { page, heard, close } = await browser.open(report, { hash: `#event-${row}` });
        const opener = page.locator('.opener:focus');
        assert.equal(await opener.getAttribute('aria-expanded'), 'true');
        assert.ok((await page.locator('tr:has(.opener:focus)').textContent()).includes(event));
        assert.equal(await page.locator('.details a').getAttribute('href'), `#event-${row}`);
        await page.evaluate(() => { location.hash = '#event-0'; });
        await page.waitForFunction((number) => document.activeElement.closest('tr')?.getAttribute('aria-rowindex') === number, String(report.events.count + 1));
        await page.evaluate(() => { location.hash = '#event-99999999'; });
        assert.deepEqual(heard.errors, []);
        await close();
    });

    it('says what is still asserted', async () => {
        const rows = await tableOf(page, 'Still asserted');
        assert.deepEqual(rows.map((row) => row.slice(0, 7)), report.asserted.map((state) => [state.sensor_name, state.severity, state.event,
            isoText(state.since), isoText(state.newest), grouped(state.assertions), report.logs[state.log].name]));
        // A filter that hides the event does not keep a link from it.
        await page.locator('#text').fill('no event says this');
        await page.locator('#failures a', { hasText: report.asserted[1].event }).first().click();
        assert.equal(await page.locator('.opener:focus').getAttribute('aria-expanded'), 'true');
        await reset();
    });

    it('says what failed most by sensor, and shows its events', async () => {
        const rows = await tableOf(page, 'What failed most, by sensor');
        assert.equal(rows.length, report.sensor_failures.length);
        rows.forEach((row, index) => {
            const one = report.sensor_failures[index];
            const sensor = report.events.sensors[one.sensor];
            assert.deepEqual([row[0], row[1], row[3], row[4], row[5]], [sensor.name, grouped(one.assertions), String(one.severities.critical ?? 0),
                String(one.severities.warning ?? 0), String(one.still_asserted)]);
        });
        const one = report.sensor_failures[2];
        await page.getByRole('button', { name: `Show the events of ${report.events.sensors[one.sensor].name}`, exact: true }).click();
        await nextPicture(page);
        assert.equal(await found(page), grouped(eventsOf((_, index) => index === one.sensor)));
        await reset();
    });

    it('says what failed most by unit, and shows its events', async () => {
        const rows = await tableOf(page, 'What failed most, by unit');
        assert.deepEqual(rows.map((row) => [row[0], row[1]]), report.unit_failures.map((one) => [report.units[one.unit].name, grouped(one.assertions)]));
        const one = report.unit_failures.find((unit) => unit.sensors.length > 1);
        await page.getByRole('button', { name: `Show the events of ${report.units[one.unit].name}`, exact: true }).click();
        await nextPicture(page);
        assert.equal(await found(page), grouped(eventsOf((_, index) => one.sensors.includes(index))));
        await reset();
    });

    it('draws a map of the bytes of each FRU image, whose fields are read by mouse and keyboard', async () => {
        const cards = page.locator('#inventory article');
        assert.equal(await cards.count(), report.fru.length);
        const fru = report.fru[0];
        // In one line of the map, so that its middle is its own.
        const field = fru.areas.flatMap((area) => area.fields.map((one) => ({ ...one, area: area.name })))
            .find((one) => one.type === 'text' && one.length > 3 && one.offset % 32 + one.length < 32);
        const label = `${field.area} ${field.name}, bytes ${field.offset} to ${field.offset + field.length}: ${field.value}`;
        const card = cards.first();
        await card.locator(`[aria-label="${label}"]`).hover();
        assert.equal(await card.locator('.readout').textContent(), label);
        const said = () => card.locator('.readout').textContent();
        await card.locator('.piece').first().focus();
        assert.match(await said(), /^header, bytes 0 to 6/);
        await page.keyboard.press('ArrowRight');
        assert.match(await said(), /^header checksum, byte 7: /);
        await page.keyboard.press('End');
        assert.match(await said(), /^free, bytes \d+ to 511: \d+ free$/);
        await page.keyboard.press('Home');
        assert.match(await said(), /^header, bytes 0 to 6/);
        assert.equal(await card.locator('.piece[tabindex="0"]').count(), 1);
    });

    it('lists the fields of a FRU image', async () => {
        const fru = report.fru[0];
        const rows = await tableOf(page, `Fields of ${inRoot(fru.file)}`);
        const fields = [...fru.areas, ...fru.multirecords].flatMap((area) => area.fields.map((one) => [`${area.name} ${one.name}`, String(one.offset), String(one.length), one.bytes]));
        assert.deepEqual(rows.map((row) => [row[0], row[2], row[3], row[5]]), fields);
    });

    it('has a grid of sockets for each folder of modules', async () => {
        const folders = [...new Set(report.memory.map((one) => inRoot(one.file).replace(/\/[^/]*$/, '')))].sort();
        const grids = page.locator('.sockets');
        assert.equal(await grids.count(), folders.length);
        for (const [index, folder] of folders.entries()) {
            const modules = report.memory.filter((one) => inRoot(one.file).startsWith(`${folder}/`));
            const sockets = await grids.nth(index).locator('li > strong').allTextContents();
            assert.deepEqual(sockets, modules.map((one) => one.file.split('/').at(-1).replace('.bin', '')).sort());
            const heading = await grids.nth(index).locator('xpath=preceding-sibling::h4[1]').textContent();
            const total = modules.reduce((sum, one) => sum + one.capacity_mb, 0) / 1024;
            assert.ok(heading.startsWith(`${folder}: ${modules.length} modules, ${total} GB`), heading);
            for (const module of modules) {
                assert.ok((await grids.nth(index).textContent()).includes(`serial ${module.serial_number}`));
            }
        }
    });

    it('lists processors, and records in groups', async () => {
        const rows = await tableOf(page, 'Processors');
        assert.deepEqual(rows.map((row) => [row[1], row[2], row[3], row[5]]), report.processors.map((one) =>
            [one.model_name, one.stepping, grouped(one.speed_mhz), one.processor_code]));
        const headings = await page.locator('#inventory h3').allTextContents();
        assert.deepEqual(headings, ['Field-replaceable units', 'Memory', 'Processors', 'Firmware', 'Boards', 'Slots and cables', 'Other records']);
        for (const record of report.records) {
            const fields = await tableOf(page, `${record.class} of ${inRoot(record.file)}`);
            assert.deepEqual(fields.map((row) => row[0]), record.fields.slice(0, 40).map((field) => field.name));
            assert.deepEqual(fields.map((row) => row[2]), record.fields.slice(0, 40).map((field) => field.meaning));
        }
    });

    it('draws thresholds with the readings seen', async () => {
        const names = ['lower_non_recoverable', 'lower_critical', 'lower_non_critical', 'upper_non_critical', 'upper_critical', 'upper_non_recoverable'];
        const drawn = report.sensors.filter((sensor) => names.some((name) => sensor[name] !== null) || sensor.readings.length > 0);
        const rows = await tableOf(page, 'Thresholds and readings');
        assert.deepEqual(rows.map((row) => row[0]), drawn.map((sensor) => sensor.name));
        const others = await tableOf(page, 'Other sensor data records');
        assert.equal(others.length, Math.min(20, report.sensors.length - drawn.length));
        const index = drawn.findIndex((sensor) => sensor.readings.length > 0 && sensor.upper_critical !== null && sensor.lower_critical === null);
        const sensor = drawn[index];
        const { values } = sensor.readings[0];
        const number = values.reduce((sum, [, times]) => sum + times, 0);
        assert.equal(rows[index][2], `upper non-critical ${sensor.upper_non_critical}, upper critical ${sensor.upper_critical}`);
        assert.ok(rows[index][3].includes(`${number} readings, ${values[0][0]} to ${values.at(-1)[0]}`), rows[index][3]);
        const places = await page.locator('.thresholds').nth(index).evaluate((bar) => ({
            ticks: [...bar.querySelectorAll('.threshold:not(.threshold-nominal)')].map((one) => one.getBBox().x),
            readings: [...bar.querySelectorAll('.reading')].map((one) => one.getBBox().x + one.getBBox().width / 2),
            zones: [...bar.querySelectorAll('rect[fill]')].map((one) => [one.getAttribute('fill'), one.getBBox().x, one.getBBox().x + one.getBBox().width]),
        }));
        assert.equal(places.readings.length, values.length);
        assert.ok(places.readings.every((x, at) => at === 0 || x > places.readings[at - 1]));
        const [warning, critical] = places.ticks;
        const near = (a, b) => Math.abs(a - b) < 1.5;
        const zone = (name) => places.zones.find(([fill]) => fill === `url(#hatch-${name})`);
        assert.ok(near(zone('warning')[1], warning) && near(zone('warning')[2], critical) && near(zone('critical')[1], critical));
        // A reading is beyond the mark of a threshold exactly if it is beyond the threshold.
        values.forEach(([value], at) => assert.equal(places.readings[at] > warning + 0.5, value > sensor.upper_non_critical, `${value}`));
    });

    it('says what the stores contain', async () => {
        for (const log of report.logs) {
            const rows = await tableOf(page, `Files of ${log.name}`);
            const there = log.files.filter((file) => !file.missing);
            assert.deepEqual(rows.map((row) => [row[0], row[2], row[3], row[4], row[5]]), there.map((file) =>
                [inRoot(file.path), grouped(file.events), grouped(log.slots), grouped(file.size), `${file.first_id} to ${file.last_id}`]));
        }
        const areas = await tableOf(page, 'Setting areas in eeprom');
        assert.deepEqual(areas.map((row) => [row[0], row[1]]), report.settings[0].areas.map((area) => [String(area.number), area.valid ? 'valid' : 'not valid']));
        const cells = (await tableOf(page, 'Blocks pending erasure in eeprom')).map((row) => row.slice(1)).flat();
        assert.deepEqual(cells, report.efi[0].banks.map((one) => ` EEPROM ${one.eeprom}: ${one.pending.length === 0 ? 'none' : `block ${one.pending.join(', ')}`}`));
        const pending = report.efi[0].banks.reduce((sum, one) => sum + one.pending.length, 0);
        assert.ok(pending > 0);
        assert.equal(await page.locator('.block-pending').count(), pending);
        assert.equal(await page.locator('.block').count(), report.efi[0].banks.length * 16);
    });

    it('lists its inputs', async () => {
        await page.locator('#inputs .more').click();
        const rows = await tableOf(page, 'Files');
        assert.deepEqual(rows.map((row) => row[0]), report.inputs.map((input) => input.name));
        assert.equal(await page.evaluate(() => document.activeElement.rowIndex), 21);
    });

    it('sorts events by each column', async () => {
        const shown = (name) => page.locator('#rows tr.event').first().locator(name).textContent();
        const by = (name) => page.locator(`[data-by=${name}]`);
        await by('severity').click();
        assert.equal(await shown('.severity'), 'critical');
        assert.equal(await page.locator('th[aria-sort]').getAttribute('class'), 'severity');
        await by('severity').click();
        assert.equal(await page.locator('th[aria-sort]').getAttribute('aria-sort'), 'descending');
        assert.equal(await shown('.severity'), 'none');
        const names = report.events.sensors.map((sensor) => sensor.name ?? sensor.type_name ?? 'other records').sort(new Intl.Collator('en', { numeric: true }).compare);
        await by('sensor').click();
        assert.equal(await shown('.sensor'), names[0]);
        await by('sensor').click();
        assert.equal(await shown('.sensor'), names.at(-1));
        await by('log').click();
        assert.equal(await shown('td:nth-child(3)'), 'board 0');
        await by('direction').click();
        assert.equal(await shown('.direction'), '');
        await by('time').click();
        assert.ok((await shown('.opener')).startsWith('2026-11-20 21:52'));
        await by('time').click();
        assert.ok((await shown('.opener')).startsWith('2026-11-14 00:33'));
        await by('time').click();
    });

    it('reported no error meanwhile', () => {
        assert.deepEqual(opened.heard.requests, [opened.heard.url]);
        assert.deepEqual(opened.heard.errors, []);
    });
});

describe('pieces of a FRU image', () => {
    const whole = (right) => ({ stored: 1, expected: right ? 1 : 2, right });
    const image = (more = {}) => ({
        header_checksum: whole(true), internal_use: [], multirecords: [], areas: [],
        map: [{ name: 'header', offset: 0, size: 8 }, { name: 'free', offset: 8, size: 24 }], ...more,
    });
    const area = { name: 'board', offset: 8, size: 8, whole: true, checksum: whole(false), fields: [
        { name: 'language', offset: 10, length: 1, type_length: null, value: '25' }, { name: 'serial', offset: 11, length: 2, type_length: 0xC2, value: 'AB' }] };

    it('are in order and leave out no byte', () => {
        for (const fru of report.fru) {
            const pieces = piecesOf(fru, fru.size);
            assert.equal(pieces[0].from, 0);
            assert.equal(pieces.at(-1).to, fru.size);
            pieces.slice(1).forEach((piece, index) => assert.equal(piece.from, pieces[index].to));
        }
    });

    it('are parts, areas and fields with their type and length, and say what is damaged', () => {
        const found = piecesOf(image({ areas: [area] }), 32).map(({ name, from, to, damaged }) => [name, from, to, damaged]);
        assert.deepEqual(found, [['header', 0, 7, false], ['header checksum', 7, 8, false], ['board', 8, 10, true], ['board language', 10, 11, true],
            ['board serial', 11, 14, true], ['board', 14, 15, true], ['board checksum', 15, 16, true], ['free', 16, 32, false]]);
        const [, , , , serial, , checksum, free] = piecesOf(image({ areas: [area] }), 32);
        const bytes = new Uint8Array(32);
        assert.equal(pieceText(serial, bytes), 'board serial, bytes 11 to 13, damaged: AB');
        assert.equal(pieceText(checksum, bytes), 'board checksum, byte 15, damaged: 01h, expected 02h');
        assert.equal(pieceText(free, bytes), 'free, bytes 16 to 31: 16 free');
    });

    it('have all fields of a byte', () => {
        const record = { name: 'load', type: 2, offset: 8, size: 8, checksum: whole(true), fields: [
            { name: 'output', offset: 13, length: 1, bits: '3..0', value: 1, text: '1' }, { name: 'standby', offset: 13, length: 1, bits: '7', value: true, text: 'yes' }] };
        const piece = piecesOf(image({ multirecords: [record] }), 32).find((one) => one.from === 13);
        assert.equal(pieceText(piece, new Uint8Array(32)), 'load output, load standby, byte 13: load output 1, load standby yes');
    });

    it('end with the image, whatever it says of itself', () => {
        const beyond = { ...area, offset: 24, size: 100, fields: [{ name: 'serial', offset: 30, length: 50, type_length: 0xC2, value: 'x' }, { name: 'far', offset: 900, length: 1, type_length: null, value: 'x' }] };
        const pieces = piecesOf(image({ areas: [beyond] }), 32);
        assert.deepEqual([pieces.at(-1).name, pieces.at(-1).from, pieces.at(-1).to], ['board serial', 30, 32]);
        assert.deepEqual(piecesOf(image({ map: [] }), 9).map((piece) => piece.name), ['unknown bytes', 'header checksum', 'unknown bytes']);
        assert.deepEqual(piecesOf(image({ map: [] }), 0), []);
    });
});

describe('other documents', () => {
    const open = async (made, look) => {
        const { page, heard, close } = await browser.open(made);
        await look(page);
        assert.deepEqual(heard.errors, []);
        await close();
    };
    const level = (page) => page.locator('#verdict').getAttribute('data-level');

    it('without lists have no sections for them', () => open(documentOf([]), async (page) => {
        assert.deepEqual(await sectionsOf(page), ['Verdict', 'Timeline', 'Events', 'Inputs']);
        assert.equal(await level(page), 'good');
        assert.equal(await page.locator('#verdict .severity-good').count(), 1);
        assert.equal(await page.locator('#log-field').isVisible(), false);
    }));

    it('that leave events out are not good', () => open(documentOf([], { chosen: 'since 2026-11-19 00:00', left_out: 1234 }), async (page) => {
        assert.equal(await level(page), 'warning');
        assert.equal(await page.locator('#chosen').textContent(), 'Not all events, only: since 2026-11-19 00:00; 1,234 events left out');
    }));

    it('whose states have events that were not chosen have no links to them', () => open(change((made) => {
        made.asserted[0].row = null;
        made.asserted[0].since_row = null;
    }), async (page) => {
        assert.match(await page.locator('#reasons > li').first().textContent(), /\(its event was not chosen\)$/);
        assert.equal(await page.locator('[href*=null]').count(), 0);
        assert.equal((await tableOf(page, 'Still asserted'))[0][2], report.asserted[0].event);
        assert.equal(await page.locator('#reasons > li').nth(1).locator('a').getAttribute('href'), `#event-${report.asserted[1].row}`);
    }));

    it('with modules of unknown capacity say so', () => open(change((made) => {
        made.memory = made.memory.slice(0, 2);
        made.memory[1].capacity_mb = null;
    }), async (page) => {
        assert.match(await page.locator('#inventory').textContent(), /: 2 modules, 16 GB and 1 of unknown capacity/);
        assert.match(await page.locator('.sockets li').nth(1).textContent(), /unknown capacity/);
    }));

    it('with reasons are not good, and fold the long rest of them', () => open(documentOf([], { verdict: {
        level: 'good', text: 'fine', reasons: Array.from({ length: 15 }, (_, index) => ({ kind: index ? 'odd' : 'damaged', where: `file${index}`, text: 'looks strange' })),
    } }), async (page) => {
        assert.equal(await level(page), 'warning');
        const reasons = page.locator('#reasons > li');
        assert.equal(await reasons.count(), 13);
        assert.equal(await reasons.first().textContent(), 'damaged: file0 looks strange');
        assert.equal(await page.getByText('odd: file14').isVisible(), false);
        await page.getByText('3 more reasons').click();
        assert.equal(await page.getByText('odd: file14').isVisible(), true);
    }));

    it('damaged in one section show the others, and say so', () => open(change((made) => {
        made.verdict = { level: 'good', text: 'fine', reasons: [] };
        made.sensors[1].readings = null;
    }), async (page) => {
        assert.equal(await level(page), 'warning');
        assert.match(await page.locator('#reasons').textContent(), /not shown: Sensors its part of the document is damaged: /);
        assert.ok((await sectionsOf(page)).includes('Stores'));
    }));

    const damaged = change((made) => {
        Object.assign(made.logs[0], { sound: false, findings: [{ damage: true, text: 'a damaged tail' }] });
        made.logs[0].files[0].damage = '3 records lost';
        made.events.traces.push({ kind: 'gap', log: 0, from: 1794700000, to: 1794710000, missing: 12 }, { kind: 'gap', log: 0, from: 1794720000, to: 1794730000, missing: 3 });
        made.fru[0].areas[0].checksum.right = false;
        made.fru[0].problems = ['chassis area: checksum 1Fh'];
        made.memory[3].crc_right = false;
        made.memory[1].file = made.memory[1].file.replace(/dimm\d/, 'dimm10');
        made.settings[0].areas[0].checksum_right = false;
        Object.assign(made.inputs[0], { left_out: true });
        made.asserted[0].since = null;
        made.inputs.push({ name: 'letter.txt', kind: 'not recognised', root: null, problems: [] }, { name: 'secret', kind: 'not readable', root: null, problems: ['permission denied'] });
    });

    it('say what is damaged or missing', () => open(damaged, async (page) => {
        assert.ok((await page.locator('#overview-cards > li').first().textContent()).includes('1 damage'));
        assert.ok((await page.locator('#reasons > li').first().textContent()).includes(', critical, without a date '));
        const stores = await page.locator('#stores').textContent();
        for (const text of ['Event log board 0: not sound', 'a damaged tail', '3 records lost', '2 gaps: 15 records missing.', 'No record is missing']) {
            assert.ok(stores.includes(text), text);
        }
        assert.ok((await page.locator('.piece-damaged').count()) > 0);
        assert.match(await page.locator('#inventory article').first().textContent(), /chassis area: checksum 1Fh/);
        assert.equal(await page.locator('.sockets .problems').count(), 1);
        assert.equal(await page.locator('.sockets').first().locator('li > strong').last().textContent(), 'dimm10');
        assert.equal((await tableOf(page, 'Setting areas in eeprom'))[0][2], 'wrong');
        const worst = (await tableOf(page, 'Files')).slice(0, 3);
        assert.deepEqual(worst.map((row) => [row[0], row[1], row[3]]), [[damaged.inputs[0].name, damaged.inputs[0].kind, 'left out'],
            ['letter.txt', 'not recognised', ''], ['secret', 'not readable', 'permission denied']]);
        assert.match(await page.locator('#inputs').textContent(), / read, 3 not recognised, not readable or left out/);
    }));
});
