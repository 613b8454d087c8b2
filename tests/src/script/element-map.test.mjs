// The map of a page's activatable elements and the selection of one by its number, on pages without frames.
import assert from 'node:assert/strict';
import { after, before, beforeEach, test } from 'node:test';
import { checkTable, checksOf, evaluate, startBrowser } from '../../../testing/browser.mjs';

let browser, page;
before(async () => {
  browser = await startBrowser();
});
after(() => browser.close());
const check = checksOf(() => page);

beforeEach(async () => {
  page = await browser.open('<style>body { margin: 0 }</style>');
  await page.evaluate(() => {
    const { deliver, peek } = window.voice;
    window.$ = (selector) => document.querySelector(selector);
    window.show = (html) => void (document.body.innerHTML = html);
    /** The records of the page, with this body where it's given, or the answer when it isn't a map. */
    window.records = (html) => {
      if (html !== undefined) window.show(html);
      const answer = deliver('ACTION_REQUEST_CONTENT_CONTEXT');
      return answer.startsWith('[') ? JSON.parse(answer) : answer;
    };
    window.titles = (html) => window.records(html).map((record) => record.title);
    window.paths = (html) => (window.records(html), peek('xpathMap').map((record) => record.xpath));
    window.button = (attributes, content = '') => `<button ${attributes}>${content}</button>`;
    /** The titles on the map of a page whose first element calls `change` during the walk. */
    window.changing = (change) => {
      window.show(
        '<p draggable style="visibility:hidden;display:none">x</p>' + '<button>a</button>'.repeat(3)
      );
      Object.defineProperty(window.$('p'), 'disabled', { get: () => (change(document.body), false) });
      const answer = window.records();
      return [
        typeof answer === 'string' ? answer : 'map',
        ...peek('layoutMap').map(({ title }) => title),
      ].join();
    };
    /** Selects an item; the answer, and what happened on the page. */
    window.select = (id) => {
      window.happened = [];
      return [deliver('ACTION_ITEM_SELECTION', JSON.stringify({ id })), ...window.happened].join();
    };
    const note = (event) => window.happened.push(`${event.type} ${event.target.id}`);
    for (const type of ['focusin', 'click']) document.addEventListener(type, note, true);
  });
});

test('which elements count as activatable', () => {
  const off = 'style="visibility:hidden;display:none"';
  return checkTable(
    page,
    `records('') → []
    titles('<button>Play</button><a href="x">More  \\n info</a>') → ['Play', 'More info']
    titles('<div>a</div><span tabindex=0>b</span><a>c</a><input value=d><div role=button>e</div>') → []
    titles('<ul><li>a<li tabindex=-1>b</ul><ol tabindex=0></ol>') → ['b']
    titles('<div onclick="">a</div><link href=x title=b><area href=x title=c>') → ['a', 'c']
    titles('<div draggable=false>a</div><svg><a href=x><text>b</text></a></svg>') → ['a', 'b']
    titles('<div draggable ${off}>a</div><input draggable ${off} title=b>') → ['b']
    titles('<input disabled draggable ${off} title=a><p draggable style="display:none">b</p>') → ['b']
    titles('<p draggable style="visibility:hidden">a</p><button hidden disabled>b</button>') → ['a', 'b']
    titles('<a href=x>a<button>b</button></a>') → ['ab', 'b']`
  );
});

check('where the title comes from')`
  titles(button('title=b aria-label=c', ' a ')) → ['a']
  titles(button('title=b aria-label=c', ' \\n ')) → ['b']
  titles(button('title=" " aria-label=" c  d "', '&nbsp;')) → ['c d']
  titles(button('title', '<img title=c alt=b aria-label=a>')) → ['a']
  titles(button('', '<img title=c alt=b aria-label=" ">')) → ['b']
  titles(button('', '<img><img alt=""><p><img title=c></p><img alt=d>')) → ['c']
  records(button('', '<b title=x></b><img>') + button('', 'next')).map(({ id, title }) => id + title) → ['0next']
  titles(button('', 'a\\nb \\t\\nc\\u00a0\\u00a0d\\u00a0e\\ufeff\\u2003f')) → ['a\\nb c d\\u00a0e f']
  titles(button('', '<script>1</script>&lt;é"&gt;')) → ['1<é">']`;

test('a record holds the box in whole pixels, focus and visibility', async () => {
  const link = (id, x, y, style = '') =>
    `<a id=${id} href=x style="position:absolute;left:${x}px;top:${y}px;width:20.5px;height:9.4px;${style}">${id}</a>`;
  const body =
    `${link('a', 10.5, -3.5)}<div style="visibility:hidden">${link('b', 0, 2000)}</div>` +
    `${link('c', 1, 1, 'display:none')}<div style="display:none">${link('d', 1, 1)}</div>` +
    `${link('e', 1, 1, 'visibility:hidden')}${link('f', 1, 1, 'opacity:0')}`;
  await evaluate(page, `(show(${JSON.stringify(body)}), $('#a').focus())`);
  const record = (id, title, x, y, w, h, focused, visible) =>
    `{"id":${id},"title":"${title}","x":${x},"y":${y},"w":${w},"h":${h},"focused":${focused},"visible":${visible},"iframe":false}`;
  assert.equal(
    await evaluate(page, 'deliver("ACTION_REQUEST_CONTENT_CONTEXT").slice(1, -1).replaceAll("},", "}\\n")'),
    `${record(0, 'a', 11, -3, 21, 9, true, true)}
${record(1, 'b', 0, 2000, 21, 9, false, false)}
${record(2, 'c', 0, 0, 0, 0, false, false)}
${record(3, 'd', 0, 0, 0, 0, false, true)}
${record(4, 'e', 1, 1, 21, 9, false, false)}
${record(5, 'f', 1, 1, 21, 9, false, true)}`
  );
});

