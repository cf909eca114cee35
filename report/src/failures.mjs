// SPDX-License-Identifier: Apache-2.0

import { byId, count, dataTable, element, fillBar, isoText, timeText } from './dom.mjs';
import { sensorName } from './filter.mjs';
import { severityLabel } from './severity.mjs';
import { eventLink, stateName } from './verdict.mjs';

/// What is still asserted and what failed most, by sensor and by field-replaceable unit. `choose` is
/// called with "sensor-N" or "unit-N" to show the events of one.
export function showFailures(report, choose) {
    const { events, units, logs } = report;
    const section = byId('failures');
    const logColumn = { name: 'Log', cell: (one) => logs[one.log]?.name };
    const unitColumn = { name: 'Unit', cell: (one) => units[one.unit]?.name };
    if (report.asserted.length > 0) {
        section.append(dataTable('Still asserted', [
            { name: 'Sensor', cell: stateName },
            { name: 'Severity', cell: (state) => severityLabel(state.severity) },
            { name: 'State', cell: (state) => eventLink(state.row, state.event) },
            { name: 'Since', cell: (state) => isoText(state.since) },
            { name: 'Newest', cell: (state) => isoText(state.newest) },
            { name: 'Assertions', cell: (state) => count(state.assertions), number: true },
            logColumn, unitColumn,
        ], report.asserted));
    }
    for (const [caption, rows, name, key] of [
        ['What failed most, by sensor', report.sensor_failures, (one) => sensorName(events.sensors[one.sensor]), (one) => `sensor-${one.sensor}`],
        ['What failed most, by unit', report.unit_failures, (one) => units[one.unit]?.name ?? 'unknown unit', (one) => `unit-${one.unit}`],
    ]) {
        if (rows.length > 0) {
            section.append(failureTable(caption, rows, name, key, events,
                rows === report.sensor_failures ? [logColumn, unitColumn]
                    : [{ name: 'Part number', cell: (one) => units[one.unit]?.part_number }, { name: 'Serial number', cell: (one) => units[one.unit]?.serial_number }],
                choose));
        }
    }
    section.hidden = section.childElementCount < 2;
}

function failureTable(caption, rows, name, key, events, more, choose) {
    const most = Math.max(...rows.map((one) => one.assertions));
    const severities = events.severities.filter((severity) => rows.some((one) => one.severities[severity] > 0));
    const show = (one) => {
        const button = element('button', { type: 'button', className: 'link' }, name(one));
        button.setAttribute('aria-label', `Show the events of ${name(one)}`);
        button.addEventListener('click', () => choose(key(one)));
        return button;
    };
    return dataTable(caption, [
        { name: caption.endsWith('unit') ? 'Unit' : 'Sensor', cell: show },
        { name: 'Assertions', cell: (one) => count(one.assertions), number: true },
        { name: 'Share', cell: (one) => fillBar(one.assertions / most, `${count(one.assertions)} of at most ${count(most)}`) },
        ...severities.map((severity) => ({ name: severity, cell: (one) => count(one.severities[severity] ?? 0), number: true })),
        { name: 'Still asserted', cell: (one) => count(one.still_asserted), number: true },
        { name: 'First', cell: (one) => eventLink(one.first_row, timeText(events.place[one.first_row])) },
        { name: 'Last', cell: (one) => eventLink(one.last_row, timeText(events.place[one.last_row])) },
        ...more,
    ], rows);
}
