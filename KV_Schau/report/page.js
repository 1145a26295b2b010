'use strict';
(() => {
  const data = JSON.parse(document.getElementById('daten').textContent);
  // Rows of the table; an element's number is its position plus one.
  const [NAME, TYPE, DESCRIPTION, LINE, STATION, NATURAL, CANALISED, IMPERVIOUS, TOTAL, SEALING, DIFFERENCE] =
    [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10];
  const rows = data.elements;
  const byId = (id) => document.getElementById(id);

  // The network: for each element the numbers of those that drain into it, one behind the other.
  const count = rows.length;
  const begins = new Uint32Array(count + 2);
  const below = new Uint32Array(count + 1);
  for (let i = 0; i < data.links.length; i += 2) {
    begins[data.links[i + 1] + 1] += 1;
    if (below[data.links[i]] === 0) below[data.links[i]] = data.links[i + 1];
  }
  for (let i = 1; i < begins.length; i += 1) begins[i] += begins[i - 1];
  const inflows = new Uint32Array(data.links.length / 2);
  const next = begins.slice();
  for (let i = 0; i < data.links.length; i += 2) inflows[next[data.links[i + 1]]++] = data.links[i];

  const upstreamOf = (element) => {
    const isUpstream = new Uint8Array(count + 1);
    isUpstream[element] = 1;
    const open = [element];
    let number = 0;
    while (open.length > 0) {
      const lower = open.pop();
      for (let i = begins[lower]; i < begins[lower + 1]; i += 1) {
        const upper = inflows[i];
        if (isUpstream[upper]) continue;
        isUpstream[upper] = 1;
        number += 1;
        open.push(upper);
      }
    }
    return { isUpstream, number };
  };

  const figure = (value, digits = 3) => (value === null ? '–' : value.toFixed(digits));

  // The plan.

  const plan = data.plan;
  const nodes = new Map(plan.nodes.map((node) => [node[0], node]));
  const drawings = [...document.querySelectorAll('.drawing')];
  const light = byId('licht');
  const status = byId('status');
  let lit = 0;

  // The element that shows another one: a source that is not drawn belongs to what it drains into.
  const shownBy = (element) => {
    for (let steps = 0; element !== 0 && steps <= count; steps += 1) {
      if (nodes.has(element)) return element;
      element = below[element];
    }
    return 0;
  };

  const lightUp = (element) => {
    if (element === lit) return;
    lit = element;
    if (element === 0) {
      light.setAttribute('d', '');
      status.textContent = '';
      return;
    }
    const { isUpstream, number } = upstreamOf(element);
    let path = '';
    for (const [from, to, points] of plan.lines) {
      if (!isUpstream[from] || !isUpstream[to]) continue;
      path += `M${points[0]} ${points[1]}`;
      for (let i = 2; i < points.length; i += 2) path += `L${points[i]} ${points[i + 1]}`;
    }
    const node = nodes.get(shownBy(element));
    if (node) path += `M${node[1] - node[3]} ${node[2]}h${2 * node[3]}`;
    light.setAttribute('d', path);
    const row = rows[element - 1];
    const words = number === 1 ? '1 Element' : `${number} Elemente`;
    status.textContent = `${row[NAME]} ${row[DESCRIPTION]}: ${words} oberhalb, ${figure(row[TOTAL])} km²`;
  };

  // Nodes by the squares of the plan that they touch.
  const cell = 100;
  const cells = new Map();
  for (const node of plan.nodes) {
    const [, x, y, half, right, high] = node;
    for (let i = Math.floor((x - half - 8) / cell); i <= Math.floor(right / cell); i += 1) {
      for (let k = Math.floor((y - high) / cell); k <= Math.floor((y + high) / cell); k += 1) {
        const key = `${i} ${k}`;
        if (!cells.has(key)) cells.set(key, []);
        cells.get(key).push(node);
      }
    }
  }

  const elementAt = (drawing, event) => {
    const place = new DOMPoint(event.clientX, event.clientY).matrixTransform(drawing.getScreenCTM().inverse());
    const near = cells.get(`${Math.floor(place.x / cell)} ${Math.floor(place.y / cell)}`) || [];
    const found = near.find(([, x, y, half, right, high]) =>
      place.x >= x - half - 8 && place.x <= right && Math.abs(place.y - y) <= high);
    return found ? found[0] : 0;
  };

  for (const drawing of drawings) {
    let waiting = null;
    drawing.addEventListener('pointermove', (event) => {
      if (waiting === null) {
        requestAnimationFrame(() => {
          const element = elementAt(drawing, waiting);
          waiting = null;
          drawing.classList.toggle('pointed', element !== 0);
          lightUp(element);
        });
      }
      waiting = event;
    });
    drawing.addEventListener('pointerleave', () => lightUp(0));
    drawing.addEventListener('click', (event) => {
      const element = elementAt(drawing, event);
      if (element !== 0) goToRow(element);
    });
  }

  const view = document.querySelector('#plan .view');
  const drawing = drawings[0];
  const wholeWidth = () =>
    Math.min(view.clientWidth, plan.width, window.innerHeight * 0.8 * plan.width / (plan.height - plan.top));
  const scale = () => drawing.getBoundingClientRect().width / plan.width;

  // Keeps the middle of the view, or puts a place of the plan there.
  const setScale = (wanted, x = null, y = null) => {
    const old = scale();
    const middleX = x === null ? (view.scrollLeft + view.clientWidth / 2) / old : x;
    const middleY = y === null ? (view.scrollTop + view.clientHeight / 2) / old : y - plan.top;
    const width = Math.max(100, plan.width * wanted);
    for (const one of drawings) {
      one.style.width = `${width}px`;
      one.style.height = `${width * (plan.height - plan.top) / plan.width}px`;
    }
    light.setAttribute('stroke-width', Math.max(8, 4 / wanted));
    view.scrollLeft = middleX * wanted - view.clientWidth / 2;
    view.scrollTop = middleY * wanted - view.clientHeight / 2;
    writeLabels();
  };

  const zoom = {
    whole: () => setScale(wholeWidth() / plan.width),
    in: () => setScale(Math.min(scale() * 1.5, 4)),
    out: () => setScale(scale() / 1.5),
    legible: () => setScale(1),
  };
  for (const button of document.querySelectorAll('[data-zoom]')) {
    button.addEventListener('click', () => zoom[button.dataset.zoom]());
  }

  // A large plan comes without labels: only those in view are written, when they are large enough to read.
  let labels = null;
  let labelsWait = false;
  const writeLabels = () => {
    if (plan.labelled || labelsWait) return;
    labelsWait = true;
    requestAnimationFrame(() => {
      labelsWait = false;
      const now = scale();
      const fresh = document.createElementNS('http://www.w3.org/2000/svg', 'g');
      const left = view.scrollLeft / now;
      const top = view.scrollTop / now + plan.top;
      const right = left + view.clientWidth / now;
      const bottom = top + view.clientHeight / now;
      const legible = plan.typeSize * now >= 5;
      for (const [element, x, y, half] of legible ? plan.nodes : []) {
        if (x < left || x > right || y < top || y > bottom) continue;
        const row = rows[element - 1];
        const texts = [row[NAME]];
        if (row[TOTAL] !== null) texts.push(`${figure(row[TOTAL])} km²`);
        texts.forEach((words, i) => {
          const text = document.createElementNS('http://www.w3.org/2000/svg', 'text');
          text.setAttribute('x', x + half + 5);
          text.setAttribute('y', y + i * plan.typeSize * 1.1);
          text.setAttribute('font-size', plan.typeSize);
          if (i === 0) text.setAttribute('class', 'name');
          text.textContent = words;
          fresh.append(text);
        });
      }
      if (labels) labels.remove();
      labels = fresh;
      drawing.append(labels);
    });
  };
  view.addEventListener('scroll', writeLabels);

  const showInPlan = (element) => {
    const node = nodes.get(shownBy(element));
    if (!node) return;
    setScale(Math.max(scale(), 0.8), node[1], node[2]);
    byId('plan').scrollIntoView({ block: 'start' });
    lightUp(element);
  };

  // The table.

  const table = byId('elemente');
  const body = table.tBodies[0];
  const word = byId('wort');
  const kind = byId('art');
  const isCompared = byId('vergleich') !== null;
  const pageSize = 200;
  const mostPrinted = 3000;
  const mostOpened = 100;
  const largest = rows.reduce((most, row) => Math.max(most, row[TOTAL] || 0), 0);
  const searched = rows.map((row) => `${row[NAME]} ${row[DESCRIPTION]}`.toLocaleLowerCase('de'));
  let chosen = [];
  let first = 0;
  let sorting = { column: LINE, descending: false };

  for (const [type, words] of Object.entries(data.kinds)) kind.add(new Option(words, type));
  if ('T' in data.kinds) kind.value = 'T';

  const compare = (left, right) => {
    const [a, b] = [rows[left][sorting.column], rows[right][sorting.column]];
    if (a === b) return left - right;
    if (a === null) return 1;
    if (b === null) return -1;
    const order = typeof a === 'string' ? a.localeCompare(b, 'de') : a - b;
    return (sorting.descending ? -order : order) || left - right;
  };

  const choose = () => {
    const words = word.value.toLocaleLowerCase('de').split(/\s+/).filter(Boolean);
    chosen = [];
    rows.forEach((row, i) => {
      if (kind.value !== '' && row[TYPE] !== kind.value) return;
      if (words.every((one) => searched[i].includes(one))) chosen.push(i);
    });
    chosen.sort(compare);
    first = 0;
  };

  const cellOf = (tag, text, className = '') => {
    const made = document.createElement(tag);
    made.textContent = text;
    if (className) made.className = className;
    return made;
  };

  const barOf = (row) => {
    const bar = document.createElement('div');
    bar.className = 'bar';
    const pervious = row[CANALISED] - row[IMPERVIOUS];
    for (const [className, area] of [['natural', row[NATURAL]], ['canalised', pervious], ['impervious', row[IMPERVIOUS]]]) {
      if (!(area > 0) || largest === 0) continue;
      const part = cellOf('span', '', className);
      part.style.width = `max(1px, ${100 * area / largest}%)`;
      bar.append(part);
    }
    return bar;
  };

  const rowOf = (i) => {
    const row = rows[i];
    const made = document.createElement('tr');
    made.dataset.element = i + 1;
    const name = document.createElement('th');
    name.scope = 'row';
    const button = cellOf('button', row[NAME]);
    button.type = 'button';
    button.title = 'im Plan zeigen';
    name.append(button);
    made.append(cellOf('td', row[LINE]), name, cellOf('td', data.kinds[row[TYPE]], 'words'),
      cellOf('td', row[DESCRIPTION], 'words'), cellOf('td', figure(row[STATION])), cellOf('td', figure(row[NATURAL])),
      cellOf('td', figure(row[CANALISED])), cellOf('td', figure(row[IMPERVIOUS])), cellOf('td', figure(row[TOTAL])),
      cellOf('td', row[SEALING] === null ? '–' : `${figure(100 * row[SEALING], 1)} %`));
    if (isCompared) {
      const difference = row[DIFFERENCE];
      made.append(cellOf('td', difference === null ? '–' : `${difference > 0 ? '+' : ''}${figure(difference)}`));
    }
    const bars = cellOf('td', '', 'bars');
    bars.append(barOf(row));
    made.append(bars);
    return made;
  };

  const fill = (from, to) => {
    body.replaceChildren(...chosen.slice(from, to).map(rowOf));
    for (const head of table.tHead.rows[0].cells) {
      if (Number(head.dataset.column) === sorting.column) {
        head.setAttribute('aria-sort', sorting.descending ? 'descending' : 'ascending');
      } else {
        head.removeAttribute('aria-sort');
      }
    }
  };

  const show = () => {
    const last = Math.min(first + pageSize, chosen.length);
    fill(first, last);
    byId('anzahl').textContent = `${chosen.length} von ${rows.length} Elementen`;
    byId('seite').textContent = chosen.length === 0 ? 'keine Zeile' : `Zeilen ${first + 1} bis ${last}`;
    byId('zurueck').disabled = first === 0;
    byId('weiter').disabled = last === chosen.length;
  };

  const renew = () => {
    choose();
    show();
  };

  function goToRow(element) {
    if (!chosen.includes(element - 1)) {
      word.value = '';
      kind.value = '';
      choose();
    }
    const place = chosen.indexOf(element - 1);
    first = place - place % pageSize;
    show();
    const row = body.querySelector(`[data-element="${element}"]`);
    row.classList.add('target');
    row.scrollIntoView({ block: 'center' });
    row.querySelector('button').focus({ preventScroll: true });
  }

  for (const head of table.tHead.rows[0].cells) {
    const button = head.querySelector('button');
    if (!button) continue;
    button.addEventListener('click', () => {
      const column = Number(head.dataset.column);
      sorting = { column, descending: sorting.column === column && !sorting.descending };
      renew();
    });
  }
  let searchWaits = 0;
  word.addEventListener('input', () => {
    clearTimeout(searchWaits);
    searchWaits = setTimeout(renew, 120);
  });
  kind.addEventListener('change', renew);
  byId('suche').addEventListener('submit', (event) => event.preventDefault());
  byId('zurueck').addEventListener('click', () => {
    first = Math.max(0, first - pageSize);
    show();
  });
  byId('weiter').addEventListener('click', () => {
    first += pageSize;
    show();
  });
  const elementOfRow = (event) => {
    const row = event.target.closest('tbody tr');
    return row ? Number(row.dataset.element) : 0;
  };
  body.addEventListener('click', (event) => {
    if (event.target.closest('button')) showInPlan(elementOfRow(event));
  });
  body.addEventListener('focusin', (event) => lightUp(elementOfRow(event)));

  // On paper there are no pages to turn.
  window.addEventListener('beforeprint', () => {
    lightUp(0);
    fill(0, mostPrinted);
    byId('druckhinweis').textContent = chosen.length > mostPrinted
      ? `Gedruckt sind die ersten ${mostPrinted} von ${chosen.length} gewählten Elementen.` : '';
    const closed = [...document.querySelectorAll('details:not([open])')];
    for (const details of closed.slice(0, mostOpened)) {
      details.dataset.closed = '';
      details.open = true;
    }
  });
  window.addEventListener('afterprint', () => {
    show();
    for (const details of document.querySelectorAll('[data-closed]')) {
      details.open = false;
      delete details.dataset.closed;
    }
  });

  renew();
  zoom.whole();
})();
