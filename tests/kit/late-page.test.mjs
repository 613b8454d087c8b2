// Pages that listen late or never, and that are not at rest when they are loaded.
import assert from 'node:assert/strict';
import { writeFileSync } from 'node:fs';
import path from 'node:path';
import { test } from 'node:test';
import { run, writePage } from '../../testing/corvis.mjs';
import { serve } from '../../testing/tv.mjs';

// Listens when its button is activated, by a key; shows a second one a moment later.
const login = `<button id="login">Log in</button><script>
  login.focus();
  login.onclick = () => setTimeout(() => {
    corvis.voiceinteraction.setCallback({ onplay: () => true });
    corvis.voiceinteraction.listen();
    setTimeout(() => login.insertAdjacentHTML('afterend', '<button>Watch</button>'), 300);
  }, 300);
</script>`;

test('a script begins when the page has loaded; what it says waits for listen() and for items', async (t) => {
  const folder = writePage(t, login);
  const script = path.join(folder, 'a.voice');
  writeFileSync(script, 'press OK\nsay play\nexpect success\nsay select watch\nexpect success\n');
  const { code, text } = await run(['test-app', folder, script]);
  assert.equal(code, 0, text);
});

test('a page that never listens fails what is said, with the reason', async (t) => {
  for (const [html, options, reason] of [
    ['<script>nowhere.to.go();</script>', [], /Its console says: uncaught: .*nowhere/],
    ['<p>Quiet', [], /Its console shows no error/],
    ['<p>Quiet', ['--privilege', 'microphone'], /Does it hold the privileges\?/],
  ]) {
    const folder = writePage(t, html);
    const script = path.join(folder, 'a.voice');
    writeFileSync(script, 'test "looks"\nvalue "1" is "1"\ntest "says"\nsay play\n');
    const { code, text } = await run(['test-app', '--timeout', '500', ...options, folder, script]);
    assert.equal(code, 1, text);
    assert.match(text, /^ok 1 .*[^]*^not ok 2 /m);
    assert.match(text, reason);
  }
});

test('the prompt works before the page listens', async (t) => {
  const input = 'items\nplay\npress OK\nplay\nreload\nitems\n';
  const { code, text } = await run(['run', '--timeout', '1000', writePage(t, login)], { input });
  assert.equal(code, 0, text);
  const parts = [
    /Log in\n.*once the page has called listen/,
    /ACTION_PLAY: .*has not called listen\(\)/,
    /ACTION_PLAY {2}-> {2}success/,
  ];
  assert.match(text, new RegExp(parts.map(({ source }) => source).join('[^]*')));
});

// A server whose answer comes long after everything else of a page.
const serveLate = (t) =>
  serve(t, (_, response) => {
    response.setHeader('access-control-allow-origin', '*');
    setTimeout(() => response.end('late'), 2000);
  });

test('items and lint look when the page has come to rest', async (t) => {
  const late = await serveLate(t);
  const page = writePage(
    t,
    `<div id="list"></div><script>
       corvis.voiceinteraction.setCallback({ onplay: () => true });
       corvis.voiceinteraction.listen();
       let i = 0;
       const timer = setInterval(() => {
         list.insertAdjacentHTML('beforeend', '<button>Row ' + ++i + '</button><button></button>');
         if (i === 8) clearInterval(timer);
       }, 100);
       for (const wait of [fetch('${late}'), new Promise((done) => {
         const request = new XMLHttpRequest();
         request.open('GET', '${late}');
         request.onload = done;
         request.send();
       })]) wait.then(() => list.insertAdjacentHTML('beforeend', '<button>Late</button>'));
     </script>`
  );
  const { text } = await run(['items', '--timeout', '20000', page]);
  assert.match(text, /Row 8\n[^]*Late\n[^]*Late\n/);
  const lint = await run(['lint', '--json', '--timeout', '20000', page]);
  assert.equal(lint.text.match(/"rule":"title"/g).length, 8, lint.text);
});