check('paths')`
  paths('<ul><li onclick>a<li onclick>b<p onclick>c</ul><ul><li onclick>d</ul>').slice(0, 2) → ['/html/body/ul[1]/li[1]', '/html/body/ul[1]/li[2]']
  paths().slice(2) → ['/html/body/ul[1]/li[2]/p', '/html/body/ul[2]/li']
  paths('<div id=box><p><i onclick>d</i></p><b onclick id=e>e</b></div>') → ['//*[@id="box"]/p/i', '//*[@id="e"]']
  paths('<p></p><div onclick>h<div onclick>i</div></div>') → ['/html/body/div', '/html/body/div/div']
  paths('<svg><A href=x>g</A></svg><x.y onclick>h</x.y>') → ['/html/body/svg/a', '/html/body/x.y']
  paths('<form><input name=id><button>i</button></form>') → ['/html/body/form/button']
  paths('<form><input name=nodeType><button>i</button></form>') → ['/html/body/form/button']
  paths('<form><button>i</button><input name=firstElementChild><button>j</button></form>')[1] → '/html/body/form/button[2]'
  (paths('<svg><a href=x>g</a></svg>'), peek('generateXpath')($('svg a'))) → '/html/body/svg/a'
  [null, document, document.createTextNode('')].map((node) => peek('generateXpath')(node)) → ['', '', '']
  peek('generateXpath')(document.createElement('p')) → '/p'
  ((document.id = 'page'), paths('<p><b onclick>a</b></p>')) → ['/html/body/p/b']
  ((map) => { window.Map = class {}; const found = paths('<p><b onclick>a</b></p>'); window.Map = map; return found; })(Map) → ['/html/body/p/b']
  (paths(button('', 'a')), document.body.prepend(document.createElement('button')), paths()) → ['/html/body/button[2]']`;

check('tags and styles of foreign elements')`
  (show(''), Object.assign(window, { add: (namespace, name, ...attributes) => { const element = document.createElementNS(namespace, name); attributes.forEach((attribute) => element.setAttribute(attribute, '')); element.textContent = name; document.body.append(element); } }).length) → 0
  (add('http://www.w3.org/2000/svg', 's:a', 'href'), add('urn:x', 'LI', 'tabindex'), add('urn:x', 'row', 'draggable'), titles()) → ['s:a', 'LI', 'row']
  peek('xpathMap').map(({ xpath }) => xpath) → ['/html/body/s:a', '/html/body/li', '/html/body/row']`;

/** Runs in the page: the map and the selections of a page with a harmless name, and the names that change them. */
function tryNames() {
  const { deliver, peek } = window.voice;
  const body = document.body;
  const clicked = [];
  body.addEventListener('click', (event) => clicked.push(event.target), true);
  const off = 'style="visibility:hidden;display:none"';
  const map = () => [
    deliver('ACTION_REQUEST_CONTENT_CONTEXT'),
    ...peek('xpathMap').map(({ xpath }) => xpath),
  ];
  const outcomeOf = (tag, name) => {
    body.innerHTML =
      `<${tag} name=${name}></${tag}><form onclick="" tabindex=0><input name=${name}><i></i>` +
      '<button type=button>a</button><button type=button>b</button></form>' +
      `<form draggable ${off}>off<input name=${name}></form><p><button>c</button></p>`;
    clicked.length = 0;
    const [, ...paths] = map();
    const answers = paths.map((_, id) => deliver('ACTION_ITEM_SELECTION', JSON.stringify({ id })));
    const items = [...body.querySelectorAll('form[onclick], button')];
    // The last one has the focus now.
    return [...paths, ...answers, ...clicked.map((item) => items.indexOf(item)), map()[0]].join(' ');
  };
  const different = [];
  const namesOf = (object) => {
    const names = [];
    // Handlers and constants are nothing that a map reads.
    for (const name in object) if (!/^(on|[A-Z])/.test(name)) names.push(name);
    return names;
  };
  const names = new Set([document, document.createElement('form')].flatMap(namesOf));
  for (const tag of ['img', 'form', 'iframe']) {
    const harmless = outcomeOf(tag, 'harmless');
    for (const name of names) if (outcomeOf(tag, name) !== harmless) different.push(`${tag} ${name}`);
  }
  return { names: names.size, expected: outcomeOf('img', 'harmless'), different };
}

