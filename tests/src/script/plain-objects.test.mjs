// The element map and item selection on documents of plain objects, which offer only the operations that the script needs,
// in a program without an engine's classes and with classes that are none.
import assert from 'node:assert/strict';
import { afterEach, test } from 'node:test';
import { newVoice } from '../../../testing/browser.mjs';

/** A page of two lists, whose elements have their children under `listName`. */
function plainPage(listName) {
  const happened = [];
  const elements = [];
  const style = { display: 'block', visibility: 'visible' };
  const element = (tagName, attributes, children) => {
    const made = {
      nodeType: 1,
      tagName,
      id: attributes.id ?? '',
      style,
      textContent: attributes.text ?? '',
      [listName]: children,
      hasAttribute: (name) => name in attributes,
      getAttribute: (name) => attributes[name],
      getElementsByTagName: () => [],
      getBoundingClientRect: () => ({ left: 0.5, top: 1, width: 2, height: 3 }),
      focus: (...args) => happened.push('focus', ...args),
      scrollIntoView: (...args) => happened.push('scroll', ...args),
      click: (...args) => happened.push(`click ${attributes.text}`, ...args),
    };
    children.forEach((child) => (child.parentNode = made));
    elements.unshift(made);
    return made;
  };
  const button = (text) => element('BUTTON', { text }, []);
  const link = (text) => element('A', { text, href: '', draggable: '' }, []);
  // Later siblings are made first, so that the elements are in document order.
  const second = element('DIV', { id: 'two' }, [link('d')]);
  const last = button('c');
  const middle = link('b');
  const first = element('DIV', {}, [button('a'), middle, last]);
  const html = element('HTML', {}, [first, second]);
  const document = {
    nodeType: 9,
    [listName]: [html],
    activeElement: middle,
    getElementsByTagName: () => elements,
    evaluate: (path) => (happened.push(path), { singleNodeValue: last }),
  };
  html.parentNode = document;
  return { happened, globals: { document, window: { getComputedStyle: () => style }, XPathResult: {} } };
}

const throwing = () => {
  throw new TypeError('Illegal invocation');
};
/** Classes by the name of a case: none, without prototypes, and such as refuse all objects or know nothing of them. */
const worlds = {
  'no classes': {},
  'classes without prototypes': {
    Node: {},
    Element: { prototype: null },
    HTMLElement: 5,
    Document: undefined,
  },
  ...Object.fromEntries(
    Object.entries({ 'that refuse': throwing, 'that know nothing': () => undefined }).map(([name, get]) => {
      const prototype = {};
      for (const property of [
        'nodeType',
        'parentNode',
        'childNodes',
        'firstElementChild',
        'activeElement',
        'style',
      ])
        Object.defineProperty(prototype, property, { get });
      const type = { prototype };
      return [`classes ${name}`, { Node: type, Element: type, HTMLElement: type, Document: type }];
    })
  ),
};

afterEach(() => ['document', 'window', 'XPathResult'].forEach((name) => delete globalThis[name]));

for (const listName of ['childNodes', 'children']) {
  for (const [world, classes] of Object.entries(worlds)) {
    test(`a page of plain objects with ${listName} and ${world}`, () => {
      const { happened, globals } = plainPage(listName);
      Object.assign(globals.window, classes);
      globalThis.window = globals.window;
      const { api, contentContext, deliver, peek } = newVoice();
      // A page may get its document after the script started.
      Object.assign(globalThis, globals);
      api.setCallback({ unused: true });
      const box = { x: 1, y: 1, w: 2, h: 3 };
      const expected = ['a', 'b', 'c', 'd'].map((title, id) => {
        return { id, title, ...box, focused: title === 'b', visible: true, iframe: false };
      });
      assert.deepEqual(contentContext(), expected);
      const paths = [
        '/html/div[1]/button[1]',
        '/html/div[1]/a',
        '/html/div[1]/button[2]',
        '//*[@id="two"]/a',
      ];
      assert.deepEqual(
        peek('xpathMap').map(({ xpath }) => xpath),
        paths
      );
      assert.equal(deliver('ACTION_ITEM_SELECTION', '{"id":2}'), 'success');
      assert.deepEqual(happened, [paths[2], 'focus', 'scroll', 'click c']);
    });
  }
}
