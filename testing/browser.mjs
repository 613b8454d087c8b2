// A browser whose pages run the script API on a native side that only records: pages come from two local
// origins, and each page gets `voice`, with which a test delivers commands and looks at what the script did.
import { readFileSync } from 'node:fs';
import assert from 'node:assert/strict';
import { createServer } from 'node:http';
import { inspect } from 'node:util';
import { chromium } from 'playwright-core';

const scriptFolder = new URL('../src/voice-interaction/script/', import.meta.url);
const browserArguments =
  '--no-sandbox --disable-gpu --disable-quic --no-first-run --disable-background-networking ' +
  '--disable-component-update --disable-sync';

/** The packed script API named by CORVIS_SCRIPT_API, or else its files joined in their order. */
export function scriptText() {
  const packed = process.env.CORVIS_SCRIPT_API;
  if (packed) return readFileSync(packed, 'utf8');
  const files = readFileSync(new URL('files.txt', scriptFolder), 'utf8').trim().split('\n');
  return files.map((name) => readFileSync(new URL(name, scriptFolder), 'utf8')).join('\n');
}

const pageScript = (name) => readFileSync(new URL(`page/${name}`, import.meta.url), 'utf8');

/** The text of a function that maps a page in the plainest way; runs inside the page. */
export const plainElementMap = `(function () { ${pageScript('plain-element-map.js')} })`;

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

/** Starts the browser and two servers of different origins; `close` ends all of it. */
export async function startBrowser() {
  const documents = new Map();
  const servers = [await serve(documents), await serve(documents)];
  const origins = servers.map((server) => `http://127.0.0.1:${server.address().port}`);
  const executablePath = process.env.CORVIS_CHROMIUM ?? '/usr/bin/chromium';
  const browser = await chromium.launch({ executablePath, args: browserArguments.split(' ') });

  return {
    origins,
    /** Makes `html` available at `path` of both origins. */
    addDocument: (path, html) => documents.set(path, html),
    /** A page that shows `html` and has `voice`, whose built-in handlers are registered. */
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

/** The value of `expression` in the page, where `voice` and its members are in scope; an error as its text. */
export function evaluate(page, expression) {
  const scope =
    'const { api, calls, logs, logged, listeners, deliver, contentContext, peek, outcome, mismatch } = voice';
  return page.evaluate(`(() => { ${scope}; return outcome(() => (${expression})); })()`);
}

/**
 * Checks a table with a row `expression → expected expression` on each line, both evaluated in the page and in this
 * order; an error counts as its text. A failure shows every row that is off.
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
