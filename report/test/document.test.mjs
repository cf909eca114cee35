// SPDX-License-Identifier: Apache-2.0

import assert from 'node:assert/strict';
import { describe, it } from 'node:test';
import { scriptJson } from '../fill.mjs';
import { encodeEvents, findTraces } from '../encode.mjs';
import { bytesOf, fieldsOf, hexDump, readDocument, readEvents, recordOf, visible } from '../src/document.mjs';
import { placeEvents, sortRows } from '../src/filter.mjs';
import { documentOf, syntheticList } from '../synthetic.mjs';

const MOST_BYTES = 9e6;
const ALL = 102400;
const NO_TIME = 0xFFFFFFFF;

const read = (list, asserted = new Set()) => readEvents(JSON.parse(scriptJson(encodeEvents(list, asserted, []))));
const hexOf = (bytes) => Buffer.from(bytes).toString('hex');
const bytes = (hex) => Uint8Array.from(Buffer.from(hex, 'hex'));

describe('events', () => {
    it('come back as they were', () => {
        const list = syntheticList(3000, 7);
        const events = read(list, new Set([`${list[5].board}/${list[5].log}`]));
        assert.equal(events.count, 3000);
        list.forEach((one, row) => {
            const sensor = events.sensors[events.sensor[row]];
            assert.deepEqual({
                time: events.time[row], severity: events.severities[events.severity[row]], direction: events.directions[events.direction[row]],
                event: events.texts[events.text[row]], cause: events.causes[events.cause[row]], file: events.file[row], slot: events.slot[row],
                number: events.number[row], log: sensor.log, sensor_name: sensor.name, flags: events.flags[row],
                record: hexOf(recordOf(events, row)), extended: hexOf(bytesOf(events.blocks[events.block[row]].image)),
            }, {
                time: one.time === null ? NO_TIME : one.timestamp, severity: one.severity, direction: one.direction, event: one.event,
                cause: one.cause ?? '', file: one.file, slot: one.slot, number: one.log, log: one.board, sensor_name: one.sensor_name,
                flags: (row === 5 ? 1 : 0) | (one.pre_init ? 2 : 0), record: one.record, extended: one.extended,
            });
        });
    });

    it('have texts of any characters', () => {
        const texts = ['', 'é', 'éa', 'a\u{1F525}', 'a\u{1F526}', 'ab', 'a', '</script>', 'ﬁ'];
        const events = read(syntheticList(texts.length).map((one, row) => ({ ...one, event: texts[row], cause: texts.at(-1 - row) })));
        assert.deepEqual(Array.from(events.text, (text) => events.texts[text]), texts);
        assert.deepEqual(Array.from(events.cause, (cause) => events.causes[cause]), [...texts].reverse());
    });

    it('are refused where a column is too short', () => {
        const stored = encodeEvents(syntheticList(10), new Set(), []);
        stored.count = 11;
        assert.throws(() => readEvents(stored), /column time does not have 11 values/);
    });

    it('are refused where a column has a value beyond its table', () => {
        const stored = encodeEvents(syntheticList(10), new Set(), []);
        stored.severities = stored.severities.slice(0, 1);
        assert.throws(() => readEvents(stored), /column severity has a value beyond its table/);
    });

    it('are refused where they are more than the page can lay out', () => {
        assert.throws(() => readEvents({ ...encodeEvents([], new Set(), []), count: 500001 }), /500001 events are more than the 500000/);
    });

    it('without a date follow the dated event before them in their log', () => {
        const [one] = syntheticList(1);
        const at = (board, log, timestamp) => ({ ...one, board, log, timestamp: timestamp ?? 3, time: timestamp === null ? null : 'dated' });
        const events = read([at(0, 1, null), at(0, 2, 1000), at(1, 1, 2000), at(0, 3, null), at(1, 2, null), at(0, 4, 3000)]);
        placeEvents(events);
        assert.deepEqual([...events.place], [1000, 1000, 2000, 1000, 2000, 3000]);
        assert.deepEqual([events.first, events.last], [1000, 3000]);
    });

    it('leave traces of rotations, missing record ids, a cleared log and a set clock', () => {
        const [one] = syntheticList(1);
        const at = (id, file, timestamp) => ({ ...one, board: 0, id, file, timestamp, time: 'dated' });
        assert.deepEqual(findTraces([at(65533, 1, 0), at(65534, 1, 10), at(1, 1, 20), at(5, 1, 30), at(6, 0, 40), at(2, 0, 50)]), [
            { kind: 'gap', log: 0, from: 20, to: 30, missing: 3 },
            { kind: 'rotation', log: 0, from: 40, to: 40 },
            { kind: 'cleared', log: 0, from: 40, to: 50 },
        ]);
        const unset = { ...at(2, 0, 7), time: null, pre_init: true };
        assert.deepEqual(findTraces([at(1, 0, 10), unset, at(3, 0, 60)]), [{ kind: 'clock', log: 0, from: 10, to: 60 }]);
    });
});

