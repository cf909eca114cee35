// SPDX-License-Identifier: Apache-2.0

import { NO_TIME } from './document.mjs';
import { beforeNextPicture, count, counted, dataTable, folded, timeText } from './dom.mjs';
import { sensorName } from './filter.mjs';
import { MARK_SIZE, colourOf, severityColour, severityPattern, severityTile } from './severity.mjs';

const LANE = 18;
const HISTOGRAM = 96;
const AXIS = 24;
const TOP = 8;
const RIGHT = 12;
const BAR = 8;
const CELL = 5;
const MOST_LANES = 48;
const SHORTEST = 10;

/// The timeline: a histogram of the events by severity, under it a lane for each sensor or log, and
/// a lane for events without a date. A canvas shows the marks and bars, an SVG element the axes.
///
/// `changed(period, lane)` is called after the user zoomed or chose a lane; period is null for all.
export class Timeline {
    constructor(events, logs, parts, changed) {
        this.events = events;
        this.logs = logs;
        this.log = -1;
        this.parts = parts;
        this.changed = changed;
        this.rows = new Uint32Array(0);
        this.byLog = false;
        this.chosen = -1;
        this.whole = [events.first - 60, events.last + 60];
        this.period = [...this.whole];
        this.redraw = beforeNextPicture(() => this.draw());
        this.makeLanes();
        this.listen();
    }

    /// The rows that the filter lets through, of any time.
    show(rows) {
        this.rows = rows;
        this.redraw();
    }

    get length() {
        return this.period[1] - this.period[0];
    }

    get zoomed() {
        return this.period[0] > this.whole[0] || this.period[1] < this.whole[1];
    }

    logName(log) {
        return this.logs[log]?.name ?? `log ${log}`;
    }

    /// A lane for each sensor, or log, that has dated events; the last lane is that of the others.
    makeLanes() {
        const { events } = this;
        const seen = (sensor) => this.log < 0 || sensor.log === this.log;
        const key = (sensor) => (this.byLog ? sensor.log : sensor);
        const lanes = new Map();
        // A name that several logs have is followed by that of the log.
        const logsOf = new Map();
        events.sensors.forEach((sensor) => {
            const name = sensorName(sensor);
            logsOf.set(name, (logsOf.get(name) ?? new Set()).add(sensor.log));
        });
        events.sensors.forEach((sensor, index) => {
            if (seen(sensor)) {
                if (!lanes.has(key(sensor))) {
                    const name = this.byLog ? this.logName(sensor.log)
                        : logsOf.get(sensorName(sensor)).size > 1 ? `${sensorName(sensor)} · ${this.logName(sensor.log)}` : sensorName(sensor);
                    lanes.set(key(sensor), { name, log: sensor.log, sensors: [], events: 0, rank: events.severities.length });
                }
                lanes.get(key(sensor)).sensors.push(index);
            }
        });
        const laneOf = events.sensors.map((sensor) => lanes.get(key(sensor)));
        let undated = 0;
        for (let row = 0; row < events.count; row++) {
            const lane = laneOf[events.sensor[row]];
            if (lane === undefined) {
                continue;
            }
            if (events.time[row] === NO_TIME) {
                undated++;
            } else {
                lane.events++;
                lane.rank = Math.min(lane.rank, events.severity[row]);
            }
        }
        const list = [...lanes.values()].filter((lane) => lane.events > 0);
        if (!this.byLog) {
            list.sort((a, b) => a.rank - b.rank || b.events - a.events);
            if (list.length > MOST_LANES) {
                const rest = list.splice(MOST_LANES - 1);
                list.push({
                    name: counted(rest.length, 'other sensor'),
                    sensors: rest.flatMap((lane) => lane.sensors),
                    log: null,
                    events: rest.reduce((sum, lane) => sum + lane.events, 0),
                });
            }
        }
        this.undated = list.length;
        list.push({ name: 'without a date', sensors: [], log: null, events: undated });
        this.lanes = list;
        this.laneOfSensor = new Uint16Array(events.sensors.length);
        list.forEach((lane, index) => lane.sensors.forEach((sensor) => { this.laneOfSensor[sensor] = index; }));
        this.listTraces();
    }

