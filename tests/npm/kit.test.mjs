// The package's way to the desktop kit: a conversation, its errors, and that nothing outlives a test.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import path from 'node:path';
import { test } from 'node:test';
import { build, processesWith, root, scratchFolder, until, writePage } from '../../testing/corvis.mjs';

const entry = path.join(build, 'npm/package/kit/index.js');
const { launch } = await import(entry);
const command = path.join(root, 'corvis');

const page = `<p id="state"></p><button onclick="state.textContent = 'selected'">Go</button><script>
  corvis.voiceinteraction.setCallback({ onpause: function () { state.textContent = 'paused'; } });
  corvis.voiceinteraction.listen();
</script>`;

test('a conversation, item by item, to its end', async (t) => {
  const marker = scratchFolder(t);
  const tv = await launch(writePage(t, page), { command, env: { TMPDIR: marker } });
  t.after(() => tv.close());
  assert.equal((await tv.say('pause')).answer, 'success');
  assert.equal(await tv.show('#state', 'is "paused"'), 'paused');
  const [item] = await tv.items('go');
  assert.equal((await tv.send('ACTION_ITEM_SELECTION', { id: item.id })).answer, 'success');
  assert.equal(await tv.value('state.textContent'), 'selected');
  await assert.rejects(tv.say('puase'), {
    message: 'Unknown phrase "puase". Did you mean "pause"? help lists the phrases.',
  });
  await assert.rejects(tv.show('#none'), { message: 'The page has no element #none.' });
  assert.equal(tv.answer, 'success');
  await tv.close();
  await assert.rejects(tv.say('pause'), { message: 'The run has ended.' });
  assert.equal(tv.events().at(-1).status, 0);
  assert.deepEqual(processesWith(marker), []);
});

test('what can not be launched is an error with the reason', async (t) => {
  const rows = [
    [path.join(scratchFolder(t), 'missing'), { command }, /missing does not exist/],
    [writePage(t, page), { command, args: ['--sise', '1x1'] }, /--sise/],
    [writePage(t, page), { command: 'no-such-program' }, /can't be started/],
    [writePage(t, page), { headless: true }, /Unknown option "headless"/],
  ];
  for (const [app, options, reason] of rows) await assert.rejects(launch(app, options), reason);
});

test('nothing is left running when a test dies', async (t) => {
  const marker = scratchFolder(t);
  const program = `const { launch } = await import(${JSON.stringify(entry)});
    await launch(${JSON.stringify(writePage(t, page))}, { command: ${JSON.stringify(command)} });
    console.log('up');`;
  const env = { ...process.env, TMPDIR: marker, DISPLAY: '' };
  const child = spawn(process.execPath, ['--input-type=module', '-e', program], { env });
  let text = '';
  child.stdout.on('data', (data) => (text += data));
  await until(() => text.includes('up'), { child, output: () => text });
  assert.notDeepEqual(processesWith(marker), []);
  child.kill('SIGKILL');
  await until(() => processesWith(marker).length === 0, { child, output: () => text }, 10);
});
