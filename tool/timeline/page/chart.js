'use strict';
// Draws the lanes of what is in view, and the overview above them. A redraw costs what is visible: a row's first visible
// span is found by halving, and spans narrower than a pixel are drawn once for each pixel.

const Size = {ruler: 26, label: 18, marks: 15, row: 18, gap: 6, leastText: 26};
const fontOfChart = '12px system-ui, "Segoe UI", "DejaVu Sans", sans-serif';

class Chart {
  constructor(record, canvas, overview) {
    this.record = record;
    this.canvas = canvas;
    this.overview = overview;
    this.context = canvas.getContext('2d');
    this.scroll = 0;
    this.selected = -1;
    this.hovered = -1;
    this.hits = null;
    this.widths = new Map();
    this.onDraw = () => {};
    this.placeLanes();
    this.readColours();
    this.showAll();
  }

  placeLanes() {
    let top = 0;
    for (const lane of this.record.lanes) {
      lane.top = top;
      lane.heading = Size.label + (lane.marks.size > 0 ? Size.marks : 0);
      lane.height = lane.heading + Math.max(lane.rows.length, 1) * Size.row + Size.gap;
      top += lane.height;
    }
    this.lanesHeight = top;
  }

  readColours() {
    const style = getComputedStyle(document.documentElement);
    this.colour = (name) => style.getPropertyValue(`--${name}`).trim();
    const names = ['page', 'line', 'text', 'faint', 'lane', 'grid', 'span-text', 'failed', 'finding', 'hit', 'selected',
      'window', 'log-mark', 'agent-mark', 'note', 'call', 'callback', 'log', 'agent'];
    this.colours = Object.fromEntries(names.map((name) => [name, this.colour(name)]));
    const {call, callback, log, agent} = this.colours;
    this.fills = [call, callback, log, agent, call, call, call, call];
    this.overviewImage = null;
  }

  resize() {
    const ratio = window.devicePixelRatio || 1;
    const room = Math.max(240, Math.min(window.innerHeight * 0.62, 900));
    this.width = this.canvas.parentElement.clientWidth;
    this.height = Math.ceil(Math.min(room, this.lanesHeight + Size.ruler));
    for (const [canvas, height] of [[this.canvas, this.height], [this.overview, 42]]) {
      canvas.style.height = `${height}px`;
      canvas.width = Math.round(this.width * ratio);
      canvas.height = Math.round(height * ratio);
      canvas.getContext('2d').setTransform(ratio, 0, 0, ratio, 0, 0);
    }
    this.overviewImage = null;
    this.scrollTo(this.scroll);
  }

  // --- What is in view ---

  showAll() {
    const margin = this.record.shownDuration * 0.01;
    this.show(-margin, this.record.shownDuration + margin);
  }

  // From and to are where times are shown. No less than two microseconds, and not far beyond the record.
  show(from, to) {
    const whole = this.record.shownDuration * 1.1 + 20;
    const length = Math.min(Math.max(to - from, 20), whole);
    const middle = Math.min(Math.max((from + to) / 2, 0), this.record.shownDuration);
    this.from = middle - length / 2;
    this.to = middle + length / 2;
    this.redraw();
  }

  zoom(factor, x = this.width / 2) {
    const fixed = this.timeAt(x);
    const length = Math.min((this.to - this.from) * factor, this.record.shownDuration * 1.02);
    const share = x / this.width;
    this.show(fixed - Math.max(length, 20) * share, fixed + Math.max(length, 20) * (1 - share));
  }

  pan(pixels) {
    const by = pixels * (this.to - this.from) / this.width;
    this.show(this.from + by, this.to + by);
  }

  scrollTo(scroll) {
    this.scroll = Math.max(0, Math.min(scroll, this.lanesHeight + Size.ruler - this.height));
    this.redraw();
  }

  xOf(shown) { return (shown - this.from) / (this.to - this.from) * this.width; }
  timeAt(x) { return this.from + x / this.width * (this.to - this.from); }