    /// What the marks of the logs are, for those who do not see them.
    listTraces() {
        const traces = this.events.traces.filter((trace) => this.log < 0 || trace.log === this.log);
        const words = { rotation: 'rotated', gap: 'gap', cleared: 'cleared', clock: 'clock set' };
        this.parts.traces.replaceChildren(...(traces.length === 0 ? [] : [folded(`Rotations, gaps and other marks of the logs (${count(traces.length)})`,
            dataTable('Marks of the logs', [
                { name: 'Log', cell: (trace) => this.logName(trace.log) },
                { name: 'Mark', cell: (trace) => words[trace.kind] ?? trace.kind },
                { name: 'From', cell: (trace) => timeText(trace.from) },
                { name: 'To', cell: (trace) => timeText(trace.to) },
                { name: 'Missing records', cell: (trace) => (trace.missing ? count(trace.missing) : ''), number: true },
            ], traces, 100))]));
    }

    /// Only the lanes of one log, or of all (-1).
    showLog(log) {
        if (log !== this.log) {
            this.log = log;
            this.chosen = -1;
            this.makeLanes();
            this.redraw();
        }
    }

    setByLog(byLog) {
        this.byLog = byLog;
        this.chosen = -1;
        this.makeLanes();
        this.redraw();
    }

    setPeriod(from, to) {
        const [first, last] = this.whole;
        const length = Math.min(Math.max(to - from, SHORTEST), last - first);
        const start = Math.min(Math.max(from, first), last - length);
        this.period = [start, start + length];
        this.redraw();
        this.changed();
    }

    showAll() {
        this.setPeriod(...this.whole);
    }

    /// Makes the period shorter (a factor below 1) or longer around `middle`, a time in seconds.
    zoom(factor, middle = (this.period[0] + this.period[1]) / 2) {
        const [from, to] = this.period;
        this.setPeriod(middle - (middle - from) * factor, middle + (to - middle) * factor);
    }

    move(part) {
        const by = this.length * part;
        this.setPeriod(this.period[0] + by, this.period[1] + by);
    }

    choose(lane) {
        this.chosen = lane;
        this.redraw();
        this.parts.readout.textContent = lane < 0 ? '' : `${this.lanes[lane].name}: ${counted(this.lanes[lane].events, 'event')}`;
    }

    // Drawing.

    measure() {
        const width = this.parts.plot.clientWidth;
        const left = Math.min(220, Math.max(104, Math.round(width * 0.2)));
        return { width, left, right: width - RIGHT, lanesTop: TOP + HISTOGRAM + AXIS, height: TOP + HISTOGRAM + AXIS + this.lanes.length * LANE + 4 };
    }

    draw() {
        performance.mark('timeline-begin');
        const { canvas, axes } = this.parts;
        const size = this.measure();
        this.size = size;
        const density = window.devicePixelRatio || 1;
        canvas.width = Math.round(size.width * density);
        canvas.height = Math.round(size.height * density);
        canvas.style.height = `${size.height}px`;
        const context = canvas.getContext('2d');
        context.scale(density, density);
        this.colours = Object.fromEntries(['text', 'quiet', 'line', 'stripe', 'accent'].map((name) => [name, colourOf(name)]));
        this.time = d3.scaleUtc().domain(this.period.map((t) => t * 1000)).range([size.left, size.right]);
        const found = this.sortIntoCells(size);
        this.drawLanes(context, size);
        this.drawTraces(context, size);
        this.drawMarks(context, size, found.cells, density);
        const most = this.drawHistogram(context, size, found.bars);
        this.drawAxes(axes, size, most);
        this.seen = found;
        this.describe(found);
        performance.mark('timeline-end');
        performance.measure('timeline', 'timeline-begin', 'timeline-end');
    }

