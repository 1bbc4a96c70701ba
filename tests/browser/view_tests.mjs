// The tests of the page `quillbank view` writes. Each gets { assert, pages,
// browser } and opens the pages it needs.

import fs from 'node:fs';
import { assertClean, open } from './harness.mjs';

const HOSTILE = [
  '</script><script>alert(1)</script>',
  '" onmouseover="alert(2)" x="',
  '<img src=x onerror=alert(3)>',
  "' onfocus='alert(4)",
  '<!--<script>',
];

// The texts of the nodes matching the selector.
function texts(page, selector) {
  return page.$$eval(selector, (nodes) => nodes.map((node) => node.textContent));
}

async function chooseInList(page, title) {
  await page.$$eval('.sb-row', (rows, wanted) => {
    const row = rows.find((r) => r.querySelector('.title').textContent === wanted);
    if (!row) throw new Error('no row titled ' + wanted);
    row.click();
  }, title);
  await page.waitForFunction((wanted) => {
    const heading = document.querySelector('#panel .sb-title');
    return heading && heading.textContent === wanted;
  }, {}, title);
}

// Opens the lesson's properties; the table is drawn by the details' toggle event, which comes a moment later.
async function openLessonProperties(page) {
  await page.click('.lesson-props summary');
  await page.waitForFunction(() => document.querySelector('.lesson-props > table.props') !== null);
}

async function typeFilter(page, text) {
  await page.click('#filter', { clickCount: 3 });
  await page.keyboard.press('Backspace');
  if (text !== '') await page.type('#filter', text);
  // The filter runs a moment after the last key; the list then says which filter it shows.
  await page.waitForFunction((wanted) => document.querySelector('#list')?.dataset.filter === wanted, {}, text);
}

