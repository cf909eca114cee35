// SPDX-License-Identifier: Apache-2.0

import { readEvents } from './document.mjs';
import { byId, count, counted, element, timeText } from './dom.mjs';
import { EventTable } from './table.mjs';
import { Filter, placeEvents } from './filter.mjs';
import { severityMark } from './severity.mjs';
import { Timeline } from './timeline.mjs';

const LISTED = 20;

function showVerdict(report, events, goTo) {
    const { level, reasons } = report.verdict;
    byId('verdict').dataset.level = level;
    byId('verdict-word').replaceChildren(severityMark(level === 'good' ? 'informational' : level), report.verdict.text);
    const list = byId('reasons');
    for (const reason of reasons.slice(0, LISTED)) {
        const item = element('li', {});
        if (reason.row === undefined) {
            item.append(reason.text);
        } else {
            const sensor = events.sensors[events.sensor[reason.row]];
            const severity = events.severities[events.severity[reason.row]];
            const log = sensor.board === null ? sensor.source : `board ${sensor.board}`;
            const name = sensor.name ?? sensor.type_name ?? '';
            const show = element('button', { type: 'button' }, `Show the event`);
            show.setAttribute('aria-label', `Show the event of ${name}, ${log}`);
            show.addEventListener('click', () => goTo(reason.row));
            item.append(severityMark(severity), element('strong', {}, `${name} (${log})`),
                ` ${events.texts[events.text[reason.row]]}, since ${timeText(events.place[reason.row])} `, show);
        }
        list.append(item);
    }
    if (reasons.length > LISTED) {
        list.append(element('li', {}, `and ${counted(reasons.length - LISTED, 'more state')}`));
    }
}

function fillControls(events) {
    const box = byId('severities');
    const numbers = new Uint32Array(events.severities.length);
    events.severity.forEach((one) => numbers[one]++);
    events.severities.forEach((name, index) => {
        if (numbers[index] > 0) {
            const input = element('input', { type: 'checkbox', defaultChecked: true, name: 'severity', value: String(index) });
            box.append(element('label', {}, input, severityMark(name), `${name} (${count(numbers[index])})`));
        }
    });
    const totals = new Uint32Array(events.sensors.length);
    events.sensor.forEach((one) => totals[one]++);
    const options = events.sensors
        .map((sensor, index) => ({ index, log: sensor.board === null ? (sensor.source ?? 'saved') : `board ${sensor.board}`,
            text: `${sensor.name ?? sensor.type_name ?? 'other records'} (${count(totals[index])})` }))
        .sort((a, b) => a.log.localeCompare(b.log) || a.text.localeCompare(b.text));
    const groups = new Map();
    for (const { index, log, text } of options) {
        if (!groups.has(log)) {
            groups.set(log, element('optgroup', { label: log }));
        }
        groups.get(log).append(element('option', { value: String(index) }, text));
    }
    byId('sensor').append(...groups.values());
    events.directions.forEach((name, index) =>
        byId('direction').append(element('option', { value: String(index) }, name || 'neither')));
}

/// The pictures are drawn for paper before the browser lays out the page for it.
function preparePrinting() {
    const root = document.documentElement;
    window.addEventListener('beforeprint', () => root.toggleAttribute('data-print', true));
    window.addEventListener('afterprint', () => root.toggleAttribute('data-print', false));
}

function start() {
    performance.mark('start');
    const report = JSON.parse(byId('document').textContent);
    byId('document').remove();
    const events = readEvents(report.events);
    placeEvents(events);
    document.title = report.title;
    byId('title').textContent = report.title;
    byId('made').textContent = `Made ${report.made.time.replace('T', ' ').replace('Z', '')} UTC by ${report.made.program}. Times are in UTC.`;

    preparePrinting();
    fillControls(events);
    const filter = new Filter(events);
    const table = new EventTable(events);
    const form = byId('filters');

    const wanted = () => ({
        text: byId('text').value,
        severities: new Set([...form.querySelectorAll('[name=severity]:checked')].map((box) => Number(box.value))),
        sensor: Number(byId('sensor').value),
        direction: Number(byId('direction').value),
        stillAsserted: byId('still').checked,
    });

    const apply = () => {
        performance.mark('filter-begin');
        const rows = filter.rows(wanted());
        timeline.show(rows);
        follow(rows);
        performance.mark('filter-end');
        performance.measure('filter', 'filter-begin', 'filter-end');
    };

    /// The table shows the period of the timeline, if the user wants that.
    const follow = (rows) => {
        const [from, to] = timeline.period;
        const shown = byId('follow').checked && timeline.zoomed
            ? rows.filter((row) => events.place[row] >= from && events.place[row] < to) : rows;
        table.show(shown);
        byId('found').textContent = `${count(shown.length)} of ${counted(events.count, 'event')}`
            + (shown.length < rows.length ? `; ${count(rows.length - shown.length)} more outside the period` : '');
    };

    const timeline = new Timeline(events, {
        plot: byId('plot'), canvas: byId('canvas'), axes: byId('axes'), band: byId('band'),
        summary: byId('period'), readout: byId('readout'),
    }, (lane) => {
        if (lane === undefined) {
            follow(timeline.rows);
        } else if (lane.sensors.length === 1) {
            byId('sensor').value = String(lane.sensors[0]);
            apply();
        }
    });

    const reset = () => {
        form.reset();
        byId('text').value = '';
        timeline.showAll();
        apply();
    };

    showVerdict(report, events, (row) => {
        reset();
        table.goTo(row);
    });

    form.addEventListener('input', apply);
    form.addEventListener('submit', (event) => event.preventDefault());
    byId('reset-all').addEventListener('click', reset);
    byId('zoom-in').addEventListener('click', () => timeline.zoom(0.5));
    byId('zoom-out').addEventListener('click', () => timeline.zoom(2));
    byId('earlier').addEventListener('click', () => timeline.move(-0.5));
    byId('later').addEventListener('click', () => timeline.move(0.5));
    byId('whole').addEventListener('click', () => timeline.showAll());
    byId('lanes').addEventListener('change', (event) => timeline.setByBoard(event.target.value === 'boards'));
    byId('legend').append(...events.severities.map((name) => element('li', {}, severityMark(name), name)));
    apply();
    timeline.draw();
    performance.mark('first-picture');
}

try {
    start();
} catch (failure) {
    byId('verdict-word').textContent = `This report cannot be shown: ${failure.message}`;
    throw failure;
}