    /// One walk over the rows: how many events of each severity each bar has, and the most severe
    /// event of each cell of each lane. No more is drawn, however many events there are.
    sortIntoCells({ left, right }) {
        const { events, laneOfSensor } = this;
        const { place, time, severity, sensor } = events;
        const [from] = this.period;
        const width = right - left;
        const columns = Math.max(1, Math.floor(width / CELL));
        const barCount = Math.max(1, Math.floor(width / BAR));
        const kinds = events.severities.length;
        const cells = new Uint8Array(columns * this.lanes.length).fill(255);
        const numbers = new Uint32Array(columns * this.lanes.length);
        const bars = new Uint32Array(barCount * kinds);
        const totals = new Uint32Array(kinds);
        const { length } = this;
        for (const row of this.rows) {
            const part = (place[row] - from) / length;
            if (part < 0 || part >= 1) {
                continue;
            }
            const dated = time[row] !== NO_TIME;
            const cell = (dated ? laneOfSensor[sensor[row]] : this.undated) * columns + Math.floor(part * columns);
            numbers[cell]++;
            cells[cell] = Math.min(cells[cell], severity[row]);
            totals[severity[row]]++;
            if (dated) {
                bars[Math.floor(part * barCount) * kinds + severity[row]]++;
            }
        }
        return { cells, numbers, bars, totals, columns, barCount };
    }

    drawLanes(context, size) {
        context.font = `12px ${getComputedStyle(document.body).fontFamily}`;
        context.textBaseline = 'middle';
        this.lanes.forEach((lane, index) => {
            const y = size.lanesTop + index * LANE;
            if (index % 2 === 0) {
                context.fillStyle = this.colours.stripe;
                context.fillRect(0, y, size.width, LANE);
            }
            if (index === this.chosen) {
                context.strokeStyle = this.colours.accent;
                context.lineWidth = 2;
                context.strokeRect(1, y + 1, size.width - 2, LANE - 2);
            }
            context.fillStyle = index === this.undated ? this.colours.quiet : this.colours.text;
            context.fillText(this.shortened(context, lane.name, size.left - 14), 6, y + LANE / 2);
        });
    }

    shortened(context, text, width) {
        if (context.measureText(text).width <= width) {
            return text;
        }
        let letters = [...text.slice(0, 200)];
        while (letters.length > 1 && context.measureText(letters.join('') + '…').width > width) {
            letters.pop();
        }
        return letters.join('') + '…';
    }

    /// What happened to a log besides its events, in its lanes: rotations as dashed lines, gaps as
    /// hatched areas, where it was cleared as double lines, where its clock was set with a triangle.
    drawTraces(context, size) {
        const x = (seconds) => this.time(seconds * 1000);
        for (const trace of this.events.traces) {
            const to = Math.min(x(trace.to), size.right);
            const from = trace.kind === 'gap' ? Math.max(x(trace.from), size.left) : x(trace.to);
            if (from > size.right || to < size.left) {
                continue;
            }
            this.lanes.forEach((lane, index) => {
                if (lane.log === trace.log || (lane.log === null && (this.log < 0 || this.log === trace.log))) {
                    this.drawTrace(context, trace.kind, from, to, size.lanesTop + index * LANE);
                }
            });
        }
    }

    drawTrace(context, kind, from, to, y) {
        context.strokeStyle = context.fillStyle = this.colours.quiet;
        context.lineWidth = 1;
        context.beginPath();
        if (kind === 'gap') {
            context.rect(from, y + 3, Math.max(to - from, 3), LANE - 6);
            for (let at = from; at < to; at += 6) {
                context.moveTo(at, y + LANE - 3);
                context.lineTo(Math.min(at + 6, to), y + 3);
            }
        } else {
            context.setLineDash(kind === 'rotation' ? [3, 3] : []);
            for (const at of kind === 'cleared' ? [to - 1.5, to + 1.5] : [to]) {
                context.moveTo(at, y);
                context.lineTo(at, y + LANE);
            }
        }
        context.stroke();
        context.setLineDash([]);
        if (kind === 'clock') {
            context.beginPath();
            context.moveTo(to, y + 1);
            context.lineTo(to + 6, y + 5);
            context.lineTo(to, y + 9);
            context.fill();
        }
    }

