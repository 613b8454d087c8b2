// The script API as one text: its parts in their fixed order, all names private to its wrapper, one line when packed.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { scriptText } from '../../../testing/browser.mjs';

// Many other orders would run, since functions are hoisted. This one is fixed because the packed text is delivered as
// voiceinteraction_api.js, where integrators compare versions.
const order = `utils_ type_ converter_ validator_ types_ native_ VoiceInteractionHandler VoiceApplicationState
  VoiceInteractionAppAction VoiceNavigation VoiceSearchTermField MediaFunctionMode MediaRotateMode MediaZoomMode
  MediaRepeatMode ListItem GetVoiceNavigationFromParam GetVoiceSearchTermFromParam callbacks appActionArray
  voiceInteractionActionHandler convertVoiceInteractionParam _callback registerCallback layoutMap xpathMap itemId
  insideIframe iframeNode updateLayoutMap addToLayoutMap generateXpath onItemSelection
  registerContentContextCallback registerMoveFocusCallback clearCallbacks registerCallbacks isEmptyObject`;

test('the parts are there in their order', () => {
  const text = scriptText();
  const declared = [...text.matchAll(/(?:^|[;}\s])(?:var|function) (\w+)/g)].map((match) => match[1]);
  const wanted = order.split(/\s+/);
  assert.deepEqual([...new Set(declared.filter((name) => wanted.includes(name)))], wanted);
  assert.match(text.trim(), /exports ?= ?new VoiceInteractionHandler(\(\))?;$/);
  assert.ok(text.indexOf('.listen') < text.indexOf('function isEmptyObject'));
  assert.ok(text.indexOf('function isEmptyObject') < text.indexOf('.setCallback'));
});

test('packed, it is one line of about 25 KB', { skip: !process.env.CORVIS_SCRIPT_API }, () => {
  const text = scriptText();
  assert.equal(text.trimEnd().includes('\n'), false);
  assert.ok(text.length > 15_000 && text.length < 35_000, `${text.length} characters`);
});
