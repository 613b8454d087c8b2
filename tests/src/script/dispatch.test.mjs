// The path of a command through the script: what its callback receives for a parameter text, and which answer its
// result becomes.
import { checksInPage } from '../../../testing/browser.mjs';

const check = checksInPage(prepareCallbacks, prepareTampering);

function prepareCallbacks() {
  const { api, deliver, peek } = window.voice;
  let received;
  const record = (...args) => void (received = args);
  const everyCallback = Object.fromEntries(
    peek('callbackProperties').map(([property]) => [property, record])
  );
  /** The arguments that the callback of ACTION_<name> gets for each of the parameters. */
  window.args = (name, ...params) => {
    api.setCallback(everyCallback);
    return params.map((param) => (deliver(`ACTION_${name}`, param), received));
  };
  /** What the callback of ACTION_<name> gets for each of the parameter texts, which spaces separate. */
  window.got = (name, params) => window.args(name, ...params.split(' ')).flat();
  window.itemId = (param) => peek('convertVoiceInteractionParam')('ACTION_ITEM_SELECTION', param);
  /** The answer to a command whose callback is `callback`. */
  window.answer = (callback, param) => (api.setCallback({ onplay: callback }), deliver('ACTION_PLAY', param));
  window.cycle = {};
  window.cycle.self = window.cycle;
}

function prepareTampering() {
  const { api, calls, deliver, outcome, peek } = window.voice;
  const own = { toJSON: () => 'text' };
  /** The texts that reach the native side, or that the application gets to answer with. */
  window.everything = () => {
    document.body.innerHTML = '<button>a</button>';
    api.setCallback({ onplay: () => ({ a: [1, { b: ['c'] }], own, date: new Date(0) }) });
    return [
      ...calls.at(-1)[1].actions,
      deliver('ACTION_PLAY', 'x'),
      deliver('ACTION_REQUEST_CONTENT_CONTEXT').slice(0, 19),
      deliver('ACTION_ITEM_SELECTION', '{"id":0}'),
      deliver('ACTION_PAUSE'),
      api.getVersion(),
      api.buildCollectionDeeplinkData('a', 'b', 'c').slice(0, 18),
      api.buildVoiceInteractionContentContextResponse([
        api.buildVoiceInteractionContentContextItem(1, 2, 'a', ['b'], true),
      ]),
    ];
  };
  window.lines = peek('console');
  window.withConsole = (console) => {
    window.replaced = console;
    peek('console = window.replaced');
    const result = outcome(window.everything);
    peek('console = window.lines');
    return result;
  };
  window.withToJson = (prototypes) => {
    for (const prototype of prototypes) prototype.toJSON = () => 'lost';
    const result = outcome(window.everything);
    for (const prototype of prototypes) delete prototype.toJSON;
    return result;
  };
}

