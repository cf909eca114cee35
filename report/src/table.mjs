// SPDX-License-Identifier: Apache-2.0

import { PRE_INIT, NO_TIME, bytesOf, fieldsOf, hexDump, recordOf } from './document.mjs';
import { beforeNextPicture, byId, element, timeText } from './dom.mjs';
import { severityMark } from './severity.mjs';

const BEYOND = 6;
const PRINTED = 200;

/// The table of events. The page contains only the rows that are seen, and the space of the others.
export class EventTable {
    constructor(events) {
        this.events = events;
        this.rows = new Uint32Array(0);
        this.newestFirst = true;
        this.open = new Map();
        this.shown = new Map();
        this.current = 0;
        this.parts = {
            scroller: byId('events-scroller'), table: byId('events-table'), sort: byId('sort'),
            above: byId('rows-above'), body: byId('rows'), below: byId('rows-below'),
        };
        this.rowHeight = 32;
        this.printing = false;
        this.redraw = beforeNextPicture(() => this.draw());
        this.listen();
    }

    show(rows) {
        this.rows = rows;
        this.open.clear();
        this.forget();
        this.current = 0;
        this.parts.scroller.scrollTop = 0;
        this.parts.table.setAttribute('aria-rowcount', rows.length + 1);
        this.draw();
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
        return this.rows[this.newestFirst ? this.rows.length - 1 - position : position];
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
            element('td', {}, sensor.board === null ? (sensor.source ?? '') : String(sensor.board)),
            element('td', { className: 'sensor' }, element('span', { className: 'clip' }, sensor.name ?? sensor.type_name ?? '')),
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
        const list = element('dl', {});
        const add = (name, value) => {
            if (value !== null && value !== undefined && value !== '') {
                list.append(element('div', {}, element('dt', {}, name), element('dd', {}, value)));
            }
        };
        add('log number', events.log[row] ? String(events.log[row]) : null);
        add('stored in', sensor.board === null ? sensor.source : `sel${events.file[row]}, slot ${events.slot[row]}`);
        add('cause', events.causes[events.cause[row]]);
        add('state', events.states[events.state[row]]);
        add('sensor name', sensor.name);
        add('entity', [sensor.entity, sensor.entity_name].filter((part) => part).join(' '));
        add('partitions', block.partitions?.join(', '));
        add('part number', block.part_number);
        add('serial number', block.serial_number);
        fieldsOf(events, row).forEach((field) => add(field.name, field.value));
        add('other bytes', block.omitted ? 'not in this page, which would become too large' : null);
        const dump = [hexDump(recordOf(events, row))];
        if (block.image) {
            dump.push(hexDump(bytesOf(block.image), 16));
        }
        return element('tr', { className: 'details' },
            element('td', { colspan: this.columns() }, list,
                element('div', { className: 'dump', tabIndex: 0, role: 'region', 'aria-label': 'Bytes of the event' },
                    element('pre', {}, dump.join('\n')))));
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
        const index = this.rows.indexOf(row);
        if (index >= 0) {
            const position = this.newestFirst ? this.rows.length - 1 - index : index;
            this.focusRow(position);
            if (!this.open.has(position)) {
                this.toggle(position);
            }
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
        const { scroller, sort, body, above, below } = this.parts;
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
        sort.addEventListener('click', () => {
            this.newestFirst = !this.newestFirst;
            sort.closest('th').setAttribute('aria-sort', this.newestFirst ? 'descending' : 'ascending');
            this.show(this.rows);
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
            byId('printed').textContent = PRINTED < this.rows.length ? `Only the first ${PRINTED} are printed.` : '';
            this.draw();
        });
        window.addEventListener('afterprint', () => {
            this.printing = false;
            this.redraw();
        });
    }
}
