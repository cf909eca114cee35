// SPDX-License-Identifier: Apache-2.0

import { byteMap } from './bytemap.mjs';
import { bytesOf, hexDump } from './document.mjs';
import { byId, count, counted, dataTable, element, folded, naturally, plainText, problemList, valueList } from './dom.mjs';
import { severityMark } from './severity.mjs';

/// A heading of the inventory, and what is below it, if there is something.
function part(section, id, title, nodes) {
    if (nodes.length > 0) {
        section.append(element('h3', { id }, title), ...nodes);
    }
}

/// FRU images, memory modules, processors, and records of boards: what the system consists of.
export function showInventory(report) {
    const section = byId('inventory');
    part(section, 'fru', 'Field-replaceable units', report.fru.length === 0 ? [] : [element('div', { className: 'cards wide-cards' }, ...report.fru.map(fruCard))]);
    part(section, 'memory', 'Memory', memoryGrids(report.memory));
    part(section, 'processors', 'Processors', report.processors.length === 0 ? [] : [processorTable(report.processors)]);
    const groups = new Map();
    for (const record of report.records) {
        const group = GROUPS.find(([, classes]) => classes.includes(record.class))?.[0] ?? OTHER;
        groups.set(group, [...(groups.get(group) ?? []), record]);
    }
    for (const title of [...GROUPS.map(([name]) => name), OTHER]) {
        part(section, title.toLowerCase().replaceAll(' ', '-'), title, groups.has(title) ? recordTables(title, groups.get(title)) : []);
    }
    section.hidden = section.childElementCount < 2;
}

const AREAS = ['product', 'board', 'chassis'];

/// What a FRU image says of a field, by the first area that says something.
function fruField(fru, ...names) {
    for (const area of AREAS.flatMap((name) => fru.areas.filter((one) => one.name === name))) {
        const found = area.fields.find((field) => names.includes(field.name) && field.value);
        if (found) {
            return plainText(found.value);
        }
    }
    return '';
}

function fruCard(fru) {
    const bytes = bytesOf(fru.image);
    const fields = [...fru.areas, ...fru.multirecords].flatMap((area) => area.fields.map((field) => ({ area: area.name, ...field })));
    return element('article', { className: 'card' },
        element('h4', {}, fru.problems.length > 0 ? severityMark('warning') : '', fruField(fru, 'name', 'type') || 'FRU image'),
        element('p', { className: 'quiet' }, `${fru.file}, ${counted(fru.size, 'byte')}`),
        problemList(fru.problems),
        valueList([['manufacturer', fruField(fru, 'manufacturer')], ['part number', fruField(fru, 'part-number')],
            ['serial number', fruField(fru, 'serial')], ['version', fruField(fru, 'version')], ['asset tag', fruField(fru, 'asset-tag')]]),
        ...byteMap(fru, bytes),
        folded(`Fields (${count(fields.length)})`, dataTable(`Fields of ${fru.file}`, [
            { name: 'Field', cell: (field) => `${field.area} ${field.name}` },
            { name: 'Value', cell: (field) => `${plainText(field.text ?? field.value)}${field.unit ? ` ${field.unit}` : ''}` },
            { name: 'Offset', cell: (field) => String(field.offset), number: true },
            { name: 'Length', cell: (field) => String(field.length), number: true },
            { name: 'Bits', cell: (field) => field.bits },
            { name: 'Bytes', cell: (field) => field.bytes },
        ], fields, 1000)),
        folded('Bytes', element('div', { className: 'dump', tabIndex: 0, role: 'region', 'aria-label': `Bytes of ${fru.file}` },
            element('pre', {}, hexDump(bytes)))),
        ...fru.notes.map((note) => element('p', { className: 'quiet' }, note)));
}