describe('a document', () => {
    const refused = (change) => {
        const report = documentOf(syntheticList(5));
        change(report);
        return () => readDocument(JSON.stringify(report));
    };

    it('is read', () => assert.equal(readDocument(JSON.stringify(documentOf(syntheticList(5)))).events.count, 5));

    it('is refused where it is another one, cut off, or names what it does not contain', () => {
        assert.throws(() => readDocument(JSON.stringify(documentOf([])).slice(0, -9)), /damaged or was cut off/);
        assert.throws(() => readDocument('{}'), /no document of a report/);
        assert.throws(() => readDocument('null'), /no document of a report/);
        assert.throws(refused((report) => { report.version = 2; }), /has version 2; the page reads version 1/);
        assert.throws(refused((report) => { delete report.fru; }), /no list of fru/);
        assert.throws(refused((report) => { delete report.events; }), /has no events/);
        assert.throws(refused((report) => { report.verdict.level = 'fine'; }), /no verdict/);
        assert.throws(refused((report) => { delete report.verdict.reasons; }), /no verdict/);
        assert.throws(refused((report) => { delete report.summary; }), /no summary/);
        assert.throws(refused((report) => { report.verdict.reasons = [{ kind: 'asserted', state: 0 }]; }), /a state that is not in the document/);
        assert.throws(refused((report) => { report.asserted = [{ row: 5 }]; }), /asserted names an event/);
        assert.throws(refused((report) => { report.sensor_failures = [{ sensor: 99, first_row: 0 }]; }), /sensor_failures names an event or a sensor/);
        assert.throws(refused((report) => { report.unit_failures = [{ sensors: [0, 99], first_row: 0 }]; }), /unit_failures names an event or a sensor/);
    });

    it('tells logs of several roots apart', () => {
        const report = documentOf(syntheticList(200));
        assert.deepEqual(readDocument(JSON.stringify(report)).logs.slice(0, 2).map((log) => log.name), ['board 0', 'board 1']);
        report.logs = [...report.logs.slice(0, 2), { ...report.logs[0], root: 'second' }];
        assert.deepEqual(readDocument(JSON.stringify(report)).logs.map((log) => log.name), ['invented: board 0', 'board 1', 'second: board 0']);
    });

    it('names files by their root only where there are several', () => {
        const at = (root, file) => ({ root, file });
        const report = documentOf([], { memory: [at('/a', '/a/spd/dimm0.bin'), at('/a', '/b/dimm1.bin')], efi: [{ root: '/a', folder: '/a/eeprom' }] });
        report.logs[0].root = '/a';
        report.logs[0].files = [{ path: '/a/tmp/sel' }];
        const names = (one) => [...one.memory.map(({ file }) => file), one.efi[0].folder, one.logs[0].files[0].path];
        assert.deepEqual(names(readDocument(JSON.stringify(report))), ['spd/dimm0.bin', '/b/dimm1.bin', 'eeprom', 'tmp/sel']);
        report.memory[1].root = null;
        assert.deepEqual(names(readDocument(JSON.stringify(report))), ['/a: spd/dimm0.bin', '/b/dimm1.bin', '/a: eeprom', 'tmp/sel']);
    });

    it('shows characters that are not seen', () => {
        assert.equal(visible('a\u202Eb\u0000\x1B\n\x7F\x85\u00AD\u200B\u2028\uFEFF\uD800 é\u{1F525}'),
            'a<U+202E>b\\x00\\x1B\\x0A\\x7F\\x85<U+00AD><U+200B><U+2028><U+FEFF><U+D800> é\u{1F525}');
        const report = documentOf(syntheticList(1).map((one) => ({ ...one, event: 'a\u202E', cause: '\x07', sensor_name: '\u2066' })),
            { title: '\u202Etitle', inputs: [{ name: '\n', kind: 'text', root: null, problems: ['\0'] }] });
        const read = readDocument(JSON.stringify(report));
        assert.deepEqual([read.title, read.inputs[0].name, read.inputs[0].problems[0], read.events.texts[0], read.events.causes[0], read.events.sensors[0].name],
            ['<U+202E>title', '\\x0A', '\\x00', 'a<U+202E>', '\\x07', '<U+2066>']);
    });
});

