// SPDX-License-Identifier: Apache-2.0

// Writes the part for events of a report's document; docs/report.schema.json defines it.

import { Buffer } from 'node:buffer';

export const SEVERITIES = ['non-recoverable', 'critical', 'warning', 'monitor', 'informational', 'unrated', 'none'];
export const DIRECTIONS = ['', 'asserted', 'deasserted'];
export const STATES = ['regular', 'unreachable', 'damaged', 'backup'];
export const NO_TIME = 0xFFFFFFFF;

const WIDTHS = { u8: 1, u16: 2, u32: 4 };

function column(values, type) {
    const width = WIDTHS[type];
    const bytes = Buffer.alloc(values.length * width);
    values.forEach((value, index) => bytes.writeUIntLE(value, index * width, width));
    return { type, data: bytes.toString('base64') };
}

const narrowest = (values) => {
    const most = values.reduce((a, b) => Math.max(a, b), 0);
    return most < 0x100 ? 'u8' : most < 0x10000 ? 'u16' : 'u32';
};

const SYSTEM_EVENT = [
    { name: 'record_id', offset: 0, width: 2 },
    { name: 'record_type', offset: 2, width: 1 },
    { name: 'timestamp', offset: 3, width: 4, as: 'time' },
    { name: 'generator_id_1', offset: 7, width: 1 },
    { name: 'generator_id_2', offset: 8, width: 1 },
    { name: 'evm_revision', offset: 9, width: 1 },
    { name: 'sensor_type', offset: 10, width: 1, as: 'word' },
    { name: 'sensor_number', offset: 11, width: 1 },
    { name: 'deassertion', offset: 12, width: 1, bits: [7, 7], as: 'number' },
    { name: 'event_type', offset: 12, width: 1, bits: [6, 0], as: 'word' },
    { name: 'event_data_1', offset: 13, width: 1 },
    { name: 'event_data_2', offset: 14, width: 1 },
    { name: 'event_data_3', offset: 15, width: 1 },
];

/// The first row whose range contains the record type describes the record (IPMI v2.0, section 32).
export const FIELDS = [
    { first: 0x02, last: 0x02, kind: 'system-event', fields: SYSTEM_EVENT },
    {
        first: 0xC0, last: 0xDF, kind: 'oem-timestamped', fields: [
            ...SYSTEM_EVENT.slice(0, 3),
            { name: 'manufacturer_id', offset: 7, width: 3 },
            { name: 'oem_data', offset: 10, width: 6, as: 'bytes' },
        ],
    },
    {
        first: 0xE0, last: 0xFF, kind: 'oem-untimestamped', fields: [
            ...SYSTEM_EVENT.slice(0, 2),
            { name: 'oem_data', offset: 3, width: 13, as: 'bytes' },
        ],
    },
    { first: 0x00, last: 0xFF, kind: 'other', fields: [...SYSTEM_EVENT.slice(0, 3), { name: 'data', offset: 7, width: 9, as: 'bytes' }] },
];

/// A table in which each different row exists once.
class Table {
    constructor() {
        this.rows = [];
        this.index = new Map();
    }

    put(row) {
        const key = JSON.stringify(row);
        if (!this.index.has(key)) {
            this.index.set(key, this.rows.length);
            this.rows.push(row);
        }
        return this.index.get(key);
    }
}

/// Sorted texts, each as the number of characters that it shares with the one before it, and the rest.
/// Only ASCII characters are shared: their number is the same in every coding.
function frontCode(sorted) {
    let before = '';
    return sorted.flatMap((text) => {
        let shared = 0;
        while (shared < before.length && shared < text.length && text[shared] === before[shared] && text.charCodeAt(shared) < 0x80) {
            shared++;
        }
        before = text;
        return [shared, text.slice(shared)];
    });
}

/// The different ones of `values`, coded, and for each value its number among them.
function textTable(values) {
    const sorted = [...new Set(values)].sort();
    const index = new Map(sorted.map((text, at) => [text, at]));
    return { coded: frontCode(sorted), indexes: values.map((text) => index.get(text)) };
}

// Blocks of the management board are nearly always the same for each part. Where they are not, the
// document contains the images of so many, and part and serial numbers of twice as many.
const MOST_BLOCKS = 4096;

function putBlock(blocks, event) {
    const part = { partitions: event.partitions, part_number: event.part_number, serial_number: event.serial_number };
    if (blocks.rows.length < MOST_BLOCKS) {
        return blocks.put({ image: event.extended === null ? null : Buffer.from(event.extended, 'hex').toString('base64'), ...part });
    }
    return blocks.put(blocks.rows.length < 2 * MOST_BLOCKS ? { omitted: true, ...part } : { omitted: true });
}

