// The element map and item selection on pages with inline frames, and random pages against the plainest
// implementation of the map.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { checkTable, plainElementMap, startBrowser } from '../../../testing/browser.mjs';

let browser;
before(async () => {
  browser = await startBrowser();
  browser.addDocument('/inner', '<button id=i>inner</button><p></p>');
  browser.addDocument('/second', '<body><p><button>second</button>');
  browser.addDocument(
    '/named',
    '<img name=evaluate><img name=getElementsByTagName><form onclick="">form<input name=click><input name=tagName>'
  );
  browser.addDocument('/outer', '<button>before</button><iframe src=/inner></iframe><button>behind</button>');
});
after(() => browser.close());

/** Checks the table on a page that shows `html`. */
async function checkPage(html, table) {
  const page = await browser.open(html);
  await page.evaluate(() => {
    const { deliver, peek } = window.voice;
    /** The titles on the map after a request, marked where they count as a frame's, and a failed answer. */
    window.map = () => {
      const answer = deliver('ACTION_REQUEST_CONTENT_CONTEXT');
      const shown = peek('layoutMap').map(({ title, iframe }) => title + (iframe ? ' in frame' : ''));
      return (answer.startsWith('[') ? shown : [...shown, answer]).join();
    };
    window.select = (id) => deliver('ACTION_ITEM_SELECTION', JSON.stringify({ id }));
    /** Notes the clicks in the page's n-th frame. */
    window.watch = (n) => {
      window.clicks = [];
      window.frames[n].document.addEventListener('click', (event) =>
        window.clicks.push(event.target.textContent)
      );
    };
  });
  await checkTable(page, table);
  await page.close();
}

test('elements inside a frame are recorded with the flag and by their own document', () =>
  checkPage(
    '<button>a</button><iframe style="position:absolute;top:300px" src=/inner></iframe><button>b</button>',
    `map() → 'a,inner in frame,b'
    logs.includes('$IFRAME DETECTED!') → true
    peek('xpathMap[1].xpath') → '//*[@id="i"]'
    peek('layoutMap[1].y') < 300 → true
    (frames[0].document.getElementById('i').focus(), contentContext()[1].focused) → false
    (watch(0), [select(1), clicks, logs.includes('$Evaluate within iframe')]) → ['success', ['inner'], true]
    (document.querySelector('iframe').remove(), select(1)) → 'not_support'`
  ));

test("names in a frame's document change nothing", () =>
  checkPage(
    '<iframe src=/named></iframe>',
    `map() → 'form in frame'
    (watch(0), [select(0), clicks]) → ['success', ['form']]`
  ));

test('what follows a nested frame counts as the page', () =>
  checkPage(
    '<iframe src=/outer></iframe><button>end</button>',
    "map() → 'before in frame,inner in frame,behind,end'"
  ));

test('elements of several frames are looked up in the last one', () =>
  checkPage(
    '<iframe src=/inner></iframe><iframe src=/second></iframe>',
    `map() → 'inner in frame,second in frame'
    select(0) → 'not_support'
    (watch(1), [select(1), clicks]) → ['success', ['second']]`
  ));

test('a frame of another origin ends the walk, and the next one starts outside of frames', () =>
  checkPage(
    `<button>a</button><iframe src=${browser.origins[1]}/inner></iframe><button>b</button>`,
    `map() → 'a,not_support'
    select(0) → 'success'
    map() → 'a,not_support'
    (document.querySelector('iframe').remove(), map()) → 'a,b'`
  ));

/** Names in a page: a field hides the form's property of its name, an image or a frame the document's. */
const hidingNames = [
  ...['id', 'nodeType', 'parentNode', 'childNodes', 'firstElementChild', 'nextElementSibling', 'tagName'],
  ...[
    'hasAttribute',
    'getAttribute',
    'getElementsByTagName',
    'getBoundingClientRect',
    'textContent',
    'style',
  ],
  ...['disabled', 'activeElement', 'evaluate', 'children', 'previousElementSibling'],
];

/** Runs in the page: fills it at random from `seed` and gives the map of both implementations. */
function mapRandomPage({ seed, plain, names }) {
  const random = (limit) => {
    seed = (Math.imul(seed, 1103515245) + 12345) >>> 0;
    return (seed >>> 8) % limit;
  };
  const pick = (list) => list[random(list.length)];
  const tags =
    'div div div span p ul li li button a a img svg:a svg:g x-card iframe form form input link'.split(' ');
  const attributes = [
    ...['onclick', 'draggable', 'tabindex', 'href', 'href'].map((name) => [name, ['']]),
    ['id', ['one', 'two', 'three "', '']],
    ...['title', 'aria-label', 'alt'].map((name) => [name, ['Title', ' ', 'a  b', '']]),
    ['name', names],
    ['style', ['display:none', 'visibility:hidden', 'display:none;visibility:hidden', 'margin:3.5px']],
  ];
  const texts = ['Text', ' ', 'two  words', '\n\t', 'a\n b', '\u00a0'];
  let budget = 150;
  function grow(parent, depth) {
    for (let n = random(6); n >= 0 && budget > 0; n--, budget--) {
      const [tag, svg] = pick(tags).split(':').reverse();
      const namespace = svg ? 'http://www.w3.org/2000/svg' : 'http://www.w3.org/1999/xhtml';
      const element = parent.ownerDocument.createElementNS(namespace, tag);
      for (const [name, values] of attributes) if (random(7) === 0) element.setAttribute(name, pick(values));
      if (random(2)) parent.append(pick(texts));
      parent.append(element);
      if (tag === 'iframe') grow(element.contentDocument.body, depth + 1);
      else if (depth < 9) grow(element, depth + 1);
    }
  }
  document.body.replaceChildren();
  while (budget > 0) grow(document.body, 0);
  const { layout, paths } = new Function(`return ${plain}`)()();
  const answer = window.voice.deliver('ACTION_REQUEST_CONTENT_CONTEXT');
  const framed = layout.filter((record) => record.iframe).length;
  return {
    plain: [JSON.stringify(layout), JSON.stringify(paths)],
    script: [answer, JSON.stringify(window.voice.peek('xpathMap'))],
    counts: [layout.length, framed],
  };
}

test('random pages get the map that the plainest implementation makes', async () => {
  const page = await browser.open('');
  let [items, framed] = [0, 0];
  for (let seed = 1; seed <= 60; seed++) {
    const { plain, script, counts } = await page.evaluate(mapRandomPage, {
      seed,
      plain: plainElementMap,
      names: hidingNames,
    });
    assert.deepEqual(script, plain, `seed ${seed}`);
    [items, framed] = [items + counts[0], framed + counts[1]];
  }
  assert.ok(items > 1000 && framed > 100, `too little on the pages: ${items} items, ${framed} in frames`);
});
