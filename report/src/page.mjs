// SPDX-License-Identifier: Apache-2.0

import { readDocument } from './document.mjs';
import { byId, count, counted, element, isoText, naturally, timeText } from './dom.mjs';
import { showFailures } from './failures.mjs';
import { Filter, placeEvents, sensorName } from './filter.mjs';
import { showInputs } from './inputs.mjs';
import { showInventory } from './inventory.mjs';
import { showSensors } from './sensors.mjs';
import { addHatchings, severityMark } from './severity.mjs';
import { showStores } from './stores.mjs';
import { EventTable } from './table.mjs';
import { Timeline } from './timeline.mjs';
import { addReason, showOverview, showVerdict } from './verdict.mjs';

/// The controls of the filters, and what they say.
class Controls {
    constructor(report) {
        this.report = report;
        this.form = byId('filters');
        const { events, logs, units } = report;
        byId('log').append(...logs.map((log, index) => element('option', { value: String(index) }, log.name)));
        byId('log-field').hidden = logs.length < 2;
        this.fillSeverities(events);
        this.fillSensors(events, logs, units);
        byId('direction').append(...events.directions.map((name, index) => element('option', { value: String(index) }, name || 'neither')));
    }

    fillSeverities(events) {
        const numbers = new Uint32Array(events.severities.length);
        events.severity.forEach((one) => numbers[one]++);
        events.severities.forEach((name, index) => {
            if (numbers[index] > 0) {
                const input = element('input', { type: 'checkbox', defaultChecked: true, name: 'severity', value: String(index) });
                input.dataset.name = name;
                byId('severities').append(element('label', {}, input, severityMark(name), `${name} (${count(numbers[index])})`));
            }
        });
    }

    /// Sensors by log, and below them the field-replaceable units, which stand for their sensors.
    fillSensors(events, logs, units) {
        const totals = new Uint32Array(events.sensors.length);
        events.sensor.forEach((one) => totals[one]++);
        const group = (label, options) => element('optgroup', { label }, ...options.sort((a, b) => naturally(a.text, b.text)));
        logs.forEach((log, at) => {
            const options = events.sensors.flatMap((sensor, index) => (sensor.log !== at ? []
                : [element('option', { value: `sensor-${index}` }, `${sensorName(sensor)} (${count(totals[index])})`)]));
            if (options.length > 0) {
                byId('sensor').append(group(log.name, options));
            }
        });
        this.sensorsOfUnit = new Map(this.report.unit_failures.map((one) => [`unit-${one.unit}`, one.sensors]));
        if (this.sensorsOfUnit.size > 0) {
            byId('sensor').append(group('field-replaceable units', [...this.sensorsOfUnit.keys()].map((value) =>
                element('option', { value }, units[Number(value.slice(5))]?.name ?? 'unknown unit'))));
        }
    }

    wanted() {
        const sensor = byId('sensor').value;
        return {
            text: byId('text').value,
            severities: new Set([...this.form.querySelectorAll('[name=severity]:checked')].map((box) => Number(box.value))),
            sensors: sensor === '-1' ? null : new Set(this.sensorsOfUnit.get(sensor) ?? [Number(sensor.slice(7))]),
            log: Number(byId('log').value),
            direction: Number(byId('direction').value),
            stillAsserted: byId('still').checked,
        };
    }

    reset() {
        this.form.reset();
        byId('text').value = '';
    }

    /// The filters that are set, in words for the paper.
    describe() {
        const chosen = (id, name) => (byId(id).value === '-1' ? '' : `${name} ${byId(id).selectedOptions[0].text}`);
        const hidden = [...this.form.querySelectorAll('[name=severity]:not(:checked)')].map((box) => box.dataset.name);
        return [
            byId('text').value.trim() === '' ? '' : `text "${byId('text').value.trim()}"`,
            chosen('log', 'log'), chosen('sensor', 'sensor'), chosen('direction', 'direction'),
            hidden.length === 0 ? '' : `without severity ${hidden.join(', ')}`,
            byId('still').checked ? 'only what is still asserted' : '',
        ].filter((part) => part).join('; ');
    }
}

/// The pictures are drawn for paper before the browser lays out the page for it.
function preparePrinting() {
    const root = document.documentElement;
    window.addEventListener('beforeprint', () => root.toggleAttribute('data-print', true));
    window.addEventListener('afterprint', () => root.toggleAttribute('data-print', false));
}