  // Selects the event and moves so that it can be seen.
  reveal(event) {
    this.selected = event;
    const begin = this.record.shownBegin[event];
    const length = this.record.shownEnd[event] - begin;
    let view = this.to - this.from;
    if (this.record.isInstant[event]) {
      view = Math.min(view, this.neighbourhoodOf(event));
    } else if (length < view * 0.03 || length > view * 0.9) {
      view = Math.max(length * 8, 100);
    }
    const isInView = begin >= this.from && begin + length <= this.to && view === this.to - this.from;
    if (!isInView) {
      this.show(begin + length / 2 - view / 2, begin + length / 2 + view / 2);
    }
    const lane = this.record.lanes[this.record.thread[event]];
    const depth = this.record.isInstant[event] ? 0 : this.record.depth[event];
    const top = lane.top + (depth > 0 ? lane.heading + depth * Size.row - Size.row : 0);
    const bottom = lane.top + lane.heading + (depth + 1) * Size.row + Size.gap;
    if (top < this.scroll || bottom > this.scroll + this.height - Size.ruler) {
      this.scrollTo(top - Size.row);
    }
    this.redraw();
  }

  // How much time the events of the thread take that stand around this one.
  neighbourhoodOf(event) {
    const {lanes, thread, shownBegin} = this.record;
    const events = lanes[thread[event]].events;
    const at = firstIndex(0, events.length, (index) => events[index] >= event);
    const before = shownBegin[event] - shownBegin[events[Math.max(0, at - 5)]];
    const behind = shownBegin[events[Math.min(events.length - 1, at + 5)]] - shownBegin[event];
    return Math.max(2.5 * Math.max(before, behind), 200);
  }

  // --- Drawing ---

  redraw() {
    if (!this.isWaiting) {
      this.isWaiting = true;
      requestAnimationFrame(() => {
        this.isWaiting = false;
        this.draw();
      });
    }
  }

  draw() {
    const context = this.context;
    context.font = fontOfChart;
    context.textBaseline = 'middle';
    context.fillStyle = this.colours.page;
    context.fillRect(0, 0, this.width, this.height);
    const ticks = this.ticks();
    context.save();
    context.beginPath();
    context.rect(0, Size.ruler, this.width, this.height - Size.ruler);
    context.clip();
    const lanes = this.record.lanes;
    const first = firstIndex(0, lanes.length, (index) => lanes[index].top + lanes[index].height > this.scroll);
    for (let i = first; i < lanes.length && lanes[i].top < this.scroll + this.height; ++i) {
      this.drawLane(lanes[i], Size.ruler + lanes[i].top - this.scroll, ticks);
    }
    context.restore();
    this.drawRuler(ticks);
    this.drawScrollBar();
    this.drawOverview();
    this.onDraw();
  }

  drawLane(lane, y, ticks) {
    const context = this.context;
    const rowsTop = y + lane.heading;
    const rowsHeight = lane.height - lane.heading - Size.gap;
    context.fillStyle = this.colours.lane;
    context.fillRect(0, rowsTop, this.width, rowsHeight);
    context.fillStyle = this.colours.grid;
    for (const {x} of ticks) {
      context.fillRect(Math.round(x), rowsTop, 1, rowsHeight);
    }
    this.drawGaps(rowsTop, rowsHeight);
    lane.rows.forEach((row, depth) => {
      const top = rowsTop + depth * Size.row;
      if (top < this.height && top + Size.row > Size.ruler) {
        this.drawRow(row, top + 1, Size.row - 2);
      }
    });
    context.fillStyle = this.colours.faint;
    const products = [...lane.products].join(', ');
    context.fillText(products ? `${lane.label} \u00b7 ${products}` : lane.label, 6, y + Size.label / 2 + 1);
    this.drawMarks(lane, y + Size.label, rowsTop + rowsHeight);
    context.fillStyle = this.colours.line;
    context.fillRect(0, y + lane.height - Size.gap / 2, this.width, 1);
  }

  drawRow(row, y, height) {
    const context = this.context;
    context.globalAlpha = this.hits ? 0.35 : 1;
    this.eachVisible(row.all, (event, x, width) => this.drawSpan(event, x, width, y, height));
    context.globalAlpha = 1;
    if (this.hits) {
      this.eachVisible(row.hits, (event, x, width) => {
        this.drawSpan(event, x, width, y, height);
        context.fillStyle = this.colours.hit;
        context.fillRect(x, y, Math.max(width, 2), 2);
        context.fillRect(x, y, 2, height);
      });
    }
    context.fillStyle = this.colours.failed;
    this.eachVisible(row.marked, (event, x, width) => context.fillRect(x, y + height - 3, Math.max(width, 3), 3));
    for (const [event, colour] of [[this.hovered, this.colours.faint], [this.selected, this.colours.selected]]) {
      if (event >= 0 && this.contains(row.all, event)) {
        const x = this.xOf(this.record.shownBegin[event]);
        const width = Math.max(this.xOf(this.record.shownEnd[event]) - x, 3);
        context.strokeStyle = colour;
        context.lineWidth = 2;
        context.strokeRect(Math.max(x, -5), y, Math.min(x + width, this.width + 5) - Math.max(x, -5), height);
      }
    }
  }

