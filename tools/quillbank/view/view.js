// The script of `quillbank view`: reads the lesson's data from the page and
// builds everything with DOM calls and textContent, never with markup made
// from lesson text. Trees and the storyboard list draw only what is shown, so
// that a lesson of many thousands of storyboards stays quick.
(function () {
  'use strict';

  const data = JSON.parse(document.getElementById('lesson-data').textContent);
  const sbs = data.sbs;
  const TYPE_NAMES = ['none', 'boolean', 'long', 'double', 'string', 'date', 'color', 'font', 'rectangle',
    'asset', 'location', 'bag', 'list'];
  const T = { BOOLEAN: 1, LONG: 2, DOUBLE: 3, STRING: 4, DATE: 5, COLOR: 6, FONT: 7, RECTANGLE: 8, ASSET: 9,
    LOCATION: 10, BAG: 11, LIST: 12 };
  // Places in a storyboard's record.
  const SB = { SBID: 0, SHORT: 1, TYPE: 2, TITLE: 3, IDENT: 4, CLASS: 5, PROPS: 6, ELEMENTS: 7, MAPS: 8 };
  const CHUNK = 200;       // tree items drawn at a time
  const ROW_HEIGHT = 28;   // the list's rows (matches --row in the style sheet)

  // ---- small DOM helpers: text always goes in as text ----
  function el(tag, className, text) {
    const node = document.createElement(tag);
    if (className) node.className = className;
    if (text !== undefined && text !== null) node.textContent = String(text);
    return node;
  }
  function add(parent, ...children) {
    for (const child of children) {
      if (child !== null && child !== undefined) parent.appendChild(child);
    }
    return parent;
  }
  function sbLink(index, text) {
    const link = el('a', 'sb-link', text);
    link.href = '#sb-' + index;
    link.dataset.sb = String(index);
    return link;
  }
  function titleOf(index) {
    const title = sbs[index][SB.TITLE];
    return title === '' ? '(untitled)' : title;
  }
  function mapLabel(map, index) {
    return map.name === null ? '(map ' + (index + 1) + ', no name)' : map.name;
  }

  // ---- findings, by what they concern ----
  const lessonFindings = [];
  const mapFindings = data.maps.map(() => []);
  const itemFindings = [];
  const sbFindings = new Map();
  for (const finding of data.findings) {
    const kind = finding[4];
    const index = finding[5];
    if (kind === 2) {
      if (!sbFindings.has(index)) sbFindings.set(index, []);
      sbFindings.get(index).push(finding);
    } else if (kind === 1 && mapFindings[index]) {
      mapFindings[index].push(finding);
      // An item's finding also stands beside the item, found by its position ("2.1").
      const at = finding[2].lastIndexOf(' / item ');
      if (at >= 0) {
        const position = finding[2].slice(at + 8);
        const byPosition = itemFindings[index] || (itemFindings[index] = new Map());
        if (!byPosition.has(position)) byPosition.set(position, []);
        byPosition.get(position).push(finding);
      }
    } else {
      lessonFindings.push(finding);
    }
  }
  function findingList(list) {
    const ul = el('ul', 'findings');
    for (const f of list) {
      const li = el('li', 'finding ' + (f[0] === 0 ? 'error' : 'warning'));
      add(li, el('span', 'severity', (f[0] === 0 ? 'error' : 'warning') + ' '), el('span', 'code', f[1]),
        el('span', 'place', f[2]), el('span', 'sentence', f[3]));
      ul.appendChild(li);
    }
    return ul;
  }
  // The findings folded under a line that counts them.
  function foldedFindings(list, open) {
    const errors = list.filter((f) => f[0] === 0).length;
    const details = el('details', 'folded-findings');
    details.open = open;
    add(details, el('summary', errors > 0 ? 'has-errors' : 'has-warnings',
      list.length + (list.length === 1 ? ' finding' : ' findings') + ' (' + errors + (errors === 1 ? ' error, ' : ' errors, ') +
      (list.length - errors) + (list.length - errors === 1 ? ' warning)' : ' warnings)')), findingList(list));
    return details;
  }
  function findingBadge(index) {
    const list = sbFindings.get(index);
    if (!list) return null;
    const errors = list.filter((f) => f[0] === 0).length;
    const badge = el('span', 'badge ' + (errors > 0 ? 'error' : 'warning'),
      (errors > 0 ? '\u26a0 ' : '') + list.length + (list.length === 1 ? ' finding' : ' findings'));
    return badge;
  }

  // ---- banner ----
  function drawBanner() {
    const banner = document.getElementById('banner');
    const lesson = data.lesson;
    if (lesson.classification !== '') banner.appendChild(el('div', 'classification', lesson.classification));
    add(banner, el('h1', 'lesson-title', lesson.title === '' ? '(untitled lesson)' : lesson.title));
    const identity = el('p', 'identity');
    const facts = [['Identifier', lesson.identifier], ['Lesson ID', lesson.id], ['File', data.file]];
    for (const [label, value] of facts) {
      const span = el('span');
      add(span, el('b', null, label + ': '), document.createTextNode(value === '' ? '(none)' : value));
      identity.appendChild(span);
    }
    banner.appendChild(identity);
    const noMap = sbs.reduce((n, sb) => n + (sb[SB.MAPS] === 0 ? 1 : 0), 0);
    banner.appendChild(el('p', 'counts', sbs.length + ' storyboards, ' + data.maps.length + ' maps, ' +
      noMap + ' in no map, ' + data.findings.length + ' findings'));
    if (lessonFindings.length > 0) banner.appendChild(foldedFindings(lessonFindings, lessonFindings.length <= 3));
    if (lesson.props.length > 0) {
      const details = el('details', 'lesson-props');
      add(details, el('summary', null, 'Lesson properties (' + lesson.props.length + ')'));
      details.addEventListener('toggle', () => {
        if (details.open && details.childNodes.length === 1) details.appendChild(propsTable(lesson.props));
      });
      banner.appendChild(details);
    }
  }

  // ---- maps as trees, drawn when opened ----
  function mapStructure(map) {
    if (map.tree) return map.tree;
    const items = map.items;
    const count = items.length / 2;
    const children = new Array(count);
    const top = [];
    const stack = [];
    for (let i = 0; i < count; i++) {
      const depth = items[2 * i];
      stack.length = depth;
      const parent = depth > 0 ? stack[depth - 1] : undefined;
      if (parent === undefined) {
        top.push(i);
      } else {
        (children[parent] || (children[parent] = [])).push(i);
      }
      stack[depth] = i;
    }
    map.tree = { top, children };
    return map.tree;
  }
  // `prefix` is the position of the items' parent and a point ("" at the top).
  function drawItems(map, ul, list, from, prefix) {
    const end = Math.min(list.length, from + CHUNK);
    for (let k = from; k < end; k++) ul.appendChild(treeItem(map, list[k], prefix + (k + 1)));
    if (end < list.length) {
      const more = el('button', 'more', 'Show ' + Math.min(CHUNK, list.length - end) + ' more of ' +
        (list.length - end));
      more.type = 'button';
      more.addEventListener('click', () => {
        more.remove();
        drawItems(map, ul, list, end, prefix);
      });
      ul.appendChild(add(el('li'), more));
    }
  }
  function itemBadge(map, position) {
    const byPosition = itemFindings[data.maps.indexOf(map)];
    const list = byPosition && byPosition.get(position);
    if (!list) return null;
    const errors = list.filter((f) => f[0] === 0).length;
    const badge = el('span', 'badge item-finding ' + (errors > 0 ? 'error' : 'warning'),
      list.map((f) => f[1]).join(' '));
    badge.title = list.map((f) => f[1] + ': ' + f[3]).join('\n');
    return badge;
  }
  function treeItem(map, i, position) {
    const ref = map.items[2 * i + 1];
    const li = el('li', 'node');
    li.setAttribute('role', 'treeitem');
    const row = el('div', 'node-row');
    const kids = map.tree.children[i];
    if (kids) {
      const toggle = el('button', 'toggle', '\u25b8');
      toggle.type = 'button';
      toggle.setAttribute('aria-expanded', 'false');
      toggle.setAttribute('aria-label', 'Open');
      let sub = null;
      toggle.addEventListener('click', () => {
        const open = toggle.getAttribute('aria-expanded') !== 'true';
        toggle.setAttribute('aria-expanded', String(open));
        toggle.textContent = open ? '\u25be' : '\u25b8';
        if (open && !sub) {
          sub = el('ul', 'tree');
          sub.setAttribute('role', 'group');
          drawItems(map, sub, kids, 0, position + '.');
          li.appendChild(sub);
        }
        if (sub) sub.hidden = !open;
      });
      row.appendChild(toggle);
    } else {
      row.appendChild(el('span', 'spacer'));
    }
    if (typeof ref === 'number') {
      const sb = sbs[ref];
      row.dataset.sb = String(ref);
      add(row, sbLink(ref, titleOf(ref)),
        el('span', 'sid', sb[SB.SHORT] === null ? '#-' : '#' + sb[SB.SHORT]),
        sb[SB.TYPE] === '' ? null : el('span', 'type', sb[SB.TYPE]), findingBadge(ref), itemBadge(map, position));
      if (ref === chosen) row.classList.add('chosen');
    } else {
      row.classList.add('missing');
      add(row, el('span', 'title', ref === null ? '(item without a storyboard identifier)' : '(not in the lesson)'),
        ref === null ? null : el('span', 'sid', ref), el('span', 'badge error', 'missing'), itemBadge(map, position));
    }
    li.appendChild(row);
    return li;
  }
  function drawMaps() {
    const holder = document.getElementById('maps');
    if (data.maps.length === 0) {
      holder.appendChild(el('p', 'empty', 'The lesson has no maps.'));
      return;
    }
    const order = data.maps.map((m, i) => i);
    order.sort((a, b) => (data.maps[b].default ? 1 : 0) - (data.maps[a].default ? 1 : 0));
    for (const index of order) {
      const map = data.maps[index];
      const section = el('section', 'map');
      section.dataset.map = String(index);
      const head = el('div', 'map-head');
      const button = el('button', 'map-toggle', '\u25b8 ' + mapLabel(map, index));
      button.type = 'button';
      button.setAttribute('aria-expanded', 'false');
      add(head, button, map.default ? el('span', 'badge default', 'default') : null,
        el('span', 'badge', (map.items.length / 2) + (map.items.length === 2 ? ' item' : ' items')));
      add(section, head);
      if (mapFindings[index].length > 0) section.appendChild(foldedFindings(mapFindings[index], false));
      let tree = null;
      const setOpen = (open) => {
        button.setAttribute('aria-expanded', String(open));
        button.textContent = (open ? '\u25be ' : '\u25b8 ') + mapLabel(map, index);
        if (open && !tree) {
          tree = el('ul', 'tree top');
          tree.setAttribute('role', 'tree');
          drawItems(map, tree, mapStructure(map).top, 0, '');
          if (map.items.length === 0) tree.appendChild(el('li', 'empty', 'No items.'));
          section.appendChild(tree);
        }
        if (tree) tree.hidden = !open;
      };
      button.addEventListener('click', () => setOpen(button.getAttribute('aria-expanded') !== 'true'));
      holder.appendChild(section);
      if (map.default) setOpen(true);
    }
  }

  // ---- the storyboard list: only the rows in view exist ----
  const listBox = document.getElementById('list');
  const listSpace = document.getElementById('list-space');
  const listCount = document.getElementById('list-count');
  let shown = sbs.map((sb, i) => i);
  let chosen = -1;
  let searchText = null;

  function listRow(index, position) {
    const sb = sbs[index];
    const row = el('div', 'sb-row' + (index === chosen ? ' chosen' : ''));
    row.setAttribute('role', 'option');
    row.dataset.sb = String(index);
    row.style.top = (position * ROW_HEIGHT) + 'px';
    add(row, el('span', 'title', titleOf(index)),
      el('span', 'sid', sb[SB.SHORT] === null ? '#-' : '#' + sb[SB.SHORT]),
      sb[SB.TYPE] === '' ? null : el('span', 'type', sb[SB.TYPE]),
      sb[SB.MAPS] === 0 ? el('span', 'badge nomap', 'in no map') : null, findingBadge(index));
    row.title = sb[SB.SBID];
    return row;
  }
  function drawList() {
    listSpace.style.height = (shown.length * ROW_HEIGHT) + 'px';
    const first = Math.max(0, Math.floor(listBox.scrollTop / ROW_HEIGHT) - 5);
    const last = Math.min(shown.length, first + Math.ceil((listBox.clientHeight || 600) / ROW_HEIGHT) + 10);
    const rows = [];
    for (let p = first; p < last; p++) rows.push(listRow(shown[p], p));
    listSpace.replaceChildren(...rows);
    listCount.textContent = shown.length === sbs.length
      ? sbs.length + ' storyboards'
      : shown.length + ' of ' + sbs.length + ' storyboards';
  }
  listBox.addEventListener('scroll', () => window.requestAnimationFrame(drawList));
  listBox.addEventListener('click', (event) => {
    const row = event.target.closest('.sb-row');
    if (row) go(Number(row.dataset.sb));
  });
  window.addEventListener('resize', drawList);

  // The text the filter looks in: title, SBID, type, identifier and every
  // text in the properties, made once, on the first filtering.
  function collectText(bag, out) {
    for (const p of bag) {
      out.push(p[0]);
      const type = p[1];
      const value = p[2];
      if (type === T.BAG) {
        collectText(value, out);
      } else if (type === T.LIST) {
        for (const element of value) {
          out.push(element[0], element[1]);
          collectText(element[2], out);
        }
      } else if (type === T.FONT || type === T.ASSET) {
        out.push(...value.filter((v) => typeof v === 'string'));
      } else if (type === T.LOCATION) {
        out.push(...value.filter((v) => typeof v === 'string'));
      } else if (value !== null && typeof value !== 'object') {
        out.push(String(value));
      }
    }
  }
  function buildSearchText() {
    searchText = new Array(sbs.length);
    for (let i = 0; i < sbs.length; i++) {
      const sb = sbs[i];
      const out = [sb[SB.TITLE], sb[SB.SBID], sb[SB.TYPE], sb[SB.IDENT]];
      collectText(sb[SB.PROPS], out);
      for (const element of sb[SB.ELEMENTS]) {
        out.push(element[0], element[1]);
        collectText(element[2], out);
      }
      searchText[i] = out.join('\u0001').toLowerCase();
    }
  }
  function applyFilter(text) {
    const needle = text.trim().toLowerCase();
    if (needle === '') {
      shown = sbs.map((sb, i) => i);
    } else {
      if (searchText === null) buildSearchText();
      shown = [];
      for (let i = 0; i < sbs.length; i++) {
        if (searchText[i].includes(needle)) shown.push(i);
      }
    }
    listBox.scrollTop = 0;
    drawList();
    // Says which filter the list shows, for whoever waits on it.
    listBox.dataset.filter = text;
  }
  let filterTimer = 0;
  document.getElementById('filter').addEventListener('input', (event) => {
    window.clearTimeout(filterTimer);
    const value = event.target.value;
    filterTimer = window.setTimeout(() => applyFilter(value), 80);
  });

  // ---- property values ----
  function colourOf(text) {
    const match = /#[0-9A-Fa-f]{6}\b/.exec(text);
    return match ? match[0] : null;
  }
  function refNode(ref) {
    if (typeof ref === 'number') return sbLink(ref, titleOf(ref));
    return el('span', 'missing-ref', ref + ' (not in the lesson)');
  }
  function valueNode(type, value) {
    const cell = document.createDocumentFragment();
    switch (type) {
      case T.BOOLEAN: cell.appendChild(document.createTextNode(value ? 'true' : 'false')); break;
      case T.LONG:
      case T.DOUBLE: cell.appendChild(document.createTextNode(String(value))); break;
      case T.STRING: cell.appendChild(el('span', 'text', value)); break;
      case T.DATE: cell.appendChild(el('time', 'date', value)); break;
      case T.COLOR: {
        const swatch = el('span', 'swatch');
        const colour = colourOf(value);
        if (colour) swatch.style.backgroundColor = colour;
        add(cell, swatch, el('code', 'colour', value));
        break;
      }
      case T.FONT: {
        const [name, size, style] = value;
        const words = [];
        if (style & 1) words.push('bold');
        if (style & 2) words.push('italic');
        if (style & 4) words.push('underline');
        const sample = el('span', 'font-sample', name + ' ' + size + 'pt' + (words.length ? ' ' + words.join(' ') : ''));
        sample.style.fontFamily = '"' + name.replace(/["\\]/g, '\\$&') + '", sans-serif';
        sample.style.fontSize = Math.max(8, Math.min(40, size * 4 / 3)) + 'px';
        if (style & 1) sample.style.fontWeight = 'bold';
        if (style & 2) sample.style.fontStyle = 'italic';
        if (style & 4) sample.style.textDecoration = 'underline';
        cell.appendChild(sample);
        break;
      }
      case T.RECTANGLE:
        cell.appendChild(document.createTextNode('left ' + value[0] + ', top ' + value[1] + ', width ' + value[2] +
          ', height ' + value[3]));
        break;
      case T.ASSET: {
        const details = el('details', 'asset');
        add(details, el('summary', null, value[0] === '' ? '(no file)' : value[0]));
        const facts = el('dl', 'facts');
        add(facts, el('dt', null, 'File'), el('dd', null, value[0]), el('dt', null, 'Description'),
          el('dd', null, value[1]), el('dt', null, 'Source'), el('dd', null, value[2]));
        details.appendChild(facts);
        cell.appendChild(details);
        break;
      }
      case T.LOCATION: {
        const [from, to, map] = value;
        cell.appendChild(document.createTextNode('from '));
        cell.appendChild(from === '' ? el('span', 'empty', '(none)') : refNode(from));
        if (to !== '') {
          cell.appendChild(document.createTextNode(' to '));
          cell.appendChild(refNode(to));
        }
        if (map !== '') cell.appendChild(document.createTextNode(' in map \u201c' + map + '\u201d'));
        break;
      }
      case T.BAG: cell.appendChild(propsTable(value)); break;
      case T.LIST: cell.appendChild(elementList(value)); break;
      default: cell.appendChild(el('span', 'empty', '(no value)'));
    }
    return cell;
  }
  function propsTable(bag) {
    if (bag.length === 0) return el('p', 'empty', 'No properties.');
    const table = el('table', 'props');
    const body = el('tbody');
    for (const p of bag) {
      const tr = el('tr');
      tr.dataset.type = TYPE_NAMES[p[1]] || 'unknown';
      const typeCell = el('td', 'ptype', TYPE_NAMES[p[1]] || 'unknown');
      if (p[3] === 1) add(typeCell, el('br'), el('span', 'encoded', 'base64'));
      const valueCell = el('td', 'value');
      valueCell.appendChild(valueNode(p[1], p[2]));
      add(tr, el('th', null, p[0]), typeCell, valueCell);
      body.appendChild(tr);
    }
    table.appendChild(body);
    return table;
  }
  function elementList(elements) {
    const holder = el('div', 'elements');
    if (elements.length === 0) holder.appendChild(el('p', 'empty', 'No elements.'));
    elements.forEach((element, i) => {
      const box = el('div', 'element');
      box.dataset.element = String(i);
      add(box, el('h4', null, '[' + i + '] ' + (element[0] === '' ? '(no name)' : element[0]) +
        (element[1] === '' ? '' : ' (' + element[1] + ')')), propsTable(element[2]));
      holder.appendChild(box);
    });
    return holder;
  }

  // ---- the screen preview: every element with a rectangle, in list order ----
  function screenPreview(elements) {
    const boxes = [];
    elements.forEach((element, i) => {
      const rect = element[2].find((p) => p[1] === T.RECTANGLE);
      if (rect) boxes.push({ i, name: element[0], type: element[1], r: rect[2] });
    });
    const wrap = el('div', 'stage-wrap');
    if (boxes.length === 0) {
      wrap.appendChild(el('p', 'empty', 'No element has a rectangle.'));
      return wrap;
    }
    let minX = 0; let minY = 0; let maxX = 1; let maxY = 1;
    for (const b of boxes) {
      minX = Math.min(minX, b.r[0]); minY = Math.min(minY, b.r[1]);
      maxX = Math.max(maxX, b.r[0] + Math.max(0, b.r[2])); maxY = Math.max(maxY, b.r[1] + Math.max(0, b.r[3]));
    }
    const width = maxX - minX;
    const height = maxY - minY;
    const scale = Math.min(1, 560 / width, 420 / height);
    const stage = el('div', 'stage');
    stage.style.width = Math.ceil(width * scale) + 'px';
    stage.style.height = Math.ceil(height * scale) + 'px';
    stage.dataset.scale = String(scale);
    for (const b of boxes) {
      const box = el('div', 'box');
      box.dataset.element = String(b.i);
      box.style.left = ((b.r[0] - minX) * scale) + 'px';
      box.style.top = ((b.r[1] - minY) * scale) + 'px';
      box.style.width = (Math.max(0, b.r[2]) * scale) + 'px';
      box.style.height = (Math.max(0, b.r[3]) * scale) + 'px';
      box.style.zIndex = String(b.i + 1);
      const label = (b.name === '' ? '(no name)' : b.name) + (b.type === '' ? '' : ' (' + b.type + ')');
      box.title = label + ': left ' + b.r[0] + ', top ' + b.r[1] + ', width ' + b.r[2] + ', height ' + b.r[3];
      box.appendChild(el('span', null, label));
      stage.appendChild(box);
    }
    add(wrap, stage, el('p', 'stage-note', boxes.length + (boxes.length === 1 ? ' element' : ' elements') +
      ' drawn at ' + Math.round(scale * 100) + '% of ' + width + ' \u00d7 ' + height));
    return wrap;
  }

  // ---- the panel of the chosen storyboard ----
  function mapsOf(index) {
    const names = [];
    data.maps.forEach((map, m) => {
      for (let k = 1; k < map.items.length; k += 2) {
        if (map.items[k] === index) {
          names.push(mapLabel(map, m) + (map.default ? ' (default)' : ''));
          return;
        }
      }
    });
    return names;
  }
  function drawPanel(index) {
    const panel = document.getElementById('panel');
    const sb = sbs[index];
    const nodes = [];
    nodes.push(el('h2', 'sb-title', titleOf(index)));
    const facts = el('dl', 'facts');
    const maps = mapsOf(index);
    const rows = [['SBID', sb[SB.SBID]], ['Short id', sb[SB.SHORT] === null ? '(none)' : '#' + sb[SB.SHORT]],
      ['Type', sb[SB.TYPE]], ['Identifier', sb[SB.IDENT]], ['Classification', sb[SB.CLASS]],
      ['Maps', maps.length === 0 ? 'in no map' : maps.join(', ')]];
    for (const [label, value] of rows) add(facts, el('dt', null, label), el('dd', null, value === '' ? '(none)' : value));
    nodes.push(facts);
    const found = sbFindings.get(index);
    if (found) nodes.push(el('h3', null, 'Findings'), findingList(found));
    nodes.push(el('h3', null, 'Screen'), screenPreview(sb[SB.ELEMENTS]));
    nodes.push(el('h3', null, 'Properties'), propsTable(sb[SB.PROPS]));
    nodes.push(el('h3', null, 'Child elements (' + sb[SB.ELEMENTS].length + ')'), elementList(sb[SB.ELEMENTS]));
    panel.replaceChildren(...nodes);
    panel.dataset.sb = String(index);
    panel.scrollTop = 0;
  }

  function markChosen() {
    for (const node of document.querySelectorAll('.chosen')) node.classList.remove('chosen');
    for (const node of document.querySelectorAll('[data-sb="' + chosen + '"]')) {
      if (node.classList.contains('node-row') || node.classList.contains('sb-row')) node.classList.add('chosen');
    }
  }
  function choose(index) {
    if (!(index >= 0 && index < sbs.length)) return;
    chosen = index;
    drawPanel(index);
    markChosen();
  }
  function go(index) {
    if (location.hash === '#sb-' + index) {
      choose(index);
    } else {
      location.hash = 'sb-' + index;
    }
  }
  function fromHash() {
    const match = /^#sb-(\d+)$/.exec(location.hash);
    if (match) choose(Number(match[1]));
  }
  window.addEventListener('hashchange', fromHash);

  document.title = data.lesson.title === '' ? data.file : data.lesson.title;
  drawBanner();
  drawMaps();
  drawList();
  fromHash();
  document.body.dataset.ready = 'true';
})();
