// The script API as one text: one line when packed, which offers the handler.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { scriptText } from '../../../testing/browser.mjs';

test('packed, it is one line of about 25 KB', { skip: !process.env.CORVIS_SCRIPT_API }, () => {
  const text = scriptText();
  assert.match(text.trimEnd(), /^.{15000,35000}exports ?= ?new VoiceInteractionHandler(\(\))?;$/);
});
