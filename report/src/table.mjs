// SPDX-License-Identifier: Apache-2.0

import { NO_TIME, PRE_INIT, STILL_ASSERTED, bytesOf, fieldsOf, hexDump, recordOf } from './document.mjs';
import { beforeNextPicture, byId, element, naturally, timeText, valueList } from './dom.mjs';
import { sensorName, sortRows } from './filter.mjs';
import { severityMark } from './severity.mjs';

const BEYOND = 6;
const PRINTED = 200;

/// The table of events. The page contains only the rows that are seen, and the space of the others.
export class EventTable {
    constructor(events, logs) {
        this.events = events;
        this.logs = logs;
        this.found = this.rows = new Uint32Array(0);
        this.by = 'time';
        this.down = true;
        this.open = new Map();
        this.shown = new Map();
        this.current = 0;
        this.parts = {
            scroller: byId('events-scroller'), table: byId('events-table'),
            above: byId('rows-above'), body: byId('rows'), below: byId('rows-below'),
        };
        this.rowHeight = 32;
        this.printing = false;
        this.redraw = beforeNextPicture(() => this.draw());
        this.listen();
    }

    /// Shows events; `rows` are ascending.
    show(rows) {
        this.found = rows;
        this.rows = this.sorted();
        this.open.clear();
        this.forget();
        this.current = 0;
        this.parts.scroller.scrollTop = 0;
        this.parts.table.setAttribute('aria-rowcount', rows.length + 1);
        this.draw();
    }

    sorted() {
        if (this.by === 'time') {
            return this.down ? this.found.slice().reverse() : this.found;
        }
        return sortRows(this.found, this.ranks(), this.down);
    }

    /// Where each event is in the order of a column. The document's tables of severities, texts and
    /// directions are in order already.
    ranks() {
        const { events } = this;
        if (this.by !== 'log' && this.by !== 'sensor') {
            return events[this.by];
        }
        const key = (sensor) => (this.by === 'log' ? sensor.log : sensorName(sensor));
        const keys = [...new Set(events.sensors.map(key))].sort((a, b) => (this.by === 'log' ? a - b : naturally(a, b)));
        const rank = new Map(keys.map((one, index) => [one, index]));
        const ranks = events.sensors.map((sensor) => rank.get(key(sensor)));
        return events.sensor.map((sensor) => ranks[sensor]);
    }

    sortBy(column) {
        this.down = column === this.by ? !this.down : column === 'time';
        this.by = column;
        for (const button of this.parts.table.tHead.querySelectorAll('button')) {
            const head = button.closest('th');
            head.removeAttribute('aria-sort');
            if (button.dataset.by === column) {
                head.setAttribute('aria-sort', this.down ? 'descending' : 'ascending');
            }
        }
        this.show(this.found);
    }

    /// How many columns are seen: a narrow window has fewer.
    columns() {
        return [...this.parts.table.tHead.rows[0].cells].filter((cell) => cell.offsetWidth > 0).length;
    }

    forget() {
        this.shown.forEach((trs) => trs.forEach((tr) => tr.remove()));
        this.shown.clear();
    }

    rowAt(position) {
        return this.rows[position];
    }

    /// Opened rows are few: one walk over them finds how far they push the others down.
    topOf(position) {
        let top = position * this.rowHeight;
        for (const [at, height] of this.open) {
            top += at < position ? height : 0;
        }
        return top;
    }

