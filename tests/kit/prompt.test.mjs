// The prompt of `corvis run` on a terminal of its own: editing, history, completion, pages, and lines that come in between.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { readFileSync, statSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { root, run, scratchFolder, until, writePage } from '../../testing/corvis.mjs';

const page = `<button>Play it</button><button>Pläne</button><p id="state">ready</p><script>
  var timer;
  corvis.voiceinteraction.setCallback({
    onpause: function () { setTimeout(function () { console.log('later \\u001b[31m'); }, 300); },
    onstop: function () { timer = setInterval(function () { console.log('tick'); }, 200); },
    onplay: function () { clearInterval(timer); return 'played'; },
    onzoom: function () { return true; }
  });
  corvis.voiceinteraction.listen();
  setTimeout(function () { console.log('listening'); }, 500);
</script>`;

// Runs the page on a pseudo terminal of 80 columns. `type` types, `shows` waits until the terminal has shown something
// more.
async function terminal(t, { state = scratchFolder(t), rows = 200, options = '' } = {}) {
  const folder = writePage(t, page);
  const command = `stty rows ${rows} cols 80; exec '${path.join(root, 'corvis')}' run ${options} '${folder}'`;
  const env = { ...process.env, DISPLAY: '', TERM: 'xterm', TMPDIR: scratchFolder(t), XDG_STATE_HOME: state };
  const child = spawn('script', ['--quiet', '--return', '--command', command, '/dev/null'], {
    env,
    cwd: folder,
  });
  t.after(() => child.kill());
  let text = '';
  let seen = 0;
  child.stdout.setEncoding('utf8').on('data', (data) => (text += data));
  const exited = new Promise((resolve) => child.on('close', resolve));
  const shows = async (...parts) => {
    for (const part of parts) {
      await until(() => text.includes(part, seen), { child, output: () => text });
      seen = text.indexOf(part, seen) + part.length;
    }
  };
  const type = (keys) => child.stdin.write(keys);
  await shows('log: listening', '\n> ');
  return { type, shows, exited, folder, state, text: () => text };
}

test('a line is completed, edited and repeated; a console line leaves it alone', async (t) => {
  const { type, shows, exited } = await terminal(t);
  type('pau\t');
  await shows('se ');
  type('\n');
  await shows('ACTION_PAUSE  ->  success', '\n> ');
  type('pley\b\b');
  await shows('[page] log: later \\x1b[31m', '> pl');
  type('ay\n');
  await shows('ACTION_PLAY  ->  played');
  type('\u001b[A\n');
  await shows('ACTION_PLAY  ->  played');
  type('p\t\t');
  await shows('pause');
  type('\u0015\u0004');
  assert.equal(await exited, 0);
});

test('Tab offers what the beginning of a line can take', async (t) => {
  const { type, shows } = await terminal(t);
  const rows = [
    ['SELECT PLAY\t', 'it ', '\n', 'ACTION_ITEM_SELECTION id=0'],
    ['click on Pl\t\t', 'click on Play it', 'click on Pläne', '^'],
    ['press Cha\t', 'nnel', 'Up\n', 'The page has taken it.'],
    ['ACTION_MEDIA_SET_ZOOM i\t', 'n ', '\n', 'ACTION_MEDIA_SET_ZOOM in'],
    ['help ACTION_MEDIA_SET_Z\t', 'OOM ', '\n', 'onzoom'],
    ['say pau\t', 'se ', '\n', 'ACTION_PAUSE'],
  ];
  for (const [typed, ...parts] of rows) {
    type(typed);
    for (const part of parts) await (/[\n^]$/.test(part) ? type(part.replace('^', '\u0003')) : shows(part));
    await shows('\n> ');
  }
});

test('Ctrl-C clears a half-written line, on an empty one it ends the run; lines are kept for the next run', async (t) => {
  const first = await terminal(t);
  first.type('show "#state"\n');
  await first.shows('ready', '\n> ');
  first.type(' pause\n');
  await first.shows('ACTION_PAUSE  ->  success', '\n> ');
  first.type('pau\u0003');
  await first.shows('^C', '\n> ');
  first.type('play\n');
  await first.shows('ACTION_PLAY  ->  played', '\n> ');
  first.type('\u0003');
  assert.equal(await first.exited, 130);
  const file = path.join(first.state, 'corvis', 'history');
  assert.equal(readFileSync(file, 'utf8'), 'show "#state"\nplay\n');
  assert.equal(statSync(file).mode & 0o777, 0o600);
  assert.equal(statSync(path.dirname(file)).mode & 0o777, 0o700);
  writeFileSync(file, `${'x\n'.repeat(3000)}hostile \u001b[2J\nshow "#state"\n`);
  const second = await terminal(t, { state: first.state });
  second.type('\u001b[A\n');
  await second.shows('ready', '\n> ');
  second.type('play\n');
  await second.shows('played', '\n> ');
  assert.match(readFileSync(file, 'utf8'), /^(x\n){999}show "#state"\nplay\n$/);
  second.type('\u0004');
  assert.equal(await second.exited, 0);
});

test('a console line is above a text of several rows; long lists have pages', async (t) => {
  const { type, shows, text } = await terminal(t, { rows: 12 });
  type('say stop\n');
  await shows('ACTION_STOP  ->  success', '\n> ');
  const long = `say ${'long '.repeat(40)}`;
  type(long);
  // Two rows up is where the text begins.
  await shows('\u001b[A\u001b[A\r\u001b[J[page] log: tick', `> ${long.slice(0, 70)}`);
  type('\u0003');
  await shows('^C', '\n> ');
  type('play\n');
  await shows('ACTION_PLAY  ->  played', '\n> ');
  type('help\n');
  await shows('Commands', '-- Space: next page, q: end --');
  type(' ');
  await shows('-- Space: next page, q: end --');
  type('q');
  await shows('> ');
  assert.doesNotMatch(text(), /Raw: ACTION_NAME/);
});

const looks = `record a.voice
show "#state"
show "#state" contains "ead"
show "#state" is "gone"
show "#nothing"
value "({a: [1, 'x']})"
value "document.querySelectorAll('button').length"
value "nothing"
value "1 + 1" is "2"
items
items count is 2
press Left
play
show the lists
`;
const recorded = `show "#state" is "ready"
show "#state" contains "ead"
value "({a: [1, 'x']})" json {"a":[1,"x"]}
value "document.querySelectorAll('button').length" is "2"
value "1 + 1" is "2"
items count is 2
items count is 2
press Left
say "play"
expect "played"
say "show the lists"
expect "not_support"`;

test('phrases, keys and looks are recorded, and pass when they are replayed', async (t) => {
  const folder = writePage(t, page);
  const { code, text } = await run(['run', '--timeout', '2000', folder], { input: looks, cwd: folder });
  assert.equal(code, 0, text);
  for (const part of [
    'Expected "gone", not "ready".',
    'The page has no element #nothing.',
    "Can't find variable",
  ])
    assert.ok(text.includes(part), text);
  const script = readFileSync(path.join(folder, 'a.voice'), 'utf8');
  assert.equal(script.match(/^[^#\n].*$/gm).join('\n'), recorded);
  const replayed = await run(['test-app', folder, 'a.voice'], { cwd: folder });
  assert.equal(replayed.code, 0, replayed.text);
});
