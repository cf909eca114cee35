// SPDX-License-Identifier: Apache-2.0

import { byId, count, counted, dataTable, element, numberText, svg } from './dom.mjs';

const WIDTH = 400;
const HEIGHT = 30;

// From the lowest to the highest; a zone is beyond its threshold, as seen from the normal range.
const LOWER = [['lower_non_recoverable', 'non-recoverable'], ['lower_critical', 'critical'], ['lower_non_critical', 'warning']];
const UPPER = [['upper_non_critical', 'warning'], ['upper_critical', 'critical'], ['upper_non_recoverable', 'non-recoverable']];
const OTHERS = ['nominal', 'normal_minimum', 'normal_maximum'];

const words = (name) => name.replaceAll('_', ' ').replace('non ', 'non-');
const known = (sensor, names) => names.filter((name) => sensor[name] !== null && sensor[name] !== undefined);

/// Sensors with thresholds as bars, all others in a table.
export function showSensors(report) {
    const section = byId('sensors');
    const names = [...LOWER, ...UPPER].map(([name]) => name);
    const hasBar = (sensor) => known(sensor, names).length > 0 || sensor.readings.some((one) => one.values.length > 0);
    const drawn = report.sensors.filter(hasBar);
    const others = report.sensors.filter((sensor) => !hasBar(sensor));
    const several = new Set(report.sensors.map((sensor) => sensor.root)).size > 1;
    const root = several ? [{ name: 'From', cell: (sensor) => sensor.root }] : [];
    const first = { name: 'Sensor', cell: (sensor) => sensor.name ?? `number ${sensor.number}` };
    if (drawn.length > 0) {
        section.append(element('p', { className: 'quiet' }, 'Hatched: beyond a threshold, by its severity. Framed: the normal range; long line: the nominal value; '
            + 'triangles: readings in events, larger where there are more.'),
        dataTable('Thresholds and readings', [first,
            { name: 'Range', cell: (sensor) => thresholdBar(sensor, names) },
            { name: 'Thresholds', broad: true, cell: (sensor) => known(sensor, names).map((name) => `${words(name)} ${numberText(sensor[name])}`).join(', ') },
            { name: 'Readings in events', cell: (sensor) => readingText(sensor, report.logs) },
            { name: 'Units', cell: (sensor) => sensor.units },
            { name: 'Type', cell: (sensor) => [sensor.sensor_type_name, sensor.entity_name].filter((part) => part).join(', ') }, ...root,
        ], drawn, 100));
    }
    if (others.length > 0) {
        section.append(dataTable('Other sensor data records', [first,
            { name: 'Record', cell: (sensor) => sensor.record_type_name },
            { name: 'Type', cell: (sensor) => sensor.sensor_type_name },
            { name: 'Number', cell: (sensor) => (sensor.number === null ? '' : String(sensor.number)), number: true },
            { name: 'Entity', cell: (sensor) => sensor.entity_name },
            { name: 'Events', cell: (sensor) => sensor.event_type_name }, ...root,
        ], others));
    }
    section.hidden = section.childElementCount < 2;
}

function readingText(sensor, logs) {
    return sensor.readings.filter((one) => one.values.length > 0).map(({ log, values }) => {
        const number = values.reduce((sum, [, times]) => sum + times, 0);
        const [low, high] = [values[0][0], values.at(-1)[0]];
        return `${logs.length > 1 ? `${logs[log]?.name}: ` : ''}${counted(number, 'reading')}, ${low === high ? numberText(low) : `${numberText(low)} to ${numberText(high)}`}`;
    }).join('; ');
}

function thresholdBar(sensor, names) {
    const readings = sensor.readings.flatMap((one) => one.values);
    const all = [...known(sensor, [...names, ...OTHERS]).map((name) => sensor[name]), ...readings.map(([value]) => value)];
    const [low, high] = [Math.min(...all), Math.max(...all)];
    const margin = (high - low || Math.abs(high) || 1) * 0.08;
    const x = d3.scaleLinear().domain([low - margin, high + margin]).range([0, WIDTH]);
    const nodes = [svg('rect', { x: 0, y: 6, width: WIDTH, height: 12, class: 'bar-frame' })];
    const zone = (from, to, severity) => nodes.push(svg('rect', { x: from, y: 6, width: Math.max(0, to - from), height: 12, fill: `url(#hatch-${severity})` }));
    let left = 0;
    for (const [name, severity] of LOWER.filter(([name]) => known(sensor, [name]).length > 0)) {
        zone(left, x(sensor[name]), severity);
        left = x(sensor[name]);
    }
    let right = WIDTH;
    for (const [name, severity] of UPPER.filter(([name]) => known(sensor, [name]).length > 0).reverse()) {
        zone(x(sensor[name]), right, severity);
        right = x(sensor[name]);
    }
    for (const name of known(sensor, names)) {
        nodes.push(svg('path', { d: `M${x(sensor[name])} 4v16`, class: 'threshold' }));
    }
    if (known(sensor, OTHERS.slice(1)).length === 2) {
        const [from, to] = [x(sensor.normal_minimum), x(sensor.normal_maximum)];
        nodes.push(svg('rect', { x: from, y: 9, width: Math.max(1, to - from), height: 6, class: 'bar-normal' }));
    }
    if (known(sensor, ['nominal']).length > 0) {
        nodes.push(svg('path', { d: `M${x(sensor.nominal)} 1v22`, class: 'threshold threshold-nominal' }));
    }
    const most = Math.max(1, ...readings.map(([, times]) => times));
    for (const [value, times] of readings) {
        const half = 2.5 + 2.5 * times / most;
        nodes.push(svg('path', { d: `M${x(value)} 18l${half} ${half * 2}h${-2 * half}Z`, class: 'reading' }));
    }
    const label = `${sensor.name ?? 'sensor'}: ${known(sensor, [...names, ...OTHERS]).map((name) => `${words(name)} ${numberText(sensor[name])}`).join(', ')}`
        + (readings.length > 0 ? `; ${count(readings.length)} different readings in events, ${numberText(Math.min(...readings.map(([v]) => v)))} to ${numberText(Math.max(...readings.map(([v]) => v)))}` : '');
    return svg('svg', { viewBox: `0 0 ${WIDTH} ${HEIGHT}`, class: 'thresholds', role: 'img', 'aria-label': label }, ...nodes);
}