check('parameter texts become the values that callbacks expect')`
  got('NAVIGATION', 'PreviousPageCommand NextPageCommand') → ['NAV_PREVIOUS', 'NAV_NEXT']
  got('NAVIGATION', 'MoveRightCommand MoveLeftCommand MoveUpCommand') → ['NAV_RIGHT', 'NAV_LEFT', 'NAV_UP']
  got('NAVIGATION', 'MoveDownCommand ShowMore showmore') → ['NAV_DOWN', 'NAV_SHOW_MORE', 'NAV_NEXT']
  got('NAVIGATION', 'Unknown constructor __proto__') → ['NAV_NEXT', 'NAV_NEXT', 'NAV_NEXT']
  got('MEDIA_SET_SUBTITLE', 'on off') → ['MEDIA_FUNCTION_ON', 'MEDIA_FUNCTION_OFF']
  got('MEDIA_SET_SHUFFLE', 'on ON') → ['MEDIA_FUNCTION_ON', 'MEDIA_FUNCTION_OFF']
  got('MEDIA_SET_SCREEN_FIT', 'on toString') → ['MEDIA_FUNCTION_ON', 'MEDIA_FUNCTION_OFF']
  got('MEDIA_SET_360_MODE', 'on ') → ['MEDIA_FUNCTION_ON', 'MEDIA_FUNCTION_OFF']
  got('MEDIA_SET_REPEAT', 'one all') → ['MEDIA_REPEAT_ONE', 'MEDIA_REPEAT_ALL']
  got('MEDIA_SET_REPEAT', 'off All') → ['MEDIA_REPEAT_OFF', 'MEDIA_REPEAT_OFF']
  got('MEDIA_SET_ZOOM', 'in out Out') → ['MEDIA_ZOOM_IN', 'MEDIA_ZOOM_OUT', 'MEDIA_ZOOM_IN']
  got('MEDIA_SET_ROTATE', 'Left Right right') → ['MEDIA_ROTATE_LEFT', 'MEDIA_ROTATE_RIGHT', 'MEDIA_ROTATE_LEFT']
  got('ADDITION_TO_LIST', 'BookMarks bookmarks') → ['LIST_BOOKMARKS', 'LIST_UNKNOWN']
  got('REMOVAL_FROM_LIST', 'WatchLater valueOf') → ['LIST_WATCH_LATER', 'LIST_UNKNOWN']
  got('SELECTION', '3 0x1F -1.5e2  abc 1,5 Infinity -0') → [3, 31, -150, 0, 0, 0, Infinity, -0]
  got('MEDIA_SKIP_BACKWARD', '10 10s') → [10, 0]
  got('MEDIA_SKIP_FORWARD', '10 true') → [10, 0]
  args('MEDIA_SET_PLAY_POSITION', ' 90 ', 'null') → [[90], [0]]
  got('SEARCH', '{"title":"a","year":1,"cast":["b"],"__proto__":2} {') → [{ title: 'a', cast: ['b'] }, {}]
  got('SEARCH_COLLECTION', '{"from":"1","to":"2","Title":"x"}') → [{ from: '1', to: '2' }]
  got('DEFAULT_SEARCH', '{"title":"a"} x') → ['{"title":"a"}', 'x']
  got('CUSTOM', '{"a":1}') → ['{"a":1}']
  args('PLAY', 'x', '', ' 1 ') → [['x'], [''], [' 1 ']]`;

check('without a parameter every converter falls back, and other callbacks get no argument')`
  args('NAVIGATION', undefined, null) → [['NAV_NEXT'], ['NAV_NEXT']]
  args('MEDIA_SET_ZOOM', undefined) → [['MEDIA_ZOOM_IN']]
  args('MEDIA_SET_PLAY_POSITION', undefined, null) → [[0], [0]]
  args('REMOVAL_FROM_LIST', undefined) → [['LIST_UNKNOWN']]
  args('SEARCH', undefined) → [[{}]]
  args('PLAY', undefined, null) → [[], []]
  args('DEFAULT_SEARCH', undefined) → [[]]
  answer(function () { 'use strict'; return String(this); }) → 'undefined'
  ((callback) => answer(callback, ''))(function callback() { return this === callback; }) → 'success'
  (api.setCallback({ onsearch: Object.isFrozen }), deliver('ACTION_SEARCH', '{"title":1}')) → 'success'
  (api.setCallback({ onsearch: Object.isFrozen }), deliver('ACTION_SEARCH', '?')) → 'success'`;

check('the item number is the "id" of a JSON object')`
  ['{"id":7}', '{"id":"7"}', '{"id":" 7 "}', '{"id":[7]}'].map(itemId) → [7, 7, 7, 7]
  ['7', '"7"', 'null', '[7]', '{', '', undefined].map(itemId) → [0, 0, 0, 0, 0, 0, 0]
  ['{}', '{"id":"x"}', '{"id":null}', '{"id":{"valueOf":0,"toString":0}}'].map(itemId) → [0, 0, 0, 0]`;

