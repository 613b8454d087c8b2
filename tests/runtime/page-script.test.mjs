// The runtime's scripts in a page that replaces the engine's functions after they have started.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { createContext, runInContext } from 'node:vm';
import { root } from '../../testing/corvis.mjs';

/** A window with both scripts, the script API `voice`, and what reached the native side. */
function startPage() {
  const sent = [];
  const lines = [];
  const window = createContext({ sent, lines });
  const evaluate = (text) => runInContext(text, window);
  const script = (name) =>
    readFileSync(`${root}/runtime/page/${name}.js`, 'utf8').trimEnd().replace(/;$/, '');
  evaluate(`var window = this;
    var performance = { now: function () { return 0; } };
    var console = { log: function () {} };
    window.addEventListener = function () {};
    var native = { print: function (level, text, source) { lines[lines.length] = level + ' ' + text + ' ' + source; } };
    var reports = (${script('console')})(native);
    reports.watch();
    var deliver = (${script('runtime')})(reports, {}).attach('voice', function (xwalk, extension, console) {
      return { native: new xwalk.utils.NativeManager(extension), console: console };
    }, function (text) { sent[sent.length] = text; return '{"status":"success"}'; });`);
  return { evaluate, sent, lines };
}

const tampering = `(function () {
    var names = Object.getOwnPropertyNames;
    var types = [Array, String, Map, RegExp, Function];
    function broken() { throw new Error('broken'); }
    for (var i = 0; i < types.length; i++) {
      for (var all = names(types[i].prototype), k = 0; k < all.length; k++) {
        var property = Object.getOwnPropertyDescriptor(types[i].prototype, all[k]);
        if (all[k] !== 'constructor' && typeof property.value === 'function') types[i].prototype[all[k]] = broken;
      }
    }
    JSON = {};
    String = undefined;
  })()`;

test('calls, messages and lines survive a page that breaks every method of arrays, texts and functions', () => {
  const { evaluate, sent, lines } = startPage();
  evaluate(`var heard = [];
    function first(message) { heard[heard.length] = 'first ' + message.param; voice.native.removeListener('A', first); }
    function second(message) { heard[heard.length] = 'second ' + message.param; throw 'refused'; }
    function third(message) { heard[heard.length] = 'third ' + message.param; }
    voice.native.addListener('A', first);`);
  evaluate(tampering);
  const replied = evaluate(`voice.native.addListener('A', second);
    voice.native.addListener('A', third);
    voice.native.addListener('A', second);
    deliver('{"listenerId":"A","param":1}');
    deliver('{"listenerId":"B","param":2}');
    deliver('{"listenerId":"A","param":3}');
    voice.native.removeListener('A', second);
    voice.native.removeListener('A', third);
    deliver('{"listenerId":"A","param":4}');
    console.log('a', {});
    voice.console.log('b');
    voice.native.callSync('Name', { list: ['x'] }).status;`);
  assert.equal(replied, 'success');
  assert.deepEqual([...evaluate('heard')], ['first 1', 'second 1', 'third 1', 'second 3', 'third 3']);
  assert.deepEqual(sent, ['{"cmd":"Name","args":{"list":["x"]}}']);
  const noText = ['uncaught', 'uncaught', 'log'].map((level) => `${level} (no text) page`);
  assert.deepEqual(lines, [...noText, 'log (no text) api']);
});

test('a toJSON for all objects or all arrays does not reach the native side; one of a class does', () => {
  for (const types of [['Array'], ['Object'], ['Array', 'Object']]) {
    const { evaluate, sent } = startPage();
    evaluate(`${types.map((type) => `${type}.prototype.toJSON = function () { return 'lost'; };`).join('')}
      voice.native.callSync('Name', { list: ['x', { y: null }], date: new Date(0), own: { toJSON: function () { return 1; } } });
      voice.native.callSync('None');`);
    const args = '{"list":["x",{"y":null}],"date":"1970-01-01T00:00:00.000Z","own":1}';
    assert.deepEqual(sent, [`{"cmd":"Name","args":${args}}`, '{"cmd":"None","args":{}}'], types.join());
  }
});
