// The TypeScript declarations, installed the way an application would install them, against lines that must compile
// and lines that must not; and their callbacks against those that the script looks for.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { cpSync, mkdirSync, mkdtempSync, readFileSync, rmSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import { fileURLToPath } from 'node:url';
import { scriptText } from '../../testing/browser.mjs';

const root = fileURLToPath(new URL('../..', import.meta.url));
const compiler = join(root, 'node_modules/typescript/bin/tsc');
let folder;
before(() => {
  folder = mkdtempSync(join(tmpdir(), 'corvis-types-'));
  mkdirSync(join(folder, 'node_modules'));
  cpSync(join(root, 'npm'), join(folder, 'node_modules/corvis-voiceinteraction'), {
    recursive: true,
  });
  for (const name of ['positive.ts', 'negative.ts'])
    cpSync(join(root, 'tests/npm', name), join(folder, name));
});
after(() => rmSync(folder, { recursive: true }));

for (const [name, resolution] of [
  ['positive.ts', 'bundler'],
  ['positive.ts', 'node10'],
  ['negative.ts', 'bundler'],
]) {
  test(`${name} with module resolution ${resolution}`, () => {
    const options = `--strict --noEmit --target es2022 --module esnext --moduleResolution ${resolution}`;
    const { stdout, status } = spawnSync(process.execPath, [compiler, ...options.split(' '), name], {
      cwd: folder,
      encoding: 'utf8',
    });
    assert.equal(stdout, '');
    assert.equal(status, 0);
  });
}

test('the callbacks and methods declared are those that the script has', () => {
  const declarations = readFileSync(join(root, 'npm/index.d.ts'), 'utf8');
  const declared = [...declarations.matchAll(/`(ACTION_\w+)`:[^/]*\*\/\s+(on\w+)\?:/g)].map(
    (m) => `${m[2]} ${m[1]}`
  );
  const handled = scriptText().matchAll(/\[["'](on\w+)["'],\s*VoiceInteractionAppAction\.(ACTION_\w+)\]/g);
  assert.deepEqual(
    declared,
    [...handled].map((m) => `${m[1]} ${m[2]}`)
  );
  const methods = scriptText().matchAll(/VoiceInteractionHandler\.prototype\.(\w+)/g);
  const names = [...declarations.matchAll(/^ {2}(\w+)\(/gm)].map((match) => match[1]);
  assert.deepEqual(
    names,
    [...methods].map((match) => match[1])
  );
});