/// A grid of sockets for each folder.
function memoryGrids(modules) {
    const groups = new Map();
    for (const module of modules) {
        const at = module.file.lastIndexOf('/');
        const group = at < 0 ? 'modules' : module.file.slice(0, at);
        groups.set(group, [...(groups.get(group) ?? []), { ...module, socket: module.file.slice(at + 1).replace(/\.[^.]*$/, '') }]);
    }
    return [...groups].sort((a, b) => naturally(a[0], b[0])).flatMap(([group, members]) => {
        const known = members.filter((one) => one.capacity_mb !== null);
        const total = known.reduce((sum, one) => sum + one.capacity_mb, 0);
        const unknown = members.length - known.length;
        return [element('h4', {}, `${group}: ${counted(members.length, 'module')}, ${capacity(total)}${unknown > 0 ? ` and ${count(unknown)} of unknown capacity` : ''}`),
            element('ul', { className: 'sockets' }, ...members.sort((a, b) => naturally(a.socket, b.socket)).map(socketCard))];
    });
}

const capacity = (megabytes) => (megabytes === null ? 'unknown capacity' : megabytes % 1024 === 0 ? `${count(megabytes / 1024)} GB` : `${count(megabytes)} MB`);

const SHOWN = ['file', 'root', 'socket', 'file_bytes'];

function socketCard(module) {
    const wrong = [[module.crc_right, 'CRC wrong'], [module.module_crc_right, 'CRC of the module wrong']].filter(([right]) => right === false);
    const values = Object.entries(module).filter(([name, value]) => !SHOWN.includes(name) && value !== null)
        .map(([name, value]) => [name.replaceAll('_', ' '), value]);
    return element('li', { className: 'card' },
        element('strong', {}, wrong.length > 0 ? severityMark('warning') : '', module.socket), ' ',
        `${capacity(module.capacity_mb)} ${[module.memory_type, module.module_type].filter((one) => one).join(' ')}`,
        problemList(wrong.map(([, text]) => text)),
        element('p', { className: 'quiet' }, `${plainText(module.part_number).trim()}, serial ${plainText(module.serial_number)}`
            + `${module.speed_mts ? `, ${count(module.speed_mts)} MT/s` : ''}`),
        folded(`All of ${module.socket}`, valueList(values)));
}

function processorTable(processors) {
    return dataTable('Processors', [
        { name: 'File', cell: (one) => one.file },
        { name: 'Model', cell: (one) => one.model_name },
        { name: 'Stepping', cell: (one) => one.stepping },
        { name: 'Speed in MHz', cell: (one) => (one.speed_mhz ? count(one.speed_mhz) : ''), number: true },
        { name: 'Cache in kB', cell: (one) => (one.cache_kb ? count(one.cache_kb) : ''), number: true },
        { name: 'Code', cell: (one) => one.processor_code },
        { name: 'Part number', cell: (one) => one.part_number },
        { name: 'Problems', cell: (one) => (one.problems ?? []).join('; ') },
    ], processors, 200);
}

const OTHER = 'Other records';

const GROUPS = [
    ['Firmware', ['TAVFirmwareVersion', 'PALSALVersion', 'EFIVersion', 'BMCVersion', 'DeviceID', 'GSWBVersion', 'SystemFirmwareVersion', 'SystemInfoParameters']],
    ['Boards', ['HardwareInfo', 'PartitionInfo', 'SBBoardInfo', 'IOUBoardInfo', 'SASUBoardInfo', 'GSPBBoardInfo', 'PCIBOXInfo', 'PSUStatus', 'DeviceInfo']],
    ['Slots and cables', ['IOUPortConfiguration', 'PCISlotLocation', 'PCICardInfo']],
];

/// A table for each record; the short ones of firmware are open.
function recordTables(title, records) {
    return records.map((record) => {
        const made = folded(`${record.file}: ${record.description}`, dataTable(`${record.class} of ${record.file}`, [
            { name: 'Field', cell: (field) => field.name },
            { name: 'Value', cell: (field) => plainText(field.value) },
            { name: 'Meaning', cell: (field) => field.meaning },
            { name: 'Byte', cell: (field) => (field.offset === null ? '' : String(field.offset)), number: true },
            { name: 'Bits', cell: (field) => field.bits },
        ], record.fields, 40));
        made.open = title === 'Firmware' && record.fields.length <= 8;
        return made;
    });
}