describe('sorting', () => {
    it('by ranks keeps equal ones in their order', () => {
        const ranks = Uint8Array.of(2, 1, 2, 0, 1);
        assert.deepEqual([...sortRows(Uint32Array.of(0, 1, 2, 3, 4), ranks, false)], [3, 1, 4, 0, 2]);
        assert.deepEqual([...sortRows(Uint32Array.of(0, 1, 2, 4), ranks, true)], [2, 0, 4, 1]);
        assert.deepEqual([...sortRows(new Uint32Array(0), ranks, true)], []);
    });
});

describe('fields', () => {
    const fields = (record) => Object.fromEntries(fieldsOf(read([{ ...syntheticList(1)[0], record }]), 0).map((field) => [field.name, field.value]));

    it('of a system event', () => {
        const found = fields('01000244acf76a2000040453815061ff');
        assert.equal(found.record_id, '0001h');
        assert.equal(found.timestamp, '1794616388 (2026-11-14T00:33:08Z)');
        assert.equal(found.sensor_number, '53h');
        assert.equal(found.deassertion, '1');
        assert.match(found.event_type, /^01h/);
        assert.equal(found.event_data_3, 'FFh');
    });

    it('of OEM records and others', () => {
        assert.equal(fields('b900e110020100000000000000000000').oem_data, '10 02 01 00 00 00 00 00 00 00 00 00 00');
        assert.equal(fields('b900c044acf76ad97e00010203040506').manufacturer_id, '007ED9h');
        assert.equal(fields('b9000344acf76a010203040506070809').data, '01 02 03 04 05 06 07 08 09');
    });
});

describe('a dump', () => {
    it('shows offset, bytes and text', () => {
        assert.equal(hexDump(bytes('41423c00ff7e7f'), 16), `   16  41 42 3c 00 ff 7e 7f${' '.repeat(27)}  AB<..~.`);
        assert.equal(hexDump(bytes('00'.repeat(17))).split('\n').length, 2);
    });
});

describe('102,400 events are below 9 MB', () => {
    const list = syntheticList(ALL);
    const size = (change) => Buffer.byteLength(scriptJson(encodeEvents(list.map(change), new Set(), [])));

    it('of 40 sensors', () => assert.ok(size((one) => one) < 6e6));

    it('each with a text of its own', () => {
        assert.ok(size((one, row) => ({ ...one, event: `Upper Critical - going high, reading ${row} > threshold 12345 degrees C` })) < MOST_BYTES);
    });

    it('each with other bytes in its slot: the document leaves some of them out and says so', () => {
        const change = (one, row) => ({ ...one, extended: `0d${row.toString(16).padStart(8, '0')}${'00'.repeat(115)}` });
        assert.ok(size(change) < MOST_BYTES);
        const { blocks, columns } = encodeEvents(list.map(change), new Set(), []);
        assert.equal(blocks.filter((block) => block.image).length, 4096);
        assert.ok(blocks.some((block) => block.omitted && block.serial_number === list.at(-1).serial_number));
        assert.equal(columns.block.type, 'u16');
    });
});
