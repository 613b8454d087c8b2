// What a page and a test see of the simulator besides the conversations: installing, events, privileges, size.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import path from 'node:path';
import { afterEach, test } from 'node:test';
import { pathToFileURL } from 'node:url';
import { brotliCompressSync } from 'node:zlib';
import { build } from '../../testing/corvis.mjs';

const folder = path.join(build, 'npm/package/simulator');
const file = path.join(folder, 'index.js');
const { install, prepare, tvOf } = await import(pathToFileURL(file));

let page;
let tv;
/** A window with a TV, whose page has these callbacks and listens. */
function listening(callbacks, options) {
  page = {};
  tv = install(page, options);
  page.corvis.voiceinteraction.setCallback(callbacks);
  page.corvis.voiceinteraction.listen();
  return tv;
}
afterEach(() => tv?.uninstall());

const outcome = ({ answer, message }) => answer ?? message;

test('what is said before the page listens is not sent', async () => {
  tv = install({}, { appId: 'com.example.quiet' });
  assert.equal(tv.isListening(), false);
  assert.match(
    outcome(await tv.say('play')),
    /^The application com\.example\.quiet is not running, or its page has not called listen/
  );
  await assert.rejects(tv.items(), /has not called listen/);
});

test('a command arrives in a later turn, after what the page has begun', async () => {
  const order = [];
  listening({ onplay: () => void order.push('play') });
  const said = tv.say('play');
  void Promise.resolve().then(() => order.push('the page goes on'));
  order.push('said');
  await said;
  assert.deepEqual(order, ['said', 'the page goes on', 'play']);
});

test('commands are answered in their order, also when a callback speaks or takes the TV away', async () => {
  const turns = [];
  listening({
    onplay: () => (turns.push(tv.say('stop')), 'playing'),
    onpause: () => 'paused',
    onstop: () => (tv.uninstall(), 'gone'),
  });
  turns.push(tv.say('play'), tv.say('pause'));
  assert.deepEqual((await Promise.all(turns.slice(0, 2))).map(outcome), ['playing', 'paused']);
  assert.match((await turns[2]).message, /went away before it answered/);
});

test('sending takes a text, a number or the members of a bundle', async () => {
  listening({ onsetplayposition: (seconds) => seconds, oncustom: (json) => json });
  const rows = [
    [['ACTION_MEDIA_SET_PLAY_POSITION', 90], '90'],
    [['ACTION_MEDIA_SET_PLAY_POSITION', '1.5'], '1.5'],
    [['ACTION_CUSTOM', { 'a key': "ü = 'x'", level: 3 }], `{"a key":"ü = 'x'","level":"3"}`],
    [['ACTION_CUSTOM', 'mood=dark'], '{"mood":"dark"}'],
    [['ACTION_CUSTOM'], '{}'],
    [['ACTION_NONSENSE'], /ACTION_NONSENSE/],
    [['ACTION_CUSTOM', 'a="x'], /a="x|quotation/],
  ];
  for (const [args, expected] of rows) {
    const result = outcome(await tv.send(...args));
    expected instanceof RegExp ? assert.match(result, expected) : assert.equal(result, expected);
  }
});

test('everything is an event; what a callback threw is in it, console lines as far as they are asked for', async () => {
  const rows = { none: [], page: ['page: log: hello'], all: ['api', 'page: log: hello'] };
  for (const [kind, expected] of Object.entries(rows)) {
    page = { console: { ...console, log() {} }, addEventListener() {} };
    tv = install(page, { console: kind });
    const heard = [];
    const stop = tv.onEvent((event) => heard.push(event));
    page.corvis.voiceinteraction.setCallback({
      onplay() {
        page.console.log('hello');
        throw new TypeError('no film');
      },
    });
    page.corvis.voiceinteraction.listen();
    const event = await tv.say('play');
    assert.equal(event.exception, 'TypeError: no film');
    assert.deepEqual(tv.events().at(-1), event);
    assert.deepEqual(heard, tv.events());
    const lines = heard.filter((each) => each.event === 'console');
    const kindOf = ({ source, level, text }) => (source === 'api' ? source : `page: ${level}: ${text}`);
    assert.deepEqual([...new Set(lines.map(kindOf))].sort(), expected);
    stop();
    await tv.restartService();
    assert.equal(heard.includes(tv.events().at(-1)), false);
    tv.uninstall();
  }
});

test('a TV replaces the one before it, and leaves nothing when it goes', async () => {
  const mine = { untouched: 1, corvis: { other: 2 } };
  const before = install(mine);
  mine.corvis.voiceinteraction.setCallback({ onplay: () => 'old' });
  mine.corvis.voiceinteraction.listen();
  tv = install(mine);
  assert.equal(tvOf(mine), tv);
  assert.equal(before.isListening(), false);
  assert.match(outcome(await tv.say('play')), /has not called listen/);
  assert.deepEqual(Object.keys(mine), ['untouched', 'corvis', 'CorviException']);
  before.uninstall();
  assert.equal(tvOf(mine), tv);
  tv.uninstall();
  assert.deepEqual(mine, { untouched: 1, corvis: { other: 2 } });
  assert.equal(tvOf(mine), undefined);
});

test('wrong options are errors that say what is right', () => {
  assert.throws(() => install({}, { appid: 'x' }), /Unknown option "appid"; known are appId/);
  assert.throws(() => install({}, { console: 'loud' }), /none, page or all, not "loud"/);
  assert.throws(
    () => install({}, { language: 'de' }),
    /"en" or what corvis-voiceinteraction\/languages has, not "de"/
  );
  const phrases = 'language en English\n[nonsense\n';
  assert.throws(() => install({}, { language: { phrases } }), /language:2:1: Expected .* a section/);
});

test('other languages are spoken, also with lines of one’s own', async () => {
  const callbacks = { onsetplayposition: (seconds) => seconds, onpause: () => 'paused', onplay() {} };
  for (const [tag, said, answer] of [
    ['de', 'geh zu einer Stunde zwanzig', '4800'],
    ['es', 've a una hora y media', '5400'],
    ['fr', 'va à une heure et quart', '4500'],
    ['ko', '한 시간 이십 분으로 가', '4800'],
    ['ko', '일시정지'.normalize('NFD'), 'paused'],
    ['de', 'Ruhe im Saal', 'paused'],
  ]) {
    const { default: language } = await import(pathToFileURL(path.join(folder, `../languages/${tag}.js`)));
    const phrases = `${language.phrases}\n[phrases]\nRuhe im Saal -> ACTION_PAUSE\n`;
    listening(callbacks, { language: tag === 'de' ? { ...language, phrases } : language });
    assert.equal(outcome(await tv.say(said)), answer, said);
    tv.uninstall();
  }
});

test('an engine that compiles no module of this size at once can be prepared', async (t) => {
  const { Module } = WebAssembly;
  t.after(() => (WebAssembly.Module = Module));
  WebAssembly.Module = class {
    constructor() {
      throw new RangeError('WebAssembly.Compile is disallowed on the main thread');
    }
  };
  const fresh = await import(`${pathToFileURL(file)}?prepare`);
  assert.throws(() => fresh.install({}), /await prepare\(\)/);
  await fresh.prepare();
  fresh.install({}).uninstall();
  await prepare();
});

test('the file stays small', () => {
  const bytes = readFileSync(file);
  const packed = brotliCompressSync(bytes).length;
  assert.ok(bytes.length < 350_000, `${bytes.length} bytes`);
  assert.ok(packed < 120_000, `${packed} bytes compressed`);
});
