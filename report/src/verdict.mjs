// SPDX-License-Identifier: Apache-2.0

import { byId, count, counted, element, folded, isoText } from './dom.mjs';
import { severityMark } from './severity.mjs';

const LISTED = 12;

/// A link to an event of the table; only the text for an event that was not chosen.
export function eventLink(row, text, label) {
    return row === null ? text : element('a', { href: `#event-${row}`, 'aria-label': label ?? text }, text);
}

/// What a state that is still asserted is of.
export const stateName = (state) => state.sensor_name ?? state.sensor_type_name ?? 'other records';

function reasonItem(report, reason) {
    if (reason.kind !== 'asserted') {
        return element('li', {}, severityMark('warning'), element('strong', {}, `${reason.kind}: ${reason.where}`), ` ${reason.text}`);
    }
    const state = report.asserted[reason.state];
    const log = report.logs[state.log]?.name ?? '';
    const name = stateName(state);
    return element('li', {}, severityMark(reason.severity), element('strong', {}, `${name} (${log})`),
        ` ${state.event}, ${reason.severity}, ${state.since ? `since ${isoText(state.since)}` : 'without a date'} `, eventLink(state.row, state.row === null ? '(its event was not chosen)' : 'show the event', `Show the event of ${name}, ${log}`));
}

/// The verdict and its reasons. It is good only if the document gives no reason and leaves out nothing.
export function showVerdict(report) {
    const { level, text, reasons } = report.verdict;
    const wrong = level === 'good' && (reasons.length > 0 || report.left_out > 0);
    setVerdict(wrong ? 'warning' : level, text);
    const items = reasons.map((reason) => reasonItem(report, reason));
    byId('reasons').append(...items.slice(0, LISTED));
    if (items.length > LISTED) {
        byId('reasons').append(element('li', {}, folded(`${counted(items.length - LISTED, 'more reason')}`, element('ul', {}, ...items.slice(LISTED)))));
    }
    const { events, undated, other_records: others, first, last } = report.summary;
    byId('summary').textContent = `${counted(events, 'event')}${first ? ` from ${isoText(first)} to ${isoText(last)}` : ''}, `
        + `${count(undated)} without a date, ${counted(others, 'other record')}.`;
    const left = report.left_out > 0 ? `${counted(report.left_out, 'event')} left out` : '';
    byId('chosen').textContent = [report.chosen ? `Not all events, only: ${report.chosen}` : '', left].filter((part) => part).join('; ');
}

function setVerdict(level, text) {
    byId('verdict').dataset.level = level;
    const word = level === 'good' ? '' : `${level[0].toUpperCase()}${level.slice(1)}: `;
    byId('verdict-word').replaceChildren(severityMark(level), `${word}${text}`);
}

/// A part of the page that could not be drawn is a reason, too.
export function addReason(where, text) {
    if (byId('verdict').dataset.level === 'good') {
        byId('verdict').dataset.level = 'warning';
        byId('verdict-word').firstChild.replaceWith(severityMark('warning'));
    }
    byId('reasons').append(element('li', {}, severityMark('warning'), element('strong', {}, `not shown: ${where}`), ` ${text}`));
}

/// A card for each log, if there are several; its link shows the events of this log only.
export function showOverview(report) {
    if (report.logs.length < 2) {
        return;
    }
    byId('overview').hidden = false;
    byId('overview-cards').append(...report.logs.map((log, index) => {
        const worst = log.severities.find((one) => one.still_asserted > 0)?.severity;
        const damages = log.findings.filter((finding) => finding.damage).length;
        const state = damages > 0 ? counted(damages, 'damage') : log.sound ? 'sound' : 'not sound';
        return element('li', { className: 'card' },
            element('h3', {}, severityMark(worst ?? (log.sound ? 'good' : 'warning')), element('a', { href: `#log-${index}` }, log.name)),
            element('p', {}, `${counted(log.events, 'event')}, ${count(log.still_asserted)} still asserted; log ${state}`
                + `${log.root ? `; from ${log.root}` : ''}`),
            element('ul', { className: 'marks' }, ...log.severities.filter((one) => one.events > 0).map((one) =>
                element('li', {}, severityMark(one.severity), `${count(one.events)} ${one.severity}`,
                    one.still_asserted > 0 ? ` (${count(one.still_asserted)} still asserted)` : ''))));
    }));
}
