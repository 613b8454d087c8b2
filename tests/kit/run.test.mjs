// `corvis run` with phrases from standard input: what goes wrong is one clear sentence, and the next good command works.
import assert from 'node:assert/strict';
import { mkdirSync, writeFileSync } from 'node:fs';
import { createServer } from 'node:http';
import path from 'node:path';
import { test } from 'node:test';
import { run, scratchFolder, writePage } from '../../testing/corvis.mjs';

const listening = `<p id="state"></p><button onclick="document.title = 'clicked'">Play it</button><script>
  corvis.voiceinteraction.setCallback({
    onpause: function () { document.title = 'paused'; },
    oncustom: function (text) { return text; },
    onplay: function () { throw new Error('broken callback'); },
    onstop: function () { return function () {}; },
    onupdatestate: function () { return 'Home'; }
  });
  corvis.voiceinteraction.listen();
</script>`;

test('every line gets its answer or one sentence, and the conversation goes on', async (t) => {
  const rows = [
    ['pause', 'ACTION_PAUSE  ->  success'],
    ['flibbertigibbet', '"flibbertigibbet"'],
    ['puase', 'Did you mean "pause"?'],
    ['ACTION_PUASE', 'Did you mean "ACTION_PAUSE"?'],
    ['ACTION_PUASE', 'ACTION_PUASE  ->  not_support'],
    ['play', 'ACTION_PLAY  ->  not_support'],
    ['stop', 'ACTION_STOP  ->  not_support'],
    ['rotate left', 'ACTION_MEDIA_SET_ROTATE Left  ->  not_support'],
    ['where am I', 'ACTION_REQUEST_APP_CONTEXT  ->  Home'],
    ['ACTION_CUSTOM a=1 b="two words"', '->  {"a":"1","b":"two words"}'],
    ['ACTION_CUSTOM no bundle', '->  {}'],
    ['select play it', 'ACTION_ITEM_SELECTION id=0  ->  success'],
    ['select 7', 'ACTION_ITEM_SELECTION id=7  ->  not_support'],
    ['select nothing of the kind', 'No item on the screen is called'],
    ['restart', 'has registered again'],
    ['pause', 'ACTION_PAUSE  ->  success'],
  ];
  const input = rows.map(([line]) => `${line}\n`).join('');
  const { code, text } = await run(['run', writePage(t, listening)], { input });
  assert.equal(code, 0, text);
  let from = 0;
  for (const [line, expected] of rows) {
    const at = text.indexOf(expected, from);
    assert.ok(at >= 0, `${line}: "${expected}" is missing after:\n${text.slice(0, from)}\nin:\n${text}`);
    from = at;
  }
});

test('what can not be run is refused in one sentence with its status', async (t) => {
  const folder = scratchFolder(t);
  writeFileSync(path.join(folder, 'page.txt'), 'no page');
  const rows = [
    [['run', path.join(folder, 'missing')], 3, 'does not exist'],
    [['run', folder], 3, 'has no index.html'],
    [['run', 'http://127.0.0.1:45999/'], 3, "can't be loaded"],
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
  const server = createServer((request, response) => response.end(listening));
  await new Promise((resolve) => server.listen(0, '127.0.0.1', resolve));
  t.after(() => server.close());
  const { port } = server.address();
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
