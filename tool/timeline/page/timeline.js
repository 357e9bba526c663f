'use strict';
// The page: what surrounds the chart, and how mouse and keys move it.

const find = (id) => document.getElementById(id);

function element(tag, text = '', className = '') {
  const made = document.createElement(tag);
  made.textContent = text;
  if (className) {
    made.className = className;
  }
  return made;
}

const classOfColumn = {Begin: 'number', Duration: 'number', In: 'wide', Product: 'wide', Thread: 'wide'};

class Page {
  constructor(record) {
    this.record = record;
    this.chart = new Chart(record, find('lanes'), find('overview'));
    this.hits = [];
    this.hit = -1;
    this.describeRecord();
    this.describeColours();
    this.makeTables();
    this.listenToTools();
    this.listenToMouse();
    this.listenToKeys();
    new ResizeObserver(() => this.chart.resize()).observe(find('chart'));
    matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => this.useColours());
    find('idle').checked = record.isIdleShortened;
    this.chart.resize();
  }

  // --- What is said of the record ---

  describeRecord() {
    const {data, count, duration, lanes} = this.record;
    document.title = `${data.title} \u2013 timeline`;
    find('title').textContent = data.title;
    const facts = find('facts');
    facts.append(`${countText(count, 'event', 'events')} of ${countText(lanes.length, 'thread', 'threads')} in ` +
        `${durationText(duration)}; `);
    facts.append(element('span', countText(data.findings.length, 'finding', 'findings'),
        data.findings.length > 0 ? 'bad' : ''));
    facts.append(`, ${data.failed.length} failed`);
    const warnings = [];
    if (!data.isComplete) {
      warnings.push('The record has no end: the process did not end in good order, or was still running.');
    }
    if (data.brokenLine > 0) {
      warnings.push(`Line ${data.brokenLine} of the record is broken and left out.`);
    }
    if (data.leftOut > 0) {
      warnings.push(`${countText(data.leftOut, 'event', 'events')} of kinds that are not drawn here.`);
    }
    if (count === 0) {
      warnings.push('Nothing is recorded.');
    }
    find('warning').textContent = warnings.join(' ');
    find('warning').hidden = warnings.length === 0;
  }

  describeColours() {
    const legend = find('legend');
    const spans = [['call', 'call of the module'], ['callback', 'callback'], ['agent', 'change of the agent client'],
      ['log', 'log line, above it its mark']];
    const marks = [[Kind.Finding, 'finding'], [Kind.Refusal, 'refused or failed'], [Kind.AgentChange, 'library or agent'],
      [Kind.Note, 'note']];
    legend.replaceChildren();
    for (const [kind, text] of [...spans, ...marks]) {
      const canvas = document.createElement('canvas');
      canvas.width = 32;
      canvas.height = 28;
      const context = canvas.getContext('2d');
      context.scale(2, 2);
      if (typeof kind === 'string') {
        context.fillStyle = this.chart.colours[kind];
        context.fillRect(0, 1, 16, 12);
      } else {
        this.chart.drawMark(context, kind, 8, 7);
      }
      const item = element('li');
      item.append(canvas, text);
      legend.append(item);
    }
    legend.append(element('li', 'red edge below: failed, or a finding inside'));
  }

  useColours() {
    this.chart.readColours();
    this.describeColours();
    this.chart.redraw();
  }

  // --- The tables ---

  makeTables() {
    const {data} = this.record;
    const tables = find('tables');
    this.addTable(tables, 'findings', 'Findings', data.findings, (event) => this.findingCells(event));
    this.addTable(tables, 'failed', 'Failed', data.failed, (event) => [this.record.failureOf(event)]);
    this.addTable(tables, 'slowest', 'Slowest', data.slowest, () => []);
    this.addTable(tables, 'notes', 'Notes of the machine', data.notes, (event) => this.findingCells(event));
  }

  findingCells(event) {
    const given = this.record.argumentsOf(event);
    const around = this.record.around[event];
    return [String(given.product || ''), around >= 0 ? this.record.nameOf(around) : '',
      this.record.data.messages[given.rule] ?? ''];
  }

  addTable(parent, id, title, events, cellsOf) {
    if (events.length === 0 && (id === 'notes' || id === 'slowest')) {
      return;
    }
    const most = 200;
    parent.append(element('h2', title));
    if (events.length === 0) {
      parent.append(element('p', 'None.'));
      return;
    }
    const ofFinding = ['Product', 'In', 'What', 'Thread', 'Begin'];
    const ofCall = ['Thread', 'Begin', 'Duration'];
    const columns = {findings: ofFinding, notes: ofFinding, failed: ['Why', ...ofCall], slowest: ofCall}[id];
    const table = element('table');
    table.id = id;
    const head = element('tr');
    for (const name of ['Event', ...columns]) {
      const cell = element('th', name, classOfColumn[name]);
      cell.scope = 'col';
      head.append(cell);
    }
    table.append(element('thead'), element('tbody'));
    table.tHead.append(head);
    for (const event of events.slice(0, most)) {
      table.tBodies[0].append(this.tableRow(event, columns, cellsOf(event)));
    }
    const scroll = element('div', '', 'scroll');
    scroll.append(table);
    parent.append(scroll);
    if (events.length > most) {
      parent.append(element('p', `and ${countText(events.length - most, 'more', 'more')}: the search finds them`));
    }
  }

  tableRow(event, columns, cells) {
    const {record} = this;
    const row = element('tr');
    const first = element('td');
    const button = element('button', record.captionOf(event));
    button.type = 'button';
    first.append(button);
    const texts = [...cells, record.data.threads[record.thread[event]][1], momentText(record.begin[event], 1000),
      this.durationOf(event)];
    row.append(first, ...columns.map((name, index) => element('td', texts[index], classOfColumn[name])));
    row.addEventListener('click', () => {
      this.select(event);
      find('chart').scrollIntoView({block: 'nearest'});
    });
    return row;
  }

  durationOf(event) {
    if (this.record.isInstant[event]) {
      return '';
    }
    return durationText(this.record.end[event] - this.record.begin[event]) +
        (this.record.isOpen[event] ? ', not ended' : '');
  }

  // --- One event ---

  select(event) {
    this.chart.reveal(event);
    this.describe(event);
  }

  deselect() {
    this.chart.selected = -1;
    this.chart.redraw();
    find('details').replaceChildren(
        element('p', 'Click a span or a mark to see its arguments and its answer.', 'empty'));
  }

  describe(event) {
    const {record} = this;
    const details = find('details');
    details.replaceChildren(element('h2', record.nameOf(event)));
    if (record.failureOf(event)) {
      details.append(element('p', `Failed: ${record.failureOf(event)}`, 'bad'));
    }
    if (record.isOpen[event]) {
      details.append(element('p', 'Had not ended when the record ended.', 'bad'));
    }
    if (record.isEarly[event]) {
      details.append(element('p', 'Began before the record: its arguments are not in it.'));
    }
    const thread = record.lanes[record.thread[event]].label;
    const facts = [['kind', record.kindOf(event)], ['thread', thread],
      [record.isInstant[event] ? 'time' : 'begin', momentText(record.begin[event], 1)]];
    if (!record.isInstant[event]) {
      facts.push(['duration', this.durationOf(event)]);
    }
    this.addList(details, facts, '');
    const message = record.data.messages[record.argumentsOf(event).rule];
    if (message) {
      details.append(element('h3', 'What it means'), element('p', message));
    }
    this.addSection(details, 'Arguments', record.argumentsOf(event));
    this.addSection(details, 'Answer', record.answersOf(event));
    if (record.around[event] >= 0) {
      const button = element('button', record.captionOf(record.around[event]));
      button.type = 'button';
      button.addEventListener('click', () => this.select(record.around[event]));
      details.append(element('h3', 'Inside'), button);
    }
    details.scrollTop = 0;
  }

  addSection(details, title, members) {
    const entries = Object.entries(members);
    if (entries.length > 0) {
      details.append(element('h3', title));
      this.addList(details, entries.map(([name, value]) =>
        [name, typeof value === 'string' ? value : JSON.stringify(value)]), 'value');
    }
  }

  addList(details, entries, className) {
    const list = element('dl');
    for (const [name, value] of entries) {
      list.append(element('dt', name), element('dd', value, className));
    }
    details.append(list);
  }

  // --- Search ---

  search() {
    const words = find('query').value.toLowerCase().split(/\s+/).filter((word) => word !== '');
    this.hits = this.record.find(words);
    this.hit = -1;
    this.chart.hits = words.length > 0 ? this.hits : null;
    this.tellHits();
    this.chart.redraw();
  }

  tellHits() {
    const isSearching = find('query').value.trim() !== '';
    const all = countText(this.hits.length, 'hit', 'hits');
    find('hits').textContent = !isSearching ? '' : this.hit < 0 ? all : `${this.hit + 1} of ${all}`;
    find('next').disabled = find('previous').disabled = this.hits.length === 0;
  }

  goToHit(step) {
    if (this.hits.length > 0) {
      this.hit = this.hit < 0 && step < 0 ? this.hits.length - 1 :
          (this.hit + step + this.hits.length) % this.hits.length;
      this.tellHits();
      this.select(this.hits[this.hit]);
    }
  }

  endSearch() {
    find('query').value = '';
    this.search();
  }

  // --- Tools, mouse, keys ---

  shortenIdle(isShortened) {
    const {record, chart} = this;
    find('idle').checked = isShortened;
    record.setIdleShortened(isShortened);
    chart.overviewImage = null;
    chart.showAll();
    if (chart.selected >= 0) {
      chart.reveal(chart.selected);
    }
  }

  listenToTools() {
    const {chart} = this;
    find('query').addEventListener('input', () => this.search());
    find('query').addEventListener('keydown', (event) => {
      if (event.key === 'Enter') {
        event.preventDefault();
        this.goToHit(event.shiftKey ? -1 : 1);
      } else if (event.key === 'Escape') {
        event.preventDefault();
        this.endSearch();
        find('lanes').focus();
      }
    });
    find('search').addEventListener('submit', (event) => {
      event.preventDefault();
      this.goToHit(1);
    });
    find('previous').addEventListener('click', () => this.goToHit(-1));
    find('in').addEventListener('click', () => chart.zoom(1 / 2));
    find('out').addEventListener('click', () => chart.zoom(2));
    find('fit').addEventListener('click', () => chart.showAll());
    find('idle').addEventListener('change', () => this.shortenIdle(find('idle').checked));
  }

  listenToMouse() {
    this.pointers = new Map();
    const lanes = find('lanes');
    lanes.addEventListener('wheel', (event) => this.onWheel(event), {passive: false});
    lanes.addEventListener('pointerdown', (event) => this.onPointerDown(event));
    lanes.addEventListener('pointermove', (event) => this.onPointerMove(event));
    lanes.addEventListener('pointerup', (event) => this.onPointerUp(event));
    lanes.addEventListener('pointercancel', (event) => this.pointers.delete(event.pointerId));
    lanes.addEventListener('pointerleave', () => this.hover(-1));
    lanes.addEventListener('dblclick', (event) => {
      const at = this.chart.eventAt(event.offsetX, event.offsetY);
      if (at >= 0 && !this.record.isInstant[at]) {
        const {shownBegin, shownEnd} = this.record;
        const margin = (shownEnd[at] - shownBegin[at]) * 0.05;
        this.chart.show(shownBegin[at] - margin, shownEnd[at] + margin);
      }
    });
    const overview = find('overview');
    const move = (event) => {
      if (event.buttons !== 0) {
        const half = (this.chart.to - this.chart.from) / 2;
        const middle = event.offsetX / this.chart.width * this.record.shownDuration;
        this.chart.show(middle - half, middle + half);
      }
    };
    overview.addEventListener('pointerdown', (event) => {
      overview.setPointerCapture(event.pointerId);
      move(event);
    });
    overview.addEventListener('pointermove', move);
  }

  onWheel(event) {
    event.preventDefault();
    const lines = event.deltaMode === 1 ? 16 : 1;
    if (event.altKey) {
      this.chart.scrollTo(this.chart.scroll + (event.deltaY || event.deltaX) * lines);
    } else if (event.shiftKey || Math.abs(event.deltaX) > Math.abs(event.deltaY)) {
      this.chart.pan((event.deltaX || event.deltaY) * lines);
    } else {
      const by = Math.max(-240, Math.min(event.deltaY * lines, 240));
      this.chart.zoom(Math.exp(by * 0.003), event.offsetX);
    }
  }

  onPointerDown(event) {
    find('lanes').setPointerCapture(event.pointerId);
    this.pointers.set(event.pointerId, {x: event.offsetX, y: event.offsetY, moved: 0});
  }

  onPointerMove(event) {
    const pointer = this.pointers.get(event.pointerId);
    if (!pointer) {
      this.hover(this.chart.eventAt(event.offsetX, event.offsetY));
      return;
    }
    const [dx, dy] = [event.offsetX - pointer.x, event.offsetY - pointer.y];
    pointer.moved += Math.abs(dx) + Math.abs(dy);
    if (this.pointers.size === 2) {
      const other = [...this.pointers.values()].find((each) => each !== pointer);
      const before = Math.max(Math.abs(pointer.x - other.x), 10);
      const now = Math.max(Math.abs(event.offsetX - other.x), 10);
      this.chart.zoom(before / now, (event.offsetX + other.x) / 2);
    } else if (pointer.moved > 3) {
      find('lanes').classList.add('moving');
      this.chart.pan(-dx);
      this.chart.scrollTo(this.chart.scroll - dy);
    }
    pointer.x = event.offsetX;
    pointer.y = event.offsetY;
  }

  onPointerUp(event) {
    const pointer = this.pointers.get(event.pointerId);
    this.pointers.delete(event.pointerId);
    find('lanes').classList.remove('moving');
    if (pointer && pointer.moved <= 3) {
      const at = this.chart.eventAt(event.offsetX, event.offsetY);
      if (at >= 0) {
        this.chart.selected = at;
        this.chart.redraw();
        this.describe(at);
      } else {
        this.deselect();
      }
    }
  }

  hover(event) {
    if (event !== this.chart.hovered) {
      this.chart.hovered = event;
      const duration = event >= 0 ? this.durationOf(event) : '';
      find('lanes').title = event < 0 ? '' : this.record.captionOf(event) + (duration ? `, ${duration}` : '');
      this.chart.redraw();
    }
  }

  // The next or previous event of the selected one's thread; without one, the first that is in view.
  step(by) {
    const {record, chart} = this;
    if (chart.selected < 0) {
      const first = firstIndex(0, record.count, (event) => record.shownBegin[event] >= chart.from);
      if (first < record.count) {
        this.select(first);
      }
      return;
    }
    const events = record.lanes[record.thread[chart.selected]].events;
    const at = firstIndex(0, events.length, (index) => events[index] >= chart.selected) + by;
    if (at >= 0 && at < events.length) {
      this.select(events[at]);
    }
  }

  listenToKeys() {
    const {chart} = this;
    const actions = {
      ArrowLeft: () => chart.pan(-chart.width / 8),
      ArrowRight: () => chart.pan(chart.width / 8),
      ArrowUp: () => chart.scrollTo(chart.scroll - 3 * Size.row),
      ArrowDown: () => chart.scrollTo(chart.scroll + 3 * Size.row),
      PageUp: () => chart.scrollTo(chart.scroll - chart.height / 2),
      PageDown: () => chart.scrollTo(chart.scroll + chart.height / 2),
      '+': () => chart.zoom(1 / 1.5),
      '=': () => chart.zoom(1 / 1.5),
      '-': () => chart.zoom(1.5),
      0: () => chart.showAll(),
      n: () => this.step(1),
      p: () => this.step(-1),
    };
    const everywhere = {
      '/': () => find('query').select(),
      i: () => this.shortenIdle(!this.record.isIdleShortened),
      Escape: () => this.onEscape(),
    };
    document.addEventListener('keydown', (event) => {
      const isInField = event.target === find('query');
      if (isInField || event.ctrlKey || event.metaKey || event.altKey) {
        return;
      }
      // Arrows scroll the page where the chart has not the focus.
      const isOnChart = event.target === find('lanes') || !event.key.startsWith('Arrow') && !event.key.startsWith('Page');
      const action = everywhere[event.key] ?? (isOnChart ? actions[event.key] : undefined);
      if (action) {
        event.preventDefault();
        action();
      }
    });
  }

  onEscape() {
    if (find('query').value !== '') {
      this.endSearch();
    } else {
      this.deselect();
    }
  }
}

const page = new Page(new Record(JSON.parse(find('record').textContent)));
