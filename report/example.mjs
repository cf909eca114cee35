// SPDX-License-Identifier: Apache-2.0

// Prints the document of a board's root: what the command prints as JSON, put together.
//
//   node example.mjs RECORDKIT ROOT BOARDS > document.json

import { execFileSync } from 'node:child_process';
import { readFileSync, readdirSync, existsSync } from 'node:fs';
import { join } from 'node:path';
import { encodeEvents, findTraces, SEVERITIES } from './encode.mjs';

const [command, root, boards] = process.argv.slice(2);

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
const summary = ask('sel', 'summary', '--board', 'all', '--all');
const checks = ask('sel', 'check', '--board', 'all');

const row = new Map(list.map((event, index) => [`${event.board}/${event.log}`, index]));
const findings = checks.flatMap((check) => check.findings.map((one) => ({ text: `board ${check.board}: ${one.text ?? one}` })));
const reasons = still
    .filter((event) => SEVERITIES.indexOf(event.severity) <= SEVERITIES.indexOf('warning') && event.severity !== null)
    .sort((a, b) => SEVERITIES.indexOf(a.severity) - SEVERITIES.indexOf(b.severity))
    .map((event) => ({ row: row.get(`${event.board}/${event.log}`) }));
const worst = reasons.length > 0 ? list[reasons[0].row].severity : findings.length > 0 ? 'warning' : 'good';
const fru = filesIn('fru');
const spd = filesIn('spd');

process.stdout.write(JSON.stringify({
    format: 'recordkit-report',
    version: 1,
    title: 'Health of the example server',
    made: { time: list.reduce((last, event) => (event.time > last ? event.time : last), ''), program: 'recordkit' },
    verdict: {
        level: worst,
        text: worst === 'good' ? 'Nothing of severity warning or worse is still asserted'
            : `${worst[0].toUpperCase()}${worst.slice(1)}: ${reasons.length} still asserted`,
        reasons: [...reasons, ...findings],
    },
    summary,
    boards: ask('sel', 'status', '--board', 'all'),
    checks: checks.map(({ board, sound, files }) => ({ board, sound, files: files.map((file) => ({ ...file, path: file.path.slice(root.length) })) })),
    events: encodeEvents(list, asserted, findTraces(list)),
    sensors: ask('sdr', 'list', join(root, 'etc/default/config/sdr.bin')),
    fru: fru.length === 0 ? [] : ask('fru', 'show', ...fru).map((one, index) => ({
        ...one, file: fru[index].slice(root.length), image: readFileSync(fru[index]).toString('base64'),
    })),
    memory: spd.length === 0 ? [] : ask('spd', 'show', ...spd).map((one, index) => ({ ...one, file: spd[index].slice(root.length) })),
    processors: filesIn('rom').map((file) => ({ file: file.slice(root.length), ...ask('cpu', file) })),
    settings: ask('eeprom', 'setting', 'list', '--images', join(root, 'eeprom')),
    efi: ask('eeprom', 'efi', 'status', '--images', join(root, 'eeprom')),
}));
