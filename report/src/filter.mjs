// SPDX-License-Identifier: Apache-2.0

import { NO_TIME, STILL_ASSERTED } from './document.mjs';

/// Finds the events that a filter lets through.
///
/// A text is looked for once in each table of strings, not in each event: what the events of a board
/// say repeats.
export class Filter {
    constructor(events) {
        this.events = events;
        this.found = new Uint32Array(events.count);
        const lower = (...parts) => parts.filter((part) => part).join('\n').toLowerCase();
        this.texts = events.texts.map((text) => lower(text));
        this.causes = events.causes.map((cause) => lower(cause));
        this.sensors = events.sensors.map((sensor) =>
            lower(sensor.name, sensor.type_name, sensor.entity_name, sensor.source, sensor.board === null ? '' : `board ${sensor.board}`));
        this.blocks = events.blocks.map((block) => lower(block.part_number, block.serial_number));
    }

    /// The rows let through, in the order of the document. `wanted`: {text, severities: a Set of
    /// indexes, sensor: index or -1, direction: index or -1, stillAsserted}.
    rows(wanted) {
        const { events } = this;
        const { count, severity, direction, sensor, text, cause, block, flags } = events;
        const severities = Uint8Array.from(events.severities, (name, index) => (wanted.severities.has(index) ? 1 : 0));
        const words = wanted.text.toLowerCase().trim();
        const matches = (table) => Uint8Array.from(table, (one) => (one.includes(words) ? 1 : 0));
        const [inText, inCause, inSensor, inBlock] = words === ''
            ? [] : [matches(this.texts), matches(this.causes), matches(this.sensors), matches(this.blocks)];
        let length = 0;
        for (let row = 0; row < count; row++) {
            if (severities[severity[row]] === 0
                || (wanted.sensor >= 0 && sensor[row] !== wanted.sensor)
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
