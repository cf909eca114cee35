// SPDX-License-Identifier: Apache-2.0

// Reads the report's document; docs/report.schema.json defines it.

// More rows than this would be higher than what a browser lays out.
const MOST_EVENTS = 500000;

const LISTS = ['inputs', 'logs', 'asserted', 'sensor_failures', 'unit_failures', 'units', 'sensors', 'fru', 'memory', 'processors',
    'records', 'settings', 'efi'];

const UNSEEN = /[\p{Cc}\p{Cf}\p{Cs}\p{Zl}\p{Zp}]/gu;

/// A text in which characters that are not seen, or change the direction of others, are written as
/// \xNN or <U+NNNN>.
export const visible = (text) => text.replace(UNSEEN, (one) => {
    const hex = one.codePointAt(0).toString(16).toUpperCase();
    return hex.length > 2 ? `<U+${hex.padStart(4, '0')}>` : one.charCodeAt(0) < 0xA0 ? `\\x${hex.padStart(2, '0')}` : `<U+00${hex}>`;
});

/// Makes every text below `value` visible; tables that are still coded are left as they are.
function makeVisible(value) {
    for (const [key, one] of Object.entries(value)) {
        if (typeof one === 'string') {
            value[key] = visible(one);
        } else if (one !== null && typeof one === 'object' && !CODED.has(key)) {
            makeVisible(one);
        }
    }
    return value;
}

const CODED = new Set(['texts', 'causes', 'columns']);

const LEVELS = ['good', 'warning', 'critical', 'non-recoverable'];

function requireVerdict({ verdict, asserted, summary }) {
    if (!LEVELS.includes(verdict?.level) || !Array.isArray(verdict.reasons) || typeof summary !== 'object' || summary === null) {
        throw new Error('its document has no verdict or no summary');
    }
    if (verdict.reasons.some((reason) => reason.kind === 'asserted' && !(reason.state < asserted.length))) {
        throw new Error('its verdict names a state that is not in the document');
    }
}

/// Boards of several roots have the same names; their roots tell them apart.
function nameLogs(logs) {
    const times = new Map();
    logs.forEach(({ name }) => times.set(name, (times.get(name) ?? 0) + 1));
    for (const log of logs) {
        if (times.get(log.name) > 1 && log.root) {
            log.name = `${log.root}: ${log.name}`;
        }
    }
}

/// Files and folders by their names in their root, which is named only where there are several.
function nameFiles(report) {
    const placed = [...report.fru, ...report.memory, ...report.processors, ...report.records, ...report.settings, ...report.efi];
    const several = new Set(placed.map(({ root }) => root ?? null)).size > 1;
    const inRoot = (path, root) => (root && path.startsWith(`${root}/`) ? path.slice(root.length + 1) : path);
    for (const one of placed) {
        const name = one.file === undefined ? 'folder' : 'file';
        one[name] = `${several && one.root ? `${one.root}: ` : ''}${inRoot(one[name], one.root)}`;
    }
    for (const log of report.logs) {
        log.files.forEach((file) => { file.path = inRoot(file.path, log.root); });
    }
}

/// The document of a page, from its text. Throws an Error that says what is wrong with it.
export function readDocument(text) {
    let report;
    try {
        report = JSON.parse(text);
    } catch (failure) {
        throw new Error(`its document is damaged or was cut off: ${failure.message}`);
    }
    if (report?.format !== 'recordkit-report') {
        throw new Error('it contains no document of a report');
    }
    if (report.version !== 1) {
        throw new Error(`its document has version ${report.version}; the page reads version 1`);
    }
    for (const name of LISTS) {
        if (!Array.isArray(report[name])) {
            throw new Error(`its document has no list of ${name}`);
        }
    }
    requireVerdict(report);
    makeVisible(report);
    nameLogs(report.logs);
    nameFiles(report);
    report.events = readEvents(report.events);
    for (const name of ['asserted', 'sensor_failures', 'unit_failures']) {
        for (const one of report[name]) {
            const rows = [one.row, one.since_row, one.first_row, one.last_row];
            const sensors = [one.sensors ?? (name === 'sensor_failures' ? one.sensor : [])].flat();
            if (rows.some((row) => row >= report.events.count) || sensors.some((sensor) => !(sensor < report.events.sensors.length))) {
                throw new Error(`${name} names an event or a sensor that is not in the document`);
            }
        }
    }
    return report;
}


const ARRAYS = { u8: Uint8Array, u16: Uint16Array, u32: Uint32Array };

