// The prompt of `corvis run` on a terminal of its own: editing, history, completion, and lines that come in between.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import path from 'node:path';
import { test } from 'node:test';
import { root, scratchFolder, until, writePage } from '../../testing/corvis.mjs';

const page = `<script>
  corvis.voiceinteraction.setCallback({
    onpause: function () { setTimeout(function () { console.log('later \\u001b[31m'); }, 300); },
    onplay: function () { return 'played'; }
  });
  corvis.voiceinteraction.listen();
  setTimeout(function () { console.log('listening'); }, 500);
</script>`;

// Runs the page on a pseudo terminal. `type` types, `shows` waits until the terminal has shown something more.
function terminal(t) {
  const run = `'${path.join(root, 'corvis')}' run '${writePage(t, page)}'`;
  const env = { ...process.env, DISPLAY: '', TERM: 'xterm', TMPDIR: scratchFolder(t) };
  const child = spawn('script', ['--quiet', '--return', '--command', run, '/dev/null'], { env });
  t.after(() => child.kill());
  let text = '';
  let seen = 0;
  child.stdout.on('data', (data) => (text += data));
  const exited = new Promise((resolve) => child.on('close', resolve));
  const shows = async (part) => {
    await until(() => text.includes(part, seen), { child, output: () => text });
    seen = text.indexOf(part, seen) + part.length;
  };
  return { type: (keys) => child.stdin.write(keys), shows, exited };
}

test('a line is completed, edited and repeated; a console line leaves it alone', async (t) => {
  const { type, shows, exited } = terminal(t);
  await shows('log: listening');
  await shows('> ');
  type('pau\t');
  await shows('se ');
  type('\n');
  await shows('ACTION_PAUSE  ->  success');
  await shows('> ');
  type('pley\b\b');
  await shows('[page] log: later \\x1b[31m');
  await shows('> pl');
  type('ay\n');
  await shows('ACTION_PLAY  ->  played');
  type('\u001b[A\n');
  await shows('ACTION_PLAY  ->  played');
  type('p\t\t');
  await shows('pause');
  type('\u0015\u0004');
  assert.equal(await exited, 0);
});

test('Ctrl-C ends the run', async (t) => {
  const { type, shows, exited } = terminal(t);
  await shows('> ');
  type('pau\u0003');
  assert.equal(await exited, 130);
});
