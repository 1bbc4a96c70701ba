// The browser side of the tests: the system's Chromium, headless, driven by
// puppeteer-core, with every request other than the page's own file refused
// and recorded, and every console error, script error and dialog recorded.

import fs from 'node:fs';
import { pathToFileURL } from 'node:url';
import puppeteer from 'puppeteer-core';

export function findChromium() {
  const candidates = [process.env.CHROMIUM, '/usr/bin/chromium', '/usr/bin/chromium-browser'];
  for (const candidate of candidates) {
    if (candidate && fs.existsSync(candidate)) return candidate;
  }
  throw new Error('Chromium not found (apt-get install chromium, or set CHROMIUM)');
}

export async function launch() {
  const args = ['--headless=new', '--disable-gpu', '--no-first-run', '--no-default-browser-check',
    '--disable-background-networking', '--disable-component-update', '--disable-sync',
    '--disable-dev-shm-usage', '--allow-file-access-from-files'];
  if (typeof process.getuid === 'function' && process.getuid() === 0) args.push('--no-sandbox');
  return puppeteer.launch({ executablePath: findChromium(), headless: true, args, defaultViewport: { width: 1400, height: 900 } });
}

// Opens the file and returns the page with what it recorded:
// { page, requests, consoleErrors, pageErrors, dialogs }.
export async function open(browser, file) {
  const page = await browser.newPage();
  const url = pathToFileURL(file).href;
  const seen = { page, requests: [], consoleErrors: [], pageErrors: [], dialogs: [] };
  await page.setRequestInterception(true);
  page.on('request', (request) => {
    if (request.url() === url && request.isNavigationRequest()) {
      request.continue();
    } else {
      seen.requests.push(request.url());
      request.abort();
    }
  });
  page.on('console', (message) => {
    if (message.type() === 'error') seen.consoleErrors.push(message.text());
  });
  page.on('pageerror', (error) => seen.pageErrors.push(String(error)));
  page.on('dialog', async (dialog) => {
    seen.dialogs.push(dialog.message());
    await dialog.dismiss();
  });
  await page.goto(url, { waitUntil: 'load' });
  await page.waitForSelector('body[data-ready="true"]', { timeout: 60000 });
  return seen;
}

// Nothing went wrong on the page: no request, no console error, no script
// error, no dialog.
export function assertClean(assert, seen) {
  assert.deepEqual(seen.requests, [], 'requests from the page');
  assert.deepEqual(seen.consoleErrors, [], 'console errors');
  assert.deepEqual(seen.pageErrors, [], 'script errors');
  assert.deepEqual(seen.dialogs, [], 'dialogs');
}
