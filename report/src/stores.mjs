// SPDX-License-Identifier: Apache-2.0

import { byId, count, counted, dataTable, element, fillBar, isoText, plainText, problemList, svg, timeText, valueList } from './dom.mjs';
import { severityMark } from './severity.mjs';

const BLOCKS = 16;
const TIMES = ['oldest', 'newest'];

/// The files of each log, setting areas, and what the EFI backup's index marks for erasure.
export function showStores(report) {
    const section = byId('stores');
    report.logs.filter((log) => log.files.length > 0 || log.status !== null).forEach((log) => section.append(...logStore(report, log)));
    report.settings.forEach((one) => section.append(...settingStore(one)));
    report.efi.forEach((one) => section.append(...efiStore(one)));
    section.hidden = section.childElementCount < 2;
}

const dateOf = (seconds) => (seconds === null ? '' : timeText(seconds));

function logStore(report, log) {
    const index = report.logs.indexOf(log);
    const gaps = report.events.traces.filter((trace) => trace.kind === 'gap' && trace.log === index);
    const missing = gaps.reduce((sum, gap) => sum + gap.missing, 0);
    const state = log.sound ? 'sound' : 'not sound';
    const nodes = [element('h3', {}, severityMark(log.sound ? 'good' : 'warning'), `Event log ${log.name}: ${state}`)];
    if (log.findings.length > 0) {
        nodes.push(problemList(log.findings.map((finding) => finding.text)));
    }
    if (log.status !== null) {
        nodes.push(valueList(Object.entries(log.status).filter(([name]) => name !== 'board').map(([name, value]) => [name.replaceAll('_', ' '), TIMES.includes(name) ? isoText(value) : value])));
    }
    nodes.push(element('p', {}, gaps.length === 0 ? 'No record is missing between those stored.'
        : `${counted(gaps.length, 'gap')}: ${counted(missing, 'record')} missing.`));
    const there = log.files.filter((file) => !file.missing);
    if (there.length > 0) {
        nodes.push(dataTable(`Files of ${log.name}`, [
            { name: 'File', cell: (file) => file.path },
            { name: 'Fill', cell: (file) => fillBar(file.events / log.slots, `${count(file.events)} of ${count(log.slots)} slots`) },
            { name: 'Events', cell: (file) => count(file.events), number: true },
            { name: 'Slots', cell: () => count(log.slots), number: true },
            { name: 'Bytes', cell: (file) => (file.size === null ? '' : count(file.size)), number: true },
            { name: 'Record ids', cell: (file) => (file.first_id === null ? '' : `${file.first_id} to ${file.last_id}`) },
            { name: 'First', cell: (file) => dateOf(file.first_timestamp) },
            { name: 'Last', cell: (file) => dateOf(file.last_timestamp) },
            { name: 'Damage', cell: (file) => file.damage ?? '' },
        ], there));
    }
    const absent = log.files.length - there.length;
    if (absent > 0) {
        nodes.push(element('p', { className: 'quiet' }, `${counted(absent, 'file')} of the log not there, which is usual for those not yet rotated to.`));
    }
    return nodes;
}

function settingStore({ folder, areas, problems }) {
    return [element('h3', {}, `Setting areas in ${folder}`), problemList(problems), dataTable(`Setting areas in ${folder}`, [
        { name: 'Area', cell: (area) => String(area.number) },
        { name: 'Valid', cell: (area) => element('span', { className: 'nobreak' }, severityMark(area.valid ? 'good' : 'unrated'), area.valid ? 'valid' : 'not valid') },
        { name: 'Checksum', cell: (area) => (area.checksum_right ? 'right' : element('span', { className: 'nobreak' }, severityMark('warning'), 'wrong')) },
        { name: 'EEPROM', cell: (area) => plainText(area.eeprom), number: true },
        { name: 'Offset', cell: (area) => (area.offset === null ? '' : count(area.offset)), number: true },
        { name: 'Bytes', cell: (area) => (area.size === null ? '' : count(area.size)), number: true },
        { name: 'Index file', cell: (area) => plainText(area.index_file) },
    ], areas, 64)];
}

/// A row for each partition, a column for each bank, and in it a square for each block.
function efiStore({ folder, serial, checksum_right: right, banks }) {
    const partitions = [...new Set(banks.map((one) => one.partition))].sort((a, b) => a - b);
    const columns = [...new Set(banks.map((one) => one.bank))].sort((a, b) => a - b);
    const cell = (partition, bank) => {
        const one = banks.find((other) => other.partition === partition && other.bank === bank);
        return one === undefined ? '' : element('span', {}, blockRow(one), ` EEPROM ${one.eeprom}: ${one.pending.length === 0 ? 'none' : `block ${one.pending.join(', ')}`}`);
    };
    const pending = banks.reduce((sum, one) => sum + one.pending.length, 0);
    return [element('h3', {}, severityMark(right ? 'good' : 'warning'), `EFI backup in ${folder}`),
        valueList([['owner', serial], ['checksum', right ? 'right' : 'wrong'], ['blocks pending erasure', pending]]),
        dataTable(`Blocks pending erasure in ${folder}`, [
            { name: 'Partition', cell: (partition) => String(partition) },
            ...columns.map((bank) => ({ name: `Bank ${bank}`, cell: (partition) => cell(partition, bank) })),
        ], partitions)];
}

function blockRow(one) {
    const squares = Array.from({ length: Math.max(BLOCKS, ...one.pending.map((block) => block + 1)) }, (_, block) => {
        const marked = one.pending.includes(block);
        return svg('path', { d: `M${block * 10 + 1} 1h8v8h-8Z${marked ? `m2 2l4 4m0 -4l-4 4` : ''}`, class: marked ? 'block block-pending' : 'block' });
    });
    return svg('svg', { viewBox: `0 0 ${squares.length * 10} 10`, class: 'blocks', 'aria-hidden': 'true' }, ...squares);
}
