// What is on the screen: asked for, selected, drawn and checked, from the voice service to a page in the web engine.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { jsonLines, run, scratchFolder, writePage } from '../../testing/corvis.mjs';

const listen = `<script>
  corvis.voiceinteraction.setCallback({ oncustom: function () { return document.title; } });
  corvis.voiceinteraction.listen();
</script>`;

const button = (title) => `<button onclick="top.document.title = this.textContent">${title}</button>`;

// What is typed at the prompt, and what follows it.
const typed = [
  ['items', 'Trailer'],
  ['select 1', 'ACTION_ITEM_SELECTION id=1  ->  success'],
  ['ACTION_CUSTOM', '->  Add to list'],
  ['select trailer', 'ACTION_ITEM_SELECTION id=2  ->  success'],
  ['ACTION_CUSTOM', '->  Trailer'],
  ['select play', 'Several items are called "play"'],
  ['select 3', 'id=3  ->  success'],
  ['select 9', 'ACTION_ITEM_SELECTION id=9  ->  not_support'],
  ['the third one', 'ACTION_ITEM_SELECTION id=2  ->  success'],
  ['ACTION_CUSTOM', '->  Trailer'],
  ['select the fifth one', 'There are 4 items on the screen, not 5'],
  ['add to LIST, please', 'ACTION_ITEM_SELECTION id=1  ->  success'],
  ['ACTION_CUSTOM', '->  Add to list'],
  ['add to', 'Unknown phrase "add to"'],
  ['items --diff', 'No item changed its number.'],
];

test('items are selected by number and by title, in the page and in a frame', async (t) => {
  const html = `${button('Play')}${button('Add to list')}<iframe src="inner.html"></iframe>${listen}`;
  const page = writePage(t, html);
  writeFileSync(path.join(page, 'inner.html'), `<!doctype html><p>${button('Trailer')}${button('Play')}</p>`);
  const { code, text } = await run(['run', page], { input: typed.map(([line]) => `${line}\n`).join('') });
  assert.equal(code, 0, text);
  let from = 0;
  for (const [line, expected] of typed) {
    from = text.indexOf(expected, from);
    assert.ok(from >= 0, `${line}: "${expected}" is missing in:\n${text}`);
  }
});

const strange = [
  'Ελληνικά עברית العربية हिन्दी ไทย 한국어 日本語 中文',
  'emoji 🎬👨‍👩‍👧‍👦🇳🇴 and e\u0301',
  '"quoted" \\back\\slash\\ /slash/ \'single\' <tag> &amp;',
  'control \u0001\u0007\u001b\u007f \u0085 \u2028 \u2029 end',
  '\ufeffmark \u200b zero',
];

test('thousands of items with titles of every kind come in pieces, byte for byte, and are drawn', async (t) => {
  const titleOf = (_, i) => `${strange[i % strange.length]} ${'é'.repeat(i % 7)}${i}`;
  const titles = Array.from({ length: 5000 }, titleOf);
  const page = writePage(
    t,
    `<div id="list"></div><script>
      ${JSON.stringify(titles)}.forEach(function (title) {
        document.getElementById('list').appendChild(document.createElement('button')).textContent = title;
      });
    </script>${listen}`
  );
  const file = path.join(page, 'items.png');
  const { code, text } = await run(['items', '--json', page]);
  assert.equal(code, 0, text);
  assert.deepEqual(
    JSON.parse(text).map((item) => item.title),
    titles.map((title) => title.trim().replace(/\s{2,}/g, ' '))
  );
  const drawn = (await run(['items', page, '--png', file, '--size', '1280x720'])).text;
  const [, ms, pieces] = drawn.match(
    /5000 items; \d+ bytes, ([\d.]+) ms \(.* ms to the first of (\d+) pieces/
  );
  assert.ok(Number(ms) < 5000 && Number(pieces) > 10, drawn);
  const png = readFileSync(file);
  assert.deepEqual([png.readUInt32BE(16), png.readUInt32BE(20)], [1280, 720]);
});

test('no picture is made of a page that shows one single color', async (t) => {
  const page = writePage(t, `<style>body{background:#123456}</style>${listen}`);
  const file = path.join(scratchFolder(t), 'items.png');
  const { code, text } = await run(['items', page, '--png', file]);
  assert.equal(code, 1, text);
  assert.match(text, /one single color/);
  assert.throws(() => readFileSync(file));
});

test('the lint names each element that voice will miss, and its rule', async (t) => {
  const page = writePage(
    t,
    `<button id="empty"></button><button>Twice</button><button>Twice</button>
     <button id="label">Play<span style="display:none"> now</span></button>
     <div id="pointer" style="cursor:pointer">Press me</div>
     <div id="same"><button>One</button></div><div id="same"><button>Two</button></div>
     <div id="host">.</div><iframe src="inner.html"></iframe><iframe src="inner.html"></iframe>
     <script>document.getElementById('host').attachShadow({ mode: 'open' }).innerHTML = '<button>In</button>';
     corvis.voiceinteraction.setCallback({ onpause: function () { throw new Error('broken'); } });
     corvis.voiceinteraction.listen();</script>`
  );
  writeFileSync(path.join(page, 'inner.html'), '<button>Inner</button>');
  const { code, text } = await run(['lint', '--json', '--call', page]);
  assert.equal(code, 1, text);
  const places = (name) => jsonLines(text).flatMap(({ rule, where }) => (rule === name ? [where] : []));
  const rules = ['title', 'label', 'item', 'id', 'shadow', 'callback'];
  const expected = [
    'button#empty',
    'button#label',
    'div#pointer',
    'div#same',
    'div#same',
    'div#host',
    'onpause',
  ];
  assert.deepEqual(rules.flatMap(places), expected, text);
  assert.equal(places('frame').length, 1, text);
  assert.ok(places('same-title').includes('items 0 1'), text);
});

test('the lint reports a page that never listens', async (t) => {
  const { code, text } = await run(['lint', '--timeout', '300', writePage(t, '<button>Play</button>')]);
  assert.equal(code, 1, text);
  assert.match(text, /^listen /m);
});
