// Takes the screenshots of the sample lessons' pages shown in the README.
//
//   node screenshots.mjs --quillbank PATH --data DIR --work DIR --out DIR
//
// Writes OUT/view-water-cycle.png (a storyboard with its screen preview)
// and OUT/view-problems.png (findings, a missing storyboard, one in no map).

import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { assertClean, launch, open } from './harness.mjs';
import assert from 'node:assert/strict';

const given = {};
for (let i = 2; i < process.argv.length; i += 2) given[process.argv[i].replace(/^--/, '')] = process.argv[i + 1];
for (const required of ['quillbank', 'data', 'work', 'out']) {
  if (!given[required]) {
    console.error('usage: node screenshots.mjs --quillbank PATH --data DIR --work DIR --out DIR');
    process.exit(2);
  }
}
fs.mkdirSync(given.work, { recursive: true });
fs.mkdirSync(given.out, { recursive: true });

const shots = [
  { name: 'water-cycle', file: 'water-cycle.xml', storyboard: 'Évaporation', open: [] },
  { name: 'problems', file: 'problems.xml', storyboard: 'First', open: ['.map[data-map="0"] ul.tree.top > li:first-child .toggle'] },
];

const browser = await launch();
for (const shot of shots) {
  const html = path.join(given.work, shot.name + '.html');
  execFileSync(given.quillbank, ['view', path.join(given.data, 'cli', shot.file), '-o', html]);
  const seen = await open(browser, html);
  const { page } = seen;
  await page.setViewport({ width: 1280, height: 720 });
  for (const selector of shot.open) await page.click(selector);
  await page.$$eval('.sb-row', (rows, wanted) => {
    rows.find((r) => r.querySelector('.title').textContent === wanted).click();
  }, shot.storyboard);
  await page.waitForFunction((wanted) => document.querySelector('#panel .sb-title')?.textContent === wanted, {},
    shot.storyboard);
  assertClean(assert, seen);
  const out = path.join(given.out, 'view-' + shot.name + '.png');
  await page.screenshot({ path: out, type: 'png' });
  await page.close();
  console.log(out);
}
await browser.close();