test('a name in the page changes neither the map nor a selection, whichever property it hides', async () => {
  const { names, expected, different } = await page.evaluate(tryNames);
  assert.ok(names > 150, `only ${names} names`);
  const paths = ['', '/button[1]', '/button[2]'].map((path) => `/html/body/form[1]${path}`);
  const start = [...paths, '/html/body/p/button', ...Array(4).fill('success'), 0, 1, 2, 3].join(' ');
  assert.equal(expected.slice(0, start.length), start);
  assert.match(expected, /"title":"ab".*"title":"c".*"focused":true/);
  assert.deepEqual(different, []);
});

test('what goes wrong with one element', async () => {
  await page.evaluate(() => {
    const { peek } = window.voice;
    const fail = () => {
      throw new Error('broken');
    };
    /** The map of three buttons, of which the second one's `method` throws. */
    window.withBroken = (method) => {
      window.show('<button>a</button><button id=b>b</button><button>c</button>');
      window.$('#b')[method] = fail;
      return [window.records(), peek('layoutMap.length'), peek('xpathMap.length')];
    };
    /** The path of the last button on a page that moves the first one while it is walked. */
    window.movedMeanwhile = () => {
      window.show(
        '<p draggable style="visibility:hidden;display:none">x</p><button></button><button>a</button>'
      );
      const move = () => (document.body.append(document.createElement('i'), window.$('button')), false);
      Object.defineProperty(window.$('p'), 'disabled', { get: move });
      window.records();
      return peek('xpathMap').at(-1).xpath;
    };
  });
  await checkTable(
    page,
    `withBroken('getBoundingClientRect')[0].map(({ id, title }) => id + title) → ['0a', '1c']
    withBroken('hasAttribute') → ['not_support', 1, 1]
    select(0) → 'success,focusin ,click '
    select(1) → 'not_support'
    changing((body) => body.lastChild.remove()) → 'not_support,x,a,a'
    changing((body) => body.append(body.lastChild.cloneNode(true))) → 'map,x,a,a,a'
    movedMeanwhile() → '/html/body/button[1]'
    titles('<button>d</button>') → ['d']`
  );
});

check('selecting an item')`
  select(0) → 'not_support'
  records('<button id=a>a</button><div style=height:3000px></div><button id=b>b</button>').length → 2
  select(1) → 'success,focusin b,click b'
  $('#b').getBoundingClientRect().top < innerHeight → true
  select('0') → 'success,focusin a,click a'
  [2, -1, 0.5].map(select) → ['not_support', 'not_support', 'not_support']
  select('x') → 'success,click a'
  ['click', 'scrollIntoView', 'focus'].forEach((name) => ($('#b')[name] = () => void happened.push(name))) → undefined
  select(1) → 'success,focus,scrollIntoView,click'
  ($('#b').remove(), select(1)) → 'not_support'
  (records("<button id='a&quot;b'>a</button>"), select(0)) → 'not_support'
  (api.setCallback({ onrequestcontentcontext: () => 'own' }), records()) → 'own'`;

check('an element without click() gets the event in the middle of its box')`
  records('<svg><g id=s onclick=""><rect x=10 y=20 width=31 height=41 /><text>s</text></g></svg>').length → 1
  $('#s').addEventListener('click', (event) => (window.seen = event)) → undefined
  select(0) → 'success,click s'
  [seen.bubbles, seen.cancelable, seen.view === window] → [false, false, true]
  (({ x, y, w, h }) => [x + w / 2, y + h / 2])(peek('layoutMap[0]')).map(Math.floor) → [seen.clientX, seen.clientY]
  logs.slice(-3, -1).map((line) => line.replace(/\\d.*/, '')) → ['$ClientX: ', 'ClientY: ']`;

check('a walk and a selection write their steps to the log')`
  logged(() => records('')).slice(1, -1) → ['Version 1.06', '$NO ELEMENTS FOUND']
  logged(() => records(button('title=a') + button('', 'b')))[2] → '$Empty title'
  logs.slice(3, -1) → ['$Number of elements added to the layout map: 2']
  logged(() => records(button('')))[3] → '$No title and no aria label'
  (records(button('', 'a')), logged(() => select(0))).slice(2, -1) → ['/html/body/button', '$iframe: false', '$Obtained node!']`;

test('a walk reads each element and each ancestor of an item once or twice, however deep they are', () =>
  checkTable(
    page,
    `(window.visits = 0, (({ get }) => Object.defineProperty(Element.prototype, 'id', { get() { return visits++, get.call(this); } }))(Object.getOwnPropertyDescriptor(Element.prototype, 'id')) && 0) → 0
    paths(('<div>'.repeat(30) + button('', 'a').repeat(5) + '</div>'.repeat(30)).repeat(40)).length → 200
    visits > 200 && visits < 2 * document.body.getElementsByTagName('*').length → true`
  ));

test('20,000 items are mapped in seconds, not minutes', { timeout: 20_000 }, () =>
  checkTable(
    page,
    "paths(`<ul>${'<li tabindex=0>a</li>'.repeat(20000)}</ul>`).at(-1) → '/html/body/ul/li[20000]'"
  )
);
