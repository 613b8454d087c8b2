// What is on the screen: asked for, selected, drawn and checked, from the voice service to a page in the web engine.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { jsonLines, run, writePage } from '../../testing/corvis.mjs';

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

// Names that hide properties of the form and of the document which the map reads.
const names = [
  'id',
  'tagName',
  'localName',
  'parentNode',
  'hasAttribute',
  'textContent',
  'getBoundingClientRect',
  'style',
];
const fields = names.map((name) => `<input type="hidden" name="${name}">`).join('');
const images = ['id', 'activeElement', 'getElementsByTagName', 'querySelectorAll', 'parentNode']
  .map((name) => `<img name="${name}">`)
  .join('');

test('a page that does not listen has the same items as one that does', async (t) => {
  const html = `${images}<form onclick="">${fields}${button('In form')}</form>
    <iframe src="outer.html"></iframe>${button(' Last   one ')}<svg><a href="x"><text>s</text></a></svg>
    <p draggable="true">Dragged</p><button></button><script>document.querySelector('form button').focus()</script>`;
  const tables = [];
  for (const registration of [listen, '']) {
    const page = writePage(t, html + registration);
    writeFileSync(
      path.join(page, 'outer.html'),
      `${images}${button('Before')}<iframe src="inner.html"></iframe>${button('Behind')}`
    );
    writeFileSync(path.join(page, 'inner.html'), button('Inner'));
    // The frames are there once the page is loaded again.
    const { code, text } = await run(['run', page], { input: 'reload\nitems\n' });
    assert.equal(code, 0, text);
    tables.push(text.match(/^ +\d+(?: +-?\d+){4} .*$/gm) ?? text);
  }
  assert.deepEqual(tables[1], tables[0]);
  assert.deepEqual(
    tables[0].map((row) => row.slice(36).replace(/ +/g, ' ').trim()),
    ['In form', 'focused In form', 'frame Before', 'frame Inner', 'Behind', 'Last one', 's', 'Dragged']
  );
});

// Whether the picture is the same for both pages.
async function areDrawnAlike(t, ...pages) {
  const pictures = [];
  for (const html of pages) {
    const page = writePage(t, html + listen);
    const file = path.join(page, 'items.png');
    const { code, text } = await run(['items', page, '--png', file]);
    assert.equal(code, 0, text);
    pictures.push({ text, bytes: readFileSync(file) });
  }
  return { text: pictures[0].text, are: pictures[0].bytes.equals(pictures[1].bytes) };
}

test('what is not shown is marked in the list and not drawn, and a page of one color is a picture', async (t) => {
  const away = 'position:absolute;left:50px;top:50px;width:99px;height:99px';
  const hidden = [
    `<button style="visibility:hidden;${away}">Own</button>`,
    `<button style="${away};width:0;height:0;padding:0;border:0;overflow:hidden">Empty</button>`,
    ...['display:none', 'visibility:hidden', 'width:0;height:0;border:0'].map(
      (style) => `<iframe srcdoc="<button>In</button>" style="${away};${style}"></iframe>`
    ),
    `<div style="display:none"><iframe srcdoc="<button>In</button>"></iframe></div>`,
  ];
  const color = '<style>body{background:#123456}</style>';
  const { text, are } = await areDrawnAlike(t, color + hidden.join(''), color);
  assert.equal(text.match(/ hidden /g).length, hidden.length, text);
  assert.ok(are);
  const shown = await areDrawnAlike(t, `${color}<button style="${away}">Shown</button>`, color);
  assert.ok(!shown.are && !shown.text.includes(' hidden '), shown.text);
});

// What the page contains, and the findings about it: rule, place and a part of the sentence.
const contents = [
  ['<button>Twice</button><button>Twice</button>', 'same-title items 0 1'],
  ['<button id="empty"></button>', 'title button#empty'],
  ['<button id="label">Play<span style="display:none"> now</span></button>', 'label button#label'],
  ['<div id="pointer" style="cursor:pointer">Press</div>', 'item div#pointer', 'onclick or draggable'],
  ['<div id="same"><button>One</button></div><div id="same"><button>Two</button></div>', 'id div#same'],
  ['<div id="host">.</div>', 'shadow div#host'],
  [
    '<iframe id="in" srcdoc="<button>In</button>"></iframe><iframe srcdoc="<button>Last</button>">',
    'frame iframe#in',
  ],
  [
    '</iframe><button id="a" hidden>A</button><p style="visibility:hidden"><button>B</button></p>',
    'hidden button#a',
    '2 items are',
  ],
  [
    '<a href="#" id="c" title="C"></a><a href="#" title="D"></a><a href="#" title="E"></a>',
    'no-size a#c',
    '3 items are',
  ],
  ['<svg><use href="#s"/><symbol id="s"/></svg><svg aria-hidden="true"><use href="#s"/></svg>'],
];

test('the lint names each element that voice will miss and its rule, and draws their numbers', async (t) => {
  const shadow =
    '<script>host.attachShadow({ mode: "open" }).innerHTML = "<button>Of a shadow</button>"</script>';
  const named = `${images}<form>${fields}</form>`;
  const page = writePage(t, named + contents.map(([html]) => html).join('') + shadow + listen);
  const file = path.join(page, 'lint.png');
  const { code, text } = await run(['lint', '--json', '--png', file, page]);
  assert.equal(code, 1, text);
  const expected = contents.filter((row) => row.length > 1);
  const findings = jsonLines(text).map((line) => ({ ...line, at: `${line.rule} ${line.where}` }));
  assert.deepEqual(
    [...new Set(findings.map(({ at }) => at))].sort(),
    expected.map(([, at]) => at).sort(),
    text
  );
  for (const [, at, part] of expected) {
    const sentences = findings.filter((finding) => finding.at === at).map(({ sentence }) => sentence);
    assert.equal(sentences.length, at.startsWith('id') ? 2 : 1, text);
    if (part) assert.ok(sentences[0].includes(part), text);
  }
  const plain = path.join(page, 'plain.png');
  const numbered = await run(['lint', '--png', plain, '--timeout', '300', writePage(t, '<p>Text</p>')]);
  assert.match(numbered.text, /^ {2}1 {2}listen /);
  assert.ok(!readFileSync(file).equals(readFileSync(plain)));
});

const callbacks = `{
  onplay: async function () {}, onpause: async () => true, onstop: () => { return new Promise(() => {}); },
  onnavigation: function () { return later(); }, onsearch: function () { return 'async Promise'; },
  onexit: function () { throw new Error('broken'); },
}`;

test('the lint finds callbacks that throw, that are asynchronous, and those that return a promise', async (t) => {
  const page = writePage(
    t,
    `<p>Text</p><script>const later = () => Promise.resolve(true);
    corvis.voiceinteraction.setCallback(${callbacks});
    corvis.voiceinteraction.listen();</script>`
  );
  const findings = async (...options) =>
    jsonLines((await run(['lint', '--json', ...options, page])).text).map(
      ({ rule, where }) => `${rule} ${where}`
    );
  const known = ['promise onplay', 'promise onpause', 'promise onstop'];
  assert.deepEqual(await findings(), known);
  assert.deepEqual(await findings('--call'), [...known, 'promise onnavigation', 'callback onexit']);
});