/// `list` is what `sel list --board all --json` prints; `asserted` contains
/// "log/number" of what is still asserted.
export function encodeEvents(list, asserted, traces) {
    const sensors = new Table();
    const blocks = new Table();
    const words = { sensor_type: {}, event_type: {} };
    const columns = { time: [], severity: [], direction: [], flags: [], state: [], file: [], slot: [], number: [], sensor: [], block: [] };
    for (const event of list) {
        const log = event.board ?? 0;
        columns.time.push(event.time === null ? NO_TIME : event.timestamp);
        columns.severity.push(SEVERITIES.indexOf(event.severity ?? 'none'));
        columns.direction.push(DIRECTIONS.indexOf(event.direction ?? ''));
        columns.flags.push((asserted.has(`${log}/${event.log}`) ? 1 : 0) | (event.pre_init ? 2 : 0));
        columns.state.push(Math.max(0, STATES.indexOf(event.state)));
        columns.file.push(event.file ?? 0);
        columns.slot.push(event.slot ?? 0);
        columns.number.push(event.log ?? 0);
        columns.sensor.push(sensors.put({
            log, generator: event.generator, type: event.sensor_type, type_name: event.sensor_type_name, number: event.sensor,
            name: event.sensor_name, entity: event.entity, entity_name: event.entity_name,
        }));
        columns.block.push(putBlock(blocks, event));
        if (event.sensor_type !== null) {
            words.sensor_type[event.sensor_type] = event.sensor_type_name;
            words.event_type[event.event_type] = event.event_type_name;
        }
    }
    const texts = textTable(list.map((event) => event.event ?? ''));
    const causes = textTable(list.map((event) => event.cause ?? ''));
    columns.text = texts.indexes;
    columns.cause = causes.indexes;
    const encoded = Object.fromEntries(Object.entries(columns).map(([name, values]) =>
        [name, column(values, name === 'time' ? 'u32' : narrowest(values))]));
    encoded.record = { type: 'bytes', data: Buffer.concat(list.map((event) => Buffer.from(event.record, 'hex'))).toString('base64') };
    return {
        count: list.length, severities: SEVERITIES, directions: DIRECTIONS, states: STATES, columns: encoded,
        sensors: sensors.rows, texts: texts.coded, causes: causes.coded, blocks: blocks.rows, fields: FIELDS, words, traces,
    };
}

// Record ids are 0001h to FFFEh (IPMI v2.0, section 31.5); after the last the first comes again.
const IDS = 0xFFFE;

/// Rotations, from the files that the events are in; gaps, where record ids are missing; where ids
/// begin again, the log was cleared; after events without a date the clock was set.
export function findTraces(list) {
    const traces = [];
    const before = new Map();
    for (const event of list) {
        const log = event.board ?? 0;
        const last = before.get(log);
        if (last !== undefined && event.time !== null) {
            const span = { log, from: last.timestamp, to: event.timestamp };
            if (last.file !== event.file) {
                traces.push({ ...span, kind: 'rotation', from: event.timestamp });
            }
            const missing = (event.id - last.id + IDS) % IDS - 1;
            if (missing > 0 && missing < IDS / 2) {
                traces.push({ ...span, kind: 'gap', missing });
            } else if (missing >= IDS / 2) {
                traces.push({ ...span, kind: 'cleared' });
            }
            if (last.unset) {
                traces.push({ ...span, kind: 'clock' });
            }
        }
        if (event.time !== null || last === undefined) {
            before.set(log, { id: event.id, file: event.file, timestamp: event.timestamp, unset: false });
        } else {
            last.id = event.id;
            last.unset ||= event.pre_init;
        }
    }
    return traces;
}

const BAD = SEVERITIES.slice(0, 3);

/// The same for a key of events, which is a sensor's or a unit's index: what failed most.
function failuresBy(list, keyOf, asserted, make) {
    const found = new Map();
    list.forEach((event, row) => {
        const key = keyOf(event);
        if (key === null || event.direction !== 'asserted' || !BAD.includes(event.severity)) {
            return;
        }
        if (!found.has(key)) {
            found.set(key, { ...make(event, key), severities: {}, assertions: 0, still_asserted: 0, first_row: row, last_row: row });
        }
        const one = found.get(key);
        one.severities[event.severity] = (one.severities[event.severity] ?? 0) + 1;
        one.assertions++;
        one.last_row = row;
        one.still_asserted += asserted.has(`${event.board ?? 0}/${event.log}`) ? 1 : 0;
    });
    return [...found.values()].sort((a, b) => b.assertions - a.assertions);
}

/// What a document says of events besides themselves: {units, sensor_failures, unit_failures, unitOf}.
export function failures(list, events, asserted) {
    const sensorKey = (event) => [event.board ?? 0, event.generator, event.sensor_type, event.sensor, event.sensor_name].join();
    const sensors = new Map(events.sensors.map((one, index) => [[one.log, one.generator, one.type, one.number, one.name].join(), index]));
    const units = new Table();
    const unitOf = (event) => (event.entity === null ? null : units.put({
        name: `${event.entity_name} ${event.entity.split('.')[1]}`, part_number: event.part_number, serial_number: event.serial_number,
        entity: event.entity, entity_name: event.entity_name,
    }));
    const bySensor = failuresBy(list, sensorKey, asserted, (event, key) => ({ log: event.board ?? 0, sensor: sensors.get(key), unit: unitOf(event) }));
    const byUnit = failuresBy(list, unitOf, asserted, (event, unit) => ({
        log: event.board ?? 0, unit, sensors: [...new Set(list.filter((other) => unitOf(other) === unit).map((other) => sensors.get(sensorKey(other))))],
    }));
    return { units: units.rows, sensor_failures: bySensor, unit_failures: byUnit, unitOf };
}
