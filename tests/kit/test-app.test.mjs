// `corvis test-app` as a build server sees it: what it prints, the files that it leaves, the status that it ends with.
import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { closeSync, openSync, readFileSync, writeFile, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { root, run, start, until, writePage } from '../../testing/corvis.mjs';

const page = `<button>Play it</button><p id="state">idle</p><script>
  var state = document.getElementById('state');
  corvis.voiceinteraction.setCallback({
    onpause: function () { state.textContent = 'paused'; console.log('pausing now'); },
    oncustom: function (json) { return JSON.parse(json).echo; },
    onstop: function () { var end = Date.now() + 1e9; while (Date.now() < end); },
    onplay: function () { return false; },
    onrewind: function () { throw new Error('boom'); },
    onexit: function () { window.close(); }
  });
  corvis.voiceinteraction.listen();
</script>`;

// Writes the page and a script, runs it, and gives the run's outcome with the folder.
async function testApp(t, script, options = []) {
  const folder = writePage(t, page);
  writeFileSync(path.join(folder, 'a.voice'), script);
  return { folder, ...(await run(['test-app', ...options, folder, 'a.voice'], { cwd: folder })) };
}

test('a failure has the place, what was expected and what came, and a picture of the page', async (t) => {
  const options = ['--junit', 'out/report.xml', '--coverage-min', '90'];
  const { code, text, folder } = await testApp(
    t,
    'timeout 200 ms\ntest "first"\nsay pause\nshow "#state" is "playing"\nsay pause\ntest "second"\nsay play\nexpect success\n',
    options
  );
  assert.equal(code, 1, text);
  assert.match(text, /^not ok 3 - a\.voice:4 show "\\#state" is "playing"$/m);
  assert.match(text, /line: 4\n {2}column: 1\n {2}expected: "\\"playing\\""\n {2}actual: "\\"paused\\""/);
  assert.match(text, /console:\n {4}- "log: pausing now"/);
  assert.match(text, /^ok 4 - .* # SKIP/m);
  assert.match(text, /^not ok 6 - a\.voice:8 expect success$/m);
  assert.deepEqual(readFileSync(path.join(folder, 'out/a-4.png')).subarray(1, 4).toString(), 'PNG');
  const report = readFileSync(path.join(folder, 'out/report.xml'), 'utf8');
  assert.match(report, /<testsuite name="a.voice" tests="3" failures="2"/);
  assert.match(report, /\[\[ATTACHMENT\|.*a-4\.png\]\]/);
});

test('a failure names what belongs to it', async (t) => {
  const tooLarge = `inject after 20 ms command="ACTION_PAUSE" strData="${'x'.repeat(2 ** 17)}"\n`;
  const { text } = await testApp(
    t,
    `test "thrown"\nsay rewind\nexpect success\n` +
      `test "an exception of the test before"\nsay play\nexpect success\n` +
      `test "a message of the past"\n${tooLarge}wait 200 ms\nsay pause\n` +
      `test "a message of the future"\n${tooLarge}`
  );
  const messages = [...text.matchAll(/^not ok (\d+).*\n {2}---\n {2}(.*)$/gm)].map(
    ([, n, line]) => `${n} ${line}`
  );
  assert.match(messages[0], /^2 message: "The callback threw: Error: boom"$/);
  assert.match(messages[1], /^4 file: /);
  assert.match(messages[2], /^7 message: "a.voice:8:1: The message was not sent\. /);
  assert.match(messages[3], /^8 message: "a.voice:12:1: The message was not sent\. /);
});

test('a report that can not be written is a failure', async (t) => {
  const folder = writePage(t, page);
  writeFileSync(path.join(folder, 'a.voice'), 'say pause\nexpect success\n');
  const full = openSync('/dev/full', 'w');
  t.after(() => closeSync(full));
  for (const [options, output, sentence] of [
    [['--junit', '/dev/full'], 'ignore', "The file /dev/full can't be written: No space left on device."],
    [['--json'], full, "Standard output can't be written: No space left on device."],
  ]) {
    const { status, stderr } = spawnSync(
      path.join(root, 'corvis'),
      ['test-app', ...options, folder, 'a.voice'],
      {
        cwd: folder,
        env: { ...process.env, DISPLAY: '' },
        stdio: ['ignore', output, 'pipe'],
        encoding: 'utf8',
      }
    );
    assert.equal(status, 1, stderr);
    assert.ok(stderr.includes(sentence), stderr);
  }
});

test('every way for a run to end has its status', async (t) => {
  const rows = [
    ['\ufeffsay pause\r\nexpect success\n', [], 0, ''],
    ['# say pause\n', [], 2, 'no statement'],
    ['say play\nexpect success\n', [], 1, 'not ok 2'],
    ['sya pause\n', [], 2, 'a.voice:1:1: '],
    ['say puase\n', [], 2, 'Did you mean "pause"?'],
    ['say pause\nshow "#state" equals "x"\n', [], 2, 'a.voice:2:15: '],
    ['say pause\n', ['--coverage-min', '101'], 2, 'Expected a whole number from 1 to 100'],
    ['say pause\n', ['--no-privileges', '--timeout', '750'], 3, 'Its console says: uncaught: '],
    ['say pause\n', ['--coverage-min', '90'], 7, 'less than the 90 %'],
    ['say stop\n', ['--total-timeout', '2'], 8, 'The time limit for the whole run (--total-timeout) is over'],
    ['say exit\nexpect closed\n', [], 0, 'ok 2'],
    ['say exit\nexpect closed\nsay pause\n', [], 1, 'Bail out! The application ended'],
    ['say exit\n', [], 1, 'Bail out! The application ended'],
    ['timeout 100 ms\nsay pause\nexpect closed\n', [], 1, 'The application has not ended within 100 ms.'],
    [
      'send ACTION_PAUSE\ninject strData="x"\nexpect no answer within 50 ms\nsay pause\nexpect success',
      [],
      0,
      '',
    ],
  ];
  for (const [script, options, status, part] of rows) {
    const { code, text } = await testApp(t, script, options);
    assert.equal(code, status, `${script}${options}\n${text}`);
    assert.ok(text.includes(part), `${script}${options}\n${text}`);
  }
});

test('scripts are read once, from pipes as from files', async (t) => {
  const folder = writePage(t, page);
  execFileSync('mkfifo', [path.join(folder, 'fifo.voice')]);
  const script = 'say pause\nexpect success\n';
  const rows = [
    ['/dev/stdin', { input: script }],
    ['fifo.voice', { cwd: folder }],
  ];
  for (const [file, options] of rows) {
    const running = run(['test-app', folder, file], { cwd: folder, ...options });
    if (file === 'fifo.voice') writeFile(path.join(folder, file), script, () => {});
    const { code, text } = await running;
    assert.equal(code, 0, text);
    assert.match(text, /^ok 2 - \S+:2 expect success$/m);
  }
});

test('JSON events, and nothing else, go to standard output', async (t) => {
  const folder = writePage(t, page);
  writeFileSync(
    path.join(folder, 'a.voice'),
    'send ACTION_CUSTOM echo="é 🎬"\nexpect "é 🎬"\nsay play\nexpect success\n'
  );
  const command = start(['test-app', '--json', '--coverage', folder, 'a.voice'], { cwd: folder, input: '' });
  let lines = '';
  command.child.stdout.on('data', (data) => (lines += data));
  const { code, text } = await command.exited;
  assert.equal(code, 1, text);
  const events = lines
    .trim()
    .split('\n')
    .map((line) => JSON.parse(line));
  assert.deepEqual(
    events.map(({ event }) => event),
    ['start', 'script', 'step', 'step', 'step', 'step', 'coverage', 'end']
  );
  assert.equal(events[2].answer, 'é 🎬');
  assert.deepEqual(
    [events[5].status, events[5].expected, events[5].actual],
    ['failed', '"success"', '"not_support"']
  );
  assert.equal(events[7].status, 1);
});

test('what was recorded at the prompt passes when it is replayed', async (t) => {
  const folder = writePage(t, page);
  const input =
    'record talk.voice\npause\nACTION_CUSTOM echo="a b, c"\nplay\nnonsense\nselect play it\nitems\nrestart\npause\n';
  const recorded = await run(['run', folder], { input, cwd: folder });
  assert.equal(recorded.code, 0, recorded.text);
  const { code, text } = await run(['test-app', folder, 'talk.voice'], { cwd: folder });
  assert.equal(code, 0, text + readFileSync(path.join(folder, 'talk.voice'), 'utf8'));
  assert.match(text, /^1\.\.12$/m);
});

test('a thousand commands get a thousand answers, each its own', async (t) => {
  const steps = Array.from({ length: 1000 }, (_, i) => `send ACTION_CUSTOM echo=${i}\nexpect "${i}"\n`);
  const { code, text } = await testApp(t, steps.join(''));
  assert.equal(code, 0, text.slice(-2000));
  assert.match(text, /^ok 2000 /m);
});

test('an interrupted run says so and ends what it started', async (t) => {
  const folder = writePage(t, page);
  writeFileSync(path.join(folder, 'a.voice'), 'say pause\nsay stop\n');
  const command = start(['test-app', folder, 'a.voice'], { cwd: folder });
  await until(() => command.output().includes('ok 1'), command);
  command.child.kill('SIGINT');
  const { code, text } = await command.exited;
  assert.equal(code, 130, text);
});
