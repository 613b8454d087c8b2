// The demo conversation end to end: the real voice service, bus, web engine, library and page.
import assert from 'node:assert/strict';
import { readdirSync } from 'node:fs';
import { test } from 'node:test';
import { processesWith, root, run, scratchFolder, start, until } from '../../testing/corvis.mjs';

test('the demo answers as expected and leaves nothing behind', async (t) => {
  const folder = scratchFolder(t);
  const { code, text } = await run(['demo'], { env: { TMPDIR: folder } });
  assert.equal(code, 0, text);
  assert.deepEqual(readdirSync(folder), []);
  assert.deepEqual(processesWith(folder), []);
});

test('Ctrl-C ends what was started', async (t) => {
  const folder = scratchFolder(t);
  const command = start(['run', 'examples/cinema'], { cwd: root, env: { TMPDIR: folder } });
  await until(() => processesWith(folder).length >= 4, command);
  command.child.kill('SIGINT');
  const { code, text } = await command.exited;
  assert.equal(code, 130, text);
  assert.deepEqual(processesWith(folder), []);
  assert.deepEqual(readdirSync(folder), []);
});
