// SPDX-License-Identifier: Apache-2.0

// Prints the document of a board's root: what the command prints as JSON, put together.
//
//   node example.mjs RECORDKIT ROOT BOARDS > document.json

import { execFileSync } from 'node:child_process';
import { readFileSync, readdirSync, existsSync } from 'node:fs';
import { basename, join, resolve } from 'node:path';
import { encodeEvents, failures, findTraces, SEVERITIES } from './encode.mjs';

const [command, folder, boards] = process.argv.slice(2);
const root = resolve(folder);
const NAME = basename(root);

/// What a sub-command prints; the status 1 only says that something is damaged.
function ask(...words) {
    const options = { encoding: 'utf8', maxBuffer: 1 << 30, stdio: ['ignore', 'pipe', 'inherit'] };
    try {
        return JSON.parse(execFileSync(command, ['--root', root, '--boards', boards, ...words, '--json'], options));
    } catch (failure) {
        if (failure.status === 1 && failure.stdout) {
            return JSON.parse(failure.stdout);
        }
        throw failure;
    }
}

const filesIn = (folder) => {
    const path = join(root, folder);
    return existsSync(path)
        ? readdirSync(path, { recursive: true, withFileTypes: true }).filter((entry) => entry.isFile())
            .map((entry) => join(entry.parentPath ?? entry.path, entry.name)).sort()
        : [];
};

const list = ask('sel', 'list', '--board', 'all');
const still = ask('sel', 'list', '--board', 'all', '--still-asserted');
const asserted = new Set(still.map((event) => `${event.board}/${event.log}`));
const { logs: counts, still_asserted: states, ...whole } = ask('sel', 'summary', '--board', 'all', '--all');
const summary = Object.fromEntries(['events', 'undated', 'other_records', 'first', 'last', 'severities', 'hours'].map((name) => [name, whole[name]]));
const checks = ask('sel', 'check', '--board', 'all');
const status = ask('sel', 'status', '--board', 'all');
const events = encodeEvents(list, asserted, findTraces(list));
const { units, sensor_failures, unit_failures, unitOf } = failures(list, events, asserted);

const severitiesOf = (board) => summary.severities.map(({ severity }) => {
    const has = (event) => event.board === board && (event.severity ?? 'none') === severity;
    return { severity, events: list.filter(has).length, still_asserted: still.filter(has).length };
});
const logs = counts.map(({ board, events, still_asserted }) => {
    const check = checks.find((one) => one.board === board);
    return {
        name: `board ${board}`, root: NAME, board, events, still_asserted, severities: severitiesOf(board), slots: 800,
        status: status.find((one) => one.board === board), sound: check.sound, findings: check.findings,
        files: check.files.map((file) => ({ ...file, path: file.path.slice(root.length) })),
    };
});
const rank = (state) => SEVERITIES.indexOf(state.severity ?? 'none');
const assertedStates = states.sort((a, b) => rank(a) - rank(b)).map((state) => {
    const row = list.findLastIndex((event) => event.board === state.board && event.time === state.newest && event.sensor === state.sensor);
    return { ...state, log: state.board, row, since_row: row, unit: unitOf(list[row]) };
});
const reasons = [
    ...assertedStates.filter((state) => rank(state) <= 2).map((state) => ({ kind: 'asserted', severity: state.severity, state: assertedStates.indexOf(state) })),
    ...logs.flatMap((log) => log.findings.map((finding) => ({ kind: 'damaged', where: log.name, text: finding.text }))),
];
const level = reasons[0]?.severity ?? (reasons.length > 0 ? 'warning' : 'good');
const short = (file) => file.slice(root.length).replace(/^\//, '');
const fru = filesIn('fru');
const spd = filesIn('spd');
const classes = new Map(ask('decode', '--list').map((one) => [one.class, one.description]));
const readings = (name) => counts.map(({ board }) => {
    const values = new Map();
    list.filter((event) => event.board === board && event.sensor_name === name && event.reading !== null)
        .forEach((event) => values.set(event.reading, (values.get(event.reading) ?? 0) + 1));
    return { log: board, values: [...values].sort((a, b) => a[0] - b[0]) };
}).filter((one) => one.values.length > 0);
const kinds = [['fru/', 'FRU image'], ['spd/', 'SPD image'], ['rom/', 'processor ROM'], ['eeprom/', 'EEPROM'], ['boards/', 'record'], ['firmware/', 'record'],
    ['tmp/', 'event log'], ['var/', 'event log'], ['etc/default/config/sdr', 'sensor repository'], ['etc/default/config/panel', 'setting index'],
    ['etc/', 'text'], ['README', 'text']];

process.stdout.write(JSON.stringify({
    format: 'recordkit-report',
    version: 1,
    title: 'Health of the example server',
    made: { time: list.reduce((last, event) => (event.time > last ? event.time : last), ''), program: 'recordkit' },
    chosen: '',
    left_out: 0,
    verdict: {
        level,
        text: level === 'good' ? 'Nothing of severity warning or worse is still asserted'
            : `${level[0].toUpperCase()}${level.slice(1)}: ${reasons.length} still asserted or damaged`,
        reasons,
    },
    inputs: filesIn('').map(short).filter((name) => !name.startsWith('siblings/')).map((name) =>
        ({ name, kind: kinds.find(([start]) => name.startsWith(start))?.[1] ?? 'not recognised', root: NAME, problems: [] })),
    logs,
    summary,
    asserted: assertedStates,
    sensor_failures,
    unit_failures,
    units,
    events,
    sensors: ask('sdr', 'list', join(root, 'etc/default/config/sdr.bin')).map((one) => ({ ...one, root: NAME, readings: readings(one.name) })),
    fru: fru.length === 0 ? [] : ask('fru', 'show', ...fru).map((one, index) => ({
        ...one, root: NAME, file: short(fru[index]), image: readFileSync(fru[index]).toString('base64'),
    })),
    memory: spd.length === 0 ? [] : ask('spd', 'show', ...spd).map((one, index) => ({ ...one, root: NAME, file: short(spd[index]) })),
    processors: filesIn('rom').map((file) => ({ file: short(file), root: NAME, ...ask('cpu', file) })),
    records: [...filesIn('boards'), ...filesIn('firmware')].map((file) => {
        const name = basename(file).split('.')[0];
        return { file: short(file), root: NAME, class: name, description: classes.get(name), fields: ask('decode', name, file) };
    }),
    settings: [{ folder: 'eeprom', areas: ask('eeprom', 'setting', 'list', '--images', join(root, 'eeprom')), problems: [] }],
    efi: [ask('eeprom', 'efi', 'status', '--images', join(root, 'eeprom'))].map((banks) =>
        ({ folder: 'eeprom', serial: banks[0].serial, checksum_right: banks[0].checksum_right, banks })),
}));
