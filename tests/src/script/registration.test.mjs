// Registering callbacks, listening, the version: which native calls each makes, in which order the arguments are
// refused, and what stays registered after a failure.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { test } from 'node:test';
import { checksInPage } from '../../../testing/browser.mjs';

const check = checksInPage(() => {
  const { api, calls, listeners, outcome } = window.voice;
  const names = () => calls.map(([name]) => name.slice('VoiceInteractionHandler_'.length)).join();
  window.f = () => undefined;
  /** The actions that setCallback passes to the native side, without the built-in ones that end the list. */
  window.sent = (callbacks) => {
    api.setCallback(callbacks);
    const list = calls.at(-1)[1].actions.join();
    return list.replace(/,?ACTION_REQUEST_CONTENT_CONTEXT,ACTION_ITEM_SELECTION$/, '…');
  };
  window.cycle = { onplay: window.f };
  window.cycle.self = window.cycle;
  /** What a refused setCallback leaves of a registration for "onpause": how many listen, and its error. */
  window.refused = (callbacks) => {
    api.setCallback({ onpause: window.f });
    calls.length = 0;
    const failure = outcome(() => api.setCallback(callbacks));
    if (names() !== 'checkPrivileges') return `it called ${names()}`;
    return `${listeners.size} ${failure.replace('TypeMismatchError: callback is ', '')}`;
  };
  /** What comes of `action` while a native call fails, and which calls it made. */
  window.failing = (name, action) => {
    window.voice.failing = { [`VoiceInteractionHandler_${name}`]: 'failed' };
    calls.length = 0;
    const result = outcome(action);
    window.voice.failing = {};
    return [result, names()];
  };
  window.unprivileged = (method) => window.failing('checkPrivileges', () => api[method]()).join();
});

check('enumerations and internals stay inside')`
  Object.keys(api) → []
  [api.VoiceNavigation, window.VoiceNavigation, window._callback] → [undefined, undefined, undefined]
  voice.channel → 'the channel'`;

check('the list of actions is in table order and ends with the built-in ones')`
  sent({ foo: f }) → '…'
  sent({ onremovalfromlist: f, onplay: f }) → 'ACTION_PLAY,ACTION_REMOVAL_FROM_LIST…'
  sent({ onrequestcontentcontext: f, onplay: f }) → 'ACTION_PLAY…'
  sent(Object.create({ onplay: f })) → '…'
  sent(Object.assign(Object.create(null), { onplay: f })) → 'ACTION_PLAY…'
  sent({ hasOwnProperty: 1, onstop: f }) → 'ACTION_STOP…'
  sent(cycle) → 'ACTION_PLAY…'
  sent({ onplay: f, toJSON() { throw 1; } }) → 'ACTION_PLAY…'
  (sent({ onplay: f }), sent({ onstop: f }), [...listeners.keys()][0] + listeners.size) → 'ACTION_STOP3'`;

test('every property registers its own action, which is the one that the declarations name', async () => {
  const declarations = readFileSync(new URL('../../../npm/index.d.ts', import.meta.url), 'utf8');
  const declared = declarations.matchAll(/`(ACTION_\w+)`:[^/]*\*\/\s+(on\w+)\?:/g);
  const rows = [...declared].map(([, action, property]) => [property, action]);
  assert.equal(rows.length, 32);
  const answered = await check.page().evaluate((rows) => {
    const callbacks = Object.fromEntries(rows.map(([property]) => [property, () => property]).reverse());
    window.voice.api.setCallback(callbacks);
    const actions = window.voice.calls.at(-1)[1].actions;
    return actions.map((action) => [window.voice.deliver(action, '', action), action]);
  }, rows);
  assert.deepEqual(answered, [...rows, ['not_support', 'ACTION_ITEM_SELECTION']]);
});

check('a refused argument changes nothing, a refused property leaves nothing registered')`
  [undefined, null, document.all].map(refused) → Array(3).fill('3 not passed')
  [5, f].map(refused) → ['3 not object', '3 not object']
  [{}, []].map(refused) → ['3 empty object', '3 empty object']
  [{ onplay: 5 }, { onplay: {} }, { onplay: f, onstop: 5 }].map(refused) → Array(3).fill('0 not function type')
  [{ onplay: null }, { onplay: undefined }].map(refused) → ['0 not defined', '0 not defined']
  refused({ onstop: f, onplay: f, onzoom: undefined }) → '0 not defined'
  refused({ onremovalfromlist: 1, onplay: null }) → '0 not defined'
  peek('appActionArray') → []
  (peek('_callback')({ action: 'ACTION_ITEM_SELECTION', param: '{}' }), calls.at(-1)[1].response) → 'not_support'`;

check('a failed native call is thrown as it is')`
  ['listen', 'setCallback', 'getVersion'].map(unprivileged) → Array(3).fill('SecurityError: failed,checkPrivileges')
  unprivileged('getDataFromSearchTerm') → 'SecurityError: failed,checkPrivileges'
  unprivileged('buildCollectionDeeplinkData') → 'SecurityError: failed,checkPrivileges'
  unprivileged('buildCollectionShowData') → 'SecurityError: failed,checkPrivileges'
  failing('checkPrivileges', () => api.buildVoiceInteractionContentContextResponse([])) → ['[]', '']
  failing('checkPrivileges', () => api.buildVoiceInteractionContentContextItem(1, 2, 't', [], true).title) → ['t', '']
  failing('listen', () => api.listen()) → ['SecurityError: failed', 'checkPrivileges,listen']
  failing('getVersion', () => api.getVersion()) → ['SecurityError: failed', 'checkPrivileges,getVersion']
  failing('setCallback', () => api.setCallback({ onplay: f })) → ['SecurityError: failed', 'checkPrivileges,setCallback']
  listeners.size → 3
  [api.getVersion(), api.listen(), calls.at(-1)] → ['1.0.8', undefined, ['VoiceInteractionHandler_listen', {}]]`;

check('registering writes its steps to the log')`
  logged(() => api.setCallback({ onremovalfromlist: f })).slice(0, 2) → ['setCallback : {}', 'Clear Callbacks']
  logs.filter((line) => line.startsWith('Register Callback for ')).length → 32
  logs.slice(33, 35) → ['Register Callback for ACTION_REMOVAL_FROM_LIST', 'Register User function']
  logs.slice(35) → ['Register Content Context function', 'Register Move Focus function']
  logged(() => api.setCallback({ onrequestcontentcontext: f })).at(-2) → 'This app has own content context handler!'
  logged(() => api.getVersion()) → ['getVersion : {"status":"success","result":"1.0.8"}']`;
