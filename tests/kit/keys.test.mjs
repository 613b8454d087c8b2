// The remote control: every key of the table reaches the page as it is documented, with the default actions, focus and
// frames of real key events.
import assert from 'node:assert/strict';
import { readFileSync, writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { root, run, testApp, writePage } from '../../testing/corvis.mjs';

const listen =
  'corvis.voiceinteraction.setCallback({ onplay: function () {} }); corvis.voiceinteraction.listen();';

const values = (text, expression) => [...text.matchAll(expression)].map((match) => match.slice(1).join(' '));
const table = values(
  readFileSync(path.join(root, 'runtime/include/corvis_tv/remote_keys.h'), 'utf8'),
  /\{"(\w+)", "(\w+)", "(\w+)", (\d+), /g
);

async function runScript(t, html, script, options = []) {
  const { code, text } = await testApp(t, html, script, ['--timeout', '2000', ...options]);
  assert.equal(code, 0, text);
}

test('every key has the values of the table, which is the one of the document', async (t) => {
  const document = readFileSync(path.join(root, 'docs/voice-scripts.md'), 'utf8');
  assert.deepEqual(values(document, /^\| `(\w+)` \| `(\w+)` \| `(\w+)` \| (\d+) \|$/gm), table);
  const html = `<script>
    var log = [];
    ['keydown', 'keyup'].forEach(function (type) {
      document.addEventListener(type, function (event) {
        if (!event.isTrusted || event.which !== event.keyCode) return;
        log.push([type, event.key, event.code, event.keyCode].join(' '));
      });
    });
    ${listen}</script>`;
  const steps = table.map((row) => {
    const [name, ...rest] = row.replace('GoBack BrowserBack 461', 'GoBack BrowserBack 27').split(' ');
    const events = JSON.stringify(['keydown', 'keyup'].map((type) => `${type} ${rest.join(' ')}`));
    return `press ${name}\nvalue "log.splice(0)" json ${events}\n`;
  });
  const script = `${steps.join('')}press OK 3 times\nvalue "log.length" is 6\n`;
  await runScript(t, html, script, ['--key', 'Back=1', '--key', 'Back=27']);
});

test('keys do what they do in a browser', async (t) => {
  const html = `<body style="height: 5000px">
    <button autofocus onclick="document.title = 'in'">Log in</button>
    <a href="#x" onclick="document.title = 'link'">x</a>
    <iframe srcdoc="<input onkeydown='parent.pressed = event.key + event.keyCode'>"></iframe>
    <input id="field" onkeydown="if (event.keyCode === 461) location = '#gone'">
    <script>function focusOn(document, name) { document.querySelector(name).focus(); return true; } ${listen}</script>`;
  const script = `press OK
    show "title" is "in"
    type "\\t\\n"
    show "title" is "link"
    press Down 2 times
    value "scrollY > 0" is true
    value "focusOn(frames[0].document, 'input')" is true
    type "ab"
    press "5"
    value "frames[0].document.querySelector('input').value" is "ab5"
    press Red
    value "pressed" is "ColorF0Red403"
    value "focusOn(document, '#field')" is true
    type "héllo 한국 🎬 ~^"
    show "#field" is "héllo 한국 🎬 ~^"
    press Back
    value "location.hash" is "#gone"
`;
  await runScript(t, html, script);
});

test('a page that a key hangs or takes away fails its step only', async (t) => {
  const html = `<script>
    document.onkeydown = function (event) { if (event.key === 'ColorF0Red') for (;;); };
    ${listen}</script>`;
  const { code, text } = await testApp(t, html, 'timeout 500 ms\npress Blue\npress Red\n');
  assert.equal(code, 1, text);
  assert.match(
    text,
    /^ok 2 [^]*^not ok 3 .*press Red\n {2}---\n {2}message: "The page did not respond within 500 ms/m
  );
});

test('keys pressed at the prompt are recorded', async (t) => {
  const folder = writePage(t, `<input autofocus><script>${listen}</script>`);
  const input = 'record a.voice\npress "5"\npress Nope\ntype "é"\npress Left 2 times\n';
  assert.match((await run(['run', folder], { input, cwd: folder })).text, /Unknown key "Nope"\./);
  const script = readFileSync(path.join(folder, 'a.voice'), 'utf8');
  assert.match(script, /\npress "5"\n\ntype "é"\n\npress Left 2 times\n$/);
  writeFileSync(path.join(folder, 'a.voice'), `${script}show "input" is "5é"\n`);
  const replayed = await run(['test-app', folder, 'a.voice'], { cwd: folder });
  assert.equal(replayed.code, 0, replayed.text);
});
