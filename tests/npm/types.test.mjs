// The TypeScript declarations, installed the way an application would install them, against lines that must compile
// and lines that must not; and their methods against those of the script.
import assert from 'node:assert/strict';
import { cpSync, readFileSync, symlinkSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { scriptText } from '../../testing/browser.mjs';
import { build, root, scratchFolder } from '../../testing/corvis.mjs';
import { runTool } from './application.mjs';

test('what may be written compiles, and nothing else', (t) => {
  const folder = scratchFolder(t);
  const copy = (from, to) => cpSync(from, path.join(folder, to), { recursive: true });
  copy(path.join(build, 'npm/package'), 'node_modules/corvis-voiceinteraction');
  symlinkSync(path.join(root, 'node_modules/@playwright'), path.join(folder, 'node_modules/@playwright'));
  for (const name of ['types.ts', 'playwright.ts']) copy(path.join(root, `tests/npm/${name}`), name);
  for (const what of ['bundler types.ts', 'node10 types.ts', 'bundler --skipLibCheck playwright.ts']) {
    const options = `--strict --noEmit --target es2022 --module esnext --moduleResolution ${what}`;
    assert.deepEqual(runTool(folder, 'tsc', ...options.split(' ')), { status: 0, text: '' }, what);
  }
});

test('the methods declared are those that the script has', () => {
  const declarations = readFileSync(path.join(root, 'npm/index.d.ts'), 'utf8');
  const found = (text, expression) => [...text.matchAll(expression)].map((match) => match[1]);
  const methods = found(scriptText(), /VoiceInteractionHandler\.prototype\.(\w+)/g);
  assert.deepEqual(found(declarations, /^ {2}(\w+)\(/gm), methods);
});
