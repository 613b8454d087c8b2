// `corvis test-app` as a build server sees it: what it prints, and the status that it ends with. Its reports are in
// docs/voice-scripts.md, whose commands are tests, too.
import assert from 'node:assert/strict';
import { execFileSync, spawnSync } from 'node:child_process';
import { closeSync, openSync, readFileSync, writeFile, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { jsonLines, root, run, testApp, writePage } from '../../testing/corvis.mjs';

const page = `<button>Play it</button><p id="state">idle</p><script>
  var state = document.getElementById('state');
  corvis.voiceinteraction.setCallback({
    onpause: function () { state.textContent = 'paused'; console.log('pausing now'); },
    oncustom: function (json) { return JSON.parse(json).echo; },
    onstop: function () { var end = Date.now() + 1e9; while (Date.now() < end); },
    onplay: function () { console.log('_callback exception : none'); return false; },
    onrewind: function () { throw new Error('boom'); },
    onexit: function () { window.close(); }
  });
  corvis.voiceinteraction.listen();
</script>`;

test('a script speaks its languages and phrases of its own; the page sees the first language', async (t) => {
  const folder = writePage(t, page.replace('Play it', 'Das letzte Öl'));
  writeFileSync(path.join(folder, 'own.phrases'), '[phrases]\nruf {words} -> ACTION_CUSTOM echo={words}\n');
  const script = `value "navigator.language" is "de-AT"
say Halt den Film an
show "#state" is "paused"
say das letzte OEL, bitte
expect action ACTION_ITEM_SELECTION
phrases "own.phrases"
say ruf Große Öfen bitte
expect is "Große Öfen"
language en
say can you play the movie
expect action ACTION_PLAY with is ""
`;
  writeFileSync(path.join(folder, 'a.voice'), script);
  const { code, text } = await run(['test-app', '--language', 'de-AT', folder, 'a.voice'], { cwd: folder });
  assert.equal(code, 0, text);
});

test('a failure names what belongs to it', async (t) => {
  const tooLarge = `inject after 20 ms command="ACTION_PAUSE" strData="${'x'.repeat(2 ** 17)}"\n`;
  const { text } = await testApp(
    t,
    page,
    `test "thrown"\nsay rewind\nexpect success\n` +
      `test "an exception of the test before"\nsay play\nexpect success\n` +
      `test "a message of the past"\n${tooLarge}wait 200 ms\nsay pause\n` +
      `test "a message of the future"\n${tooLarge}`
  );
  const messages = [...text.matchAll(/^not ok (\d+).*\n {2}---\n {2}(.*)$/gm)].map((found) =>
    found.slice(1).join(' ')
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
    [['--html', '/dev/full'], 'ignore', "The file /dev/full can't be written: No space left on device."],
    [['--json'], full, "Standard output can't be written: No space left on device."],
  ]) {
    const args = ['test-app', '--headless', ...options, folder, 'a.voice'];
    const io = { cwd: folder, stdio: ['ignore', output, 'pipe'], encoding: 'utf8' };
    const { status, stderr } = spawnSync(path.join(root, 'corvis'), args, io);
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
    ['say pause\n', ['--no-privileges', '--timeout', '750'], 1, 'Its console says: uncaught: '],
    ['say pause\n', ['--privilege', 'microphone', '--timeout', '750'], 1, 'Voice Control PrivilegeException'],
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
    const { code, text } = await testApp(t, page, script, options);
    assert.equal(code, status, `${script}${options}\n${text}`);
    assert.ok(text.includes(part), `${script}${options}\n${text}`);
  }
});

test('the next script has the application again that a script expected to end', async (t) => {
  const app = writePage(t, page);
  const [closing, other] = ['closing', 'other'].map((name) => path.join(app, `${name}.voice`));
  writeFileSync(closing, 'say exit\nexpect closed\n');
  writeFileSync(other, 'say pause\nexpect success\n');
  const { code, text } = await run(['test-app', app, closing, closing, other, other, closing]);
  assert.equal(code, 0, text);
  assert.equal(text.match(/^ok (?!.*# SKIP)/gm).length, 10, text);
});

test('scripts are read once, from pipes as from files', async (t) => {
  const folder = writePage(t, page);
  execFileSync('mkfifo', [path.join(folder, 'fifo.voice')]);
  const script = 'say pause\nexpect success\n';
  for (const file of ['/dev/stdin', 'fifo.voice']) {
    const running = run(['test-app', folder, file], { cwd: folder, input: script });
    if (file === 'fifo.voice') writeFile(path.join(folder, file), script, () => {});
    const { code, text } = await running;
    assert.equal(code, 0, text);
    assert.match(text, /^ok 2 - \S+:2 expect success$/m);
  }
});

test('what was recorded at the prompt passes when it is replayed', async (t) => {
  const folder = writePage(t, page);
  const input =
    'record talk.voice\npause\nACTION_CUSTOM echo="a b, c"\nplay\nnonsense\nselect play it\nitems\nrestart\npause\n';
  const recorded = await run(['run', folder], { input, cwd: folder });
  assert.equal(recorded.code, 0, recorded.text);
  assert.match(recorded.text, /has registered again/);
  const { code, text } = await run(['test-app', folder, 'talk.voice'], { cwd: folder });
  assert.equal(code, 0, text + readFileSync(path.join(folder, 'talk.voice'), 'utf8'));
  assert.match(text, /^1\.\.12$/m);
});

const hanging = `timeout 1s
test "a callback"
say stop
expect success
test "after it"
show "#state" is "idle"
say pause
expect success
test "an expectation"
value "(function () { for (;;); })()" is 1
test "after that"
say pause
expect success
`;

test('a page that hangs spoils the test in which it does, and nothing else', async (t) => {
  const { code, text } = await testApp(t, page, hanging, ['--json'], ['a.voice', 'a.voice']);
  assert.equal(code, 1, text);
  const steps = jsonLines(text).filter(({ event }) => event === 'step');
  const failed = steps.filter(({ status }) => status === 'failed');
  assert.deepEqual(
    failed.map(({ line }) => line),
    [3, 10, 3, 10]
  );
  for (const { message } of failed) assert.match(message, /The page hung; its process was killed/);
  assert.equal(steps.filter(({ status }) => status === 'skipped').length, 2);
});
