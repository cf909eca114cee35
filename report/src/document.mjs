// SPDX-License-Identifier: Apache-2.0

// Reads the report's document; DOCUMENT.md describes it.

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
        texts.push(text);
    }
    return texts;
}

export const RECORD_SIZE = 16;
export const NO_TIME = 0xFFFFFFFF;
export const STILL_ASSERTED = 1;
export const PRE_INIT = 2;

/// The events of a document: its tables, and a typed array for each column.
export function readEvents(stored) {
    const { count } = stored;
    const events = { ...stored, columns: undefined, texts: decodeTexts(stored.texts), causes: decodeTexts(stored.causes) };
    for (const [name, values] of Object.entries(stored.columns)) {
        events[name] = name === 'record' ? bytesOf(values.data) : column(values, count, name);
    }
    if (events.record.length !== count * RECORD_SIZE) {
        throw new Error(`column record has ${events.record.length} bytes for ${count} events`);
    }
    events.rank = new Map(stored.severities.map((name, index) => [name, index]));
    return events;
}

export const recordOf = (events, row) => events.record.subarray(row * RECORD_SIZE, (row + 1) * RECORD_SIZE);

const hex = (value, digits) => value.toString(16).toUpperCase().padStart(digits, '0') + 'h';

/// The fields of an event's record by the document's field table: [{name, value}].
export function fieldsOf(events, row) {
    const record = recordOf(events, row);
    const kind = events.fields.find((one) => record[2] >= one.first && record[2] <= one.last);
    return (kind?.fields ?? []).map((field) => ({ name: field.name, value: fieldText(events, record, field) }));
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
