// SPDX-License-Identifier: Apache-2.0

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import { mkdirSync, readFileSync, writeFileSync } from 'node:fs';
import { join } from 'node:path';
import { after, before, describe, it } from 'node:test';
import { encodeEvents } from '../encode.mjs';
import { scriptJson } from '../fill.mjs';
import { visible } from '../src/document.mjs';
import { documentOf, syntheticList } from '../synthetic.mjs';
import { Browser, command, readTemplate } from './browser.mjs';
import { HOSTILE } from './hostile.mjs';

const browser = new Browser();
before(() => browser.start());
after(() => browser.stop());

const IMAGE = Buffer.alloc(64).toString('base64');

// The end of each text, which no string contains, says where it came from.
const at = (place, index) => `${HOSTILE[index]} ·${place}${index}·`;

const each = (make) => HOSTILE.map((_, index) => make((place) => at(place, index), index));

/// A document that has each hostile string in each text of events.
function hostileEvents() {
    const [one] = syntheticList(1, 5);
    const list = HOSTILE.map((_, index) => ({
        ...one, board: index, log: index + 1, time: 'dated', timestamp: 1763000000 + index, severity: 'critical', direction: 'asserted', pre_init: false,
        event: at('event', index), cause: at('cause', index), sensor_name: at('sensor', index), sensor_type_name: at('type', index),
        entity_name: at('entity', index), part_number: at('part', index), serial_number: at('serial', index),
    }));
    return documentOf(list, { events: encodeEvents(list, new Set(), each((text, log) => ({ kind: text('trace'), log, from: 1763000000, to: 1763000000 }))) });
}

/// A document that has each hostile string in each other place for a text.
function hostileDocument() {
    const { events } = hostileEvents();
    return documentOf([], {
        events,
        title: HOSTILE.join(' '), made: { time: '2026-11-21T00:00:00Z', program: HOSTILE.join(' ') }, chosen: HOSTILE.join(' '),
        verdict: { level: 'critical', text: HOSTILE.join(' '),
            reasons: each((text, state) => [{ kind: 'asserted', severity: 'critical', state }, { kind: 'damaged', where: text('where'), text: text('reason') }]).flat() },
        inputs: each((text) => ({ name: text('input'), kind: text('kind'), root: text('input-root'), problems: [text('input-problem')] })),
        logs: each((text, board) => ({
            name: text('log'), root: text('log-root'), board, events: 1, still_asserted: 0, slots: 800, sound: false,
            severities: [{ severity: text('severity'), events: 1, still_asserted: 1 }], status: { state: text('status') },
            files: [{ path: text('path'), missing: false, size: 1, events: 1, first_id: 1, last_id: 1, first_timestamp: 0, last_timestamp: 0, damage: text('damage') }],
            findings: [{ damage: true, text: text('finding') }],
        })),
        asserted: each((text, row) => ({
            since: '2026-11-21T00:00:00Z', newest: '2026-11-21T00:00:00Z', severity: 'critical', log: row, row, since_row: row, unit: row, assertions: 1,
            sensor_name: text('state-sensor'), event: text('state'),
        })),
        units: each((text) => ({ name: text('unit'), part_number: text('unit-part'), serial_number: text('unit-serial') })),
        sensor_failures: each((text, row) => ({ log: row, sensor: events.sensors.findIndex((sensor) => sensor.log === row), unit: row,
            severities: { critical: 1 }, assertions: 1, still_asserted: 0, first_row: row, last_row: row })),
        unit_failures: each((text, row) => ({ log: row, unit: row, sensors: [row], severities: { critical: 1 }, assertions: 1, still_asserted: 0, first_row: row, last_row: row })),
        sensors: each((text) => [null, 5].map((threshold) => ({
            root: text('sdr-root'), record_type_name: text('record'), number: 1, name: text('sdr'), sensor_type_name: text('sdr-type'), entity_name: text('sdr-entity'),
            event_type_name: text('event-type'), units: text('units'), upper_critical: threshold, readings: [],
        }))).flat(),
        fru: each((text) => ({
            root: text('fru-root'), file: text('fru'), size: 64, fru: true, header_checksum: null, internal_use: [], multirecords: [], image: IMAGE,
            areas: [{ name: 'product', offset: 0, size: 48, whole: true, checksum: { stored: 0, expected: 0, right: true },
                fields: [{ name: 'name', offset: 0, type: 'text', type_length: 1, length: 8, value: text('fru-name'), bytes: '00' },
                    { name: text('fru-field'), offset: 20, type: 'text', type_length: 1, length: 8, value: text('fru-value'), bytes: '00' }], problems: [] }],
            map: [{ name: text('fru-map'), offset: 0, size: 64 }], problems: [text('fru-problem')], notes: [text('fru-note')],
        })),
        memory: each((text, index) => ({ root: text('spd-root'), file: `${index % 8}/${text('spd').replaceAll('/', '\\')}.bin`, capacity_mb: 1, part_number: text('spd-part'),
            serial_number: text('spd-serial'), memory_type: text('spd-type'), module_type: text('module') })),
        processors: each((text) => ({ root: text('cpu-root'), file: text('cpu'), processor_code: text('code'), model_name: text('model'), stepping: text('stepping'),
            part_number: text('cpu-part'), problems: [text('cpu-problem')] })),
        records: each((text) => ({ root: text('record-root'), file: text('record-file'), class: text('class'), description: text('description'),
            fields: [{ name: text('field'), value: text('value'), meaning: text('meaning'), offset: 0, bits: text('bits') }] })),
        settings: each((text) => ({ folder: text('setting'), problems: [text('setting-problem')],
            areas: [{ number: 0, valid: true, eeprom: 0, offset: 0, size: 0, checksum_right: true, index_file: text('index') }] })),
        efi: each((text) => ({ folder: text('efi'), serial: text('owner'), checksum_right: true, banks: [{ eeprom: 1, partition: 0, bank: 0, pending: [] }] })),
    });
}

