// The report of `corvis test-app` on a terminal: for people, in colors, with a line that shows the progress.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { build, scratchFolder, writePage } from '../../testing/corvis.mjs';

const page = `<script>
  corvis.voiceinteraction.setCallback({ onplay: function () {}, onpause: function () { console.error('no film'); return 'no'; } });
  corvis.voiceinteraction.listen();
</script>`;
const script = 'timeout 20 s\ntest "good"\nsay play\ntest "bad"\nsay pause\nexpect "yes"\nsay play\n';

// What a terminal has shown in the end, line by line: text after a carriage return replaces what stood there.
const shownLines = (text) => text.split('\r\n').map((line) => line.split('\r\u001b[K').at(-1));

async function onTerminal(t, env) {
  const folder = writePage(t, page);
  writeFileSync(path.join(folder, 'a.voice'), script);
  // Not ./corvis, which may have to say something about the build.
  const command = `'${path.join(build, 'bin/corvis')}' test-app --screenshots shots . a.voice`;
  const own = { TERM: 'xterm', DISPLAY: '', XDG_STATE_HOME: '/dev/null', TMPDIR: scratchFolder(t), ...env };
  const kept = Object.entries(process.env).filter(([name]) => name !== 'NO_COLOR');
  const child = spawn('script', ['--quiet', '--return', '--command', command, '/dev/null'], {
    cwd: folder,
    env: { ...Object.fromEntries(kept), ...own },
  });
  t.after(() => child.kill());
  let text = '';
  child.stdout.setEncoding('utf8').on('data', (data) => (text += data));
  const code = await new Promise((resolve) => child.on('close', resolve));
  return { code, text };
}

test('a terminal shows tests as they end, failures last, and the sum', async (t) => {
  const { code, text } = await onTerminal(t, { NO_COLOR: '1' });
  const lines = shownLines(text).map((line) => line.replace(/\b[\d.]+ m?s\b/, '#'));
  const console = '[page] error: no film';
  assert.deepEqual(
    lines.filter((line) => line !== console),
    [
      'a.voice',
      '  ✓ (steps outside tests)  #',
      '  ✓ good  #',
      '  ✗ bad  #',
      lines[lines.indexOf('  ✗ bad  #') + 1],
      '',
      '1) a.voice:6:1: bad',
      '   expect "yes"',
      '   expected  "yes"   actual "no"',
      '   console   error: no film',
      '   picture   shots/a-6.png',
      '',
      '2 passed, 1 failed (#)',
      '',
    ],
    text
  );
  assert.equal(lines.filter((line) => line === console).length, 1, text);
  for (const progress of ['0/5 starting the application', '2/5 a.voice: bad'])
    assert.ok(text.includes(`\r\u001b[K${progress}`), text);
  assert.equal(code, 1);
});

test('colors are for those who have not refused them', async (t) => {
  for (const [env, isColorful] of [
    [{}, true],
    [{ NO_COLOR: '' }, true],
    [{ TERM: 'dumb' }, false],
  ]) {
    const { text } = await onTerminal(t, env);
    assert.equal(text.includes('\u001b[31m1 failed\u001b[0m'), isColorful, JSON.stringify(env) + text);
  }
});
