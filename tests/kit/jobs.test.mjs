// `corvis test-app --jobs`: scripts that run at the same time are reported as if one had followed the other.
import assert from 'node:assert/strict';
import { readdirSync, readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import {
  jsonLines,
  processesWith,
  run,
  scratchFolder,
  start,
  until,
  writePage,
} from '../../testing/corvis.mjs';

const page = `<script>
  corvis.voiceinteraction.setCallback({
    onplay: function () { localStorage.played = 1 + Number(localStorage.played || 0); return localStorage.played; },
    onpause: function () { return 'no'; },
    onexit: function () { window.close(); }
  });
  corvis.voiceinteraction.listen();
</script>`;
const playing = 'test "playing"\nsay play\nexpect "1"\n';
const scripts = {
  'a.voice': `wait 500 ms\n${playing}`,
  'b.voice': `test "failing"\nsay pause\nexpect success\nsay play\n${playing}`,
  'c.voice': 'say exit\nexpect closed\n',
  'd.voice': playing,
  'e.voice': playing,
};

function application(t, files) {
  const folder = writePage(t, page);
  for (const [name, text] of Object.entries(files)) writeFileSync(path.join(folder, name), text);
  return folder;
}

test('the report is that of one job', async (t) => {
  const folder = application(t, scripts);
  const command = (options) =>
    run(['test-app', '--coverage', ...options, '.', ...Object.keys(scripts)], { cwd: folder });
  const one = await command([]);
  const two = await command(['--jobs', '2']);
  assert.deepEqual([two.code, two.text], [1, one.text]);
});

// Waits for a step of each of the scripts that two workers run, and returns the processes of the workers.
async function workersOf(command, folder) {
  const workers = () =>
    readdirSync('/proc')
      .filter((name) => /^\d+$/.test(name))
      .filter((pid) => {
        try {
          const parts = readFileSync(`/proc/${pid}/cmdline`, 'utf8').split('\0');
          return parts.includes('--worker') && readFileSync(`/proc/${pid}/environ`, 'utf8').includes(folder);
        } catch {
          return false;
        }
      })
      .map(Number);
  return until(() => workers().length >= 2 && workers(), command);
}

const waiting = 'test "long"\nwait 60 s\nsay play\n';

test('a worker that dies fails its script, and another one takes over', async (t) => {
  const folder = application(t, {
    'a.voice': 'say play\nwait 60 s\n',
    'b.voice': playing,
    'c.voice': playing,
  });
  const own = scratchFolder(t);
  const options = ['--jobs', '2', '--json', '.', 'a.voice', 'b.voice', 'c.voice'];
  const command = start(['test-app', ...options], { cwd: folder, env: { TMPDIR: own } });
  await workersOf(command, own);
  // The first worker has the first script, whose first step is reported at once.
  await until(() => command.output().includes('"source":"say play"'), command);
  const [first] = (await workersOf(command, own)).sort((one, other) => one - other);
  process.kill(first, 'SIGKILL');
  const { code, text } = await command.exited;
  const ends = jsonLines(text).filter(({ event }) => event === 'test-end');
  assert.deepEqual(
    ends.map(({ file, status }) => `${file} ${status}`),
    ['a.voice failed', 'b.voice passed', 'c.voice passed'],
    text
  );
  assert.match(text, /"message":"The worker that ran this script was ended by signal 9 \(Killed\)\."/);
  assert.equal(code, 1, text);
  await until(() => processesWith(own).length === 0, command);
  assert.deepEqual(readdirSync(own), []);
});

test('the end of the time, a signal and a missing application end all jobs', async (t) => {
  const folder = application(t, { 'a.voice': waiting, 'b.voice': waiting, 'c.voice': playing });
  const own = scratchFolder(t);
  const args = (options, app = '.') => [
    'test-app',
    '--jobs',
    '2',
    ...options,
    app,
    'a.voice',
    'b.voice',
    'c.voice',
  ];
  const rows = [
    [
      ['--total-timeout', '8'],
      '.',
      8,
      'Bail out! The time limit for the whole run (--total-timeout) is over.',
    ],
    [['--total-timeout', '300'], '.', 130, 'message: "The run was interrupted."', 'SIGINT'],
    [[], 'index.htm', 3, 'Bail out! index.htm does not exist'],
  ];
  for (const [options, app, status, part, signal] of rows) {
    const command = start(args(options, app), { cwd: folder, env: { TMPDIR: own } });
    if (signal) {
      await workersOf(command, own);
      await until(() => command.output().includes('# long'), command);
      command.child.kill(signal);
    }
    const { code, text } = await command.exited;
    assert.equal(code, status, text);
    assert.ok(text.includes(part), text);
    await until(() => processesWith(own).length === 0, command);
    assert.deepEqual(readdirSync(own), [], text);
  }
  for (const [options, sentence] of [
    [['--profile', 'x'], "--jobs needs runs that share nothing, so it can't be combined"],
    [['--jobs', '0'], 'Expected a whole number from 1 to 64, or auto, not "0".'],
  ]) {
    const { code, text } = await run(args(options), { cwd: folder });
    assert.equal(code, 2, text);
    assert.ok(text.includes(sentence), text);
  }
});
