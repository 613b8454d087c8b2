// `corvis run` with phrases from standard input: what goes wrong is one clear sentence, and the next good command works.
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
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
    ['flibbertigibbet', 'Nothing is known for "flibbertigibbet"'],
    ['puase', 'did you mean "pause"?'],
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

test('what can not be run is told in one sentence with its status', async (t) => {
  const folder = scratchFolder(t);
  writeFileSync(path.join(folder, 'page.txt'), 'no page');
  const rows = [
    [['run', path.join(folder, 'missing')], 3, 'There is no'],
    [['run', folder], 3, 'has no index.html'],
    [['run', 'http://127.0.0.1:45999/'], 3, "can't be loaded"],
    [['run', '--app-id', 'no dots', folder], 2, 'is no application id'],
    [['run'], 2, 'needs a URL'],
    [['run', '--colour', folder], 2, 'does not know --colour'],
    [['dance'], 2, 'no command dance'],
  ];
  for (const [args, status, sentence] of rows) {
    const { code, text } = await run(args, { env: { TMPDIR: folder } });
    assert.equal(code, status, `${args.join(' ')}:\n${text}`);
    assert.ok(text.includes(sentence), text);
  }
});

test('a page without the privileges gets the error and never registers', async (t) => {
  const page = writePage(
    t,
    `<script>try { corvis.voiceinteraction.listen(); } catch (error) {
       console.log('refused: ' + error.name + ', ' + error.message); }</script>`
  );
  for (const [options, message] of [
    [['--no-privileges'], 'SecurityError, Microphone PrivilegeException'],
    [['--privilege', 'microphone'], 'SecurityError, Voice Control PrivilegeException'],
  ]) {
    const { text } = await run(['run', '--timeout', '750', ...options, page], { input: 'quit\n' });
    assert.ok(text.includes(`refused: ${message}`), text);
    assert.match(text, /has not called listen\(\)/);
  }
});