/// The places of a text in the document above, but those of events, from the document itself.
const placesIn = (json) => new Set([...json.matchAll(/·([a-z-]+)0·/g)].map(([, place]) => place));

describe('400 hostile strings', () => {
    it('are different from each other', () => assert.equal(new Set(HOSTILE).size, 400));

    /// None of the strings did anything, and the page contains only what it makes itself.
    const nothingRan = async (page, heard) => {
        const found = await page.evaluate(() => ({
            stolen: window.stolen,
            elements: [...new Set([...document.querySelectorAll('*')].map((one) => one.localName))],
            handlers: [...document.querySelectorAll('*')].flatMap((one) => [...one.attributes]).filter(({ name }) => name.startsWith('on')).map(({ name }) => name),
            links: [...document.querySelectorAll('[href], [src], [action], [style]')].map((one) => one.getAttribute('href') ?? one.getAttribute('style') ?? 'src')
                .filter((link) => !/^#(event-\d+|log-\d+|[a-z-]+)$/.test(link) && link !== 'data:,' && !/^(color|height|left|width): [^;]*;$/.test(link)),
        }));
        assert.equal(found.stolen, undefined);
        assert.deepEqual(found.handlers, []);
        assert.deepEqual(found.links, []);
        for (const name of ['img', 'iframe', 'object', 'embed', 'base', 'video', 'math', 'template', 'portal', 'marquee', 'foreignObject', 'animate', 'frame']) {
            assert.ok(!found.elements.includes(name), name);
        }
        assert.deepEqual(heard.errors, []);
        assert.deepEqual(heard.requests, [heard.url]);
    };

    const allShown = (places, shown) => {
        const missing = [...places].flatMap((place) => HOSTILE
            .map((_, index) => visible(place === 'spd' ? at(place, index).replaceAll('/', '\\') : at(place, index)))
            .filter((text) => !shown.includes(text)));
        assert.deepEqual(missing.slice(0, 5), [], `${missing.length} texts are missing`);
    };

    it('are shown in every place but events, and none of them runs', { timeout: 300000 }, async () => {
        const report = hostileDocument();
        const { page, heard, close } = await browser.open(report);
        const shown = await page.evaluate(() => {
            document.querySelectorAll('.more').forEach((button) => button.click());
            return document.documentElement.textContent;
        });
        const places = placesIn(JSON.stringify({ ...report, events: null }));
        assert.ok(places.size > 55, `${places.size} places`);
        allShown(places, shown);
        const heading = await page.locator('h1').textContent();
        assert.deepEqual(HOSTILE.map(visible).filter((text) => !heading.includes(text)), []);
        assert.ok((await page.title()).startsWith('<img src=x onerror=window.stolen=1>'));
        await nothingRan(page, heard);
        await close();
    });

    it('are shown in events, and none of them runs', { timeout: 300000 }, async () => {
        const { page, heard, close } = await browser.open(hostileEvents());
        const shown = await page.evaluate(async () => {
            // Each event of the table is opened, read and closed again.
            const rows = [];
            const scroller = document.getElementById('events-scroller');
            for (let index = 0; index < 400; index++) {
                scroller.scrollTop = index * 32;
                while (!document.querySelector(`tr.event[aria-rowindex="${index + 2}"]`)) {
                    await new Promise((done) => requestAnimationFrame(done));
                }
                const row = document.querySelector(`tr.event[aria-rowindex="${index + 2}"]`);
                row.querySelector('.opener').click();
                rows.push(row.textContent + row.nextSibling.textContent);
                row.querySelector('.opener').click();
            }
            document.querySelectorAll('.more').forEach((button) => button.click());
            return document.documentElement.textContent + rows.join('');
        });
        allShown(['event', 'cause', 'sensor', 'entity', 'part', 'serial', 'trace'], shown);
        await nothingRan(page, heard);
        await close();
    });

    it('are found by the filter as data', async () => {
        const { page, heard, close } = await browser.open(hostileEvents());
        for (const text of ['__proto__', '<img/src="x"/onerror', '$&']) {
            await page.locator('#text').fill(text);
            assert.match(await page.locator('#found').textContent(), /^[1-9]\d* of 400 events/);
        }
        assert.deepEqual(heard.errors, []);
        await close();
    });

    it('do not end the script element', () => {
        assert.equal(scriptJson(HOSTILE).includes('<'), false);
        assert.deepEqual(JSON.parse(scriptJson(HOSTILE)), HOSTILE);
    });
});

/// A compact sensor record with a name (IPMI v2.0, section 43.2).
function sensorRecord(id, name) {
    const body = Buffer.alloc(27);
    body[0] = 0x20; // its owner
    body[2] = id & 0xFF;
    body[3] = 10; // its entity
    body[7] = 8; // power supply
    body[8] = 0x6F;
    body[26] = 0xC0 | name.length;
    const content = Buffer.concat([body, Buffer.from(name, 'latin1')]);
    return Buffer.concat([Buffer.from([id & 0xFF, id >> 8, 0x51, 2, content.length]), content]);
}

describe('hostile strings in what a board saved', () => {
    const folder = () => join(browser.folder, 'saved');
    // What a field of a FRU image can contain: 8-bit characters, at most 63 of them.
    const texts = HOSTILE.filter((text) => /^[ -~]{2,63}$/.test(text));
    // Names of files are UTF-8 here, in which half a surrogate pair is U+FFFD.
    const names = HOSTILE.map((text, index) => Buffer.from(`${index} ${text.replaceAll('/', '\\').replaceAll('\0', '')}`.slice(0, 80)).toString());
    const sensors = [...new Set(HOSTILE.map((text) => text.replace(/[^ -~]/g, '').slice(0, 16)).filter((text) => text.length > 1))];

    it('are written by the command as data', { timeout: 300000 }, async () => {
        assert.ok(texts.length > 200, `${texts.length} texts`);
        mkdirSync(folder());
        const recordkit = (words, options = {}) => execFileSync(command(), words, { stdio: 'pipe', maxBuffer: 1 << 28, ...options });
        const PER_IMAGE = 20;
        for (let from = 0; from < texts.length; from += PER_IMAGE) {
            const [part, serial, ...custom] = texts.slice(from, from + PER_IMAGE);
            recordkit(['fru', 'create', '--from', '-', '-o', join(folder(), `fru${from}.bin`)],
                { input: JSON.stringify({ product: { 'part-number': part, serial: serial ?? 'SN', name: part, custom } }) });
        }
        writeFileSync(join(folder(), 'sdr.bin'), Buffer.concat(sensors.map((name, index) => sensorRecord(index + 1, name))));
        const image = readFileSync(join(folder(), 'fru0.bin'));
        for (const name of names) {
            writeFileSync(join(folder(), name), image);
        }
        const page = join(browser.folder, 'saved.html');
        const title = HOSTILE.map((text) => text.replaceAll('\0', '')).join(' ');
        try {
            recordkit(['report', folder(), '--title', title, '-o', page]);
        } catch (failure) {
            assert.equal(failure.status, 1, failure.stderr?.toString()); // many images have the same serial number
        }
        const { page: shownPage, heard, close } = await browser.openFile(page, {}, 'h1');
        await shownPage.waitForFunction(() => document.querySelectorAll('#inputs tbody tr').length > 0);
        const shown = await shownPage.evaluate(() => {
            document.querySelectorAll('.more').forEach((button) => button.click());
            return document.documentElement.textContent;
        });
        const missing = [...texts, ...sensors, ...names].filter((text) => !shown.includes(visible(text)));
        assert.deepEqual(missing.slice(0, 5), [], `${missing.length} texts are missing`);
        assert.equal(await shownPage.evaluate(() => window.stolen), undefined);
        assert.deepEqual(heard.errors, []);
        assert.deepEqual(heard.requests, [heard.url]);
        await close();
    });
});

describe('the policy', () => {
    it('lets nothing reach a server or a handler in markup', async () => {
        const { page, heard, close } = await browser.open(documentOf([]));
        const reached = await page.evaluate(async () => {
            document.body.insertAdjacentHTML('beforeend', '<img alt="" src="data:," onerror="window.stolen = 1"><a id="trap" href="javascript:window.stolen = 2">x</a>');
            document.getElementById('trap').click();
            const added = document.createElement('script');
            added.textContent = 'window.stolen = 3';
            document.body.append(added);
            const answer = await fetch('data:text/plain,x').then(() => true, () => false);
            await new Promise((done) => requestAnimationFrame(() => setTimeout(done)));
            return [answer, window.stolen];
        });
        assert.deepEqual(reached, [false, undefined]);
        assert.ok(heard.errors.some((text) => text.includes('Content Security Policy')));
        await close();
    });

    it('is one, without a host, and no module makes markup of a string', () => {
        const template = readTemplate();
        const [, policy] = template.match(/http-equiv="Content-Security-Policy" content="([^"]*)"/);
        assert.match(policy, /^default-src 'none'; script-src 'sha256-[^ ]+' 'sha256-[^ ]+'; style-src 'sha256-[^ ]+'; img-src data:; base-uri 'none'; form-action 'none'$/);
        assert.doesNotMatch(template.slice(template.lastIndexOf('<script')), /innerHTML|outerHTML|insertAdjacentHTML|document\.write|\beval\(|new Function|setAttribute\('on/);
    });
});
