// The simulator as a plain script in a page of a browser: under a content security policy, and what a page without voice
// notices of it.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { packageFolder, useBrowser } from './application.mjs';

const site = {
  '/simulator.js': readFileSync(path.join(packageFolder, 'simulator/script.js'), 'utf8'),
  '/simulator.mjs': readFileSync(path.join(packageFolder, 'simulator/index.js'), 'utf8'),
  '/page.js': `corvis.voiceinteraction.setCallback({ onplay: function () { return document.title; } });
    corvis.voiceinteraction.listen();`,
  '/install.js': 'var tv = corvisSimulator.install(window);',
  '/module.mjs':
    'import { install } from "/simulator.mjs"; window.tv = install(window); await import("/page.js");',
  '/scripts': `<!doctype html><title>scripts</title><script src="/simulator.js"></script>
    <script src="/install.js"></script><script src="/page.js"></script>`,
  '/modules': '<!doctype html><title>modules</title><script type="module" src="/module.mjs"></script>',
  // No encoding is named: the file must not need one.
  '/silent': '<title>silent</title><p>No voice here</p>',
};

const browser = useBrowser();

/** A page of the site under a policy, and what went wrong in it. */
async function open(place, policy) {
  const page = await browser.newPage();
  const errors = [];
  page.on('pageerror', (error) => errors.push(error.message));
  await page.route('http://tv.test/**', (route, request) => {
    const { pathname } = new URL(request.url());
    const contentType = /js$/.test(pathname) ? 'text/javascript' : 'text/html';
    const headers = policy ? { 'Content-Security-Policy': policy } : {};
    return route.fulfill({ contentType, headers, body: site[pathname] ?? '' });
  });
  await page.goto(`http://tv.test${place}`);
  return { page, errors };
}

for (const place of ['/scripts', '/modules']) {
  test(`${place.slice(1)} under a strict content security policy`, async () => {
    const { page, errors } = await open(place, "default-src 'none'; script-src 'self' 'wasm-unsafe-eval'");
    await page.waitForFunction(() => window.tv?.isListening());
    assert.equal(await page.evaluate('tv.say("play").then((event) => event.answer)'), place.slice(1));
    assert.deepEqual(errors, []);
    await page.close();
  });
}

test('a policy that allows no WebAssembly is an error that says so', async () => {
  const { page, errors } = await open('/scripts', "script-src 'self'");
  assert.match(errors[0], /WebAssembly|wasm/i);
  await page.close();
});

/** Runs in the page: what of it an author could see change. */
function traces() {
  const names = Object.getOwnPropertyNames(window).sort();
  const functions = [console.log, JSON.parse, window.onerror, Array.prototype.map].map(String);
  return JSON.stringify([names, functions, Object.keys(window), document.documentElement.outerHTML]);
}

test('a page without voice notices nothing', async () => {
  const { page, errors } = await open('/silent');
  const before = JSON.parse(await page.evaluate(traces));
  await page.addScriptTag({ content: site['/simulator.js'] });
  await page.evaluate('void corvisSimulator.install(window); document.querySelector("script").remove()');
  const after = JSON.parse(await page.evaluate(traces));
  const added = after[0].filter((name) => !before[0].includes(name));
  // What a TV has, and the name of the script itself.
  assert.deepEqual(added, ['CorviException', 'corvis', 'corvisSimulator']);
  assert.deepEqual(after[1], before[1]);
  assert.equal(after[3], before[3]);
  assert.deepEqual(errors, []);
  await page.close();
});