    /// The most severe marks come last, and so are not covered by their neighbours.
    drawMarks(context, size, cells, density) {
        const { severities } = this.events;
        const columns = cells.length / this.lanes.length;
        const wide = (size.right - size.left) / columns;
        for (let kind = severities.length - 1; kind >= 0; kind--) {
            const tile = severityTile(severities[kind], density);
            for (let cell = cells.indexOf(kind); cell >= 0; cell = cells.indexOf(kind, cell + 1)) {
                const x = size.left + (cell % columns + 0.5) * wide;
                const y = size.lanesTop + (Math.floor(cell / columns) + 0.5) * LANE;
                context.drawImage(tile, x - MARK_SIZE / 2, y - MARK_SIZE / 2, MARK_SIZE, MARK_SIZE);
            }
        }
    }

    drawHistogram(context, size, bars) {
        const { severities } = this.events;
        const kinds = severities.length;
        const barCount = bars.length / kinds;
        const base = TOP + HISTOGRAM;
        let most = 1;
        for (let bar = 0; bar < barCount; bar++) {
            let sum = 0;
            for (let kind = 0; kind < kinds; kind++) {
                sum += bars[bar * kinds + kind];
            }
            most = Math.max(most, sum);
        }
        const fills = severities.map((name) => severityPattern(context, name));
        const strokes = severities.map(severityColour);
        const wide = (size.right - size.left) / barCount;
        context.lineWidth = 1;
        for (let bar = 0; bar < barCount; bar++) {
            let y = base;
            for (let kind = 0; kind < kinds; kind++) {
                const here = bars[bar * kinds + kind];
                if (here > 0) {
                    // Even one event of a severity is seen beside thousands of others.
                    const high = Math.max(2, here / most * (HISTOGRAM - 8));
                    y -= high;
                    context.fillStyle = fills[kind];
                    context.fillRect(size.left + bar * wide, y, wide - 1, high);
                    context.strokeStyle = strokes[kind];
                    context.strokeRect(size.left + bar * wide + 0.5, y + 0.5, wide - 2, Math.max(high - 1, 1));
                }
            }
        }
        return most;
    }

    drawAxes(axes, size, most) {
        axes.setAttribute('viewBox', `0 0 ${size.width} ${size.height}`);
        axes.setAttribute('width', size.width);
        axes.setAttribute('height', size.height);
        const root = d3.select(axes);
        const group = (name, x, y) => {
            const found = root.selectAll(`g.${name}`).data([0]);
            return found.enter().append('g').attr('class', name).merge(found).attr('transform', `translate(${x},${y})`);
        };
        group('time', 0, TOP + HISTOGRAM).call(d3.axisBottom(this.time).ticks(Math.max(2, Math.floor((size.right - size.left) / 110)))
            .tickFormat((date) => this.tickText(date)));
        const numbers = d3.scaleLinear().domain([0, most]).range([0, 8 - HISTOGRAM]);
        group('numbers', size.left, TOP + HISTOGRAM).call(d3.axisLeft(numbers).ticks(3).tickFormat((n) => (Number.isInteger(n) ? count(n) : '')));
    }

    /// A date or a time of day, as exact as the period is short.
    tickText(date) {
        const days = this.length / 86400;
        const midnight = date.getTime() % 86400000 === 0;
        const form = days > 120 ? '%b %Y' : midnight ? '%d %b' : days > 0.01 ? '%H:%M' : '%H:%M:%S';
        return d3.utcFormat(form)(date);
    }

    describe(found) {
        const [from, to] = this.period;
        const { severities } = this.events;
        const numbers = severities.map((name, kind) => [name, found.totals[kind]]).filter(([, n]) => n > 0);
        const sum = numbers.reduce((total, [, n]) => total + n, 0);
        this.parts.summary.textContent = `${timeText(from)} to ${timeText(to)} UTC: ${counted(sum, 'event')}`
            + (sum === 0 ? '' : ` (${numbers.map(([name, n]) => `${count(n)} ${name}`).join(', ')})`);
    }

    // What the user does.

