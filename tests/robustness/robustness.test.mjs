// Each program of `corvis reliability` in its short form: it holds, and says so with figures.
import assert from 'node:assert/strict';
import { test } from 'node:test';
import { run, scratchFolder } from '../../testing/corvis.mjs';

const programs = {
  'service-restarts': /10 restarts .* none lost, none twice/,
  departures: /runtime killed 1 times, noticed within \d+ ms/,
  'web-process-crashes': /3 kills, 3 pages listening again .* ends the run after \d crashes/,
  load: /12000 commands answered in order.* byte for byte/,
  'hostile-peers': /2000 hostile messages .* page untouched/,
  signals: /6 signals .* 2 Ctrl-C .* 2 times SIGKILL.* no process and no file left/,
  permissions: /6 guarded methods refuse/,
};

for (const [name, figures] of Object.entries(programs)) {
  test(`reliability: ${name}`, async (t) => {
    const env = { TMPDIR: scratchFolder(t) };
    const { code, text } = await run(['reliability', '--short', name], { env, seconds: 120 });
    assert.equal(code, 0, text);
    assert.match(text, figures);
  });
}

test('reliability and fuzz refuse what they do not know, before anything is built', async () => {
  for (const args of [['reliability', 'relief'], ['fuzz'], ['fuzz', 'long'], ['fuzz', '1', 'nothing']]) {
    const { code, text } = await run(args);
    assert.equal(code, 2, text);
    assert.match(text, /^corvis: .*\n$/);
  }
});