  contains(events, event) {
    return events[firstIndex(0, events.length, (index) => events[index] >= event)] === event;
  }

  // Calls draw(event, x, width) for the spans in view, and once for all that begin within one pixel and end there.
  eachVisible(events, draw) {
    const {shownBegin, shownEnd} = this.record;
    const count = events.length;
    let i = firstIndex(0, count, (index) => shownEnd[events[index]] >= this.from);
    while (i < count && shownBegin[events[i]] <= this.to) {
      const event = events[i];
      const x = this.xOf(shownBegin[event]);
      const right = this.xOf(shownEnd[event]);
      ++i;
      if (right - x >= 1) {
        draw(event, Math.max(x, -5), Math.min(right, this.width + 5) - Math.max(x, -5));
        continue;
      }
      const pixel = Math.floor(x);
      draw(event, pixel, 1);
      if (i < count && this.xOf(shownEnd[events[i]]) < pixel + 1) {
        const pixelEnd = this.timeAt(pixel + 1);
        i = firstIndex(i, count, (index) => shownEnd[events[index]] >= pixelEnd);
      }
    }
  }

  drawSpan(event, x, width, y, height) {
    const context = this.context;
    context.fillStyle = this.fills[this.record.kind[event]];
    context.fillRect(x, y, width > 2 ? width - 0.5 : width, height);
    if (width < 6) {
      return;
    }
    if (this.record.isOpen[event]) {
      this.drawTornEdge(x + width, y, height);
    }
    if (this.record.isEarly[event]) {
      this.drawTornEdge(x, y, height);
    }
    if (width >= Size.leastText) {
      context.fillStyle = this.colours['span-text'];
      context.fillText(this.fitted(this.record.captionOf(event), width - 8), x + 4, y + height / 2 + 0.5);
    }
  }

  // The end of a span whose end, or begin, is not in the record.
  drawTornEdge(x, y, height) {
    const context = this.context;
    context.fillStyle = this.colours.lane;
    context.beginPath();
    for (let at = 0; at < height; at += 4) {
      context.moveTo(x - 4, y + at + 2);
      context.lineTo(x + 4, y + at);
      context.lineTo(x + 4, y + at + 4);
    }
    context.fill();
  }

  widthOf(text) {
    let width = this.widths.get(text);
    if (width === undefined) {
      if (this.widths.size > 20000) {
        this.widths.clear();
      }
      width = this.context.measureText(text).width;
      this.widths.set(text, width);
    }
    return width;
  }

  // The text, or as much of its begin as there is room for.
  fitted(text, room) {
    const width = this.widthOf(text);
    if (width <= room) {
      return text;
    }
    for (let length = Math.ceil(text.length * room / width); length > 0; --length) {
      const begin = `${text.slice(0, length)}\u2026`;
      if (this.widthOf(begin) <= room) {
        return begin;
      }
    }
    return '';
  }

  // The least important first, so that the others lie above it.
  drawMarks(lane, y, bottom) {
    for (const kind of [Kind.LogLine, Kind.Other, Kind.AgentChange, Kind.Note, Kind.Refusal, Kind.Finding]) {
      const events = lane.marks.get(kind) ?? [];
      this.eachMark(events, (event, x) => {
        if (kind === Kind.Finding) {
          this.context.fillStyle = this.colours.finding;
          this.context.fillRect(Math.round(x), y + Size.marks / 2, 1, bottom - y - Size.marks / 2);
        }
        this.drawMark(this.context, this.markOf(event), x, y + Size.marks / 2);
        if (event === this.selected || event === this.hovered) {
          this.context.strokeStyle = this.colours.selected;
          this.context.lineWidth = 1.5;
          this.context.strokeRect(x - 8, y + 0.5, 16, Size.marks - 1);
        }
      });
    }
  }

  // Those in view, no two closer than three pixels; the selected one in any case.
  eachMark(events, draw) {
    const begin = this.record.shownBegin;
    const count = events.length;
    let i = firstIndex(0, count, (index) => begin[events[index]] >= this.from);
    while (i < count && begin[events[i]] <= this.to) {
      const x = this.xOf(begin[events[i]]);
      draw(events[i], x);
      const next = this.timeAt(x + 3);
      i = firstIndex(i + 1, count, (index) => begin[events[index]] >= next);
    }
    if (this.selected >= 0 && this.contains(events, this.selected)) {
      draw(this.selected, this.xOf(begin[this.selected]));
    }
  }

