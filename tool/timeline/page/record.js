'use strict';
// The record: its events as columns, the lanes of its threads, and what a search finds. Times are tenths of a microsecond
// since the record's begin.

const Kind = {Call: 0, Callback: 1, LogLine: 2, AgentChange: 3, Refusal: 4, Finding: 5, Note: 6, Other: 7};

// The index of the first of `count` items for which `isBehind(index)` holds; it holds for all behind that, too.
function firstIndex(begin, count, isBehind) {
  let low = begin;
  let high = count;
  while (low < high) {
    const middle = (low + high) >> 1;
    if (isBehind(middle)) {
      high = middle;
    } else {
      low = middle + 1;
    }
  }
  return low;
}

// One thread: `rows` are its spans by depth, `marks` its instants and log lines by kind. All are indices of events in the
// order of time; spans of one row do not overlap.
class Lane {
  constructor(thread, label) {
    this.thread = thread;
    this.label = label;
    this.rows = [];
    this.marks = new Map();
    this.events = [];
    this.products = new Set();
    // Where the chart draws it.
    this.top = 0;
    this.heading = 0;
    this.height = 0;
  }

  add(record, event) {
    this.events.push(event);
    const isInstant = record.isInstant[event];
    const kind = record.kind[event];
    if (!isInstant) {
      const depth = record.depth[event];
      while (this.rows.length <= depth) {
        this.rows.push({all: [], marked: [], hits: []});
      }
      this.rows[depth].all.push(event);
      if (record.isMarked[event]) {
        this.rows[depth].marked.push(event);
      }
    }
    if (isInstant || kind === Kind.LogLine) {
      if (!this.marks.has(kind)) {
        this.marks.set(kind, []);
      }
      this.marks.get(kind).push(event);
    }
    const product = record.argumentsOf(event).product;
    if (typeof product === 'string' && this.products.size < 4) {
      this.products.add(product);
    }
  }
}

class Record {
  constructor(data) {
    const events = data.events;
    this.data = data;
    this.count = events.begin.length;
    this.duration = Math.max(data.duration, 1);
    this.thread = events.thread;
    this.kind = events.kind;
    this.depth = events.depth;
    this.around = events.around;
    this.begin = Float64Array.from(events.begin);
    this.end = this.begin.map((begin, event) => begin + events.duration[event]);
    this.isInstant = this.flags(events.instants);
    this.isEarly = this.flags(events.early);
    this.isOpen = this.flags(events.open);
    this.isMarked = this.flags(Object.keys(events.failures).map(Number));
    for (const finding of data.findings) {
      if (this.around[finding] >= 0) {
        this.isMarked[this.around[finding]] = 1;
      }
    }
    this.makeLanes();
    const idle = this.findGaps().reduce((sum, [from, to]) => sum + to - from, 0);
    // Where little else would be seen.
    this.setIdleShortened(idle > this.duration / 2);
  }

  flags(indices) {
    const flags = new Uint8Array(this.count);
    for (const index of indices) {
      flags[index] = 1;
    }
    return flags;
  }

  makeLanes() {
    const processes = new Set(this.data.threads.map(([process]) => process));
    this.lanes = this.data.threads.map(([process, id, name], thread) => new Lane(thread,
        (name ? `${name} (thread ${id})` : `thread ${id}`) + (processes.size > 1 ? ` of process ${process}` : '')));
    for (let event = 0; event < this.count; ++event) {
      this.lanes[this.thread[event]].add(this, event);
    }
  }

  nameOf(event) { return this.data.events.names[this.data.events.name[event]]; }
  argumentsOf(event) { return this.data.events.arguments[event] || {}; }
  answersOf(event) { return this.data.events.answers[event] || {}; }
  failureOf(event) { return this.data.events.failures[event] || ''; }
  kindOf(event) { return this.data.kinds[this.kind[event]]; }

  // What it is about in a few words.
  captionOf(event) {
    const given = this.argumentsOf(event);
    if (this.kind[event] === Kind.LogLine) {
      return String(given.text ?? this.nameOf(event));
    }
    if (this.kind[event] === Kind.Finding || this.kind[event] === Kind.Note) {
      return String(given.rule ?? this.nameOf(event));
    }
    const first = given.task ?? given.path ?? given.key ?? given.name ?? given.first;
    return this.nameOf(event) + (first === undefined || first === null ? '' : ` ${first}`);
  }

  // Where times are shown: as they are, or with the times short in which no thread does anything. `shownBegin` and
  // `shownEnd` are then the events' times, and `knots` pairs of a time and where it is shown.
  setIdleShortened(isShortened) {
    this.isIdleShortened = isShortened;
    this.knots = [[0, 0]];
    this.gaps = [];
    if (isShortened) {
      this.shortenGaps();
    }
    const [time, shown] = this.knots[this.knots.length - 1];
    this.shownDuration = shown + this.duration - time;
    this.shownBegin = isShortened ? this.begin.map((moment) => this.toShown(moment)) : this.begin;
    this.shownEnd = isShortened ? this.end.map((moment) => this.toShown(moment)) : this.end;
  }

  shortenGaps() {
    const gaps = this.findGaps();
    const idle = gaps.reduce((sum, [from, to]) => sum + to - from, 0);
    const most = Math.max((this.duration - idle) / Math.max(gaps.length, 20), 100);
    let saved = 0;
    for (const [from, to] of gaps) {
      if (to - from > 2 * most) {
        this.knots.push([from, from - saved]);
        saved += to - from - most;
        this.knots.push([to, to - saved]);
        this.gaps.push({from, to, shownFrom: to - saved - most, shownTo: to - saved});
      }
    }
  }

  // Pairs of times between which nothing happens.
  findGaps() {
    const gaps = [];
    let busyUntil = 0;
    for (let event = 0; event < this.count; ++event) {
      if (this.begin[event] > busyUntil) {
        gaps.push([busyUntil, this.begin[event]]);
      }
      busyUntil = Math.max(busyUntil, this.end[event]);
    }
    return gaps;
  }

  toShown(time) { return this.convert(time, 0, 1); }
  toTime(shown) { return this.convert(shown, 1, 0); }

  convert(value, from, to) {
    const knots = this.knots;
    const next = firstIndex(1, knots.length, (index) => knots[index][from] > value);
    const knot = knots[next - 1];
    if (next === knots.length) {
      return knot[to] + value - knot[from];
    }
    const share = (value - knot[from]) / (knots[next][from] - knot[from]);
    return knot[to] + share * (knots[next][to] - knot[to]);
  }

  textOf(event) {
    const thread = this.data.threads[this.thread[event]];
    const members = [...Object.entries(this.argumentsOf(event)), ...Object.entries(this.answersOf(event))];
    return [this.nameOf(event), this.kindOf(event), `thread ${thread[1]}`, thread[2], this.failureOf(event),
      ...members.map(([name, value]) => `${name}=${typeof value === 'object' ? JSON.stringify(value) : value}`)]
        .join('\n').toLowerCase();
  }

  // The events that have all of the words, in the order of time; also kept in each lane's rows. None for no word.
  find(words) {
    if (!this.texts) {
      this.texts = Array.from({length: this.count}, (_, event) => this.textOf(event));
    }
    for (const lane of this.lanes) {
      lane.rows.forEach((row) => { row.hits = []; });
    }
    const hits = [];
    for (let event = 0; words.length > 0 && event < this.count; ++event) {
      if (words.every((word) => this.texts[event].includes(word))) {
        hits.push(event);
        if (!this.isInstant[event]) {
          this.lanes[this.thread[event]].rows[this.depth[event]].hits.push(event);
        }
      }
    }
    return hits;
  }
}
