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

/** Runs in the page: defines `voice`, the script API beside the recording native side that it talks to. */
function installVoice(text) {
  const state = { calls: [], logs: [], listeners: new Map(), failing: {}, throwing: {} };
  class NativeManager {
    constructor(channel) {
      state.channel = channel;
    }
    callSync(name, args) {
      state.calls.push([name, JSON.parse(JSON.stringify(args))]);
      if (state.throwing[name]) throw new Error(`no ${name}`);
      if (state.failing[name]) return { status: 'error', error: state.failing[name] };
      return { status: 'success', result: '1.0.8' };
    }
    isFailure(result) {
      return result.status === 'error';
    }
    getErrorObject(result) {
      return Object.assign(new Error(result.error), { name: 'SecurityError' });
    }
    addListener(id, listener) {
      state.listeners.set(id, listener);
    }
    removeListener(id, listener) {
      if (state.listeners.get(id) === listener) state.listeners.delete(id);
    }
  }
  class CorviException extends Error {
    static TYPE_MISMATCH_ERR = 17;
    constructor(code, message) {
      super(message);
      this.name = code === CorviException.TYPE_MISMATCH_ERR ? 'TypeMismatchError' : `code ${code}`;
    }
  }
  const xwalk = { utils: { type: {}, converter: {}, validator: { Types: {} }, NativeManager } };
  const fakeConsole = { log: (...args) => state.logs.push(args.join(' ')) };
  // `peek` is an eval inside the script's scope, for the few tests that ask for internals.
  const body = `var exports;${text}\n;return { api: exports, peek: function (code) { return eval(code); } };`;
  const wrap = new Function('extension', 'xwalk', 'CorviException', 'console', body);
  const made = wrap('the channel', xwalk, CorviException, fakeConsole);

  window.voice = Object.assign(state, made, {
    /** The answer to a command; delivered to the script's one listener even where the page didn't register. */
    deliver(action, param, listenerId = 'ACTION_ITEM_SELECTION') {
      state.calls.length = 0;
      const message = { action, listenerId };
      if (param !== undefined) message.param = param;
      state.listeners.get(listenerId)(message);
      const answers = state.calls.filter(([name]) => name === 'Response');
      if (answers.length !== 1 || answers[0][1].action !== action) return { answers };
      return answers[0][1].response;
    },
    /** "name: message" of what `action` throws, or what it returns. */
    outcome(action) {
      try {
        return action();
      } catch (error) {
        return `${error.name}: ${error.message}`;
      }
    },
    contentContext: () => JSON.parse(state.deliver('ACTION_REQUEST_CONTENT_CONTEXT')),
    mismatch: (message) => `TypeMismatchError: ${message}`,
    /** The lines that \`action\` writes to the log. */
    logged(action) {
      state.logs.length = 0;
      action();
      return state.logs.slice();
    },
  });
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
      await page.evaluate(installVoice, scriptText());
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
