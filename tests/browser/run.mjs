// Runs the browser tests of the page `quillbank view` writes.
//
//   node run.mjs --quillbank PATH --write-lessons PATH --data DIR --work DIR [--only TEXT]
//
// Writes the pages of the sample lessons (DIR holds them) and of a generated
// lesson of 10,000 storyboards into the work folder, then runs every test in
// a fresh page of one headless Chromium. Ends with "N passed, N failed" and
// exit status 1 when a test failed (2 when the pages could not be made).

import assert from 'node:assert/strict';
import { execFileSync } from 'node:child_process';
import fs from 'node:fs';
import path from 'node:path';
import { launch } from './harness.mjs';
import { tests } from './view_tests.mjs';

function options(argv) {
  const given = {};
  for (let i = 2; i < argv.length; i += 2) given[argv[i].replace(/^--/, '')] = argv[i + 1];
  for (const required of ['quillbank', 'write-lessons', 'data', 'work']) {
    if (!given[required]) {
      console.error('usage: node run.mjs --quillbank PATH --write-lessons PATH --data DIR --work DIR [--only TEXT]');
      process.exit(2);
    }
  }
  return given;
}

// The pages the tests open, by name: { html, xml }.
function makePages(given) {
  fs.rmSync(given.work, { recursive: true, force: true });
  fs.mkdirSync(given.work, { recursive: true });
  const pages = {};
  const view = (name, xml) => {
    const html = path.join(given.work, name + '.html');
    execFileSync(given.quillbank, ['view', xml, '-o', html], { stdio: ['ignore', 'ignore', 'inherit'] });
    pages[name] = { html, xml };
  };
  view('water-cycle', path.join(given.data, 'cli', 'water-cycle.xml'));
  view('problems', path.join(given.data, 'cli', 'problems.xml'));
  view('hostile', path.join(given.data, 'cli', 'view-hostile.xml'));
  view('lesson-normal', path.join(given.data, 'lesson_normal.xml'));
  const large = path.join(given.work, 'large');
  execFileSync(given['write-lessons'], [large, '1', '10000'], { stdio: 'inherit' });
  view('large', path.join(large, 'lesson-0001.xml'));
  return pages;
}

const given = options(process.argv);
let pages;
try {
  pages = makePages(given);
} catch (error) {
  console.error('browser tests: the pages could not be made: ' + error.message);
  process.exit(2);
}

const browser = await launch();
let passed = 0;
let failed = 0;
const started = Date.now();
for (const test of tests) {
  if (given.only && !test.name.includes(given.only)) continue;
  const context = await browser.createBrowserContext();
  const t0 = Date.now();
  try {
    await test.run({ assert, pages, browser: context });
    passed++;
    console.log('ok    ' + test.name + ' (' + (Date.now() - t0) + ' ms)');
  } catch (error) {
    failed++;
    console.log('FAIL  ' + test.name + ' (' + (Date.now() - t0) + ' ms)');
    console.log('      ' + String(error && error.stack ? error.stack : error).split('\n').join('\n      '));
  } finally {
    await context.close();
  }
}
await browser.close();
console.log('browser tests: ' + passed + ' passed, ' + failed + ' failed (' +
  ((Date.now() - started) / 1000).toFixed(1) + ' s)');
process.exit(failed > 0 ? 1 : 0);