    listen() {
        const { plot, band } = this.parts;
        const secondsAt = (x) => this.time.invert(Math.min(Math.max(x, this.size.left), this.size.right)).getTime() / 1000;
        const place = (event) => {
            const box = plot.getBoundingClientRect();
            return { x: event.clientX - box.left, y: event.clientY - box.top };
        };
        let begin = null;
        const drop = () => {
            begin = null;
            band.hidden = true;
        };
        plot.addEventListener('pointerdown', (event) => {
            const at = place(event);
            if (event.button === 0 && at.x >= this.size.left) {
                begin = at.x;
                plot.setPointerCapture(event.pointerId);
            }
        });
        plot.addEventListener('pointermove', (event) => {
            const at = place(event);
            if (begin === null) {
                this.readCell(at);
                return;
            }
            const [low, high] = [begin, at.x].sort((a, b) => a - b);
            band.hidden = false;
            band.style.left = `${Math.max(low, this.size.left)}px`;
            band.style.width = `${Math.min(high, this.size.right) - Math.max(low, this.size.left)}px`;
        });
        plot.addEventListener('pointerup', (event) => {
            const at = place(event);
            const from = begin;
            drop();
            if (from !== null && Math.abs(at.x - from) > 4) {
                const [low, high] = [from, at.x].sort((a, b) => a - b);
                this.setPeriod(secondsAt(low), secondsAt(high));
            }
        });
        plot.addEventListener('pointercancel', drop);
        plot.addEventListener('dblclick', () => this.showAll());
        plot.addEventListener('wheel', (event) => {
            if (event.ctrlKey) {
                event.preventDefault();
                this.zoom(event.deltaY < 0 ? 0.7 : 1 / 0.7, secondsAt(place(event).x));
            }
        }, { passive: false });
        plot.addEventListener('keydown', (event) => this.key(event, drop));
        new ResizeObserver(this.redraw).observe(plot);
        for (const change of ['(prefers-color-scheme: dark)', '(forced-colors: active)']) {
            matchMedia(change).addEventListener('change', this.redraw);
        }
        window.addEventListener('beforeprint', () => this.draw());
        window.addEventListener('afterprint', this.redraw);
    }

    key(event, drop) {
        if (event.ctrlKey || event.metaKey || event.altKey) {
            return;
        }
        const lanes = this.lanes.length;
        const actions = {
            '+': () => this.zoom(0.5),
            '=': () => this.zoom(0.5),
            '-': () => this.zoom(2),
            0: () => this.showAll(),
            ArrowLeft: () => this.move(-0.25),
            ArrowRight: () => this.move(0.25),
            Home: () => this.setPeriod(this.whole[0], this.whole[0] + this.length),
            End: () => this.setPeriod(this.whole[1] - this.length, this.whole[1]),
            ArrowDown: () => this.choose((this.chosen + 1) % lanes),
            ArrowUp: () => this.choose((this.chosen + lanes - (this.chosen < 0 ? 0 : 1)) % lanes),
            Enter: () => this.chosen >= 0 && this.chosen !== this.undated && this.changed(this.lanes[this.chosen]),
            Escape: () => { drop(); this.choose(-1); },
        };
        if (Object.hasOwn(actions, event.key)) {
            event.preventDefault();
            actions[event.key]();
        }
    }

    /// Says what is at a place of the plot: lane, number of events and the most severe of them.
    readCell({ x, y }) {
        const { size, seen } = this;
        const lane = Math.floor((y - size.lanesTop) / LANE);
        const column = Math.floor((x - size.left) / (size.right - size.left) * seen.columns);
        const inside = lane >= 0 && lane < this.lanes.length && column >= 0 && column < seen.columns;
        const number = inside ? seen.numbers[lane * seen.columns + column] : 0;
        this.parts.readout.textContent = number === 0 ? '' : `${this.lanes[lane].name}, ${timeText(Math.round(this.time.invert(x) / 1000))}: `
            + `${counted(number, 'event')}, the worst ${this.events.severities[seen.cells[lane * seen.columns + column]]}`;
    }
}
