// A browser whose pages run the script API on a recording fake of the native side. Pages are served from two local
// origins; in each page the object `voice` delivers commands and exposes what the script did.
import { readFileSync } from 'node:fs';
import assert from 'node:assert/strict';
import { createServer } from 'node:http';
import { after, before, test } from 'node:test';
import { inspect } from 'node:util';
import { chromium } from 'playwright-core';

const scriptFolder = new URL('../src/voice-interaction/script/', import.meta.url);
const browserArguments =
  '--no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking ' +
  '--disable-component-update --disable-sync';

/** The packed script API named by CORVIS_SCRIPT_API, or its source files joined in order. */
export function scriptText() {
  const packed = process.env.CORVIS_SCRIPT_API;
  if (packed) return readFileSync(packed, 'utf8');
  const files = readFileSync(new URL('files.txt', scriptFolder), 'utf8').trim().split('\n');
  return files.map((name) => readFileSync(new URL(name, scriptFolder), 'utf8')).join('\n');
}

const pageScript = (name) => readFileSync(new URL(`page/${name}`, import.meta.url), 'utf8');

/** The source of a reference implementation of the element map, to be run inside the page. */
export const plainElementMap = `(function () { ${pageScript('plain-element-map.js')} })`;

/** The object `voice` in this program instead of a page. */
export const newVoice = () => new Function('scriptText', pageScript('voice.js'))(scriptText());

/** Runs in the page: defines `voice`. */
function installVoice([body, text]) {
  window.voice = new Function('scriptText', body)(text);
}

function serve(documents) {
  return new Promise((resolve) => {
    const server = createServer((request, response) => {
      response.setHeader('Content-Type', 'text/html; charset=utf-8');
      response.end(documents.get(request.url) ?? '');
    });
    server.listen(0, '127.0.0.1', () => resolve(server));
  });
}

export function launchBrowser() {
  const executablePath = process.env.CORVIS_CHROMIUM ?? '/usr/bin/chromium';
  return chromium.launch({ executablePath, args: browserArguments.split(' ') });
}

/** Starts the browser and two servers of different origins; `close` stops them all. */
export async function startBrowser() {
  const documents = new Map();
  const servers = [await serve(documents), await serve(documents)];
  const origins = servers.map((server) => `http://127.0.0.1:${server.address().port}`);
  const browser = await launchBrowser();

  return {
    origins,
    /** Serves `html` at `path` of both origins. */
    addDocument: (path, html) => documents.set(path, html),
    /** Opens a page with `html` and `voice`; the script's built-in handlers are registered. */
    async open(html) {
      documents.set('/', `<!doctype html><meta charset="utf-8"><title></title>${html}`);
      const page = await browser.newPage({ viewport: { width: 1280, height: 720 } });
      await page.goto(origins[0]);
      await page.evaluate(installVoice, [pageScript('voice.js'), scriptText()]);
      await page.evaluate(() => window.voice.api.setCallback({ unused: true }));
      return page;
    },
    async close() {
      await browser.close();
      servers.forEach((server) => server.closeAllConnections() ?? server.close());
    },
  };
}

/** Evaluates `expression` in the page, with `voice` and its members in scope; returns an error as its text. */
export function evaluate(page, expression) {
  const scope =
    'const { api, calls, logs, logged, listeners, deliver, contentContext, peek, outcome, mismatch } = voice';
  return page.evaluate(`(() => { ${scope}; return outcome(() => (${expression})); })()`);
}

/**
 * Checks a table with a row `expression → expected expression` on each line. Evaluates both in the page, in this order;
 * an error counts as its text. A failure lists every row that differs.
 */
export async function checkTable(page, table) {
  const rows = table
    .trim()
    .split('\n')
    .map((line) => line.trim().split(' → '));
  const values = await evaluate(page, `[${rows.flat().map((side) => `outcome(() => (${side}))`)}]`);
  const row = (i, value) => `${rows[i][0]} → ${inspect(value, { breakLength: Infinity, depth: 9 })}`;
  const [actual, expected] = [0, 1].map((side) => rows.map((_, i) => row(i, values[2 * i + side])));
  assert.deepEqual(actual, expected);
}

/** Defines tests with a name and a table, as check('name')`rows`, on the page that `pageOf` returns when they run. */
export const checksOf =
  (pageOf) =>
  (name) =>
  (strings, ...values) =>
    test(name, () => checkTable(pageOf(), String.raw({ raw: strings }, ...values)));

/** The same on one empty page, in which the functions have run; `check.page()` is that. */
export function checksInPage(...functions) {
  let browser, page;
  before(async () => {
    browser = await startBrowser();
    page = await browser.open('');
    for (const prepare of functions) await page.evaluate(prepare);
  });
  after(() => browser.close());
  return Object.assign(
    checksOf(() => page),
    { page: () => page }
  );
}
