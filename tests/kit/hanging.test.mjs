// A page that hangs spoils the test in which it does, and nothing else.
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { run, writePage } from '../../testing/corvis.mjs';

const page = `<p id="state">fresh</p><script>
  corvis.voiceinteraction.setCallback({
    onpause: function () { for (;;); },
    onplay: function () { document.querySelector('p').textContent = 'played'; return true; }
  });
  corvis.voiceinteraction.listen();
</script>`;

const script = `timeout 1s
test "a callback"
say pause
expect success
test "after it"
show "#state" is "fresh"
say play
expect success
test "an expectation"
value "(function () { for (;;); })()" is 1
test "after that"
say play
expect success
`;

test('later tests and scripts run on a page that responds', async (t) => {
  const app = writePage(t, page);
  const files = ['first.voice', 'second.voice'].map((name) => path.join(app, name));
  for (const file of files) writeFileSync(file, script);
  const { code, text } = await run(['test-app', app, ...files, '--json']);
  assert.equal(code, 1, text);
  const steps = text
    .split('\n')
    .filter((line) => line.startsWith('{"event":"step"'))
    .map((line) => JSON.parse(line));
  const failed = steps.filter(({ status }) => status === 'failed');
  assert.deepEqual(
    failed.map(({ line }) => line),
    [3, 10, 3, 10]
  );
  for (const { message } of failed) assert.match(message, /The page hung; its process was killed/);
  assert.equal(steps.filter(({ status }) => status === 'skipped').length, 2);
});