    positionAt(top) {
        let low = 0;
        let high = this.rows.length;
        while (low < high) {
            const middle = (low + high) >>> 1;
            if (this.topOf(middle + 1) <= top) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        return low;
    }

    /// The positions whose rows the page contains: on paper, where nothing scrolls, the first ones.
    range() {
        const { scroller } = this.parts;
        if (this.printing) {
            return [0, Math.min(PRINTED, this.rows.length)];
        }
        return [Math.max(0, this.positionAt(scroller.scrollTop) - BEYOND),
            Math.min(this.rows.length, this.positionAt(scroller.scrollTop + scroller.clientHeight) + BEYOND)];
    }

    draw() {
        const { scroller, above, below, body } = this.parts;
        const [from, to] = this.range();
        const focused = [...this.shown].find(([, [tr]]) => tr.contains(document.activeElement))?.[0];
        for (const [position, trs] of this.shown) {
            if (position < from || position >= to) {
                trs.forEach((tr) => tr.remove());
                this.shown.delete(position);
            }
        }
        let next = body.firstChild;
        for (let position = from; position < to; position++) {
            if (!this.shown.has(position)) {
                const trs = this.makeRow(position);
                this.shown.set(position, trs);
                trs.forEach((tr) => body.insertBefore(tr, next));
            } else {
                next = this.shown.get(position).at(-1).nextSibling;
            }
        }
        above.firstChild.firstChild.style.height = `${this.topOf(from)}px`;
        below.firstChild.firstChild.style.height = `${this.topOf(this.rows.length) - this.topOf(to)}px`;
        if (focused !== undefined && !this.shown.has(focused)) {
            scroller.focus({ preventScroll: true });
        }
        this.makeReachable();
    }

    /// Tab goes to one row; the arrow keys go on from there.
    makeReachable() {
        const reachable = this.shown.has(this.current) ? this.current : Math.min(...this.shown.keys());
        for (const [position, [tr]] of this.shown) {
            tr.querySelector('button').tabIndex = position === reachable ? 0 : -1;
        }
    }

    makeRow(position) {
        const { events } = this;
        const row = this.rowAt(position);
        const sensor = events.sensors[events.sensor[row]];
        const severity = events.severities[events.severity[row]];
        const text = events.texts[events.text[row]];
        const cause = events.causes[events.cause[row]];
        const opened = this.open.has(position);
        const button = element('button', { type: 'button', className: 'opener', 'aria-expanded': String(opened) }, this.timeOf(row));
        button.addEventListener('click', () => this.toggle(position));
        const tr = element('tr', { className: 'event', 'aria-rowindex': position + 2 },
            element('th', { scope: 'row' }, button),
            element('td', { className: 'severity' }, severityMark(severity), severity),
            element('td', {}, element('span', { className: 'clip' }, this.logs[sensor.log]?.name ?? '')),
            element('td', { className: 'sensor' }, element('span', { className: 'clip' }, sensorName(sensor))),
            element('td', { className: 'text' }, element('span', { className: 'clip' }, cause && !text.includes(cause) ? `${text} (${cause})` : text)),
            element('td', { className: 'direction' }, events.directions[events.direction[row]]));
        return opened ? [tr, this.makeDetails(row)] : [tr];
    }

    timeOf(row) {
        const { time, flags } = this.events;
        if (time[row] !== NO_TIME) {
            return timeText(time[row]);
        }
        return flags[row] & PRE_INIT ? 'before the clock was set' : 'without a time';
    }

    makeDetails(row) {
        const { events } = this;
        const sensor = events.sensors[events.sensor[row]];
        const block = events.blocks[events.block[row]];
        const list = valueList([
            ['event', events.texts[events.text[row]]],
            ['number in the log', events.number[row] || null],
            ['stored in', this.logs[sensor.log]?.board === null ? this.logs[sensor.log].name : `sel${events.file[row]}, slot ${events.slot[row]}`],
            ['cause', events.causes[events.cause[row]]],
            ['state', events.states[events.state[row]]],
            ['still asserted', events.flags[row] & STILL_ASSERTED ? 'yes' : null],
            ['sensor name', sensor.name],
            ['entity', [sensor.entity, sensor.entity_name].filter((part) => part).join(' ')],
            ['partitions', block.partitions],
            ['part number', block.part_number],
            ['serial number', block.serial_number],
            ...fieldsOf(events, row).map((field) => [field.name, field.value]),
            ['other bytes', block.omitted ? 'not in this page, which would become too large' : null],
        ]);
        const dump = [this.markedDump(row)];
        if (block.image) {
            dump.push(element('pre', {}, hexDump(bytesOf(block.image), 16)));
        }
        return element('tr', { className: 'details' },
            element('td', { colspan: this.columns() }, list,
                element('div', { className: 'dump', tabIndex: 0, role: 'region', 'aria-label': 'Bytes of the event' }, ...dump),
                element('p', {}, element('a', { href: `#event-${row}` }, `Link to event ${row + 1} of this report`))));
    }

    /// The record's bytes, each with the field that it belongs to.
    markedDump(row) {
        const record = recordOf(this.events, row);
        const fields = fieldsOf(this.events, row);
        const heads = [];
        const cells = [];
        for (let at = 0; at < record.length;) {
            const here = fields.filter((field) => field.offset <= at && at < field.offset + field.width);
            const width = Math.max(1, ...here.map((field) => field.offset + field.width - at));
            heads.push(element('th', { scope: 'col', colSpan: width },
                // Long names may break after each underscore.
                ...(here.map((field) => field.name).join(', ') || 'unused').split(/(?<=_)/).flatMap((part) => [part, element('wbr')])));
            cells.push(...Array.from(record.subarray(at, at + width), (byte, index) =>
                element('td', { className: index === 0 ? 'begins' : '' }, byte.toString(16).padStart(2, '0'))));
            at += width;
        }
        const offsets = cells.map((cell, at) => element('td', { className: cell.className }, String(at)));
        return element('table', { className: 'bytes' }, element('caption', {}, 'Record'), element('thead', {}, element('tr', {}, element('td', {}), ...heads)),
            element('tbody', {}, element('tr', {}, element('th', { scope: 'row' }, 'byte'), ...offsets),
                element('tr', {}, element('th', { scope: 'row' }, 'value'), ...cells)));
    }

    toggle(position) {
        const [tr, details] = this.shown.get(position);
        this.current = position;
        if (this.open.delete(position)) {
            details.remove();
            this.shown.set(position, [tr]);
        } else {
            const made = this.makeDetails(this.rowAt(position));
            tr.after(made);
            this.open.set(position, made.getBoundingClientRect().height);
            this.shown.set(position, [tr, made]);
        }
        tr.querySelector('button').setAttribute('aria-expanded', String(this.open.has(position)));
        this.draw();
    }

    /// Goes to a row of the document, if it is among those shown, and opens it.
    goTo(row) {
        const position = this.rows.indexOf(row);
        if (position >= 0) {
            this.focusRow(position);
            if (!this.open.has(position)) {
                this.toggle(position);
            }
            // Its details are below it.
            this.parts.scroller.scrollTop = Math.max(0, this.topOf(position) - this.rowHeight);
            this.draw();
            this.parts.scroller.scrollIntoView({ block: 'nearest' });
        }
    }

    focusRow(position) {
        const { scroller } = this.parts;
        this.current = Math.max(0, Math.min(position, this.rows.length - 1));
        const top = this.topOf(this.current);
        const head = this.parts.table.tHead.offsetHeight;
        if (top < scroller.scrollTop) {
            scroller.scrollTop = top;
        } else if (top + this.rowHeight + head > scroller.scrollTop + scroller.clientHeight) {
            scroller.scrollTop = top + this.rowHeight + head - scroller.clientHeight;
        }
        this.draw();
        this.shown.get(this.current)?.[0].querySelector('button').focus({ preventScroll: true });
    }

    listen() {
        const { scroller, body, above, below } = this.parts;
        scroller.addEventListener('scroll', this.redraw);
        new ResizeObserver(() => {
            this.rowHeight = parseFloat(getComputedStyle(this.parts.table).getPropertyValue('--row'));
            const columns = this.columns();
            above.firstChild.firstChild.colSpan = below.firstChild.firstChild.colSpan = columns;
            for (const [position, [, details]] of this.shown) {
                if (details) {
                    details.firstChild.colSpan = columns;
                    this.open.set(position, details.getBoundingClientRect().height);
                }
            }
            this.redraw();
        }).observe(scroller);
        this.parts.table.tHead.addEventListener('click', (event) => {
            const button = event.target.closest('button');
            if (button) {
                this.sortBy(button.dataset.by);
            }
        });
        body.addEventListener('keydown', (event) => {
            if (!event.target.classList.contains('opener') || event.ctrlKey || event.altKey || event.metaKey) {
                return;
            }
            const page = Math.max(1, Math.floor(scroller.clientHeight / this.rowHeight) - 2);
            const position = Number(event.target.closest('tr').getAttribute('aria-rowindex')) - 2;
            const steps = { ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -Infinity, End: Infinity };
            if (Object.hasOwn(steps, event.key)) {
                event.preventDefault();
                this.focusRow(position + steps[event.key]);
            }
        });
        window.addEventListener('beforeprint', () => {
            this.printing = true;
            byId('printed').textContent = PRINTED < this.rows.length ? `Only the first ${PRINTED} of them are printed.` : '';
            this.draw();
        });
        window.addEventListener('afterprint', () => {
            this.printing = false;
            this.redraw();
        });
    }
}