/// The bytes of a text in base64 (RFC 4648, section 4).
export function bytesOf(base64) {
    if (Uint8Array.fromBase64) {
        return Uint8Array.fromBase64(base64);
    }
    const text = atob(base64);
    const bytes = new Uint8Array(text.length);
    for (let i = 0; i < text.length; i++) {
        bytes[i] = text.charCodeAt(i);
    }
    return bytes;
}

function column(stored, count, name) {
    const bytes = bytesOf(stored.data);
    const type = ARRAYS[stored.type];
    if (type === undefined || bytes.length !== count * type.BYTES_PER_ELEMENT) {
        throw new Error(`column ${name} does not have ${count} values`);
    }
    return new type(bytes.buffer, 0, count);
}

/// The texts of a front-coded table: a number of characters of the text before, and the rest.
function decodeTexts(coded) {
    const texts = [];
    let text = '';
    for (let at = 0; at < coded.length; at += 2) {
        text = text.slice(0, coded[at]) + coded[at + 1];
        texts.push(visible(text));
    }
    return texts;
}

export const RECORD_SIZE = 16;
export const NO_TIME = 0xFFFFFFFF;
export const STILL_ASSERTED = 1;
export const PRE_INIT = 2;

/// The events of a document: its tables, and a typed array for each column.
export function readEvents(stored) {
    if (!Number.isInteger(stored?.count)) {
        throw new Error('its document has no events');
    }
    const { count } = stored;
    if (count > MOST_EVENTS) {
        throw new Error(`${count} events are more than the ${MOST_EVENTS} that it can show; choose a shorter period`);
    }
    const events = { ...stored, columns: undefined, texts: decodeTexts(stored.texts), causes: decodeTexts(stored.causes) };
    for (const [name, values] of Object.entries(stored.columns)) {
        events[name] = name === 'record' ? bytesOf(values.data) : column(values, count, name);
    }
    if (events.record.length !== count * RECORD_SIZE) {
        throw new Error(`column record has ${events.record.length} bytes for ${count} events`);
    }
    const tables = {
        severity: 'severities', direction: 'directions', state: 'states', sensor: 'sensors', text: 'texts', cause: 'causes', block: 'blocks',
    };
    for (const [name, table] of Object.entries(tables)) {
        if (events[name].some((index) => index >= events[table].length)) {
            throw new Error(`column ${name} has a value beyond its table`);
        }
    }
    return events;
}

export const recordOf = (events, row) => events.record.subarray(row * RECORD_SIZE, (row + 1) * RECORD_SIZE);

const hex = (value, digits) => value.toString(16).toUpperCase().padStart(digits, '0') + 'h';

/// The fields of an event's record by the document's field table: [{name, value, offset, width}].
export function fieldsOf(events, row) {
    const record = recordOf(events, row);
    const kind = events.fields.find((one) => record[2] >= one.first && record[2] <= one.last);
    return (kind?.fields ?? []).map((field) => ({ ...field, value: fieldText(events, record, field) }));
}

function fieldText(events, record, field) {
    const bytes = record.subarray(field.offset, field.offset + field.width);
    if (field.as === 'bytes') {
        return hexText(bytes);
    }
    let value = bytes.reduceRight((sum, byte) => sum * 256 + byte, 0);
    if (field.bits) {
        const [high, low] = field.bits;
        value = (value >>> low) & (2 ** (high - low + 1) - 1);
    }
    switch (field.as) {
    case 'number': return String(value);
    case 'time': return `${value} (${new Date(value * 1000).toISOString().slice(0, 19)}Z)`;
    case 'word': {
        const word = events.words[field.name]?.[value];
        return word === undefined ? hex(value, 2) : `${hex(value, 2)} ${word}`;
    }
    default: return hex(value, field.width * 2);
    }
}

export const hexText = (bytes) => Array.from(bytes, (byte) => byte.toString(16).padStart(2, '0')).join(' ');

/// A dump of bytes: 16 in a line, offsets in decimal, what is not printable ASCII as a dot.
export function hexDump(bytes, from = 0) {
    const lines = [];
    for (let at = 0; at < bytes.length; at += 16) {
        const part = bytes.subarray(at, at + 16);
        const text = Array.from(part, (byte) => (byte >= 0x20 && byte < 0x7F ? String.fromCharCode(byte) : '.')).join('');
        lines.push(`${String(from + at).padStart(5)}  ${hexText(part).padEnd(47)}  ${text}`);
    }
    return lines.join('\n');
}
