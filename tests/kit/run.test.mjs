// How `corvis run` begins and ends: what can't be run is one clear sentence, and applications are taken by any name.
import assert from 'node:assert/strict';
import { mkdirSync, readdirSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { processesWith, root, run, scratchFolder, start, until } from '../../testing/corvis.mjs';
import { servePages } from '../../testing/tv.mjs';

const listening = `<script>corvis.voiceinteraction.setCallback({ onpause: function () {} });
  corvis.voiceinteraction.listen();</script>`;

test('what can not be run is refused in one sentence with its status', async (t) => {
  const folder = scratchFolder(t);
  writeFileSync(path.join(folder, 'page.txt'), 'no page');
  const rows = [
    [['run', folder], 3, 'has no index.html'],
    [['run', 'ftp://127.0.0.1/'], 3, 'expected an http, https or file URL'],
    [['run', '--app-id', 'no dots', folder], 2, 'Expected a dotted name'],
    [['run', '--size', '100000x100', folder], 2, 'Expected a size such as 1920x1080'],
    [['run', '--timeout', '1s', folder], 2, 'Expected a whole number from 1 to'],
    [['run', '--privilege=mic', folder], 2, 'Expected microphone, voicecontrol or a URI'],
    [['run', '--console=some', folder], 2, 'Expected errors, page, all or none'],
    [['run'], 2, 'Expected a URL'],
    [['run', folder, 'second'], 2, 'Unexpected "second".'],
    [['run', '--headles', folder], 2, 'Unknown option --headles. Did you mean "--headless"?'],
    [['test-app', folder], 2, 'Expected an application and a voice script'],
    [['lnt'], 2, 'Unknown command lnt. Did you mean "lint"?'],
  ];
  for (const [args, status, sentence] of rows) {
    const { code, text } = await run(args, { env: { TMPDIR: folder } });
    assert.equal(code, status, `${args.join(' ')}:\n${text}`);
    assert.ok(text.startsWith('corvis: ') && text.includes(sentence), text);
    assert.equal(text.split('\n').length, 2, `more than one line:\n${text}`);
  }
});

test('applications are taken by any name', async (t) => {
  const folder = scratchFolder(t);
  const page = (name) => {
    mkdirSync(path.join(folder, name), { recursive: true });
    writeFileSync(path.join(folder, name, 'index.html'), listening);
  };
  ['a:b', '-dash', 'run'].forEach(page);
  const { port } = new URL(await servePages(t, { '/': listening }));
  const rows = [
    ['a:b'],
    ['--', '-dash'],
    ['run'],
    ['--app-id', 'com.Example.APP', 'a:b/index.html'],
    [`FILE://${encodeURI(folder)}/run/`],
    [`HTTP://127.0.0.1:${port}/`],
    [`http://127.1:${port}`],
  ];
  for (const args of rows) {
    const { code, text } = await run(['run', ...args], { cwd: folder, input: 'pause\n' });
    assert.equal(code, 0, `${args.join(' ')}:\n${text}`);
    assert.match(text, /ACTION_PAUSE {2}-> {2}success/, args.join(' '));
  }
});

test('Ctrl-C ends what was started', async (t) => {
  const folder = scratchFolder(t);
  const command = start(['run', 'examples/cinema'], { cwd: root, env: { TMPDIR: folder } });
  await until(() => processesWith(folder).length >= 4, command);
  command.child.kill('SIGINT');
  const { code, text } = await command.exited;
  assert.equal(code, 130, text);
  assert.deepEqual(processesWith(folder), []);
  assert.deepEqual(readdirSync(folder), []);
});
