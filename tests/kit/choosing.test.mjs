// Which scripts and tests `corvis test-app` runs: files, folders, lines, names, shards, and those that failed before.
import assert from 'node:assert/strict';
import { mkdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { jsonLines, rowsOf, run, scratchFolder, writePage } from '../../testing/corvis.mjs';

const a = 'timeout 100 ms\ntest "one"\nsay play\ntest "two: a|b"\nsay pause\n\nexpect success\n';
const files = {
  'a.voice': a,
  'v/b/z.voice': 'test "deep"\nsay play\n',
  'v/b.voice': 'say play\n',
  'v/c.voice': 'test "one"\nsay play\n',
  'v/notes.txt': 'no script\n',
  'v/node_modules/x.voice': 'no script\n',
  'v/.git/x.voice': 'no script\n',
  'like:3': 'test "of a strange file"\nsay play\n',
  'bad.voice': 'pley\n',
};

function write(folder) {
  for (const [name, text] of Object.entries(files)) {
    mkdirSync(path.join(folder, path.dirname(name)), { recursive: true });
    writeFileSync(path.join(folder, name), text);
  }
  mkdirSync(path.join(folder, 'empty'));
}

// The arguments, and what --list prints; an exit status other than 0 stands before that.
const lists = rowsOf(`
  a.voice                     → a.voice:1¶a.voice:2  one¶a.voice:4  two: a|b¶
  v                           → v/b.voice:1¶v/b/z.voice:1  deep¶v/c.voice:1  one¶
  v a.voice:4 v/c.voice       → v/b.voice:1¶v/b/z.voice:1  deep¶v/c.voice:1  one¶a.voice:1¶a.voice:4  two: a|b¶v/c.voice:1  one¶
  a.voice:7                   → a.voice:1¶a.voice:4  two: a|b¶
  a.voice:1                   → a.voice:1¶
  a.voice:5 a.voice:2         → a.voice:1¶a.voice:2  one¶a.voice:4  two: a|b¶
  like:3                      → like:3:1  of a strange file¶
  --grep ^one$ a.voice v      → a.voice:1¶a.voice:2  one¶v/c.voice:1  one¶
  --grep voice a.voice v      → v/b.voice:1¶
  --grep=two a.voice:2 v      → 2 corvis: No test has a name that matches "two"; --list without --grep lists all.¶
  --grep ( a.voice            → 2 corvis: --grep: Invalid regular expression: Error while compiling regular expression ‘(’ at char 1: missing terminating ).¶
  a.voice:99                  → 2 corvis: a.voice has no test at line 99; --list lists its tests.¶
  a.voice:0                   → 2 corvis: The script a.voice:0 can't be read or is empty.¶
  empty                       → 2 corvis: The folder empty has no voice script; expected files named *.voice.¶
  bad.voice a.voice           → 2 bad.voice:1:1: Unknown statement "pley".¶
  --shard 1/2 v a.voice       → v/b.voice:1¶v/c.voice:1  one¶
  --shard 2/2 v a.voice       → v/b/z.voice:1  deep¶a.voice:1¶a.voice:2  one¶a.voice:4  two: a|b¶
  --shard 2/1 v               → 2 corvis: --shard: Expected a part and the number of parts, such as 1/3, not "2/1". See corvis test-app --help.¶
  --shard 2/2 v/b.voice       → There are fewer scripts than shards, so the shard 2/2 has none and nothing is run.¶
  --repeat 2 v/c.voice        → v/c.voice:1  one¶v/c.voice:1  one¶
`);

test('the tests that arguments choose are listed without starting anything', async (t) => {
  const folder = scratchFolder(t);
  write(folder);
  for (const [args, expected] of lists) {
    const { code, text } = await run(['test-app', '--list', 'no-application', ...args.trim().split(/ +/)], {
      cwd: folder,
      env: { XDG_STATE_HOME: path.join(folder, 'state') },
    });
    assert.equal(`${code === 0 ? '' : `${code} `}${text}`, expected, args);
  }
});

const page = `<script>
  corvis.voiceinteraction.setCallback({
    onplay: function () {}, onpause: function () { return location.hash !== '#fixed' && 'no'; }
  });
  corvis.voiceinteraction.listen();
</script>`;

test('the tests that failed are remembered until they pass', async (t) => {
  const folder = writePage(t, page);
  write(folder);
  const rows = rowsOf(`
    --last-failed a.voice v              → 0 None of the chosen tests failed when it last ran, so nothing is run.
    a.voice v/c.voice                    → 1 a.voice one, a.voice two: a|b, v/c.voice one
    --last-failed --list .               → 0 a.voice:1¶a.voice:4  two: a|b
    --last-failed a.voice v/c.voice      → 1 a.voice two: a|b
    --last-failed --repeat 2 --shard 1/1 v a.voice → 1 a.voice two: a|b, a.voice two: a|b
  `);
  const env = { XDG_STATE_HOME: path.join(folder, 'state') };
  const check = async ([args, expected]) => {
    const command = ['test-app', '--console', 'none', '--json', '.', ...args.trim().split(/ +/)];
    const { code, text } = await run(command, { cwd: folder, env });
    const events = jsonLines(text);
    const names = events.filter(({ event }) => event === 'test').map((one) => `${one.file} ${one.text}`);
    const said = names.length > 0 ? names.join(', ') : text.replace(/^\{.*\n/gm, '').trim();
    assert.equal(`${code} ${said}`, expected, `${args}\n${text}`);
  };
  writeFileSync(path.join(folder, 'bad.voice'), 'say play\n');
  for (const row of rows) await check(row);
  writeFileSync(path.join(folder, 'a.voice'), a.replace('expect success', 'expect "no"'));
  await check(['--last-failed a.voice', '0 a.voice two: a|b']);
  await check([
    '--last-failed a.voice',
    '0 None of the chosen tests failed when it last ran, so nothing is run.',
  ]);
});
