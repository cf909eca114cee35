// SPDX-License-Identifier: Apache-2.0

import { NO_TIME, STILL_ASSERTED } from './document.mjs';

/// Finds the events that a filter lets through.
///
/// A text is looked for once in each table of strings, not in each event: what the events of a board
/// say repeats.
export class Filter {
    constructor(events, logs) {
        this.events = events;
        this.found = new Uint32Array(events.count);
        const lower = (...parts) => parts.filter((part) => part).join('\n').toLowerCase();
        this.texts = events.texts.map((text) => lower(text));
        this.causes = events.causes.map((cause) => lower(cause));
        this.sensors = events.sensors.map((sensor) => lower(sensor.name, sensor.type_name, sensor.entity_name, logs[sensor.log]?.name));
        this.blocks = events.blocks.map((block) => lower(block.part_number, block.serial_number));
    }

    /// The rows let through, in the order of the document. `wanted`: {text, severities: a Set of
    /// indexes, sensors: a Set of indexes or null, log and direction: index or -1, stillAsserted}.
    rows(wanted) {
        const { events } = this;
        const { count, severity, direction, sensor, text, cause, block, flags } = events;
        const severities = Uint8Array.from(events.severities, (name, index) => (wanted.severities.has(index) ? 1 : 0));
        const sensors = Uint8Array.from(events.sensors, ({ log }, index) =>
            ((wanted.log < 0 || log === wanted.log) && (wanted.sensors === null || wanted.sensors.has(index)) ? 1 : 0));
        const words = wanted.text.toLowerCase().trim();
        const matches = (table) => Uint8Array.from(table, (one) => (one.includes(words) ? 1 : 0));
        const [inText, inCause, inSensor, inBlock] = words === ''
            ? [] : [matches(this.texts), matches(this.causes), matches(this.sensors), matches(this.blocks)];
        let length = 0;
        for (let row = 0; row < count; row++) {
            if (severities[severity[row]] === 0
                || sensors[sensor[row]] === 0
                || (wanted.direction >= 0 && direction[row] !== wanted.direction)
                || (wanted.stillAsserted && (flags[row] & STILL_ASSERTED) === 0)
                || (words !== '' && !inText[text[row]] && !inCause[cause[row]] && !inSensor[sensor[row]] && !inBlock[block[row]])) {
                continue;
            }
            this.found[length++] = row;
        }
        return this.found.slice(0, length);
    }
}

/// What a sensor of an event is called.
export const sensorName = (sensor) => sensor.name ?? sensor.type_name ?? 'other records';

/// `rows` (ascending) sorted by a table of ranks, one for each event; equal ones keep the newest first
/// if `down`, the oldest first otherwise.
export function sortRows(rows, ranks, down) {
    const most = rows.reduce((so, row) => Math.max(so, ranks[row]), 0);
    const starts = new Uint32Array(most + 2);
    rows.forEach((row) => starts[ranks[row] + 1]++);
    for (let rank = 1; rank < starts.length; rank++) {
        starts[rank] += starts[rank - 1];
    }
    const sorted = new Uint32Array(rows.length);
    rows.forEach((row) => { sorted[starts[ranks[row]]++] = row; });
    return down ? sorted.reverse() : sorted;
}

/// Gives each event its place in time: its own time, or that of the last dated event before it in
/// the same log, since an event without a date is known to come after that one.
export function placeEvents(events) {
    const place = new Uint32Array(events.count);
    const last = new Map();
    let first = NO_TIME;
    let end = 0;
    for (const time of events.time) {
        if (time !== NO_TIME) {
            first = Math.min(first, time);
            end = Math.max(end, time);
        }
    }
    if (first === NO_TIME) {
        first = end = 0;
    }
    for (let row = 0; row < events.count; row++) {
        const log = events.sensors[events.sensor[row]].log;
        if (events.time[row] !== NO_TIME) {
            last.set(log, events.time[row]);
        }
        place[row] = last.get(log) ?? first;
    }
    Object.assign(events, { place, first, last: end });
}