/// Links to the sections that the page has.
function showContents() {
    const sections = [...document.querySelectorAll('main > section')].filter((section) => !section.hidden && section.id !== 'filter');
    byId('contents').append(element('ul', {}, ...sections.map((section) =>
        element('li', {}, element('a', { href: `#${section.id}` }, section.querySelector('h2').textContent)))));
}

function start() {
    performance.mark('start');
    const text = byId('document').textContent;
    byId('document').remove();
    const report = readDocument(text);
    const { events, logs } = report;
    placeEvents(events);
    document.title = report.title;
    byId('title').textContent = report.title;
    byId('made').textContent = `Made ${isoText(report.made.time)} UTC by ${report.made.program}. Times are in UTC.`;

    preparePrinting();
    addHatchings();
    showVerdict(report);
    showOverview(report);
    const controls = new Controls(report);
    const filter = new Filter(events, logs);
    const table = new EventTable(events, logs);

    const apply = () => {
        performance.mark('filter-begin');
        const wanted = controls.wanted();
        const rows = filter.rows(wanted);
        timeline.showLog(wanted.log);
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
        const active = [controls.describe(), timeline.zoomed ? `period ${timeText(from)} to ${timeText(to)} UTC` : ''].filter((part) => part);
        byId('active-filters').textContent = active.length === 0 ? '' : `Filters: ${active.join('; ')}.`;
    };

    const timeline = new Timeline(events, logs, {
        plot: byId('plot'), canvas: byId('canvas'), axes: byId('axes'), band: byId('band'),
        summary: byId('period'), readout: byId('readout'), traces: byId('traces'),
    }, (lane) => {
        if (lane === undefined) {
            follow(timeline.rows);
        } else if (lane.sensors.length === 1) {
            byId('sensor').value = `sensor-${lane.sensors[0]}`;
            apply();
        }
    });

    const reset = () => {
        controls.reset();
        timeline.showAll();
        apply();
    };

    /// Shows only the events of a sensor or unit, or of a log.
    const choose = (id, value) => {
        reset();
        byId(id).value = value;
        apply();
        byId('timeline-heading').scrollIntoView();
        byId('timeline-heading').focus({ preventScroll: true });
    };

    const openLink = () => {
        const [, kind, number] = location.hash.match(/^#(event|log)-(\d+)$/) ?? [];
        if (kind === 'event' && Number(number) < events.count) {
            reset();
            table.goTo(Number(number));
        } else if (kind === 'log' && Number(number) < logs.length) {
            choose('log', number);
        }
    };

    controls.form.addEventListener('input', apply);
    controls.form.addEventListener('submit', (event) => event.preventDefault());
    byId('reset-all').addEventListener('click', reset);
    byId('zoom-in').addEventListener('click', () => timeline.zoom(0.5));
    byId('zoom-out').addEventListener('click', () => timeline.zoom(2));
    byId('earlier').addEventListener('click', () => timeline.move(-0.5));
    byId('later').addEventListener('click', () => timeline.move(0.5));
    byId('whole').addEventListener('click', () => timeline.showAll());
    byId('lanes').addEventListener('change', (event) => timeline.setByLog(event.target.value === 'logs'));
    byId('legend').append(...events.severities.map((name) => element('li', {}, severityMark(name), name)));
    apply();
    timeline.draw();
    performance.mark('first-picture');

    // A part that cannot be drawn does not take the others with it.
    for (const [name, show] of [
        ['What failed', () => showFailures(report, (value) => choose('sensor', value))], ['Inventory', () => showInventory(report)],
        ['Sensors', () => showSensors(report)], ['Stores', () => showStores(report)], ['Inputs', () => showInputs(report)],
    ]) {
        try {
            show();
        } catch (failure) {
            addReason(name, `its part of the document is damaged: ${failure.message}`);
        }
    }
    showContents();
    window.addEventListener('hashchange', openLink);
    // A link that was followed before changes nothing in the address.
    document.addEventListener('click', (event) => {
        if (event.target.closest?.('a')?.getAttribute('href') === location.hash) {
            openLink();
        }
    });
    openLink();
    performance.mark('complete');
}

try {
    start();
} catch (failure) {
    byId('verdict').dataset.level = 'warning';
    byId('verdict-word').textContent = `This report cannot be shown: ${failure.message}`;
    throw failure;
}