check('what a callback returns becomes its one answer')`
  [() => {}, () => null, () => document.all, () => true].map(answer) → Array(4).fill('success')
  answer(Object.assign(() => 'called', { call: 5 }), 'x') → 'called'
  [() => false, () => { throw new Error('no'); }, () => { throw Object.create(null); }].map(answer) → Array(3).fill('not_support')
  [() => 'text', () => '', () => new String('x'), () => ['é', undefined]].map(answer) → ['text', '', '"x"', '["é",null]']
  [() => 0, () => NaN, () => ({ a: 1 }), async () => 1].map(answer) → ['0', 'null', '{"a":1}', '{}']
  [() => () => 1, () => Symbol('s'), () => ({ toJSON() {} })].map(answer) → Array(3).fill('not_support')
  [() => cycle, () => 10n, () => ({ toJSON() { throw Symbol(); } })].map(answer) → Array(3).fill('not_support')`;

check('an action that nobody handles is answered not_support')`
  (api.setCallback({ onplay: () => true }), deliver('ACTION_PAUSE')) → 'not_support'
  ['__proto__', 'constructor', 'toString', 'x', ''].map((name) => deliver(name, 'x')) → Array(5).fill('not_support')`;

check('an answer that does not get through harms nobody, and a callback may register anew')`
  (voice.throwing = { Response: true }, answer(() => true)) → 'success'
  logs.at(-1) → '_callback exception : Error: no Response'
  (voice.throwing = {}, answer(() => (api.setCallback({ onstop: () => 'stopped' }), calls.length = 0, 'changed'))) → 'changed'
  [deliver('ACTION_PLAY'), deliver('ACTION_STOP')] → ['not_support', 'stopped']`;

check("neither the page's console nor an old library's toJSON changes what is sent")`
  everything().slice(0, 3) → ['ACTION_PLAY', 'ACTION_REQUEST_CONTENT_CONTEXT', 'ACTION_ITEM_SELECTION']
  everything().slice(3, 5) → ['{"a":[1,{"b":["c"]}],"own":"text","date":"1970-01-01T00:00:00.000Z"}', '[{"id":0,"title":"a']
  everything().slice(5, 9) → ['success', 'not_support', '1.0.8', '{"type":"Deeplink"']
  everything().at(-1) → '[{"positionX":1,"positionY":2,"title":"a","alias":["b"],"bFocused":true}]'
  [{}, undefined, { log: 5 }, { get log() { throw 1; } }, { log() { throw 1; } }].map(withConsole) → Array(5).fill(everything())
  logged(() => peek('GetListItem')('x')) → ['GetListItemFromParam : x']
  [[Array.prototype], [Object.prototype], [Array.prototype, Object.prototype]].map(withToJson) → Array(3).fill(everything())`;

check('dispatching writes its steps to the log')`
  (answer(() => [1]), logged(() => deliver('ACTION_PLAY', 'x'))).slice(1) → ['Type of Response [object]', 'Object response : [1]']
  logs[0] → '_callback {"action":"ACTION_PLAY","listenerId":"ACTION_ITEM_SELECTION","param":"x"} ACTION_PLAY x'
  (logged(() => deliver('ACTION_PLAY')), logs[0].slice(-24)) → '_SELECTION"} ACTION_PLAY'
  (answer(() => { throw new Error('no'); }), logs.at(-2)) → '_callback exception : Error: no'
  logged(() => peek('GetListItem')('x')) → ['GetListItemFromParam : x']
  logged(() => peek('GetZoomModeFromParam')()) → ['GetZoomModeFromParam : undefined']
  logged(() => itemId('?')).map((line) => line.slice(0, 32)) → ['GetItemIdFromParam : ?', 'GetItemIdFromParam : SyntaxError']
  logged(() => peek('GetVoiceSearchTermFromParam')('?')).length → 2`;
