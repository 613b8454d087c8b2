// The same conversations with the library on the desktop's runtime and with the package, in a browser and in Node: they
// give the same events, times apart.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { JSDOM, VirtualConsole } from 'jsdom';
import { build, root, run, scratchFolder, writePage } from '../../testing/corvis.mjs';
import { useBrowser } from './application.mjs';
import { conversations } from './conversations.mjs';

const simulator = path.join(build, 'npm/package/simulator');
const { install } = await import(pathToFileURL(path.join(simulator, 'index.js')));
const appId = 'com.example.app';

/** What of a step's event must be the same everywhere. */
function factsOf(event) {
  const names = ['statement', 'source', 'status', 'said', 'action', 'data', 'answer', 'pieces', 'message'];
  return Object.fromEntries(names.filter((name) => name in event).map((name) => [name, event[name]]));
}

const indexOf = (conversation, t) =>
  conversation.folder ? path.join(root, conversation.folder) : writePage(t, conversation.page);

/** Each step is a test of its own, so that one that fails ends no other. */
async function onTheDesktop(conversation, t, folder) {
  const lines = conversation.steps.map(([word, text], i) => `test "${i}"\n${word} ${text ?? ''}`.trimEnd());
  const script = path.join(scratchFolder(t), 'conversation.voice');
  writeFileSync(script, `${lines.join('\n')}\n`);
  const { text } = await run(['test-app', '--json', '--app-id', appId, folder, script], { seconds: 120 });
  const events = text.split('\n').filter((line) => line.startsWith('{"event":"step"'));
  assert.equal(events.length, conversation.steps.length, text);
  return events.map((line) => factsOf(JSON.parse(line)));
}

const speak = async (tv, steps) => {
  const events = [];
  for (const [word, text] of steps) {
    if (word === 'say') events.push(await tv.say(text));
    if (word === 'restart') events.push(await tv.restartService());
    if (word === 'send') {
      const [action] = text.split(' ', 1);
      const hasData = text.length > action.length;
      events.push(await (hasData ? tv.send(action, text.slice(action.length + 1)) : tv.send(action)));
    }
  }
  return events;
};

const browser = useBrowser();

async function inABrowser(conversation, folder) {
  const page = await browser.newPage({ viewport: { width: 1920, height: 1080 } });
  await page.addInitScript({ path: path.join(simulator, 'script.js') });
  await page.addInitScript(
    'if (window === top) globalThis.tv = corvisSimulator.install(window, { appId: "com.example.app" });'
  );
  // Not from files: each would have an origin of its own.
  await page.route('http://tv.test/**', (route, request) =>
    route.fulfill({ path: path.join(folder, new URL(request.url()).pathname) })
  );
  await page.goto('http://tv.test/index.html');
  const events = await page.evaluate(`(${speak})(tv, ${JSON.stringify(conversation.steps)})`);
  await page.close();
  return events.map(factsOf);
}

/** What a page needs of a layout: boxes as elements' own styles have them, all others side by side; and scrolling. */
function addLayout(window) {
  const pixels = (text, otherwise) => (text === '' ? otherwise : parseFloat(text));
  window.Element.prototype.getBoundingClientRect = function () {
    const place = 10 * [...this.ownerDocument.getElementsByTagName('*')].indexOf(this);
    const otherwise = { left: place, top: 0, width: 5, height: 5 };
    const sides = Object.entries(otherwise).map(([side, number]) => [side, pixels(this.style[side], number)]);
    return Object.fromEntries(sides);
  };
  window.Element.prototype.scrollIntoView = () => {};
}

async function inNode(conversation, folder) {
  const file = path.join(folder, 'index.html');
  let tv;
  const dom = new JSDOM(readFileSync(file, 'utf8'), {
    url: pathToFileURL(file).href,
    runScripts: 'dangerously',
    resources: 'usable',
    virtualConsole: new VirtualConsole(),
    beforeParse(window) {
      addLayout(window);
      tv = install(window, { appId });
    },
  });
  if (dom.window.document.readyState !== 'complete') {
    await new Promise((resolve) => dom.window.addEventListener('load', resolve));
  }
  const events = await speak(tv, conversation.steps);
  dom.window.close();
  return events.map(factsOf);
}

for (const conversation of conversations) {
  test(conversation.name, async (t) => {
    const folder = indexOf(conversation, t);
    const expected = await onTheDesktop(conversation, t, folder);
    assert.ok(expected.some(({ answer }) => answer && answer !== 'not_support'));
    assert.deepEqual(await inABrowser(conversation, folder), expected, 'in a browser');
    assert.deepEqual(await inNode(conversation, folder), expected, 'in Node');
  });
}