  markOf(event) {
    const kind = this.record.kind[event];
    return this.record.isInstant[event] && this.record.failureOf(event) !== '' ? Kind.Refusal : kind;
  }

  drawMark(context, kind, x, y) {
    const colours = this.colours;
    const shapes = {
      [Kind.LogLine]: [colours['log-mark'], [[-1.5, -5], [1.5, -5], [1.5, 5], [-1.5, 5]]],
      [Kind.AgentChange]: [colours['agent-mark'], [[0, -5], [5, 0], [0, 5], [-5, 0]]],
      [Kind.Note]: [colours.note, [[0, -6], [6, 5], [-6, 5]]],
      [Kind.Refusal]: [colours.failed,
        [[-5, -3], [-3, -5], [0, -2], [3, -5], [5, -3], [2, 0], [5, 3], [3, 5], [0, 2], [-3, 5], [-5, 3], [-2, 0]]],
      [Kind.Finding]: [colours.finding, [[0, 7], [-7, -6], [7, -6]]],
      [Kind.Other]: [colours.faint, [[-1, -4], [1, -4], [1, 4], [-1, 4]]]};
    const [colour, points] = shapes[kind] ?? shapes[Kind.Other];
    context.fillStyle = colour;
    context.strokeStyle = colours.page;
    context.lineWidth = 1;
    context.beginPath();
    points.forEach(([dx, dy], index) => {
      if (index === 0) {
        context.moveTo(x + dx, y + dy);
      } else {
        context.lineTo(x + dx, y + dy);
      }
    });
    context.closePath();
    context.fill();
    context.stroke();
    if (kind === Kind.Finding) {
      context.fillStyle = colours.page;
      context.fillRect(x - 1, y - 4, 2, 5);
      context.fillRect(x - 1, y + 2, 2, 2);
    }
  }

  // --- The ruler ---

  // The marks of the ruler, no two closer than a label is wide.
  ticks() {
    const apart = 110;
    const least = apart * (this.to - this.from) / this.width;
    const power = 10 ** Math.floor(Math.log10(least));
    const step = [1, 2, 5, 10].map((factor) => factor * power).find((size) => size >= least);
    const ticks = [];
    let shown = Math.max(this.from, 0);
    const last = Math.min(this.to, this.record.shownDuration);
    while (shown <= last && ticks.length < 200) {
      const time = Math.ceil(this.record.toTime(shown) / step - 1e-9) * step;
      const at = this.record.toShown(time);
      if (at > last) {
        break;
      }
      ticks.push({x: this.xOf(at), label: momentText(time, step)});
      // The next one stands a step behind in time, or more where time is short.
      shown = Math.max(this.record.toShown(time + step * 0.999), at + least * 0.999);
    }
    return ticks;
  }

  drawRuler(ticks) {
    const context = this.context;
    context.fillStyle = this.colours.page;
    context.fillRect(0, 0, this.width, Size.ruler);
    for (const {x, label} of ticks) {
      context.fillStyle = this.colours.line;
      context.fillRect(Math.round(x), Size.ruler - 8, 1, 8);
      context.fillStyle = this.colours.faint;
      if (x + 8 + context.measureText(label).width < this.width) {
        context.fillText(label, x + 4, Size.ruler / 2);
      }
    }
    context.fillStyle = this.colours.line;
    context.fillRect(0, Size.ruler - 1, this.width, 1);
  }

  // Idle times that are shown short.
  drawGaps(y, height) {
    const gaps = this.record.gaps;
    const context = this.context;
    let i = firstIndex(0, gaps.length, (index) => gaps[index].shownTo >= this.from);
    while (i < gaps.length && gaps[i].shownFrom <= this.to) {
      const left = Math.max(this.xOf(gaps[i].shownFrom), 0);
      const right = Math.min(this.xOf(gaps[i].shownTo), this.width);
      context.fillStyle = this.colours.page;
      context.fillRect(left, y, right - left, height);
      if (right - left > 90) {
        context.fillStyle = this.colours.faint;
        context.fillText(`${durationText(gaps[i].to - gaps[i].from)} idle`, left + 8, y + Size.row / 2);
      }
      const next = this.timeAt(right + 2);
      i = firstIndex(i + 1, gaps.length, (index) => gaps[index].shownTo >= next);
    }
  }

