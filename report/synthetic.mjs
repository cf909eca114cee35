// SPDX-License-Identifier: Apache-2.0

// Prints a document with invented events, the same for each seed: by default as many as 16 boards store.
//
//   node synthetic.mjs [COUNT [SEED]] > document.json

import { Buffer } from 'node:buffer';
import { pathToFileURL } from 'node:url';
import { encodeEvents, failures, SEVERITIES } from './encode.mjs';

const KINDS = [
    ['Fan', 4, 'Fan', 1, 'threshold', 'RPM'],
    ['Inlet Temp', 1, 'Temperature', 1, 'threshold', 'degrees C'],
    ['12 V', 2, 'Voltage', 1, 'threshold', 'Volts'],
    ['DIMM', 12, 'Memory', 111, 'sensor-specific', null],
    ['CPU', 7, 'Processor', 111, 'sensor-specific', null],
];
const TEXTS = ['Correctable ECC', 'Uncorrectable ECC', 'Presence detected', 'IERR', 'Thermal Trip'];

const FROM = 1763000000;
const BOARDS = 16;
const LANES = 40;
const COUNT = 102400;

/// The events as `sel list --board all --json` prints them.
export function syntheticList(count = COUNT, seed = 1) {
    let state = seed >>> 0;
    const random = (below) => {
        state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
        return Math.floor(state / 4294967296 * below);
    };
    const step = 31536000 / count;
    const list = [];
    const logs = new Uint32Array(BOARDS);
    const block = `0d${'00'.repeat(119)}`;
    for (let index = 0; index < count; index++) {
        const lane = Math.min(random(LANES), random(LANES));
        const board = lane % BOARDS;
        const [name, type, typeName, eventType, eventTypeName, units] = KINDS[lane % KINDS.length];
        const luck = random(10000);
        const severity = luck < 3 ? 0 : luck < 150 ? 1 : luck < 5000 ? 2 : luck < 7000 ? 3 : luck < 9000 ? 4 : 5;
        const dated = random(500) > 0;
        const time = Math.floor(FROM + index * step);
        const reading = random(256);
        const log = ++logs[board];
        const record = Buffer.alloc(16);
        record.writeUInt16LE(log % 0xFFFF, 0);
        record[2] = 2;
        record.writeUInt32LE(dated ? time : random(600), 3);
        record[7] = 0x20;
        record[9] = 4;
        record[10] = type;
        record[11] = lane;
        record[12] = eventType | (index % 2 ? 0x80 : 0);
        record[13] = random(12);
        record[14] = reading;
        record[15] = 100;
        list.push({
            board, log, file: 7 - Math.floor((log - 1) / 800) % 8, slot: (log - 1) % 800, state: 'regular', source: null, id: log,
            time: dated ? 'dated' : null, timestamp: time, pre_init: !dated, severity: SEVERITIES[severity], generator: '2000',
            sensor_type: type, sensor_type_name: typeName, sensor: lane, event_type: eventType, event_type_name: eventTypeName,
            direction: index % 2 ? 'deasserted' : 'asserted', partitions: [board], part_number: 'EX-SB-2100', serial_number: `SB26A${String(board).padStart(5, '0')}`,
            event: units === null ? TEXTS[random(TEXTS.length)] : `Upper Critical - going high, reading ${reading} > threshold ${100 + lane} ${units}`,
            cause: units === null ? `unit ${random(16)}` : null, sensor_name: `${name} ${lane}`, entity: `7.${board}`, entity_name: 'system board',
            record: record.toString('hex'), extended: block,
        });
    }
    return list;
}

export function synthetic(count = COUNT, seed = 1) {
    const list = syntheticList(count, seed);
    const traces = [];
    for (let board = 0; board < BOARDS; board++) {
        traces.push({ kind: 'rotation', log: board, from: FROM + board * 1e6, to: FROM + board * 1e6 });
    }
    traces.push({ kind: 'gap', log: 0, from: FROM + 5e6, to: FROM + 7e6, missing: 12 });
    const last = list.findLastIndex((event) => event.severity === 'critical');
    const still = last < 0 ? [] : [list[last]];
    const asserted = new Set(still.map((event) => `${event.board}/${event.log}`));
    const events = encodeEvents(list, asserted, traces);
    const { unitOf, ...more } = failures(list, events, asserted);
    const states = still.map((event) => ({
        since: iso(event.timestamp), severity: event.severity, board: event.board, source: null, sensor_type_name: event.sensor_type_name,
        sensor: event.sensor, sensor_name: event.sensor_name, newest: iso(event.timestamp), assertions: 1, event: event.event,
        log: event.board, row: last, since_row: last, unit: unitOf(event),
    }));
    return documentOf(list, {
        title: 'Health of an invented server', events, asserted: states, ...more,
        verdict: states.length === 0 ? { level: 'good', text: 'Nothing is still asserted', reasons: [] }
            : { level: 'critical', text: '1 state still asserted', reasons: [{ kind: 'asserted', severity: 'critical', state: 0 }] },
    });
}

const iso = (seconds) => `${new Date(seconds * 1000).toISOString().slice(0, 19)}Z`;

/// A document of events only, all others of its keys empty unless given.
export function documentOf(list, more = {}) {
    const boards = Math.max(1, ...list.map((event) => (event.board ?? 0) + 1));
    const severitiesOf = (events) => SEVERITIES.slice(0, -1).map((severity) =>
        ({ severity, events: events.filter((event) => event.severity === severity).length, still_asserted: 0 }));
    const dated = list.filter((event) => event.time !== null);
    return {
        format: 'recordkit-report', version: 1, title: 'A test', made: { time: '2026-11-21T00:00:00Z', program: 'recordkit' },
        chosen: '', left_out: 0, verdict: { level: 'good', text: 'Nothing is still asserted', reasons: [] }, inputs: [],
        logs: Array.from({ length: boards }, (_, board) => {
            const events = list.filter((event) => (event.board ?? 0) === board);
            return {
                name: `board ${board}`, root: 'invented', board, events: events.length, still_asserted: 0, severities: severitiesOf(events),
                status: null, slots: 800, sound: true, files: [], findings: [],
            };
        }),
        summary: {
            events: list.length, undated: list.length - dated.length, other_records: 0, first: dated.length === 0 ? null : iso(dated[0].timestamp),
            last: dated.length === 0 ? null : iso(dated.at(-1).timestamp), severities: severitiesOf(list), hours: [],
        },
        asserted: [], sensor_failures: [], unit_failures: [], units: [], events: encodeEvents(list, new Set(), []),
        sensors: [], fru: [], memory: [], processors: [], records: [], settings: [], efi: [], ...more,
    };
}

if (process.argv[1] && import.meta.url === pathToFileURL(process.argv[1]).href) {
    const [count, seed] = process.argv.slice(2).map(Number);
    process.stdout.write(JSON.stringify(synthetic(count, seed)));
}