export const tests = [
  {
    name: 'the sample lesson loads with no error and no request',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages['water-cycle'].html);
      const { page } = seen;
      assert.equal(await page.title(), 'The water cycle — évaporation & rain');
      assert.equal(await page.$eval('.classification', (n) => n.textContent), 'Internal Use');
      assert.equal(await page.$eval('.lesson-title', (n) => n.textContent), 'The water cycle — évaporation & rain');
      const identity = await page.$eval('.identity', (n) => n.textContent);
      assert.match(identity, /Identifier: SCI-204/);
      assert.match(identity, /Lesson ID: 8B5D0F37-21C9-4A6E-8E4F-6A0C3B9D7002/);
      assert.equal(await page.$eval('.counts', (n) => n.textContent), '9 storyboards, 3 maps, 0 in no map, 0 findings');
      assertClean(assert, seen);
    },
  },
  {
    name: 'maps are trees, the default first and marked, opened by clicking',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages['water-cycle'].html);
      const { page } = seen;
      assert.deepEqual(await texts(page, '.map-toggle'), ['\u25be Main', '\u25b8 Review', '\u25b8 Quick tour']);
      assert.deepEqual(await texts(page, '.map .badge.default'), ['default']);
      assert.equal(await page.$eval('.map[data-map="0"] .badge.default', (n) => n.textContent), 'default');
      // The default map is open: its three top-level items.
      const top = '.map[data-map="0"] ul.tree.top > li > .node-row .sb-link';
      assert.deepEqual(await texts(page, top), ['Where does rain come from?', 'Quiz: the stages', 'Summary']);
      const first = await page.$eval('.map[data-map="0"] ul.tree.top > li > .node-row', (row) =>
        [...row.querySelectorAll('.sid, .type')].map((n) => n.textContent));
      assert.deepEqual(first, ['#0', 'title']);
      // Children are drawn when their item is opened.
      assert.equal(await page.$$eval('.map[data-map="0"] ul.tree:not(.top)', (n) => n.length), 0);
      await page.click('.map[data-map="0"] ul.tree.top > li:first-child > .node-row .toggle');
      assert.deepEqual(await texts(page, '.map[data-map="0"] ul.tree.top > li:first-child > ul > li > .node-row .sb-link'),
        ['Évaporation', 'Condensation: clouds form', 'Precipitation']);
      await page.click('.map[data-map="0"] ul.tree.top > li:first-child > .node-row .toggle');
      assert.equal(await page.$eval('.map[data-map="0"] ul.tree.top > li:first-child > ul', (n) => n.hidden), true);
      // Another map opens on its own.
      assert.equal(await page.$$eval('.map[data-map="1"] ul.tree', (n) => n.length), 0);
      await page.click('.map[data-map="1"] .map-toggle');
      assert.deepEqual(await texts(page, '.map[data-map="1"] ul.tree.top > li > .node-row .sb-link'),
        ['Summary', 'Quiz: the stages', 'Quiz: the sun\'s part']);
      // Clicking an item shows its storyboard.
      await page.click('.map[data-map="1"] ul.tree.top > li:first-child .sb-link');
      await page.waitForFunction(() => document.querySelector('#panel .sb-title')?.textContent === 'Summary');
      assertClean(assert, seen);
    },
  },
  {
    name: 'the list filters by title, SBID, type and text in properties',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages['water-cycle'].html);
      const { page } = seen;
      assert.equal(await page.$eval('#list-count', (n) => n.textContent), '9 storyboards');
      assert.equal((await texts(page, '.sb-row .title')).length, 9);
      await typeFilter(page, 'quiz');
      assert.deepEqual(await texts(page, '.sb-row .title'), ['Quiz: the stages', 'Quiz: the sun\'s part']);
      assert.equal(await page.$eval('#list-count', (n) => n.textContent), '2 of 9 storyboards');
      await typeFilter(page, '3B9D7109');
      assert.deepEqual(await texts(page, '.sb-row .title'), ['用語集 (glossary)']);
      await typeFilter(page, 'REFERENCE');
      assert.deepEqual(await texts(page, '.sb-row .title'), ['用語集 (glossary)']);
      await typeFilter(page, 'well done');
      assert.deepEqual(await texts(page, '.sb-row .title'), ['Quiz: the stages', 'Quiz: the sun\'s part']);
      await typeFilter(page, 'evaporation-fr.mp3');
      assert.deepEqual(await texts(page, '.sb-row .title'), ['Évaporation']);
      await typeFilter(page, 'nothing like this');
      assert.equal(await page.$eval('#list-count', (n) => n.textContent), '0 of 9 storyboards');
      await typeFilter(page, '');
      assert.equal(await page.$eval('#list-count', (n) => n.textContent), '9 storyboards');
      assertClean(assert, seen);
    },
  },
  {
    name: 'the panel shows properties typed and decoded',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages['water-cycle'].html);
      const { page } = seen;
      await chooseInList(page, 'Where does rain come from?');
      const facts = await page.$eval('#panel dl.facts', (dl) => [...dl.children].map((n) => n.textContent));
      assert.deepEqual(facts, ['SBID', '8B5D0F37-21C9-4A6E-8E4F-6A0C3B9D7101', 'Short id', '#0', 'Type', 'title',
        'Identifier', 'W1', 'Classification', '(none)', 'Maps', 'Main (default), Quick tour']);
      const caption = await page.$eval('#panel > table.props tr', (tr) => [...tr.children].map((n) => n.textContent));
      assert.deepEqual(caption, ['caption', 'string', 'Follow one drop of water around the world.']);
      // A colour as a swatch with its HTML text.
      const colour = await page.$eval('#panel .element[data-element="1"] tr[data-type="color"] td.value', (td) =>
        [td.querySelector('.swatch').style.backgroundColor, td.textContent]);
      assert.deepEqual(colour, ['rgb(46, 134, 193)', '#2E86C1']);
      // An asset: its file, shown with its description and source when opened.
      const asset = '#panel .element[data-element="0"] details.asset';
      assert.equal(await page.$eval(asset + ' summary', (n) => n.textContent), 'globe.png');
      assert.equal(await page.$eval(asset + ' dl', (n) => n.checkVisibility()), false);
      await page.click(asset + ' summary');
      assert.equal(await page.$eval(asset + ' dl', (n) => n.checkVisibility()), true);
      assert.deepEqual(await page.$eval(asset + ' dl', (dl) => [...dl.querySelectorAll('dd')].map((n) => n.textContent)),
        ['globe.png', 'The Earth from space', 'Science picture library']);
      // Lesson properties: dates readable, fonts in their face, encoded texts decoded, nested bags as tables.
      await openLessonProperties(page);
      const rows = await page.$$eval('.lesson-props > table.props > tbody > tr', (trs) =>
        trs.map((tr) => [tr.children[0].textContent, tr.dataset.type, tr.children[1].querySelector('.encoded') !== null]));
      assert.deepEqual(rows, [['author', 'string', false], ['narration', 'string', true], ['notes_ja', 'string', true],
        ['playback', 'bag', false], ['reviewed', 'date', false], ['theme', 'color', false],
        ['titleFont', 'font', false], ['version', 'long', false]]);
      const font = await page.$eval('.lesson-props tr[data-type="font"] .font-sample', (n) =>
        [n.textContent, n.style.fontFamily, n.style.fontWeight, n.style.fontStyle]);
      assert.deepEqual(font, ['Georgia 20pt bold', 'Georgia, sans-serif', 'bold', '']);
      assert.equal(await page.$eval('.lesson-props tr[data-type="date"] td.value', (n) => n.textContent),
        '2023-07-16 12:00:00');
      const nested = await page.$$eval('.lesson-props tr[data-type="bag"] table.props tr > th', (ths) =>
        ths.map((n) => n.textContent));
      assert.deepEqual(nested, ['autoplay', 'music', 'volume']);
      assertClean(assert, seen);
    },
  },
  {
    name: 'nested lists show their elements as tables',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages['water-cycle'].html);
      const { page } = seen;
      await chooseInList(page, 'Quiz: the stages');
      const answers = await page.$$eval('#panel tr[data-type="list"] .element', (boxes) =>
        boxes.map((box) => [box.querySelector('h4').textContent,
          [...box.querySelectorAll('tr')].map((tr) => tr.children[2].textContent).join('|')]));
      assert.deepEqual(answers, [['[0] answer (choice)', 'false|Evaporation'], ['[1] answer (choice)', 'true|Condensation'],
        ['[2] answer (choice)', 'false|Collection']]);
      assertClean(assert, seen);
    },
  },
  {
    name: 'locations are links that jump to their storyboard',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages['water-cycle'].html);
      const { page } = seen;
      await chooseInList(page, 'Where does rain come from?');
      const link = '#panel .element[data-element="1"] tr[data-type="location"] a.sb-link';
      assert.equal(await page.$eval(link, (n) => n.textContent), 'Évaporation');
      await page.click(link);
      await page.waitForFunction(() => document.querySelector('#panel .sb-title')?.textContent === 'Évaporation');
      assert.equal(await page.evaluate(() => location.hash), '#sb-1');
      assert.deepEqual(await texts(page, '.sb-row.chosen .title'), ['Évaporation']);
      // Back goes to the storyboard before.
      await page.goBack();
      await page.waitForFunction(() =>
        document.querySelector('#panel .sb-title')?.textContent === 'Where does rain come from?');
      assertClean(assert, seen);
    },
  },
  {
    name: 'the screen preview draws every element with a rectangle to scale, in list order',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages['water-cycle'].html);
      const { page } = seen;
      await chooseInList(page, 'Évaporation');
      const stage = await page.$eval('#panel .stage', (n) => [Number(n.dataset.scale), n.style.width, n.style.height]);
      const scale = Math.min(1, 560 / 760, 420 / 340);
      assert.ok(Math.abs(stage[0] - scale) < 1e-9);
      assert.deepEqual(stage.slice(1), [Math.ceil(760 * scale) + 'px', Math.ceil(340 * scale) + 'px']);
      const boxes = await page.$$eval('#panel .stage .box', (nodes) => nodes.map((n) => {
        const stageBox = n.parentElement.getBoundingClientRect();
        const box = n.getBoundingClientRect();
        return { element: n.dataset.element, label: n.textContent, left: box.left - stageBox.left - 1,
          top: box.top - stageBox.top - 1, width: box.width, height: box.height };
      }));
      const expected = [
        { element: '0', label: 'body (text)', r: [40, 40, 400, 120] },
        { element: '1', label: 'diagram (image)', r: [460, 40, 300, 300] },
      ];
      assert.equal(boxes.length, expected.length);
      expected.forEach((want, i) => {
        assert.equal(boxes[i].element, want.element);
        assert.equal(boxes[i].label, want.label);
        for (const [k, key] of ['left', 'top', 'width', 'height'].entries()) {
          assert.ok(Math.abs(boxes[i][key] - want.r[k] * scale) < 1, key + ' of ' + want.label + ': ' + boxes[i][key]);
        }
      });
      // A storyboard without rectangles says so.
      await chooseInList(page, 'Summary');
      assert.equal(await page.$eval('#panel .stage-wrap', (n) => n.textContent), 'No element has a rectangle.');
      assertClean(assert, seen);
    },
  },
  {
    name: 'findings stand beside what they concern; missing storyboards and those in no map are marked',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages.problems.html);
      const { page } = seen;
      const lessonCodes = await texts(page, '#banner .finding .code');
      assert.ok(lessonCodes.includes('L01') && lessonCodes.includes('L02'), lessonCodes.join(' '));
      const mainCodes = await texts(page, '.map[data-map="0"] .finding .code');
      assert.ok(mainCodes.includes('M01') && mainCodes.includes('M02') && mainCodes.includes('M03'), mainCodes.join(' '));
      const missing = await page.$$eval('.map[data-map="0"] ul.tree.top > li > .node-row.missing', (rows) =>
        rows.map((row) => row.textContent));
      assert.deepEqual(missing, ['(item without a storyboard identifier)missingM02']);
      // An item's findings stand beside it too.
      const items = await page.$$eval('.map[data-map="0"] ul.tree.top > li > .node-row', (rows) =>
        rows.map((row) => row.querySelector('.item-finding')?.textContent ?? ''));
      assert.deepEqual(items, ['', 'M03', 'M02', 'M08']);
      assert.match(await page.$eval('.map[data-map="0"] ul.tree.top > li:nth-child(3) .item-finding', (n) => n.title),
        /^M02: the item names no storyboard$/);
      await page.click('.map[data-map="0"] ul.tree.top > li:first-child .toggle');
      const child = await page.$$eval('.map[data-map="0"] ul.tree.top > li:first-child > ul .node-row.missing', (rows) =>
        rows.map((row) => [...row.children].map((n) => n.textContent)));
      assert.deepEqual(child, [['', '(not in the lesson)', 'AAAAAAAA-0000-4000-8000-000000000009', 'missing', 'M01']]);
      const alone = await page.$$eval('.sb-row', (rows) => rows.filter((r) => r.querySelector('.badge.nomap'))
        .map((r) => r.querySelector('.title').textContent));
      assert.ok(alone.includes('Alone'), alone.join(', '));
      await chooseInList(page, 'Alone');
      assert.deepEqual(await texts(page, '#panel .finding .code'), ['S01']);
      assert.equal(await page.$eval('#panel dl.facts dd:last-child', (n) => n.textContent), 'in no map');
      // A location to a storyboard the lesson lacks is marked, not linked.
      await chooseInList(page, 'First');
      assert.deepEqual(await texts(page, '#panel > table.props tr[data-type="location"] .missing-ref'),
        ['AAAAAAAA-0000-4000-8000-000000000008 (not in the lesson)']);
      assertClean(assert, seen);
    },
  },
  {
    name: 'lesson text shows as text everywhere it lands',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages.hostile.html);
      const { page } = seen;
      assert.equal(await page.title(), HOSTILE[0]);
      assert.equal(await page.$eval('.lesson-title', (n) => n.textContent), HOSTILE[0]);
      assert.equal(await page.$eval('.classification', (n) => n.textContent), HOSTILE[2]);
      assert.match(await page.$eval('.identity', (n) => n.textContent), /Identifier: " onmouseover="alert\(2\)" x="/);
      await openLessonProperties(page);
      await page.click('.map[data-map="1"] .map-toggle');
      await page.click('.map[data-map="0"] ul.tree.top > li:first-child .toggle');
      await chooseInList(page, HOSTILE[0]);
      await page.click('#panel details.asset summary');
      // Every text of the lesson, as text, in each of its places.
      const places = {
        'map names': '.map-toggle', 'tree titles': '.node-row .sb-link', 'tree missing items': '.node-row.missing .sid',
        'tree types': '.node-row .type', 'list titles': '.sb-row .title', 'list types': '.sb-row .type',
        'short ids': '.sb-row .sid', 'panel title': '#panel .sb-title', 'panel facts': '#panel dl.facts dd',
        'property names': 'table.props th', 'property values': 'table.props td.value',
        'element headings': '.element h4', 'screen labels': '.box span', 'finding places': '.finding .place',
        'finding sentences': '.finding .sentence', 'asset details': 'details.asset dd',
        'lesson properties': '.lesson-props th',
      };
      for (const [what, selector] of Object.entries(places)) {
        const found = (await texts(page, selector)).join('\n');
        // Places are written as check writes them: quoted, with \" inside.
        const quoted = found.includes('onmouseover=\\"alert(2)\\"');
        assert.ok(HOSTILE.some((text) => found.includes(text)) || quoted, what + ': ' + found);
      }
      const font = await page.$eval('.lesson-props .font-sample', (n) => n.textContent);
      assert.equal(font, '" onmouseover="alert(2)" x=" ";}body{display:none 12pt italic');
      assert.equal(await page.$eval('body', (n) => getComputedStyle(n).display), 'flex');
      const value = await page.$eval('.lesson-props tr:first-child td.value', (n) => n.textContent);
      assert.equal(value, '<img src=x onerror=alert(3)> &amp; <!--<script> \u2028line\u2029para');
      // Nothing became markup: two scripts, no image, no handler attribute.
      assert.equal(await page.$$eval('script', (n) => n.length), 2);
      assert.equal(await page.$$eval('img', (n) => n.length), 0);
      const handlers = await page.$$eval('*', (nodes) => nodes.flatMap((n) =>
        [...n.attributes].map((a) => a.name).filter((name) => name.startsWith('on') || name === 'x')));
      assert.deepEqual(handlers, []);
      for (const box of await page.$$('#panel .box, .node-row, .sb-row, #panel th')) await box.hover();
      assertClean(assert, seen);
    },
  },
  {
    name: 'the lesson data in the page is escaped for the script element',
    async run({ assert, pages }) {
      const html = fs.readFileSync(pages.hostile.html, 'utf8');
      const start = html.indexOf('<script type="application/json" id="lesson-data">');
      const end = html.indexOf('</script>', start);
      const json = html.slice(start + '<script type="application/json" id="lesson-data">'.length, end);
      assert.ok(!/[<>&\u2028\u2029]/.test(json), 'raw < > & or line separators in the data');
      const data = JSON.parse(json);
      assert.equal(data.lesson.title, HOSTILE[0]);
      assert.equal(data.sbs[0][3], HOSTILE[0]);
      assert.match(html, /<title>&lt;\/script&gt;&lt;script&gt;alert\(1\)&lt;\/script&gt;<\/title>/);
    },
  },
  {
    name: 'another sample lesson loads with no error',
    async run({ assert, pages, browser }) {
      const seen = await open(browser, pages['lesson-normal'].html);
      const rows = await texts(seen.page, '.sb-row .title');
      assert.ok(rows.length > 0);
      await chooseInList(seen.page, rows[0]);
      assertClean(assert, seen);
    },
  },
  {
    name: 'a lesson of 10,000 storyboards stays within twice its XML and draws lazily',
    async run({ assert, pages, browser }) {
      const xmlSize = fs.statSync(pages.large.xml).size;
      const htmlSize = fs.statSync(pages.large.html).size;
      console.log('      10,000 storyboards: XML ' + xmlSize + ' bytes, page ' + htmlSize + ' bytes (' +
        (htmlSize / xmlSize).toFixed(2) + ' x)');
      assert.ok(htmlSize <= 2 * xmlSize, 'page ' + htmlSize + ' > 2 x ' + xmlSize);
      const t0 = Date.now();
      const seen = await open(browser, pages.large.html);
      const { page } = seen;
      const loaded = Date.now() - t0;
      assert.equal(await page.$eval('#list-count', (n) => n.textContent), '10000 storyboards');
      const elements = await page.evaluate(() => document.getElementsByTagName('*').length);
      const rows = await page.$$eval('.sb-row', (n) => n.length);
      assert.ok(rows > 0 && rows < 100, rows + ' list rows drawn');
      const treeItems = await page.$$eval('.node', (n) => n.length);
      assert.ok(treeItems > 0 && treeItems <= 200, treeItems + ' tree items drawn');
      assert.ok(elements < 3000, elements + ' elements on the page');
      // Scrolling draws the rows in view.
      await page.$eval('#list', (n) => { n.scrollTop = 5000 * 28; });
      await page.waitForFunction(() => document.querySelector('.sb-row[data-sb="5000"]') !== null);
      const t1 = Date.now();
      await typeFilter(page, 'halves and quarters');
      const filtered = await page.$eval('#list-count', (n) => n.textContent);
      const filterTime = Date.now() - t1;
      assert.match(filtered, /^\d+ of 10000 storyboards$/);
      assert.ok(await page.$$eval('.sb-row', (n) => n.length) < 100);
      // The page answers while and after filtering.
      const answer = await page.evaluate(() => new Promise((resolve) => {
        const t = performance.now();
        setTimeout(() => resolve(performance.now() - t), 0);
      }));
      const firstRow = await page.$eval('.sb-row', (n) => n.dataset.sb);
      await page.click('.sb-row');
      await page.waitForFunction((sb) => document.getElementById('panel').dataset.sb === sb, {}, firstRow);
      console.log('      load ' + loaded + ' ms, first filter ' + filterTime + ' ms, ' +
        elements + ' elements, ' + filtered + ', a timer after ' + answer.toFixed(1) + ' ms');
      assertClean(assert, seen);
    },
  },
];