  drawScrollBar() {
    const room = this.height - Size.ruler;
    if (this.lanesHeight > room) {
      this.context.fillStyle = this.colours.faint;
      this.context.globalAlpha = 0.6;
      this.context.fillRect(this.width - 6, Size.ruler + this.scroll / this.lanesHeight * room, 4,
          Math.max(20, room / this.lanesHeight * room));
      this.context.globalAlpha = 1;
    }
  }

  // --- The overview ---

  drawOverview() {
    const context = this.overview.getContext('2d');
    if (!this.overviewImage) {
      this.overviewImage = this.countByPixel();
    }
    const {counts, failed, found, most} = this.overviewImage;
    context.fillStyle = this.colours.page;
    context.fillRect(0, 0, this.width, 42);
    for (let x = 0; x < counts.length; ++x) {
      if (counts[x] > 0) {
        const height = 4 + 32 * Math.log1p(counts[x]) / Math.log1p(most);
        context.fillStyle = this.colours.call;
        context.fillRect(x, 42 - height, 1, height);
      }
    }
    context.fillStyle = this.colours.failed;
    for (const x of failed) {
      context.fillRect(x, 30, 2, 12);
    }
    for (const x of found) {
      context.fillRect(x, 0, 2, 42);
    }
    const left = this.overviewX(this.from);
    const right = this.overviewX(this.to);
    context.fillStyle = this.colours.window;
    context.fillRect(left, 0, Math.max(right - left, 3), 42);
    context.strokeStyle = this.colours.faint;
    context.lineWidth = 1;
    context.strokeRect(left + 0.5, 0.5, Math.max(right - left, 3) - 1, 41);
  }

  overviewX(shown) {
    return Math.max(0, Math.min(shown / this.record.shownDuration, 1)) * this.width;
  }

  // How many events begin in each pixel, and where something failed or was found.
  countByPixel() {
    const {count, shownBegin, data} = this.record;
    const counts = new Uint32Array(Math.ceil(this.width) + 1);
    for (let event = 0; event < count; ++event) {
      ++counts[Math.floor(this.overviewX(shownBegin[event]))];
    }
    const pixels = (events) => new Set(events.map((event) => Math.floor(this.overviewX(shownBegin[event]))));
    return {counts, failed: pixels(data.failed), found: pixels(data.findings),
      most: counts.reduce((left, right) => Math.max(left, right), 1)};
  }

  // --- What is at a place ---

  // The event at a place of the canvas, or -1.
  eventAt(x, y) {
    const lanes = this.record.lanes;
    const at = y - Size.ruler + this.scroll;
    if (y < Size.ruler) {
      return -1;
    }
    const lane = lanes[firstIndex(0, lanes.length, (index) => lanes[index].top + lanes[index].height > at)];
    if (!lane) {
      return -1;
    }
    const inside = at - lane.top;
    if (inside < lane.heading) {
      return inside < Size.label ? -1 : this.markAt(lane, x);
    }
    const row = lane.rows[Math.floor((inside - lane.heading) / Size.row)];
    return row ? this.spanAt(row.all, x) : -1;
  }

  // The span there, or the nearest within three pixels.
  spanAt(events, x) {
    const {shownBegin, shownEnd} = this.record;
    const from = this.timeAt(x - 3);
    const time = this.timeAt(x);
    const to = this.timeAt(x + 3);
    let nearest = -1;
    let distance = Infinity;
    for (let i = firstIndex(0, events.length, (index) => shownEnd[events[index]] >= from);
      i < events.length && shownBegin[events[i]] <= to; ++i) {
      const away = Math.max(shownBegin[events[i]] - time, time - shownEnd[events[i]], 0);
      if (away < distance) {
        nearest = events[i];
        distance = away;
      }
    }
    return nearest;
  }

  // The most important mark within seven pixels.
  markAt(lane, x) {
    const begin = this.record.shownBegin;
    const from = this.timeAt(x - 7);
    const to = this.timeAt(x + 7);
    for (const kind of [Kind.Finding, Kind.Refusal, Kind.Note, Kind.AgentChange, Kind.Other, Kind.LogLine]) {
      const events = lane.marks.get(kind) ?? [];
      const event = events[firstIndex(0, events.length, (index) => begin[events[index]] >= from)];
      if (event !== undefined && begin[event] <= to) {
        return event;
      }
    }
    return -1;
  }
}
